#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativegridview_p_p.h"

#include <cmath>

QDeclarativeGridViewPrivate::QDeclarativeGridViewPrivate()
    : highlightX([this](qreal x) {
        const QDeclarativeWork::Scope scope(&work);
        if (highlightItem)
            highlightItem->setX(x);
        highlightMoved();
    })
    , highlightY([this](qreal y) {
        const QDeclarativeWork::Scope scope(&work);
        if (highlightItem)
            highlightItem->setY(y);
        highlightMoved();
    })
{
    direction = QDeclarativeFlickable::VerticalFlick;
    highlightMoveDuration = 150;
}

Qt::Orientation QDeclarativeGridViewPrivate::scrolled() const
{
    return isTopToBottom() ? Qt::Horizontal : Qt::Vertical;
}

std::unique_ptr<QDeclarativeViewItem> QDeclarativeGridViewPrivate::newItem(QDeclarativeItem *item) const
{
    return std::make_unique<QDeclarativeGridItem>(item, this);
}

QDeclarativeItemViewAttached *QDeclarativeGridViewPrivate::attachedTo(QDeclarativeItem *item) const
{
    return static_cast<QDeclarativeItemViewAttached *>(
        qmlAttachedPropertiesObject<QDeclarativeGridView>(item));
}

int QDeclarativeGridViewPrivate::columns() const
{
    return qMax(1, int((isTopToBottom() ? itemHeight : itemWidth) / columnSize()));
}

/** The corner of a cell, in the content. */
QPointF QDeclarativeGridViewPrivate::cellPosition(qreal linePosition, int column) const
{
    if (isTopToBottom())
        return {toContent(linePosition, cellWidth), qreal(column) * cellHeight};
    const int place = isRightToLeft() ? columns() - 1 - column : column;
    return {qreal(place) * cellWidth, linePosition};
}

qreal QDeclarativeGridViewPrivate::linePositionOf(const QPointF &cell) const
{
    return isTopToBottom() ? toContent(cell.x(), cellWidth) : cell.y();
}

qreal QDeclarativeGridViewPrivate::columnOf(const QPointF &cell) const
{
    const qreal column = (isTopToBottom() ? cell.y() : cell.x()) / columnSize();
    return !isTopToBottom() && isRightToLeft() ? columns() - 1 - column : column;
}

void QDeclarativeGridViewPrivate::place(Item *item, qreal linePosition, int column) const
{
    auto *gridItem = static_cast<QDeclarativeGridItem *>(item);
    gridItem->linePosition = linePosition;
    gridItem->column = column;
    item->item->setPos(cellPosition(linePosition, column));
}

/** Puts an item into the cell that counts @p cell from the first. */
void QDeclarativeGridViewPrivate::placeInCell(Item *item, int cell) const
{
    place(item, startPosition() + cell / columns() * lineSize(), cell % columns());
}

void QDeclarativeGridViewPrivate::setItemPosition(Item *item, qreal position)
{
    place(item, position, columnAt(item->index));
}

/** The column of a row; of one behind the visible items, as if the last of these ended its line. */
int QDeclarativeGridViewPrivate::columnAt(int index) const
{
    const int last = lastVisibleIndex();
    if (last < 0 || index <= last)
        return qMax(0, index) % columns();
    const int back = columns() - 1 - (index - last - 1) % columns();
    return static_cast<const QDeclarativeGridItem *>(visibleItems.back().get())->column - back;
}

qreal QDeclarativeGridViewPrivate::positionAt(int index) const
{
    return startPosition() + index / columns() * lineSize();
}

qreal QDeclarativeGridViewPrivate::startPosition() const
{
    return originIsKnown ? origin : headerSize();
}

qreal QDeclarativeGridViewPrivate::endPosition() const
{
    const int rows = visualModel->count();
    const qreal end = startPosition() + (rows + columns() - 1) / columns() * lineSize();
    // Items that delay their removal still take their cells.
    return visibleItems.empty() ? end : qMax(end, visibleItems.back()->endPosition());
}

void QDeclarativeGridViewPrivate::clear()
{
    QDeclarativeItemViewPrivate::clear();
    originIsKnown = false;
}

