#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <QtCore/QScopedValueRollback>

#include <utility>

namespace {

struct RowMove
{
    int from = 0;
    int to = 0;
    int count = 0;
};

} // namespace

/** The keys of the moved rows in the changes, in their order; none where the changes are not one piece. */
static QVector<QQmlChangeSet::MoveKey> movedRows(const QVector<QQmlChangeSet::Change> &changes, bool isInsert)
{
    QVector<QQmlChangeSet::MoveKey> keys;
    int next = changes.isEmpty() ? 0 : changes.first().index;
    for (const auto &change : changes) {
        if (!change.isMove() || change.index != next)
            return {};
        for (int i = 0; i < change.count; ++i)
            keys.append(change.moveKey(change.index + i));
        if (isInsert)
            next = change.end();
    }
    return keys;
}

/**
 * The move of rows that the changes come to, or one of no rows.
 *
 * Where only some of the rows have items the engine tells of it in pieces.
 */
static RowMove moveOf(const QQmlChangeSet &changes)
{
    const auto keys = movedRows(changes.removes(), false);
    if (keys.isEmpty() || keys != movedRows(changes.inserts(), true))
        return {};
    return {changes.removes().first().index, changes.inserts().first().index, int(keys.count())};
}

void QDeclarativeItemViewPrivate::applyKeptChanges()
{
    const QDeclarativeKeptChanges kept = std::exchange(keptChanges, {});
    if (!kept.isEmpty())
        applyChanges(kept.changes(), kept.isReset());
}

