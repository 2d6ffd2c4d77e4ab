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

qreal QDeclarativeListViewPrivate::positionAt(int index) const
{
    if (const Item *item = visibleItem(index))
        return item->position();
    const int last = lastVisibleIndex();
    if (last < 0)
        return (firstIsKnown ? firstPosition : headerSize()) + (index - visibleIndex) * step();
    if (index > last)
        return visibleItems.back()->endPosition() + spacing + (index - last - 1) * step();
    const qreal front = visibleItems.front()->position();
    if (index == currentIndex && currentItem)
        return front - (visibleIndex - index - 1) * step() - currentItem->size() - spacing;
    return front - (visibleIndex - index) * step();
}

qreal QDeclarativeListViewPrivate::startPosition() const
{
    if (!visibleItems.empty())
        return visibleItems.front()->position() - visibleIndex * step();
    return visualModel->count() > 0 ? positionAt(0) : headerSize();
}

qreal QDeclarativeListViewPrivate::endPosition() const
{
    const int last = lastVisibleIndex();
    const int rows = visualModel->count();
    if (last >= 0)
        return visibleItems.back()->endPosition() + (rows - 1 - last) * step();
    if (!visibleItems.empty())
        return visibleItems.back()->endPosition();
    return startPosition() + qMax<qreal>(0, rows * step() - spacing);
}

void QDeclarativeListViewPrivate::clear()
{
    QDeclarativeItemViewPrivate::clear();
    firstIsKnown = false;
}

void QDeclarativeListViewPrivate::noteFirst(int index, qreal position)
{
    visibleIndex = index;
    firstPosition = position;
    firstIsKnown = true;
}

void QDeclarativeListViewPrivate::noRowsLeft(int index, qreal position)
{
    const int rows = visualModel->count();
    if (rows > 0)
        noteFirst(qMin(index, rows - 1), position);
    else
        visibleIndex = 0;
    firstIsKnown = rows > 0;
}

bool QDeclarativeListViewPrivate::addVisible(qreal from, qreal to)
{
    if (lazyRelease)
        addSkipped();
    jump(from, to);
    const bool appended = append(to);
    return prepend(from) || appended;
}

/** Gives up all items if the view has gone further than a row from them, and estimates where it is. */
void QDeclarativeListViewPrivate::jump(qreal from, qreal to)
{
    const int last = lastVisibleIndex();
    if (last < 0 || step() <= 0)
        return;
    const qreal end = visibleItems.back()->endPosition() + spacing;
    if (from <= end + step() && to >= visibleItems.front()->position() - step())
        return;
    // The view may stand at what is no number, or further away than there are numbers of rows.
    const qreal rows = (from - end) / step();
    const qreal wanted = std::isnan(rows) ? 0.0 : last + 1 + std::trunc(rows);
    const int index = int(qBound(0.0, wanted, visualModel->count() - 1.0));
    while (!visibleItems.empty())
        takeVisible(0);
    noteFirst(index, end + (index - last - 1) * step());
    hasJumped = true;
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

bool QDeclarativeListViewPrivate::append(qreal to)
{
    const int last = lastVisibleIndex();
    int index = visibleIndex;
    qreal position = 0;
    if (visibleItems.empty()) {
        position = firstIsKnown ? firstPosition : headerSize();
    } else {
        if (last >= 0)
            index = last + 1;
        position = visibleItems.back()->endPosition() + spacing;
    }
    const int first = index;
    for (; index < visualModel->count() && position <= to; ++index) {
        auto item = createRow(index);
        if (!item)
            break;
        setItemPosition(item.get(), position);
        position += item->size() + spacing;
        visibleItems.push_back(std::move(item));
    }
    return index != first;
}

bool QDeclarativeListViewPrivate::prepend(qreal from)
{
    const int before = visibleIndex;
    while (visibleIndex > 0 && !visibleItems.empty() && visibleItems.front()->position() - spacing > from) {
        auto item = createRow(visibleIndex - 1);
        if (!item)
            break;
        setItemPosition(item.get(), visibleItems.front()->position() - spacing - item->size());
        visibleItems.insert(visibleItems.begin(), std::move(item));
        --visibleIndex;
    }
    return visibleIndex != before;
}

void QDeclarativeListViewPrivate::placeVisible()
{
    if (visibleItems.empty())
        return;
    updateSections();
    qreal position = visibleItems.front()->position();
    qreal sum = 0;
    for (const auto &item : visibleItems) {
        setItemPosition(item.get(), position);
        position += item->size() + spacing;
        sum += item->size();
    }
    averageSize = QDeclarativeRounding::bounded(sum / visibleItems.size());
}

void QDeclarativeListViewPrivate::rowsInserted(int index, int count)
{
    const int last = lastVisibleIndex();
    if (last < 0)
        return;
    const int slot = renumberForInsert(index, count);
    if (index < visibleIndex) {
        visibleIndex += count;
        return;
    }
    if (index > last + 1)
        return;
    const bool atEnd = slot == int(visibleItems.size());
    const qreal position =
        atEnd ? visibleItems.back()->endPosition() + spacing : visibleItems[slot]->position();
    if (position < viewPosition())
        insertAbove(slot, index, count);
    else
        insertBelow(slot, index, count);
}

void QDeclarativeListViewPrivate::rowsRemoved(int)
{
    for (const auto &item : visibleItems) {
        if (item->index < 0)
            continue;
        visibleIndex = item->index;
        return;
    }
}

/** Makes items for new rows that stand above what is seen, which stays where it is. */
void QDeclarativeListViewPrivate::insertAbove(int slot, int index, int count)
{
    const bool atEnd = slot == int(visibleItems.size());
    const qreal start = atEnd ? visibleItems.back()->endPosition() + spacing : visibleItems[slot]->position();
    const qreal from = viewPosition() - cacheLength();
    qreal position = start;
    int made = 0;
    for (; made < count && position > from; ++made) {
        auto item = createRow(index + count - 1 - made);
        if (!item)
            break;
        position -= item->size() + spacing;
        setItemPosition(item.get(), position);
        visibleItems.insert(visibleItems.begin() + slot, std::move(item));
    }
    if (made < count || slot == 0) {
        for (; slot > 0; --slot)
            takeVisible(0);
        visibleIndex = index + count - made;
    } else {
        Item *front = visibleItems.front().get();
        setItemPosition(front, front->position() - (start - position));
    }
}

void QDeclarativeListViewPrivate::insertBelow(int slot, int index, int count)
{
    const bool atEnd = slot == int(visibleItems.size());
    qreal position = atEnd ? visibleItems.back()->endPosition() + spacing : visibleItems[slot]->position();
    const qreal to = viewPosition() + viewLength() + cacheLength();
    int made = 0;
    for (; made < count && position <= to; ++made) {
        auto item = createRow(index + made);
        if (!item)
            break;
        setItemPosition(item.get(), position);
        position += item->size() + spacing;
        visibleItems.insert(visibleItems.begin() + slot + made, std::move(item));
    }
    if (made < count)
        dropBehind(slot, made, count);
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
        noRowsLeft(visibleIndex, frontPosition);
        return;
    }
    visibleIndex = start;
    setItemPosition(visibleItems.front().get(), position - above);
}

