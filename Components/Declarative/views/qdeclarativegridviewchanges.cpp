#include "qdeclarativegridview_p_p.h"

#include <algorithm>
#include <utility>

void QDeclarativeGridViewPrivate::noRowsLeft(int)
{
    timeLine.clear();
    visibleIndex = 0;
    setViewPosition(0);
    placeParts();
}

/** The slot of the visible items that the row takes or would take. */
int QDeclarativeGridViewPrivate::slotFrom(int index) const
{
    const auto isBefore = [index](const auto &item) { return item->index < index; };
    const auto found = std::find_if_not(visibleItems.begin(), visibleItems.end(), isBefore);
    return int(found - visibleItems.begin());
}

/** The cell that the row at @p slot stands in, or would stand in. */
QDeclarativeGridViewPrivate::Cell QDeclarativeGridViewPrivate::cellOfSlot(int slot) const
{
    if (visibleItems.empty())
        return {headerSize(), 0};
    if (slot < int(visibleItems.size()))
        return cellOf(visibleItems[slot].get());
    return cellAfter(cellOf(visibleItems.back().get()));
}

bool QDeclarativeGridViewPrivate::rowsInserted(int index, int count, AddedItems *added)
{
    const bool joins = visibleItems.empty() || visibleItem(index) || index == lastVisibleIndex() + 1;
    for (const auto &item : visibleItems) {
        if (item->index >= index)
            item->index += count;
    }
    if (joins)
        insertCells(index, count, added);
    else if (index <= visibleIndex)
        visibleIndex += count;
    return true;
}

/** Makes items for the new rows that have room in the view; these push what follows out of its cells. */
void QDeclarativeGridViewPrivate::insertCells(int index, int count, AddedItems *added)
{
    const qreal to = viewPosition() + viewLength() - 1 + cacheLength();
    const int end = index + count;
    int slot = slotFrom(index);
    for (Cell cell = cellOfSlot(slot); index < end && reaches(cell, to); cell = cellAfter(cell)) {
        auto item = createRow(index);
        if (!item)
            break;
        place(item.get(), cell);
        added->append(item->attached);
        visibleItems.insert(visibleItems.begin() + slot, std::move(item));
        ++index;
        ++slot;
    }
    // What comes after rows that have no room is not in view.
    if (index < end)
        dropFrom(slot);
    visibleIndex = 0;
    noteFirstRow();
}

void QDeclarativeGridViewPrivate::rowsMoved(int from, int to, int count)
{
    if (lastVisibleIndex() < 0)
        return;
    MovedItems items = takeForMove(from, to, count);
    int end = visibleIndex + int(items.rows.size());
    while (end > visibleIndex && items.rows.count(end - 1) == 0)
        --end;
    for (int index = visibleIndex; index < end; ++index) {
        if (!appendMoved(&items, index))
            break;
    }
    finishMove(std::move(items));
}