void QDeclarativeItemViewPrivate::applyChanges(const QQmlChangeSet &changes, bool reset)
{
    if (!componentIsComplete) {
        announce(&QDeclarativeItemView::countChanged);
        return;
    }
    if (work.isInHand()) {
        if (keptChanges.isEmpty())
            work.postponeFirst([this] { applyKeptChanges(); });
        keptChanges.add(changes, reset);
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    if (reset) {
        resetRows();
        return;
    }
    moveReason = Other;
    int rows = visualModel->count() - changes.difference();
    const RowMove move = moveOf(changes);
    if (move.count > 0) {
        moveRows(move.from, move.to, move.count);
    } else {
        changeRows(changes, &rows);
    }
    if (changes.difference() != 0)
        announce(&QDeclarativeItemView::countChanged);
}

void QDeclarativeItemViewPrivate::changeRows(const QQmlChangeSet &changes, int *rows)
{
    for (const auto &change : changes.removes())
        removeRows(change.index, change.count, rows);
    for (const auto &change : changes.inserts())
        insertRows(change.index, change.count, rows);
    // Rows that changed may be in other sections.
    if (!changes.changes().isEmpty())
        scheduleLayout();
}

/** Of @p rows rows so far. */
void QDeclarativeItemViewPrivate::insertRows(int index, int count, int *rows)
{
    Q_Q(QDeclarativeItemView);
    AddedItems added;
    bool mayShow = false;
    {
        const QScopedValueRollback<bool> guard(layingOut, true);
        mayShow = rowsInserted(index, count, &added);
    }
    if (mayShow)
        scheduleLayout();
    if (*rows > 0 && currentIndex >= index) {
        currentIndex += count;
        if (currentItem)
            currentItem->index = currentIndex;
        placeCurrent();
        Q_EMIT q->currentIndexChanged();
    } else if (*rows == 0 && (currentIndex == 0 || (currentIndex < 0 && !currentIsCleared))) {
        updateCurrent(0);
    }
    *rows += count;
    for (const auto &attached : qAsConst(added)) {
        if (attached)
            Q_EMIT attached->add();
    }
}

/** Keeps the item of a row that is gone for as long as its delegate wants to stay. */
void QDeclarativeItemViewPrivate::detachRow(Item *item)
{
    item->index = -1;
    QObject::connect(
        item->attached, &QDeclarativeItemViewAttached::delayRemoveChanged, q_func(),
        [this] { removeDelayed(); }, Qt::ConnectionType(Qt::QueuedConnection));
}

void QDeclarativeItemViewPrivate::takeVisible(int slot)
{
    auto item = std::move(visibleItems[slot]);
    visibleItems.erase(visibleItems.begin() + slot);
    releaseItem(std::move(item));
}

void QDeclarativeItemViewPrivate::noteFirstRow()
{
    for (const auto &item : visibleItems) {
        if (item->index < 0)
            continue;
        visibleIndex = item->index;
        return;
    }
}

/** Has the delegates of the rows hear that these are gone, and returns who was to hear it. */
QDeclarativeItemViewPrivate::AddedItems QDeclarativeItemViewPrivate::tellRemoved(int index, int count) const
{
    AddedItems leaving;
    for (const auto &item : visibleItems) {
        if (item->index >= index && item->index < index + count)
            leaving.append(item->attached);
    }
    for (const auto &attached : qAsConst(leaving)) {
        if (attached)
            Q_EMIT attached->remove();
    }
    return leaving;
}

void QDeclarativeItemViewPrivate::removeRows(int index, int count, int *rows)
{
    *rows -= count;
    const Item *first = firstVisibleItem();
    const qreal firstPlace = first ? first->position() : 0;
    const AddedItems leaving = tellRemoved(index, count);
    qreal above = 0;
    for (int slot = 0; slot < int(visibleItems.size());) {
        Item *item = visibleItems[slot].get();
        if (item->index >= index + count)
            item->index -= count;
        if (item->index < index || item->index >= index + count || !leaving.contains(item->attached)) {
            ++slot;
        } else if (item->attached->delayRemove()) {
            detachRow(item);
            ++slot;
        } else {
            if (item == first)
                first = nullptr;
            if (first && item->position() < firstPlace)
                above += item->size();
            partedItems.push_back(std::move(visibleItems[slot]));
            visibleItems.erase(visibleItems.begin() + slot);
        }
    }
    rowsRemoved(first, above);
    currentRowRemoved(index, count, *rows);
    noteFirstRow();
    if (!leaving.isEmpty() && visibleItems.empty())
        noRowsLeft(index);
    releaseParted();
    if (!leaving.isEmpty())
        scheduleLayout();
}

void QDeclarativeItemViewPrivate::currentRowRemoved(int index, int count, int rows)
{
    Q_Q(QDeclarativeItemView);
    if (currentIndex >= index + count) {
        currentIndex -= count;
        if (currentItem)
            currentItem->index = currentIndex;
        Q_EMIT q->currentIndexChanged();
    } else if (currentIndex >= index) {
        if (currentItem)
            currentItem->attached->setIsCurrentItem(false);
        releaseItem(std::move(currentItem));
        currentIndex = -1;
        if (rows > 0)
            updateCurrent(qMin(index, rows - 1));
        else
            Q_EMIT q->currentIndexChanged();
    }
}

/** Parts with the items that left the view with a change. */
void QDeclarativeItemViewPrivate::releaseParted()
{
    while (!partedItems.empty()) {
        auto item = std::move(partedItems.back());
        partedItems.pop_back();
        releaseItem(std::move(item));
    }
}

int QDeclarativeItemViewPrivate::indexAfterMove(int index, int from, int to, int count)
{
    if (index >= from && index < from + count)
        return index + to - from;
    if (from < to && index >= from + count && index < to + count)
        return index - count;
    if (to < from && index >= to && index < from)
        return index + count;
    return index;
}

QDeclarativeItemViewPrivate::MovedItems QDeclarativeItemViewPrivate::takeForMove(int from, int to, int count)
{
    MovedItems items;
    for (int slot = 0; slot < int(visibleItems.size()); ++slot) {
        auto item = std::move(visibleItems[slot]);
        if (item->index < 0) {
            items.detached.emplace_back(slot, std::move(item));
            continue;
        }
        item->index = indexAfterMove(item->index, from, to, count);
        const int index = item->index;
        items.rows[index] = std::move(item);
    }
    visibleItems.clear();
    return items;
}

/** Puts the row at the end of the visible items, with a new item if it has none; null where that fails. */
QDeclarativeViewItem *QDeclarativeItemViewPrivate::appendMoved(MovedItems *items, int index)
{
    const auto found = items->rows.find(index);
    auto item = found != items->rows.end() ? std::move(found->second) : createRow(index);
    if (found != items->rows.end())
        items->rows.erase(found);
    if (!item)
        return nullptr;
    visibleItems.push_back(std::move(item));
    return visibleItems.back().get();
}

/** Puts the items without a row back, and parts with those whose rows are not among the visible ones. */
void QDeclarativeItemViewPrivate::finishMove(MovedItems items)
{
    for (auto &left : items.detached) {
        const int slot = qMin(left.first, int(visibleItems.size()));
        visibleItems.insert(visibleItems.begin() + slot, std::move(left.second));
    }
    for (auto &left : items.rows)
        partedItems.push_back(std::move(left.second));
}

void QDeclarativeItemViewPrivate::moveRows(int from, int to, int count)
{
    Q_Q(QDeclarativeItemView);
    {
        const QScopedValueRollback<bool> guard(layingOut, true);
        rowsMoved(from, to, count);
    }
    if (currentItem) {
        const int current = indexAfterMove(currentIndex, from, to, count);
        const bool changes = current != currentIndex;
        currentIndex = current;
        currentItem->index = current;
        if (changes)
            Q_EMIT q->currentIndexChanged();
    }
    placeCurrent();
    releaseParted();
    layout();
}

void QDeclarativeItemViewPrivate::resetRows()
{
    clear();
    setViewPosition(0);
    refill();
    showCurrent();
    announce(&QDeclarativeItemView::countChanged);
}

/** Drops an item that went without being asked to, with its model. */
void QDeclarativeItemViewPrivate::itemDestroyed(QDeclarativeItem *item)
{
    for (auto it = visibleItems.begin(); it != visibleItems.end();) {
        if ((*it)->item == item)
            it = visibleItems.erase(it);
        else
            ++it;
    }
    if (currentItem && currentItem->item == item)
        currentItem.reset();
    scheduleLayout();
}

void QDeclarativeItemViewPrivate::removeDelayed()
{
    if (work.postpone([this] { removeDelayed(); }))
        return;
    const QDeclarativeWork::Scope scope(&work);
    for (int slot = int(visibleItems.size()) - 1; slot >= 0; --slot) {
        const Item *item = visibleItems[slot].get();
        if (item->index < 0 && !item->attached->delayRemove())
            takeVisible(slot);
    }
    if (visibleItems.empty())
        updateContentSize();
    layout();
}
