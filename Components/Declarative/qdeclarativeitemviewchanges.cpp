#include "qdeclarativeitemview_p_p.h"
#include "qdeclarativevisualmodel_p.h"

#include <private/qqmlchangeset_p.h>

void QDeclarativeItemViewPrivate::applyChanges(const QQmlChangeSet &changes, bool reset)
{
    Q_Q(QDeclarativeItemView);
    if (!componentIsComplete) {
        Q_EMIT q->countChanged();
        return;
    }
    if (reset) {
        resetRows();
        return;
    }
    Changes done;
    moveReason = Other;
    const auto &removes = changes.removes();
    const auto &inserts = changes.inserts();
    const bool isMove = removes.count() == 1 && inserts.count() == 1 && removes.first().isMove()
        && removes.first().moveId == inserts.first().moveId;
    if (isMove) {
        moveRows(removes.first().index, inserts.first().index, removes.first().count, &done);
    } else {
        for (const auto &change : removes)
            removeRows(change.index, change.count, &done);
        for (const auto &change : inserts)
            insertRows(change.index, change.count, &done);
    }
    finishChanges(done);
    if (changes.difference() != 0)
        Q_EMIT q->countChanged();
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

void QDeclarativeItemViewPrivate::moveRows(int from, int to, int count, Changes *done)
{
    rowsMoved(from, to, count);
    if (!currentItem)
        return;
    int current = currentIndex;
    if (current >= from && current < from + count)
        current += to - from;
    else if (from < to && current >= from + count && current < to + count)
        current -= count;
    else if (to < from && current >= to && current < from)
        current += count;
    done->currentMoved = current != currentIndex;
    currentIndex = current;
    currentItem->index = current;
}

void QDeclarativeItemViewPrivate::finishChanges(const Changes &done)
{
    Q_Q(QDeclarativeItemView);
    const int rows = visualModel->count();
    if (done.lostCurrent >= 0) {
        currentIndex = -1;
        updateCurrent(qMin(done.lostCurrent, rows - 1));
    } else if (done.currentMoved) {
        Q_EMIT q->currentIndexChanged();
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
    Q_Q(QDeclarativeItemView);
    const int current = currentIndex;
    clear();
    setViewPosition(0);
    layout();
    moveReason = SetIndex;
    const int rows = visualModel->count();
    if (visualModel->isValid() && rows > 0 && (current >= 0 || !currentIsCleared))
        updateCurrent(qBound(0, current, rows - 1));
    Q_EMIT q->countChanged();
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
    for (int slot = int(visibleItems.size()) - 1; slot >= 0; --slot) {
        const Item *item = visibleItems[slot].get();
        if (item->index < 0 && !item->attached->delayRemove())
            takeVisible(slot);
    }
    layout();
}
