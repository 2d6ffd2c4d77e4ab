#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativelistview_p_p.h"

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>

#include <cmath>
#include <utility>

QDeclarativeListItem::~QDeclarativeListItem()
{
    QDeclarativeItemPrivate::discard(heading);
}

std::unique_ptr<QDeclarativeViewItem> QDeclarativeListViewPrivate::newItem(QDeclarativeItem *item) const
{
    return std::make_unique<QDeclarativeListItem>(item, this);
}

QDeclarativeItemViewAttached *QDeclarativeListViewPrivate::attachedTo(QDeclarativeItem *item) const
{
    return static_cast<QDeclarativeItemViewAttached *>(
        qmlAttachedPropertiesObject<QDeclarativeListView>(item));
}

void QDeclarativeListViewPrivate::setItemPosition(Item *item, qreal position)
{
    auto *listItem = static_cast<QDeclarativeListItem *>(item);
    if (listItem->heading)
        placeAt(listItem->heading, position);
    placeAt(item->item, position + listItem->headingSize());
}

qreal QDeclarativeListViewPrivate::travelEnd(const Axis &axis) const
{
    // Across its direction a list has no content to speak of.
    return axis.orientation == scrolled() ? QDeclarativeItemViewPrivate::travelEnd(axis) : -viewSize(axis);
}

const QDeclarativeViewItem *QDeclarativeListViewPrivate::lastRow() const
{
    return visibleItem(lastVisibleIndex());
}

qreal QDeclarativeListViewPrivate::positionAt(int index) const
{
    if (const Item *item = visibleItem(index))
        return item->position();
    if (visibleItems.empty())
        return 0;
    const qreal front = visibleItems.front()->position();
    if (index < visibleIndex && index == currentIndex && currentItem)
        return front - (visibleIndex - index - 1) * step() - currentItem->size() - spacing;
    if (index < visibleIndex)
        return front - (visibleIndex - index) * step();
    const int last = qMax(lastVisibleIndex(), visibleIndex);
    if (index > last)
        return visibleItems.back()->endPosition() + spacing + (index - last - 1) * step();
    const Item *before = visibleItem(index - 1);
    return before ? before->endPosition() + spacing : front + (index - visibleIndex) * step();
}

qreal QDeclarativeListViewPrivate::firstEnd() const
{
    if (const Item *item = visibleItem(0))
        return item->endPosition();
    if (visibleItems.empty())
        return 1;
    if (visibleIndex > 0)
        return visibleItems.front()->position() - (visibleIndex - 1) * step() - spacing;
    return visibleItems.back()->endPosition();
}

qreal QDeclarativeListViewPrivate::startPosition() const
{
    return visibleItems.empty() ? 0 : visibleItems.front()->position() - visibleIndex * step();
}

qreal QDeclarativeListViewPrivate::endPosition() const
{
    if (visibleItems.empty())
        return 1;
    const int last = lastVisibleIndex();
    // Where no item has a row any more, what stood before them is taken to stand after them.
    const int left = last >= 0 ? visualModel->count() - last - 1 : int(visibleItems.size()) - visibleIndex;
    return visibleItems.back()->endPosition() + left * step();
}

void QDeclarativeListViewPrivate::clear()
{
    QDeclarativeItemViewPrivate::clear();
    firstPosition = headerSize();
}

bool QDeclarativeListViewPrivate::addVisible(qreal from, qreal to, bool isBuffer)
{
    if (lazyRelease)
        addSkipped();
    if (!visibleItems.empty())
        firstPosition = visibleItems.front()->position();
    if (!isBuffer)
        jump(from, to);
    const int most = isBuffer ? 1 : visualModel->count();
    const bool appended = append(to, most);
    return prepend(from, most) || appended;
}

/** Gives up all items if the view has gone further than a row from them, and estimates where it is. */
void QDeclarativeListViewPrivate::jump(qreal from, qreal to)
{
    const int last = lastVisibleIndex();
    if (last < 0 || step() <= 0)
        return;
    const qreal end = visibleItems.back()->endPosition() + spacing;
    if (from <= end - 1 + step() && to >= firstPosition - step())
        return;
    // The view may stand at what is no number, or further away than there are numbers of rows.
    const qreal rows = (from - end + 1) / step();
    const qreal wanted = std::isnan(rows) ? 0.0 : last + 1 + std::trunc(rows);
    visibleIndex = int(qBound(0.0, wanted, visualModel->count() - 1.0));
    while (!visibleItems.empty())
        takeVisible(0);
    firstPosition = end + (visibleIndex - last - 1) * step();
}

/** The current row counts with its section's heading, which stands unseen where it has one in the view. */
std::unique_ptr<QDeclarativeViewItem> QDeclarativeListViewPrivate::createCurrent(int index)
{
    addSkipped();
    auto item = createRow(index);
    if (item && static_cast<QDeclarativeListItem *>(item.get())->heading)
        static_cast<QDeclarativeListItem *>(item.get())->heading->setVisible(false);
    return item;
}

