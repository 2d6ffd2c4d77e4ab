#include "qdeclarativevisualdatamodel_p.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QSignalBlocker>
#include <QtQml/QJSValue>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>

#include <private/qqmldelegatemodel_p_p.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/** Keeps the rows that items stand for to itself while they change, and says in the end which did. */
class RowSilence
{
public:
    explicit RowSilence(QQmlDelegateModel *model)
    {
        const auto &cache = QQmlDelegateModelPrivate::get(model)->m_cache;
        for (QQmlDelegateModelItem *item : cache)
            m_rows.push_back({item, item->modelIndex(), item->blockSignals(true)});
    }

    void end()
    {
        // Attached objects keep no silence, and what they run may delete items.
        for (const auto &row : m_rows) {
            if (row.item)
                row.item->blockSignals(row.wasBlocked);
        }
        for (const auto &row : m_rows) {
            if (!row.item || row.item->modelIndex() == row.before)
                continue;
            QMetaObject::invokeMethod(row.item, "modelIndexChanged");
            if (row.item)
                QMetaObject::invokeMethod(row.item, "rowChanged");
        }
    }

private:
    struct Row
    {
        QPointer<QQmlDelegateModelItem> item;
        int before;
        bool wasBlocked;
    };
    std::vector<Row> m_rows;
};

} // namespace

QDeclarativeVisualDataModel::QDeclarativeVisualDataModel()
{
    watchItems();
}

QDeclarativeVisualDataModel::QDeclarativeVisualDataModel(QQmlContext *context)
    : QQmlDelegateModel(context)
{
    watchItems();
}

void QDeclarativeVisualDataModel::watchItems()
{
    connect(this, &QQmlInstanceModel::modelUpdated, this, [this](const QQmlChangeSet &changes, bool reset) {
        emitDeclarativeChanges(this, changes, reset);
    });
    connect(this, &QQmlInstanceModel::createdItem, this, [this](int index, QObject *object) {
        if (auto *item = qobject_cast<QDeclarativeItem *>(object))
            Q_EMIT createdItem(index, item);
    });
    connect(this, &QQmlInstanceModel::destroyingItem, this, [this](QObject *object) {
        if (auto *item = qobject_cast<QDeclarativeItem *>(object))
            Q_EMIT destroyingItem(item);
    });
}

void QDeclarativeVisualDataModel::classBegin()
{
    isComplete = false;
    QQmlDelegateModel::classBegin();
}

void QDeclarativeVisualDataModel::componentComplete()
{
    if (!std::exchange(isComplete, true))
        QQmlDelegateModel::componentComplete();
}

void QDeclarativeVisualDataModel::setModel(const QVariant &value)
{
    const QVariant model =
        value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toVariant() : value;
    disconnect(reset);
    disconnect(change);
    disconnect(beforeMove);
    disconnect(move);
    roles.clear();
    auto *items = qobject_cast<QAbstractItemModel *>(model.value<QObject *>());
    if (items) {
        roles = items->roleNames();
        // Before the delegates are told, so that they are made once.
        reset =
            connect(items, &QAbstractItemModel::modelReset, this, &QDeclarativeVisualDataModel::adoptRoles);
    }
    QQmlDelegateModel::setModel(model);
    // The base class reports only changes of roles that a view watches.
    if (items) {
        change = connect(items, &QAbstractItemModel::dataChanged, this,
                         &QDeclarativeVisualDataModel::reportChange);
        watchMoves(items);
    }
}

void QDeclarativeVisualDataModel::watchMoves(QAbstractItemModel *items)
{
    beforeMove = connect(items, &QAbstractItemModel::rowsAboutToBeMoved, this,
                         &QDeclarativeVisualDataModel::takeMoves);
    move = connect(items, &QAbstractItemModel::rowsMoved, this, &QDeclarativeVisualDataModel::moveRows);
}

/** Has the base class told of moves by us alone; it connects itself anew with each root. */
void QDeclarativeVisualDataModel::takeMoves()
{
    disconnect(sender(), SIGNAL(rowsMoved(QModelIndex, int, int, QModelIndex, int)), this,
               SLOT(_q_rowsMoved(QModelIndex, int, int, QModelIndex, int)));
}

/**
 * Tells the base class of moved rows.
 *
 * Where it has items for some of several rows it takes one for the other, or goes beyond the end of what it
 * has; rows that move one by one it gets right.
 */