void QDeclarativeGridViewPrivate::viewMoved()
{
    // Header and footer meet when the last row goes.
    if (visibleItems.empty())
        placeParts();
}

void QDeclarativeGridViewPrivate::cellsChanged()
{
    // The view stays where it is, wherever that leaves the current row.
    moveReason = Other;
    if (componentIsComplete)
        layoutWhenIdle();
}

void QDeclarativeGridViewPrivate::noRowsLeft(int index, qreal)
{
    const int rows = visualModel->count();
    visibleIndex = rows > 0 ? qMin(index, rows - 1) : 0;
    visibleIndex -= visibleIndex % columns();
    if (rows == 0)
        originIsKnown = false;
}

/** Keeps the first visible line where it is when rows above it went. */
void QDeclarativeGridViewPrivate::rowsRemoved(int firstBefore)
{
    if (lastVisibleIndex() < 0 || firstBefore == visibleIndex)
        return;
    origin = startPosition() + (firstBefore / columns() - visibleIndex / columns()) * lineSize();
    originIsKnown = true;
}

bool QDeclarativeGridViewPrivate::addVisible(qreal from, qreal to)
{
    jump(from, to);
    const bool appended = append(to);
    return prepend(from) || appended;
}

/** Gives up all items if the view has gone further than a line from them. */
void QDeclarativeGridViewPrivate::jump(qreal from, qreal to)
{
    const int last = lastVisibleIndex();
    if (last >= 0 && from <= positionAt(last) + 2 * lineSize() && to >= positionAt(visibleIndex) - lineSize())
        return;
    if (last < 0 && !visibleItems.empty())
        return;
    const int rows = visualModel->count();
    const qreal line = std::trunc((from - startPosition()) / lineSize());
    while (!visibleItems.empty())
        takeVisible(0);
    visibleIndex = int(qBound(0.0, line * columns(), qMax(0.0, rows - 1.0)));
    visibleIndex -= visibleIndex % columns();
}

/** Tells whether a cell is to have an item: those of the line after the last in view come one by one. */
bool QDeclarativeGridViewPrivate::reaches(int cell, qreal to) const
{
    const int inLine = columns();
    const qreal ahead = lineSize() * (inLine - cell % inLine) / (inLine + 1);
    return startPosition() + cell / inLine * lineSize() < to + ahead;
}

bool QDeclarativeGridViewPrivate::isBefore(const Item *item, qreal from) const
{
    const int column = static_cast<const QDeclarativeGridItem *>(item)->column;
    return item->endPosition() + lineSize() * (column + 1) / (columns() + 1) <= from;
}

qreal QDeclarativeGridViewPrivate::centredPosition(qreal start, qreal) const
{
    return start - std::trunc((std::trunc(viewLength()) - lineSize()) / 2);
}

bool QDeclarativeGridViewPrivate::append(qreal to)
{
    const int last = lastVisibleIndex();
    int index = last >= 0 ? last + 1 : visibleIndex;
    const int first = index;
    int cell = visibleIndex + int(visibleItems.size());
    for (; index < visualModel->count() && reaches(cell, to); ++index, ++cell) {
        auto item = createRow(index);
        if (!item)
            break;
        placeInCell(item.get(), cell);
        visibleItems.push_back(std::move(item));
    }
    return index != first;
}

bool QDeclarativeGridViewPrivate::prepend(qreal from)
{
    const int before = visibleIndex;
    while (visibleIndex > 0 && !visibleItems.empty() && positionAt(visibleIndex - 1) + lineSize() > from) {
        auto item = createRow(visibleIndex - 1);
        if (!item)
            break;
        --visibleIndex;
        placeInCell(item.get(), visibleIndex);
        visibleItems.insert(visibleItems.begin(), std::move(item));
    }
    return visibleIndex != before;
}

void QDeclarativeGridViewPrivate::placeVisible()
{
    averageSize = lineSize();
    int cell = visibleIndex;
    for (const auto &item : visibleItems)
        placeInCell(item.get(), cell++);
}

