#pragma once

#include "qdeclarativexmlquery_p.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QPointer>
#include <QtCore/QUrl>
#include <QtQml/QQmlListProperty>
#include <QtQml/QQmlParserStatus>
#include <QtQml/qqml.h>

QT_BEGIN_NAMESPACE
class QNetworkReply;
QT_END_NAMESPACE

/** A role of an XmlListModel: what of each thing found is given to delegates under a name. */
class QDeclarativeXmlRole : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(bool isKey READ isKey WRITE setIsKey NOTIFY isKeyChanged)

public:
    QString name() const { return roleName; }
    void setName(const QString &);
    QString query() const { return path; }

    /** Refuses, with a message, a query that does not start at what the model's query found. */
    void setQuery(const QString &);

    /** Rows are the same as before a reload where all keys are. */
    bool isKey() const { return key; }
    void setIsKey(bool);

Q_SIGNALS:
    void nameChanged();
    void queryChanged();
    void isKeyChanged();

private:
    QString roleName;
    QString path;
    bool key = false;
};

/**
 * Rows that an XPath query finds in a document, from an address or given as text.
 *
 * Loading and querying go on in the background. With key roles a reload adds and removes only the rows that
 * came and went.
 */
class QDeclarativeXmlListModel : public QAbstractListModel, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(qreal progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QString xml READ xml WRITE setXml NOTIFY xmlChanged)
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged)
    Q_PROPERTY(QString namespaceDeclarations READ namespaceDeclarations WRITE setNamespaceDeclarations NOTIFY
                   namespaceDeclarationsChanged)
    Q_PROPERTY(QQmlListProperty<QDeclarativeXmlRole> roles READ roles)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_CLASSINFO("DefaultProperty", "roles")

public:
    enum Status { Null, Ready, Loading, Error };
    Q_ENUM(Status)

    explicit QDeclarativeXmlListModel(QObject *parent = nullptr);
    ~QDeclarativeXmlListModel() override;

    Status status() const { return state; }
    qreal progress() const { return loaded; }
    QUrl source() const { return address; }
    void setSource(const QUrl &);

    /** Comes before the source where both are given. */
    QString xml() const { return text; }
    void setXml(const QString &);
    QString query() const { return path; }
    void setQuery(const QString &);
    QString namespaceDeclarations() const { return namespaces; }
    void setNamespaceDeclarations(const QString &);
    QQmlListProperty<QDeclarativeXmlRole> roles();
    int count() const { return rows; }
    /** How many rows the document has that was read last, of which the rows may not be told yet; -1 before.
     */
    int readCount() const { return rowsRead; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /** Loads and queries anew; what goes on is given up. */
    Q_INVOKABLE void reload();

    /** Returns an object with a row's roles, undefined where there is no such row. */
    Q_INVOKABLE QVariant get(int index) const;

    /** Says why status is Error. */
    Q_INVOKABLE QString errorString() const;

Q_SIGNALS:
    void statusChanged(QDeclarativeXmlListModel::Status);
    void progressChanged(qreal progress);
    void countChanged();
    void sourceChanged();
    void xmlChanged();
    void queryChanged();
    void namespaceDeclarationsChanged();
    void itemsInserted(int index, int count);
    void itemsRemoved(int index, int count);
    void itemsMoved(int from, int to, int count);
    void itemsChanged(int index, int count, const QList<int> &roles);

protected:
    void classBegin() override { }
    void componentComplete() override;

private:
    using Result = QDeclarativeXmlResult;

    void cancel();
    void request(const QUrl &);
    void finishRequest();
    void fail(const QString &message);
    void refuse(const QString &message);
    QString admittedNamespaces() const;
    void startQuery(const QByteArray &document);
    void adopt(const Result &);
    void adoptAll(const Result &);
    void adoptByKey(const Result &);
    void insert(const Result &, int from, int at, int number);
    void remove(int at, int number);
    void update(const Result &, int at);
    QStringList keys(const QVector<QVariantList> &, int number) const;
    void setStatus(Status);
    void setProgress(qreal);
    static void appendRole(QQmlListProperty<QDeclarativeXmlRole> *, QDeclarativeXmlRole *);

    QUrl address;
    QString text;
    QString path;
    QString namespaces;
    QString error;
    QVector<QDeclarativeXmlRole *> allRoles;
    QVector<QVariantList> columns;
    QPointer<QNetworkReply> reply;
    std::shared_ptr<std::atomic_bool> isCancelled;
    int rowsRead = -1;
    int rows = 0;
    qreal loaded = 0;
    Status state = Null;
    bool isComplete = false;
};

QML_DECLARE_TYPE(QDeclarativeXmlRole)
QML_DECLARE_TYPE(QDeclarativeXmlListModel)
