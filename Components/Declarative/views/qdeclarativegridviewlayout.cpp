#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativegridview_p_p.h"

#include <cmath>
#include <utility>

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

/** The cell that is @p by cells further in reading order. */
QDeclarativeGridViewPrivate::Cell QDeclarativeGridViewPrivate::cellAfter(const Cell &cell, int by) const
{
    const int inLine = columns();
    const int ahead = cell.column + by;
    const int column = (ahead % inLine + inLine) % inLine;
    return {cell.line + (ahead - column) / inLine * lineSize(), column};
}

QDeclarativeGridViewPrivate::Cell QDeclarativeGridViewPrivate::cellOf(const Item *item) const
{
    return {item->position(), static_cast<const QDeclarativeGridItem *>(item)->column};
}

void QDeclarativeGridViewPrivate::place(Item *item, const Cell &cell) const
{
    place(item, cell.line, cell.column);
}

void QDeclarativeGridViewPrivate::setItemPosition(Item *item, qreal position)
{
    place(item, position, cellAt(item->index).column);
}

/**
 * The cell of a row, as far from that of an item as the row is.
 *
 * The column of a row behind the items counts as if the last of these ended its line.
 */
QDeclarativeGridViewPrivate::Cell QDeclarativeGridViewPrivate::cellAt(int index) const
{
    if (const Item *item = visibleItem(index))
        return cellOf(item);
    const int inLine = columns();
    if (visibleItems.empty()) {
        const int lines = index / inLine - (firstLineIsKnown ? visibleIndex / inLine : 0);
        return {(firstLineIsKnown ? firstLine : headerSize()) + lines * lineSize(), qMax(0, index) % inLine};
    }
    if (index < visibleIndex)
        return cellAfter(cellOf(visibleItems.front().get()), index - visibleIndex);
    const int last = lastVisibleIndex();
    const int by = index - (last >= 0 ? last : visibleIndex - 1);
    const Cell end = cellOf(visibleItems.back().get());
    return {cellAfter(end, by).line, end.column + (by - 1) % inLine - inLine + 1};
}

qreal QDeclarativeGridViewPrivate::positionAt(int index) const
{
    return cellAt(index).line;
}

qreal QDeclarativeGridViewPrivate::startPosition() const
{
    return visibleItems.empty() ? 0
                                : visibleItems.front()->position() - visibleIndex / columns() * lineSize();
}

qreal QDeclarativeGridViewPrivate::endPosition() const
{
    const int rows = visualModel->count();
    return rows > 0 ? positionAt(rows - 1) + lineSize() : 0;
}

/** Puts the view to where the position is, and to its beginning across that. */
void QDeclarativeGridViewPrivate::setViewPosition(qreal position)
{
    if (hasRows())
        QDeclarativeItemViewPrivate::setViewPosition(position);
    else
        moveTo(mainAxis(), position);
    moveTo(isTopToBottom() ? y : x, 0);
}

void QDeclarativeGridViewPrivate::placePart(QDeclarativeItem *part, qreal position) const
{
    placeAt(part, position);
    if (runsBackwards() && visibleItems.empty())
        part->setX(toContent(position, cellWidth));
    if (isTopToBottom())
        part->setY(0);
    else
        part->setX(isRightToLeft() ? columns() * cellWidth - part->width() : 0);
}

// From right to left the ends of the rows count as in the content, where these run the other way.
QDeclarativeGridViewPrivate::Span QDeclarativeGridViewPrivate::coveredByRows() const
{
    const Span rows = QDeclarativeItemViewPrivate::coveredByRows();
    return runsBackwards() ? Span{2 - rows.end, 2 - rows.start} : rows;
}

// Without rows, header and footer can be seen alone where the grid runs from side to side.
qreal QDeclarativeGridViewPrivate::travelStart(const Axis &axis) const
{
    const bool isBare = axis.orientation == Qt::Horizontal && runsBackwards() && !hasRows();
    return isBare ? headerSize() + footerSize() - viewLength()
                  : QDeclarativeItemViewPrivate::travelStart(axis);
}

qreal QDeclarativeGridViewPrivate::travelEnd(const Axis &axis) const
{
    if (axis.orientation == Qt::Vertical || !isTopToBottom() || hasRows())
        return QDeclarativeItemViewPrivate::travelEnd(axis);
    return runsBackwards() ? headerSize() : footerSize();
}

QDeclarativeGridViewPrivate::Span QDeclarativeGridViewPrivate::followed() const
{
    const qreal start = highlightItem ? highlightPosition() : currentItem->position();
    return {start, start + lineSize()};
}

void QDeclarativeGridViewPrivate::placeCurrent()
{
    if (currentItem && currentIndex >= 0)
        place(currentItem.get(), cellAt(currentIndex));
}

/** Where the current row is among the visible ones it stands in the same cell. */
void QDeclarativeGridViewPrivate::placeUnseenCurrent()
{
    const Item *seen = currentItem ? visibleItem(currentIndex) : nullptr;
    if (seen)
        place(currentItem.get(), cellOf(seen));
}

void QDeclarativeGridViewPrivate::cellsChanged()
{
    // The view stays where it is, wherever that leaves the current row.
    moveReason = Other;
    if (componentIsComplete)
        layoutWhenIdle();
}

