#include "qdeclarativelistmodel_p.h"

#include "qdeclarativelistmodelagent_p.h"
#include "qdeclarativelistrow_p.h"

#include <QtCore/QAtomicInteger>
#include <QtCore/QDateTime>
#include <QtQml/QJSValueIterator>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlInfo>

#include <algorithm>

namespace {

quint64 nextId()
{
    static QAtomicInteger<quint64> last = 0;
    return ++last;
}

QDeclarativeListModel *nestedList(const QVariant &value)
{
    return qobject_cast<QDeclarativeListModel *>(value.value<QObject *>());
}

bool isListOfObjects(const QVariant &value)
{
    if (value.userType() != QMetaType::QVariantList)
        return false;
    const QVariantList list = value.toList();
    return std::all_of(list.cbegin(), list.cend(),
                       [](const QVariant &entry) { return entry.userType() == QMetaType::QVariantMap; });
}

QVariantMap mapOf(const QJSValue &object)
{
    if (const auto *row = qobject_cast<QDeclarativeListRow *>(object.toQObject()))
        return row->values();
    QVariantMap map;
    QJSValueIterator it(object);
    while (it.next())
        map.insert(it.name(), QDeclarativeListModel::plain(QVariant::fromValue(it.value())));
    return map;
}

bool isNumber(const QVariant &value)
{
    return value.userType() == QMetaType::Int || value.userType() == QMetaType::Double;
}

bool isSame(const QVariant &value, const QVariant &other)
{
    if (isNumber(value) && isNumber(other))
        return value.toDouble() == other.toDouble();
    return value.userType() == other.userType() && value == other;
}

bool isRow(const QJSValue &value)
{
    return value.isObject() && !value.isArray() && !value.isCallable() && !value.isDate()
        && !value.isRegExp();
}

} // namespace

struct QDeclarativeListModel::Row
{
    quint64 id = nextId();
    QVector<QVariant> values; ///< by role, invalid or missing for those that the row does not have
    std::unique_ptr<QDeclarativeListRow> object; ///< what get() returned, if it was asked
};

QDeclarativeListModel::QDeclarativeListModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

QDeclarativeListModel::~QDeclarativeListModel()
{
    if (lastAgent && !lastAgent->wasReferenced())
        delete lastAgent;
}

int QDeclarativeListModel::count() const
{
    return int(rows.size());
}

int QDeclarativeListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant QDeclarativeListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= count())
        return {};
    return rows[size_t(index.row())]->values.value(role - Qt::UserRole);
}

QHash<int, QByteArray> QDeclarativeListModel::roleNames() const
{
    rolesWereRead = true;
    QHash<int, QByteArray> names;
    for (int i = 0; i < roles.count(); ++i)
        names.insert(Qt::UserRole + i, roles.at(i));
    return names;
}

void QDeclarativeListModel::warn(const QString &message) const
{
    // Lists in lists have no place of their own in the document.
    const QDeclarativeListModel *declared = this;
    while (const auto *outer = qobject_cast<const QDeclarativeListModel *>(declared->parent()))
        declared = outer;
    qmlWarning(declared) << message;
}

int QDeclarativeListModel::roleOf(const QString &name)
{
    const auto known = roleIndexes.constFind(name);
    if (known != roleIndexes.constEnd())
        return *known;
    const int role = roles.count();
    roles.append(name.toUtf8());
    roleIndexes.insert(name, role);
    rolesAreStale = rolesAreStale || rolesWereRead;
    return role;
}

void QDeclarativeListModel::refreshRoles()
{
    // Delegates that exist cannot learn of another role, so that views have to make them anew.
    if (!std::exchange(rolesAreStale, false))
        return;
    rolesWereRead = false;
    beginResetModel();
    endResetModel();
}

QVariant QDeclarativeListModel::plain(const QVariant &value)
{
    if (value.userType() != qMetaTypeId<QJSValue>())
        return value;
    const auto script = value.value<QJSValue>();
    if (const auto *row = qobject_cast<QDeclarativeListRow *>(script.toQObject()))
        return row->values();
    return script.isCallable() ? value : script.toVariant();
}