void QDeclarativeVisualDataModel::moveRows(const QModelIndex &source, int first, int last,
                                           const QModelIndex &target, int before)
{
    const auto root = rootIndex().value<QModelIndex>();
    const int count = last - first + 1;
    const int to = first > before ? before : before - count;
    const bool isWithin = source == root && target == root;
    if (isWithin && count > 1 && hasItemsBetween(qMin(first, to), qMax(first, to) + count)) {
        moveOneByOne(first, to, count);
        return;
    }
    QMetaObject::invokeMethod(this, "_q_rowsMoved", Q_ARG(QModelIndex, source), Q_ARG(int, first),
                              Q_ARG(int, last), Q_ARG(QModelIndex, target), Q_ARG(int, before));
}

bool QDeclarativeVisualDataModel::hasItemsBetween(int first, int end) const
{
    const auto &cache =
        QQmlDelegateModelPrivate::get(const_cast<QDeclarativeVisualDataModel *>(this))->m_cache;
    return std::any_of(cache.cbegin(), cache.cend(), [first, end](const QQmlDelegateModelItem *item) {
        return item->modelIndex() >= first && item->modelIndex() < end;
    });
}

void QDeclarativeVisualDataModel::moveOneByOne(int from, int to, int count)
{
    RowSilence rows(this);
    {
        const QSignalBlocker silent(this);
        std::vector<QSignalBlocker> silentParts;
        for (const auto &part : qAsConst(shownParts)) {
            if (part)
                silentParts.emplace_back(part.data());
        }
        // As well, the rows that these are moved past could be moved past them.
        const int distance = qAbs(to - from);
        const bool isShort = count <= distance;
        const bool isDown = (to > from) == isShort;
        const int low = qMin(from, to);
        const int high = low + count + distance - 1;
        for (int i = qMin(count, distance); i > 0; --i)
            QMetaObject::invokeMethod(this, "_q_itemsMoved", Q_ARG(int, isDown ? low : high),
                                      Q_ARG(int, isDown ? high : low), Q_ARG(int, 1));
    }
    const QPointer<QDeclarativeVisualDataModel> guard(this);
    rows.end();
    QQmlChangeSet changes;
    changes.move(from, to, count, 0);
    const auto parts = guard ? shownParts : QVector<QPointer<QQmlInstanceModel>>();
    for (const auto &part : parts) {
        if (part)
            Q_EMIT part->modelUpdated(changes, false);
    }
    if (guard)
        Q_EMIT modelUpdated(changes, false);
}

void QDeclarativeVisualDataModel::reportChange(const QModelIndex &first, const QModelIndex &last)
{
    if (first.parent() == rootIndex().value<QModelIndex>())
        Q_EMIT itemsChanged(first.row(), last.row() - first.row() + 1);
}

void QDeclarativeVisualDataModel::adoptRoles()
{
    const QVariant current = model();
    const auto *items = qobject_cast<QAbstractItemModel *>(current.value<QObject *>());
    if (!items || items->roleNames() == roles)
        return;
    setModel({});
    setModel(current);
}

QQmlInstanceModel *QDeclarativeVisualDataModel::shownModel()
{
    if (partName.isEmpty())
        return this;
    QQmlEngine *engine = qmlEngine(this);
    if (!engine)
        return this;
    QQmlEngine::setObjectOwnership(parts(), QQmlEngine::CppOwnership);
    auto *part =
        qobject_cast<QQmlInstanceModel *>(engine->newQObject(parts()).property(partName).toQObject());
    if (!part)
        return this;
    watchPart(part);
    return part;
}

void QDeclarativeVisualDataModel::watchPart(QQmlInstanceModel *part)
{
    if (!shownParts.contains(part))
        shownParts.append(part);
    connect(part, &QQmlInstanceModel::createdItem, this, &QDeclarativeVisualDataModel::reportPackage,
            Qt::UniqueConnection);
    connect(part, &QQmlInstanceModel::destroyingItem, this, &QDeclarativeVisualDataModel::reportPackageEnd,
            Qt::UniqueConnection);
}

void QDeclarativeVisualDataModel::reportPackage(int index, QObject *item)
{
    // Parts are declared in the component whose root is the package.
    const QQmlContext *context = item ? qmlContext(item) : nullptr;
    QObject *package = context ? context->contextObject() : nullptr;
    if (!package)
        return;
    const bool isKnown = std::find(packages.cbegin(), packages.cend(), package) != packages.cend();
    packages.insert(item, package);
    if (!isKnown)
        Q_EMIT createdPackage(index, package);
}

void QDeclarativeVisualDataModel::reportPackageEnd(QObject *item)
{
    QObject *const package = packages.take(item);
    if (!package)
        return;
    // All parts of a package go at once.
    for (auto it = packages.begin(); it != packages.end();)
        it = it.value() == package ? packages.erase(it) : std::next(it);
    Q_EMIT destroyingPackage(package);
}

#include "moc_qdeclarativevisualdatamodel_p.cpp"
