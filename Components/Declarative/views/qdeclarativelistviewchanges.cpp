#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativelistview_p_p.h"

#include <utility>

void QDeclarativeListViewPrivate::noRowsLeft(int index)
{
    const int rows = visualModel->count();
    if (rows == 0) {
        visibleIndex = 0;
        firstPosition = headerSize();
        timeLine.clear();
        setViewPosition(0);
        placeParts();
        return;
    }
    if (index < visibleIndex)
        visibleIndex = index + 1;
    visibleIndex = qBound(0, visibleIndex, rows - 1);
}

/** The first row in view stays where it is when rows before it go. */
void QDeclarativeListViewPrivate::rowsRemoved(const Item *first, qreal above)
{
    if (first && !visibleItems.empty() && visibleItems.front().get() != first)
        setItemPosition(visibleItems.front().get(), visibleItems.front()->position() + above);
}

/** Makes the rows that a move left out. */
void QDeclarativeListViewPrivate::addSkipped()
{
    if (!std::exchange(skipsRows, false))
        return;
    int next = visibleIndex;
    for (int slot = 0; slot < int(visibleItems.size()); ++slot) {
        if (visibleItems[slot]->index < 0)
            continue;
        auto item = next < visibleItems[slot]->index ? createRow(next) : nullptr;
        if (item)
            visibleItems.insert(visibleItems.begin() + slot, std::move(item));
        next = visibleItems[slot]->index + 1;
    }
    placeVisible();
}

/** The slot of the visible items that a new row takes, or -1 if it is not among these. */
int QDeclarativeListViewPrivate::slotFor(int index) const
{
    if (visibleItems.empty())
        return 0;
    for (int slot = 0; slot < int(visibleItems.size()); ++slot) {
        if (visibleItems[slot]->index >= 0 && visibleItems[slot]->index == index)
            return slot;
    }
    const Item *last = lastRow();
    const qreal end = viewPosition() + viewLength() + cacheLength();
    if (!last || (last->index + 1 == index && last->endPosition() < end))
        return int(visibleItems.size());
    return -1;
}

/** Where the row that is to take @p slot stands. */
qreal QDeclarativeListViewPrivate::placeOfSlot(int slot) const
{
    if (slot < int(visibleItems.size()))
        return visibleItems[slot]->position();
    return visibleItems.empty() ? firstPosition : visibleItems.back()->endPosition() + spacing;
}

bool QDeclarativeListViewPrivate::rowsInserted(int index, int count, AddedItems *added)
{
    const int slot = slotFor(index);
    for (const auto &item : visibleItems) {
        if (item->index >= index)
            item->index += count;
    }
    if (slot < 0) {
        if (index < visibleIndex)
            visibleIndex += count;
        return true;
    }
    const Item *first = firstVisibleItem();
    if (first && placeOfSlot(slot) < first->position())
        return insertAbove(slot, index, count);
    insertBelow(slot, index, count, added);
    return true;
}

/** Makes items for new rows that stand above what is seen, which stays where it is; tells whether it made
 * any. */
bool QDeclarativeListViewPrivate::insertAbove(int slot, int index, int count)
{
    const qreal start = placeOfSlot(slot);
    const qreal from = viewPosition() - cacheLength();
    qreal position = start;
    int left = count;
    for (; left > 0 && position > from; --left) {
        auto item = createRow(index + left - 1);
        if (!item)
            break;
        position -= item->size() + spacing;
        setItemPosition(item.get(), position);
        visibleItems.insert(visibleItems.begin() + slot, std::move(item));
    }
    if (left > 0) {
        // What stands before those of the new rows that have no item is not in view.
        visibleIndex = index + left;
        for (; slot > 0; --slot)
            takeVisible(0);
        return left < count;
    }
    for (int before = 0; before < slot; ++before)
        shift(visibleItems[before].get(), position - start);
    return true;
}

/** Makes items for new rows in view, and gives up those that they push out of it. */
void QDeclarativeListViewPrivate::insertBelow(int slot, int index, int count, AddedItems *added)
{
    const qreal start = placeOfSlot(slot);
    const qreal to = viewPosition() + viewLength() - 1 + cacheLength();
    qreal position = start;
    const int end = index + count;
    for (; index < end && position <= to; ++index) {
        auto item = createRow(index);
        if (!item)
            break;
        setItemPosition(item.get(), position);
        position += item->size() + spacing;
        added->append(item->attached);
        visibleItems.insert(visibleItems.begin() + slot++, std::move(item));
    }
    // What comes after rows that have no room is not in view.
    if (index < end)
        dropFrom(slot);
    for (int next = slot; next < int(visibleItems.size()); ++next)
        shift(visibleItems[next].get(), position - start);
    dropBeyond(to);
}

void QDeclarativeListViewPrivate::shift(Item *item, qreal by)
{
    setItemPosition(item, item->position() + by);
}

/** The first row in view that is not among those that move, or null. */
const QDeclarativeViewItem *QDeclarativeListViewPrivate::firstKept(int from, int count) const
{
    for (const auto &item : visibleItems) {
        const bool moves = item->index >= from && item->index < from + count;
        if (item->index >= 0 && !moves && item->endPosition() > viewPosition())
            return item.get();
    }
    return nullptr;
}

/**
 * Moves rows within the visible items.
 *
 * The first row in view stays where it is, or leaves its place to one that moves there. When it moves itself,
 * the next one takes its place, unless the very first row goes behind all that show. Of several rows
 * that move up at once only the first shows at its new place, and the current one, which has an item anyway;
 * the rest come when the view next makes items.
 */
void QDeclarativeListViewPrivate::rowsMoved(int from, int to, int count)
{
    if (lastVisibleIndex() < 0)
        return;
    const Item *first = firstVisibleItem();
    const int firstIndex = qMax(first->index, visibleIndex);
    const qreal frontPosition = visibleItems.front()->position();
    const Item *kept = firstKept(from, count);
    const bool keepsPlace = kept && (kept == first || (firstIndex == 0 && lastVisibleIndex() <= to));
    const qreal position = (keepsPlace ? kept : first)->position();
    int index = kept ? indexAfterMove(kept->index, from, to, count) : firstIndex;
    if (kept == first && to < from && to == firstIndex)
        index = to;
    MovedItems items = takeForMove(from, to, count);
    skipsRows = to < from && count > 1;
    const int current = currentItem ? indexAfterMove(currentIndex, from, to, count) : -1;
    qreal above = 0;
    int start = index;
    for (; items.rows.count(start - 1) > 0; --start)
        above += items.rows[start - 1]->size() + spacing;
    const qreal end = viewPosition() + viewLength() + cacheLength();
    qreal next = position - above;
    for (int row = start; row < visualModel->count() && (next <= end || items.rows.count(row) > 0); ++row) {
        if (skipsRows && row > to && row < to + count && row != current)
            continue;
        const Item *item = appendMoved(&items, row);
        if (!item)
            break;
        next += item->size() + spacing;
    }
    finishMove(std::move(items));
    if (lastVisibleIndex() < 0) {
        noRowsLeft(visibleIndex);
        firstPosition = frontPosition;
        return;
    }
    visibleIndex = start;
    setItemPosition(visibleItems.front().get(), position - above);
}
