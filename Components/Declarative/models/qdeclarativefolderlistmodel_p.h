#pragma once

#include <QtCore/QAbstractListModel>
#include <QtCore/QDir>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtQml/QQmlParserStatus>
#include <QtQml/qqml.h>

/**
 * The files and folders of a local folder, for "Qt.labs.folderlistmodel 1.0".
 *
 * Folders come first. It follows changes of the folder. A folder that does not exist leaves the one that is
 * shown; an empty address shows the root of the file system alone.
 */
class QDeclarativeFolderListModel : public QAbstractListModel, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QUrl folder READ folder WRITE setFolder NOTIFY folderChanged)
    Q_PROPERTY(QUrl parentFolder READ parentFolder NOTIFY folderChanged)
    Q_PROPERTY(QStringList nameFilters READ nameFilters WRITE setNameFilters)
    Q_PROPERTY(SortField sortField READ sortField WRITE setSortField)
    Q_PROPERTY(bool sortReversed READ sortReversed WRITE setSortReversed)
    Q_PROPERTY(bool showDirs READ showDirs WRITE setShowDirs)
    Q_PROPERTY(bool showDotAndDotDot READ showDotAndDotDot WRITE setShowDotAndDotDot)
    Q_PROPERTY(bool showOnlyReadable READ showOnlyReadable WRITE setShowOnlyReadable)
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum SortField { Unsorted, Name, Time, Size, Type };
    Q_ENUM(SortField)

    enum Roles { FileNameRole = Qt::UserRole + 1, FilePathRole };

    explicit QDeclarativeFolderListModel(QObject *parent = nullptr);

    QUrl folder() const { return address; }
    void setFolder(const QUrl &);

    /** The folder above, empty for the topmost one. */
    QUrl parentFolder() const;

    /** Patterns with * and ?, of which a file's name has to match one; folders are not filtered. */
    QStringList nameFilters() const { return filters; }
    void setNameFilters(const QStringList &);
    SortField sortField() const { return field; }
    void setSortField(SortField);
    bool sortReversed() const { return isReversed; }
    void setSortReversed(bool);
    bool showDirs() const { return withFolders; }
    void setShowDirs(bool);
    bool showDotAndDotDot() const { return withDots; }
    void setShowDotAndDotDot(bool);
    bool showOnlyReadable() const { return readableOnly; }
    void setShowOnlyReadable(bool);
    int count() const { return entries.count(); }

    /** Whether the entry at @p index is a folder; false where there is none. */
    Q_INVOKABLE bool isFolder(int index) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void folderChanged();
    void countChanged();

protected:
    void classBegin() override { }
    void componentComplete() override;

private:
    template <typename T>
    void change(T &member, const T &value);
    QDir::SortFlags sorting() const;
    QFileInfoList list() const;
    void reset();
    void follow();
    void update();

    QUrl address;
    QStringList filters = {QStringLiteral("*")};
    QFileInfoList entries;
    QFileSystemWatcher watcher;
    QTimer settle; ///< a folder that is written to says so many times
    SortField field = Name;
    bool isReversed = false;
    bool withFolders = true;
    bool withDots = false;
    bool readableOnly = false;
    bool isComplete = false;
    bool isRefused = false; ///< the folder that was named at first
};

QML_DECLARE_TYPE(QDeclarativeFolderListModel)