bool QDeclarativeGridViewPrivate::addVisible(qreal from, qreal to, bool isBuffer)
{
    if (!isBuffer)
        jump(from, to);
    const int most = isBuffer ? 1 : visualModel->count();
    const bool appended = append(to, most);
    return prepend(from, most) || appended;
}

/** Gives up all items if the view has gone further than a line from them. */
void QDeclarativeGridViewPrivate::jump(qreal from, qreal to)
{
    if (visibleItems.empty())
        return;
    const qreal line = cellAfter(cellOf(visibleItems.back().get())).line;
    if (from <= line + 2 * lineSize() && to >= positionAt(visibleIndex) - lineSize())
        return;
    // The view may stand further away than there are numbers of rows.
    const qreal lines = std::trunc((from - (line + lineSize())) / lineSize());
    const qreal wanted = std::isnan(lines) ? 0.0 : lastVisibleIndex() + 1 + lines * columns();
    const int index = lineStart(int(qBound(0.0, wanted, visualModel->count() - 1.0)));
    while (!visibleItems.empty())
        takeVisible(0);
    visibleIndex = index;
}

/** Tells whether a cell is to have an item: those of the line after the last in view come one by one. */
bool QDeclarativeGridViewPrivate::reaches(const Cell &cell, qreal to) const
{
    const int inLine = columns();
    return cell.line <= to + lineSize() * (inLine - cell.column) / (inLine + 1);
}

bool QDeclarativeGridViewPrivate::isBefore(const Item *item, qreal from) const
{
    const qreal ahead = lineSize() * (cellOf(item).column + 1) / (columns() + 1);
    return item->endPosition() - 1 < from - ahead;
}

bool QDeclarativeGridViewPrivate::isBeyond(const Item *item, qreal to) const
{
    const int inLine = columns();
    return item->position() > to + lineSize() * (inLine - cellOf(item).column) / (inLine + 1);
}

bool QDeclarativeGridViewPrivate::append(qreal to, int most)
{
    const int last = lastVisibleIndex();
    int index = last >= 0 ? last + 1 : visibleIndex;
    const int first = index;
    Cell cell = visibleItems.empty() ? cellAt(index) : cellAfter(cellOf(visibleItems.back().get()));
    for (; index < visualModel->count() && reaches(cell, to) && index - first < most;
         ++index, cell = cellAfter(cell)) {
        auto item = createRow(index);
        if (!item)
            break;
        place(item.get(), cell);
        visibleItems.push_back(std::move(item));
    }
    firstLineIsKnown = false;
    return index != first;
}

bool QDeclarativeGridViewPrivate::prepend(qreal from, int most)
{
    if (visibleItems.empty())
        return false;
    const int before = visibleIndex;
    const int inLine = columns();
    Cell cell = cellOf(visibleItems.front().get());
    while (visibleIndex > 0 && before - visibleIndex < most) {
        cell = cellAfter(cell, -1);
        if (cell.line + lineSize() - 1 < from - lineSize() * (cell.column + 1) / (inLine + 1))
            break;
        auto item = createRow(visibleIndex - 1);
        if (!item)
            break;
        --visibleIndex;
        place(item.get(), cell);
        visibleItems.insert(visibleItems.begin(), std::move(item));
    }
    return visibleIndex != before;
}

void QDeclarativeGridViewPrivate::setPlaceOfFirst(qreal place)
{
    firstLine = place;
    firstLineIsKnown = true;
}

qreal QDeclarativeGridViewPrivate::centredPosition(qreal start, qreal) const
{
    return start - std::trunc((std::trunc(viewLength()) - lineSize()) / 2);
}

void QDeclarativeGridViewPrivate::updateAverage()
{
    averageSize = lineSize();
}

void QDeclarativeGridViewPrivate::placeVisible()
{
    if (visibleItems.empty())
        return;
    Cell cell{visibleItems.front()->position(), visibleIndex % columns()};
    for (const auto &item : visibleItems) {
        place(item.get(), cell);
        cell = cellAfter(cell);
    }
}

void QDeclarativeGridViewPrivate::finishLayout()
{
    moveReason = Other;
    placeParts();
    updateContentSize();
    fixup(mainAxis(), Immediate);
    refill();
}

void QDeclarativeGridViewPrivate::placeHighlight()
{
    highlightTimeLine.clear();
    highlightItem->setPos(currentItem->item->pos());
}

void QDeclarativeGridViewPrivate::moveHighlight()
{
    const QDeclarativeItem *item = currentItem->item;
    moveValue(&highlightX, highlightItem->x(), item->x(), highlightMoveDuration, -1);
    moveValue(&highlightY, highlightItem->y(), item->y(), highlightMoveDuration, -1);
    highlightItem->setSize(QSizeF(item->width(), item->height()));
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

/** Only a line that has items attracts the view. */
bool QDeclarativeGridViewPrivate::snapsAt(qreal position) const
{
    return QDeclarativeItemViewPrivate::rowUnder(position + rangeOffset()) >= 0;
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

/** What lies between the items belongs to their cells. */
bool QDeclarativeGridViewPrivate::contains(const Item *item, const QPointF &point) const
{
    return QRectF(item->item->pos(), QSizeF(cellWidth, cellHeight)).contains(point);
}