QVariant QDeclarativeListModel::convert(const QVariant &plain)
{
    if (!isListOfObjects(plain))
        return plain;
    auto *list = new QDeclarativeListModel(this);
    QQmlEngine::setObjectOwnership(list, QQmlEngine::CppOwnership);
    const QVariantList entries = plain.toList();
    for (int i = 0; i < entries.count(); ++i)
        list->insertRow(i, entries.at(i).toMap());
    return QVariant::fromValue<QObject *>(list);
}

bool QDeclarativeListModel::store(Row &row, int role, const QVariant &plain)
{
    const QVariant before = row.values.value(role);
    auto *list = nestedList(before);
    if (list && list->parent() == this) {
        if (plain.userType() == QMetaType::QVariantList && list->toList() == plain.toList())
            return false;
        list->deleteLater();
    } else if (isSame(before, plain)) {
        return false;
    }
    if (row.values.count() <= role)
        row.values.resize(role + 1);
    row.values[role] = convert(plain);
    return true;
}

void QDeclarativeListModel::insertRow(int index, const QVariantMap &values)
{
    auto row = std::make_unique<Row>();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        store(*row, roleOf(it.key()), it.value());
    refreshRoles();
    beginInsertRows({}, index, index);
    rows.insert(rows.begin() + index, std::move(row));
    endInsertRows();
    Q_EMIT itemsInserted(index, 1);
    Q_EMIT countChanged();
}

void QDeclarativeListModel::append(const QJSValue &value)
{
    if (!isRow(value)) {
        warn(tr("append: value is not an object"));
        return;
    }
    insertRow(count(), mapOf(value));
}

void QDeclarativeListModel::insert(int index, const QJSValue &value)
{
    if (!isRow(value)) {
        warn(tr("insert: value is not an object"));
        return;
    }
    if (index < 0 || index > count()) {
        warn(tr("insert: index %1 out of range").arg(index));
        return;
    }
    insertRow(index, mapOf(value));
}

void QDeclarativeListModel::dropRows(int index, int number)
{
    beginRemoveRows({}, index, index + number - 1);
    const auto first = rows.begin() + index;
    for (auto it = first; it != first + number; ++it) {
        for (const QVariant &value : qAsConst((*it)->values)) {
            // Delegates of the row may still show the list.
            auto *list = nestedList(value);
            if (list && list->parent() == this)
                list->deleteLater();
        }
        if (QDeclarativeListRow *object = (*it)->object.release()) {
            object->detach();
            object->deleteLater();
        }
    }
    rows.erase(first, first + number);
    endRemoveRows();
    Q_EMIT itemsRemoved(index, number);
    Q_EMIT countChanged();
}

void QDeclarativeListModel::clear()
{
    if (count())
        dropRows(0, count());
}

void QDeclarativeListModel::remove(int index)
{
    if (index < 0 || index >= count())
        warn(tr("remove: index %1 out of range").arg(index));
    else
        dropRows(index, 1);
}

QVariant QDeclarativeListModel::get(int index)
{
    if (index < 0 || index >= count())
        return {};
    Row &row = *rows[size_t(index)];
    if (!row.object) {
        row.object = std::make_unique<QDeclarativeListRow>(this, &row);
        QQmlEngine::setObjectOwnership(row.object.get(), QQmlEngine::CppOwnership);
    }
    return QVariant::fromValue<QObject *>(row.object.get());
}

void QDeclarativeListModel::change(int index, const QVariantMap &values)
{
    QVector<int> changed;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        const int role = roleOf(it.key());
        if (store(*rows[size_t(index)], role, it.value()))
            changed.append(Qt::UserRole + role);
    }
    refreshRoles();
    if (changed.isEmpty())
        return;
    const QModelIndex place = createIndex(index, 0);
    Q_EMIT dataChanged(place, place, changed);
    Q_EMIT itemsChanged(index, 1, changed.toList());
}

void QDeclarativeListModel::set(int index, const QJSValue &value)
{
    if (!isRow(value))
        warn(tr("set: value is not an object"));
    else if (index < 0 || index > count())
        warn(tr("set: index %1 out of range").arg(index));
    else if (index == count())
        insertRow(index, mapOf(value));
    else
        change(index, mapOf(value));
}