void QDeclarativeListViewPrivate::placeHighlight()
{
    highlightTimeLine.clear();
    const bool isHorizontal = scrolled() == Qt::Horizontal;
    const QDeclarativeItem *item = currentItem->item;
    if (isHorizontal)
        highlightItem->setWidth(item->width());
    else
        highlightItem->setHeight(item->height());
    placeAt(highlightItem, placeOf(item));
}

void QDeclarativeListViewPrivate::moveHighlight()
{
    const QDeclarativeItem *item = currentItem->item;
    if (scrolled() == Qt::Vertical && highlightItem->width() == 0)
        highlightItem->setWidth(item->width());
    if (scrolled() == Qt::Horizontal && highlightItem->height() == 0)
        highlightItem->setHeight(item->height());
    moveValue(&highlightLength, lengthOf(highlightItem), lengthOf(item), highlightResizeDuration,
              highlightResizeSpeed);
    moveValue(&highlightPlace, placeOf(highlightItem), placeOf(item), highlightMoveDuration,
              highlightMoveSpeed);
}

int QDeclarativeListViewPrivate::snapIndex(qreal position) const
{
    for (const auto &item : visibleItems) {
        const qreal half = item->size() / 2;
        if (item->index >= 0 && position >= item->position() - half && position < item->position() + half)
            return item->index;
    }
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

QString QDeclarativeListViewPrivate::sectionAt(int index) const
{
    if (!section || section->property().isEmpty() || index < 0 || index >= visualModel->count())
        return {};
    return section->sectionOf(visualModel->instance()->stringValue(index, section->property()));
}

void QDeclarativeListViewPrivate::itemMade(Item *item)
{
    static_cast<QDeclarativeListViewAttached *>(item->attached)
        ->setSections(sectionAt(item->index - 1), sectionAt(item->index), sectionAt(item->index + 1));
}

void QDeclarativeListViewPrivate::updateSections()
{
    for (const auto &item : visibleItems) {
        if (item->index < 0)
            continue;
        static_cast<QDeclarativeListViewAttached *>(item->attached)
            ->setSections(sectionAt(item->index - 1), sectionAt(item->index), sectionAt(item->index + 1));
        updateHeading(item.get());
    }
}

/** Gives the first row of a section its heading, and takes it from a row that is that no more. */
void QDeclarativeListViewPrivate::updateHeading(Item *item)
{
    Q_Q(QDeclarativeListView);
    auto *listItem = static_cast<QDeclarativeListItem *>(item);
    const auto *attached = static_cast<QDeclarativeListViewAttached *>(item->attached);
    const bool wants = section && section->delegate() && !section->property().isEmpty()
        && attached->section() != attached->previousSection();
    const qreal position = item->position();
    if (listItem->heading && (!wants || listItem->headingSection != attached->section()))
        dropHeading(listItem);
    if (!wants || listItem->heading)
        return;
    auto *context = new QQmlContext(qmlContext(q));
    context->setContextProperty(QStringLiteral("section"), attached->section());
    listItem->heading = createPart(section->delegate(), content, context);
    listItem->headingSection = attached->section();
    if (listItem->heading)
        listItem->heading->setZValue(1);
    setItemPosition(item, position);
}

void QDeclarativeListViewPrivate::dropHeading(QDeclarativeListItem *item)
{
    discard(item->heading);
    item->heading = nullptr;
}

/** Takes the headings away, for those of another delegate. */
void QDeclarativeListViewPrivate::dropHeadings()
{
    if (work.postpone([this] { dropHeadings(); }))
        return;
    const QDeclarativeWork::Scope scope(&work);
    for (const auto &item : visibleItems) {
        const qreal position = item->position();
        dropHeading(static_cast<QDeclarativeListItem *>(item.get()));
        setItemPosition(item.get(), position);
    }
    layout();
}

void QDeclarativeListViewPrivate::viewMoved()
{
    Q_Q(QDeclarativeListView);
    const Item *first = firstVisibleItem();
    const QString now = first ? sectionAt(first->index) : QString();
    if (now == currentSection)
        return;
    currentSection = now;
    Q_EMIT q->currentSectionChanged();
}