void QDeclarativeListViewPrivate::currentMade()
{
    if (visibleItems.empty())
        averageSize = QDeclarativeRounding::bounded(currentItem->size());
}

void QDeclarativeListViewPrivate::placeUnseenCurrent()
{
    if (currentIndex < 0 || !currentItem || visibleItem(currentIndex))
        return;
    setItemPosition(currentItem.get(), positionAt(currentIndex));
    updateHighlight();
}

/** Estimates where the current row is, which becomes known when it is in view. */
void QDeclarativeListViewPrivate::placeCurrent()
{
    if (!currentItem || currentIndex < 0)
        return;
    const bool isNext = currentIndex == visibleIndex - 1 && !visibleItems.empty();
    setItemPosition(currentItem.get(),
                    isNext ? visibleItems.front()->position() - currentItem->size() - spacing
                           : positionAt(currentIndex));
}

bool QDeclarativeListViewPrivate::append(qreal to, int most)
{
    const int last = lastVisibleIndex();
    const int first = last >= 0 ? last + 1 : visibleIndex;
    qreal position = visibleItems.empty() ? firstPosition : visibleItems.back()->endPosition() + spacing;
    int index = first;
    for (; index < visualModel->count() && position <= to && index - first < most; ++index) {
        auto item = createRow(index);
        if (!item)
            break;
        setItemPosition(item.get(), position);
        position += item->size() + spacing;
        visibleItems.push_back(std::move(item));
    }
    return index != first;
}

bool QDeclarativeListViewPrivate::prepend(qreal from, int most)
{
    const int before = visibleIndex;
    while (visibleIndex > 0 && visibleIndex <= visualModel->count() && firstPosition > from
           && before - visibleIndex < most) {
        auto item = createRow(visibleIndex - 1);
        if (!item)
            break;
        --visibleIndex;
        firstPosition -= item->size() + spacing;
        setItemPosition(item.get(), firstPosition);
        visibleItems.insert(visibleItems.begin(), std::move(item));
    }
    return visibleIndex != before;
}

void QDeclarativeListViewPrivate::updateAverage()
{
    if (visibleItems.empty())
        return;
    qreal sum = 0;
    for (const auto &item : visibleItems)
        sum += item->size();
    averageSize = QDeclarativeRounding::bounded(sum / visibleItems.size());
}

void QDeclarativeListViewPrivate::placeVisible()
{
    if (visibleItems.empty())
        return;
    updateSections();
    qreal position = visibleItems.front()->position();
    for (const auto &item : visibleItems) {
        setItemPosition(item.get(), position);
        position += item->size() + spacing;
    }
    updateAverage();
}

void QDeclarativeListViewPrivate::placeHighlight()
{
    highlightTimeLine.clear();
    const QDeclarativeItem *item = currentItem->item;
    if (scrolled() == Qt::Horizontal)
        highlightItem->setWidth(item->width());
    else
        highlightItem->setHeight(item->height());
    placeAt(highlightItem, placeOf(item));
}

/** The highlight takes the place of the row alone; the heading before that is to be seen, too. */
QDeclarativeListViewPrivate::Span QDeclarativeListViewPrivate::followed() const
{
    if (!highlightItem)
        return {currentItem->position(), currentItem->endPosition()};
    const qreal place = placeOf(highlightItem);
    const qreal heading = static_cast<const QDeclarativeListItem *>(currentItem.get())->headingSize();
    return {std::ceil(place) - heading, place + qMax<qreal>(1, lengthOf(highlightItem))};
}

void QDeclarativeListViewPrivate::moveHighlight()
{
    const QDeclarativeItem *item = currentItem->item;
    if (scrolled() == Qt::Vertical && highlightItem->width() == 0)
        highlightItem->setWidth(item->width());
    if (scrolled() == Qt::Horizontal && highlightItem->height() == 0)
        highlightItem->setHeight(item->height());
    moveValue(&highlightPlace, placeOf(highlightItem), placeOf(item), highlightMoveDuration,
              highlightMoveSpeed);
    moveValue(&highlightLength, lengthOf(highlightItem), lengthOf(item), highlightResizeDuration,
              highlightResizeSpeed);
}

int QDeclarativeListViewPrivate::snapIndex(qreal position) const
{
    const int row = rowUnder(position);
    if (row >= 0)
        return row;
    const int estimate =
        step() > 0 ? QDeclarativeRounding::bounded((position - startPosition()) / step()) : 0;
    return qBound(0, estimate, visualModel->count() - 1);
}

qreal QDeclarativeListViewPrivate::snapPosition(qreal position) const
{
    return positionAt(snapIndex(position + rangeOffset())) - rangeOffset();
}

qreal QDeclarativeListViewPrivate::flickTarget(qreal natural, qreal velocity) const
{
    if (snapMode == QDeclarativeListView::SnapToItem)
        return snapPosition(natural);
    const qreal pressed = toContent(mainAxis().pressValue, viewLength());
    const int index = snapIndex(pressed + rangeOffset()) + (velocity > 0 ? 1 : -1);
    return positionAt(qBound(0, index, visualModel->count() - 1)) - rangeOffset();
}
