#pragma once

#include <QtCore/QAbstractListModel>
#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtQml/QJSValue>
#include <QtQml/qqml.h>

#include <memory>
#include <vector>

class QDeclarativeListModelAgent;
class QDeclarativeListRow;

/**
 * A list of rows, each with any values under any names, declared with ListElement or built by script.
 *
 * An array of objects among the values is a list of its own, which delegates and get() see as another
 * ListModel. A row may lack roles that others have, which reads as undefined, and a role's values may be of
 * differing types. Roles once known stay known, also when the list is cleared.
 */
class QDeclarativeListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(QObject *agent READ makeAgent DESIGNABLE false)

public:
    explicit QDeclarativeListModel(QObject *parent = nullptr);
    ~QDeclarativeListModel() override;

    int count() const;
    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    Q_INVOKABLE void clear();
    Q_INVOKABLE void remove(int index);
    Q_INVOKABLE void append(const QJSValue &);
    Q_INVOKABLE void insert(int index, const QJSValue &);

    /** Returns an object whose properties are the row's roles, undefined where there is no such row. */
    Q_INVOKABLE QVariant get(int index);
    Q_INVOKABLE void set(int index, const QJSValue &);
    Q_INVOKABLE void setProperty(int index, const QString &property, const QVariant &value);
    Q_INVOKABLE void move(int from, int to, int count);

    /** Only what a worker script gets to see of a model can be synchronized; here it says so. */
    Q_INVOKABLE void sync();

    /** Adds a row; lists of maps among its values become nested lists. */
    void insertRow(int index, const QVariantMap &);

    /** Returns all rows, nested lists included, without what belongs to one thread. Any thread may use it. */
    QVariantList toList() const;

    /** Tells rows apart while they move; the same for a row and its copy in a worker. */
    QVector<quint64> ids() const;

    /** Makes this list equal to @p rows, whose identities are @p ids, with as few changes as they allow. */
    void assign(const QVariantList &rows, const QVector<quint64> &ids);

    /** Returns a value from a script as plain data: arrays become lists, and objects maps. */
    static QVariant plain(const QVariant &);

Q_SIGNALS:
    void itemsInserted(int index, int count);
    void itemsRemoved(int index, int count);
    void itemsMoved(int from, int to, int count);
    void itemsChanged(int index, int count, const QList<int> &roles);
    void countChanged();

private:
    friend class QDeclarativeListRow;
    struct Row;

    QObject *makeAgent();
    void warn(const QString &) const;
    int roleOf(const QString &name);
    void refreshRoles();
    QVariant convert(const QVariant &plain);
    bool store(Row &, int role, const QVariant &plain);
    void change(int index, const QVariantMap &);
    void dropRows(int index, int count);
    QVariantMap valuesOf(const Row &) const;
    QVariant valueOf(const Row &, const QString &role) const;
    void writeSilently(Row &, const QString &role, const QVariant &);
    int findId(quint64 id, int from) const;
    void removeOthers(const QSet<quint64> &ids);

    std::vector<std::unique_ptr<Row>> rows;
    QVector<QByteArray> roles;
    QHash<QString, int> roleIndexes;
    QPointer<QDeclarativeListModelAgent> lastAgent;
    mutable bool rolesWereRead = false; ///< views make their delegates for the roles known then
    bool rolesAreStale = false; ///< there are more roles than those that were read
};

/** Declares one row of a ListModel; the parser of the model reads it, no object is made of it. */
class QDeclarativeListElement : public QObject
{
    Q_OBJECT
};

QML_DECLARE_TYPE(QDeclarativeListModel)
QML_DECLARE_TYPE(QDeclarativeListElement)