void QDeclarativeListModel::setProperty(int index, const QString &property, const QVariant &value)
{
    if (index < 0 || index >= count())
        warn(tr("set: index %1 out of range").arg(index));
    else
        change(index, {{property, plain(value)}});
}

void QDeclarativeListModel::move(int from, int to, int number)
{
    if (number == 0 || from == to)
        return;
    const auto last = [this, number](int index) { return qint64(index) + number > count(); };
    if (from < 0 || to < 0 || number < 0 || last(from) || last(to)) {
        warn(tr("move: out of range"));
        return;
    }
    beginMoveRows({}, from, from + number - 1, {}, to > from ? to + number : to);
    const auto begin = rows.begin();
    if (to > from)
        std::rotate(begin + from, begin + from + number, begin + to + number);
    else
        std::rotate(begin + to, begin + from, begin + from + number);
    endMoveRows();
    Q_EMIT itemsMoved(from, to, number);
}

void QDeclarativeListModel::sync()
{
    warn(tr("List sync() can only be called from a WorkerScript"));
}

QVariantMap QDeclarativeListModel::valuesOf(const Row &row) const
{
    QVariantMap map;
    for (int i = 0; i < row.values.count(); ++i) {
        const QVariant &value = row.values.at(i);
        if (const auto *nested = nestedList(value))
            map.insert(QString::fromUtf8(roles.at(i)), nested->toList());
        else if (value.isValid())
            map.insert(QString::fromUtf8(roles.at(i)), value);
    }
    return map;
}

QVariant QDeclarativeListModel::valueOf(const Row &row, const QString &role) const
{
    const auto known = roleIndexes.constFind(role);
    return known == roleIndexes.constEnd() ? QVariant() : row.values.value(*known);
}

void QDeclarativeListModel::writeSilently(Row &row, const QString &role, const QVariant &value)
{
    store(row, roleOf(role), plain(value));
}

QObject *QDeclarativeListModel::makeAgent()
{
    // Each message to a worker gets a copy of the list as it is then. Who only looked leaves one behind.
    if (lastAgent && !lastAgent->wasReferenced())
        delete lastAgent;
    lastAgent = new QDeclarativeListModelAgent(this);
    QQmlEngine::setObjectOwnership(lastAgent, QQmlEngine::CppOwnership);
    return lastAgent;
}

QVariantList QDeclarativeListModel::toList() const
{
    QVariantList list;
    list.reserve(count());
    for (const auto &row : rows)
        list.append(valuesOf(*row));
    return list;
}

QVector<quint64> QDeclarativeListModel::ids() const
{
    QVector<quint64> all;
    all.reserve(count());
    for (const auto &row : rows)
        all.append(row->id);
    return all;
}

int QDeclarativeListModel::findId(quint64 id, int from) const
{
    for (int i = from; i < count(); ++i) {
        if (rows[size_t(i)]->id == id)
            return i;
    }
    return -1;
}

void QDeclarativeListModel::removeOthers(const QSet<quint64> &wanted)
{
    for (int last = count() - 1; last >= 0; --last) {
        int first = last + 1;
        while (first > 0 && !wanted.contains(rows[size_t(first - 1)]->id))
            --first;
        if (first <= last)
            dropRows(first, last - first + 1);
        last = first - 1;
    }
}

void QDeclarativeListModel::assign(const QVariantList &values, const QVector<quint64> &newIds)
{
    removeOthers(QSet<quint64>(newIds.cbegin(), newIds.cend()));
    const QVector<quint64> left = ids();
    const QSet<quint64> kept(left.cbegin(), left.cend());
    for (int i = 0; i < newIds.count(); ++i) {
        const quint64 id = newIds.at(i);
        if (!kept.contains(id)) {
            insertRow(i, values.at(i).toMap());
            rows[size_t(i)]->id = id;
            continue;
        }
        move(findId(id, i), i, 1);
        change(i, values.at(i).toMap());
    }
}

#include "moc_qdeclarativelistmodel_p.cpp"