void QDeclarativeGridViewPrivate::rowsInserted(int index, int count)
{
    const int last = lastVisibleIndex();
    if (last < 0)
        return;
    const int slot = renumberForInsert(index, count);
    if (index < visibleIndex) {
        const qreal position = positionAt(visibleIndex);
        visibleIndex += count;
        origin = position - visibleIndex / columns() * lineSize();
        originIsKnown = true;
        return;
    }
    if (index > last + 1)
        return;
    const qreal to = viewPosition() + viewLength() + cacheLength();
    int made = 0;
    for (; made < count && reaches(visibleIndex + slot + made, to); ++made) {
        auto item = createRow(index + made);
        if (!item)
            break;
        placeInCell(item.get(), visibleIndex + slot + made);
        visibleItems.insert(visibleItems.begin() + slot + made, std::move(item));
    }
    if (made < count)
        dropBehind(slot, made, count);
}

void QDeclarativeGridViewPrivate::rowsMoved(int from, int to, int count)
{
    if (lastVisibleIndex() < 0)
        return;
    MovedItems items = takeForMove(from, to, count);
    const int end = visibleIndex + int(items.rows.size());
    for (int index = visibleIndex; index < end; ++index) {
        if (!appendMoved(&items, index))
            break;
    }
    finishMove(std::move(items));
}

void QDeclarativeGridViewPrivate::placeHighlight()
{
    highlightTimeLine.clear();
    highlightItem->setSize(QSizeF(currentItem->item->width(), currentItem->item->height()));
    const auto *row = static_cast<const QDeclarativeGridItem *>(currentRow());
    highlightItem->setPos(cellPosition(row->linePosition, row->column));
}

void QDeclarativeGridViewPrivate::moveHighlight()
{
    const auto *row = static_cast<const QDeclarativeGridItem *>(currentRow());
    highlightItem->setSize(QSizeF(row->item->width(), row->item->height()));
    const QPointF target = cellPosition(row->linePosition, row->column);
    moveValue(&highlightX, highlightItem->x(), target.x(), highlightMoveDuration, -1);
    moveValue(&highlightY, highlightItem->y(), target.y(), highlightMoveDuration, -1);
}

void QDeclarativeGridViewPrivate::setHighlightPosition(qreal position)
{
    const qreal place = toContent(position, cellWidth);
    if (isTopToBottom())
        highlightItem->setX(place);
    else
        highlightItem->setY(position);
}

/** The row in the highlight's column, or else the last one in its line. */
int QDeclarativeGridViewPrivate::rowUnder(qreal position) const
{
    const qreal half = lineSize() / 2.0;
    const qreal column = columnOf(highlightItem->pos());
    int found = -1;
    for (const auto &item : visibleItems) {
        if (item->index < 0 || position < item->position() - half || position >= item->position() + half)
            continue;
        found = item->index;
        if (QDeclarativeRounding::bounded(column)
            == static_cast<const QDeclarativeGridItem *>(item.get())->column)
            break;
    }
    return found;
}

qreal QDeclarativeGridViewPrivate::snapPosition(qreal position) const
{
    const qreal start = startPosition() - rangeOffset();
    return start + qMax(0, QDeclarativeRounding::bounded((position - start) / lineSize())) * lineSize();
}

qreal QDeclarativeGridViewPrivate::flickTarget(qreal natural, qreal velocity) const
{
    if (snapMode == QDeclarativeGridView::SnapToRow)
        return snapPosition(natural);
    const qreal pressed = toContent(mainAxis().pressValue, viewLength());
    return snapPosition(pressed) + (velocity > 0 ? lineSize() : -lineSize());
}

/** Moves the current row by @p by rows, from one end to the other where the keys wrap. */
void QDeclarativeGridViewPrivate::step(int by)
{
    Q_Q(QDeclarativeGridView);
    const int rows = q->count();
    const int target = currentIndex + by;
    if (rows <= 0)
        return;
    if (target >= 0 && target < rows)
        q->setCurrentIndex(target);
    else if (wraps)
        q->setCurrentIndex(by < 0 ? rows - 1 : 0);
}
