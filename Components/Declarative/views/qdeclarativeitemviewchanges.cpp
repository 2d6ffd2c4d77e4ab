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
    Changes done;
    moveReason = Other;
    {
        const QScopedValueRollback<bool> guard(layingOut, true);
        const RowMove move = moveOf(changes);
        if (move.count > 0)
            moveRows(move.from, move.to, move.count, &done);
        else
            changeRows(changes, &done);
    }
    finishChanges(done);
    if (changes.difference() != 0)
        announce(&QDeclarativeItemView::countChanged);
}

void QDeclarativeItemViewPrivate::changeRows(const QQmlChangeSet &changes, Changes *done)
{
    for (const auto &change : changes.removes())
        removeRows(change.index, change.count, done);
    for (const auto &change : changes.inserts())
        insertRows(change.index, change.count, done);
}

void QDeclarativeItemViewPrivate::insertRows(int index, int count, Changes *done)
{
    if (currentItem && index <= currentIndex) {
        currentIndex += count;
        currentItem->index = currentIndex;
        done->currentMoved = true;
    }
    rowsInserted(index, count);
    done->inserted.append({index, index + count});
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

void QDeclarativeItemViewPrivate::removeRows(int index, int count, Changes *done)
{
    const qreal position = visibleItems.empty() ? 0 : visibleItems.front()->position();
    const bool hadRows = lastVisibleIndex() >= 0;
    QVector<QPointer<QDeclarativeItemViewAttached>> leaving;
    for (const auto &item : visibleItems) {
        if (item->index >= index && item->index < index + count)
            leaving.append(item->attached);
    }
    for (const auto &attached : qAsConst(leaving)) {
        if (attached)
            Q_EMIT attached->remove();
    }
    for (int slot = int(visibleItems.size()) - 1; slot >= 0; --slot) {
        Item *item = visibleItems[slot].get();
        if (item->index >= index + count)
            item->index -= count;
        else if (item->index >= index && item->attached->delayRemove())
            detachRow(item);
        else if (item->index >= index)
            takeVisible(slot);
    }
    const int firstBefore = visibleIndex;
    if (lastVisibleIndex() < 0 && hadRows)
        noRowsLeft(index, position);
    else if (index < visibleIndex)
        visibleIndex -= qMin(count, visibleIndex - index);
    rowsRemoved(firstBefore);
    if (currentIndex >= index + count && currentItem) {
        currentIndex -= count;
        currentItem->index = currentIndex;
        done->currentMoved = true;
    } else if (currentIndex >= index && currentItem) {
        currentItem->attached->setIsCurrentItem(false);
        releaseItem(std::move(currentItem));
        done->lostCurrent = index;
    }
}

/** Makes place for new rows in the numbers of the visible ones, and returns the slot that is theirs. */
int QDeclarativeItemViewPrivate::renumberForInsert(int index, int count)
{
    int slot = 0;
    while (slot < int(visibleItems.size()) && visibleItems[slot]->index < index)
        ++slot;
    for (const auto &item : visibleItems) {
        if (item->index >= index)
            item->index += count;
    }
    return slot;
}

/** Gives up what comes after new rows at @p slot of which only @p made, not all @p count, have room. */
void QDeclarativeItemViewPrivate::dropBehind(int slot, int made, int count)
{
    while (int(visibleItems.size()) > slot + made && visibleItems.size() > 1)
        takeVisible(int(visibleItems.size()) - 1);
    if (made == 0 && slot == 0)
        visibleIndex += count;
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

void QDeclarativeItemViewPrivate::moveRows(int from, int to, int count, Changes *done)
{
    rowsMoved(from, to, count);
    if (!currentItem)
        return;
    const int current = indexAfterMove(currentIndex, from, to, count);
    done->currentMoved = current != currentIndex;
    currentIndex = current;
    currentItem->index = current;
}

void QDeclarativeItemViewPrivate::finishChanges(const Changes &done)
{
    const int rows = visualModel->count();
    if (done.lostCurrent >= 0) {
        currentIndex = -1;
        updateCurrent(qMin(done.lostCurrent, rows - 1));
    } else if (done.currentMoved) {
        Q_EMIT q_func()->currentIndexChanged();
    } else if (!currentItem && currentIndex < 0 && !currentIsCleared && rows > 0) {
        updateCurrent(0);
    }
    while (!partedItems.empty()) {
        auto item = std::move(partedItems.back());
        partedItems.pop_back();
        releaseItem(std::move(item));
    }
    layout();
    if (!isPressed && !mainAxis().moving)
        QDeclarativeFlickablePrivate::fixup(mainAxis(), Immediate);
    // The rows that were placed may have told that the view stood beyond them.
    refill();
    QVector<QPointer<QDeclarativeItemViewAttached>> added;
    for (const auto &item : visibleItems) {
        for (const auto &rows : done.inserted) {
            if (item->index >= rows.first && item->index < rows.second)
                added.append(item->attached);
        }
    }
    for (const auto &attached : qAsConst(added)) {
        if (attached)
            Q_EMIT attached->add();
    }
}

void QDeclarativeItemViewPrivate::resetRows()
{
    const int current = currentIndex;
    clear();
    setViewPosition(0);
    layout();
    moveReason = SetIndex;
    const int rows = visualModel->count();
    if (visualModel->isValid() && rows > 0 && (current >= 0 || !currentIsCleared))
        updateCurrent(qBound(0, current, rows - 1));
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
    layout();
}
