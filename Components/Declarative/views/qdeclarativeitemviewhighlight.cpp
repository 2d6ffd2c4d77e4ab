#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <QtCore/QEasingCurve>

/** Where the highlight may not leave its range, the view's movement changes the current item. */
void QDeclarativeItemViewPrivate::followView()
{
    if (moveReason == SetIndex || !isStrict() || !highlightItem || !currentItem)
        return;
    qreal place = highlightPosition();
    place = qMin(place, viewPosition() + rangeEnd() - highlightSize());
    place = qMax(place, viewPosition() + rangeBegin());
    highlightTimeLine.clear();
    setHighlightPosition(place);
    const int row = rowUnder(place);
    if (row >= 0 && row != currentIndex)
        updateCurrent(row);
}

int QDeclarativeItemViewPrivate::rowUnder(qreal position) const
{
    // Of two rows of differing lengths that are both meant it is the further one.
    int found = -1;
    for (const auto &item : visibleItems) {
        const qreal half = item->size() / 2;
        if (item->index >= 0 && position >= item->position() - half && position < item->position() + half)
            found = item->index;
    }
    return found;
}

void QDeclarativeItemViewPrivate::setCurrent(std::unique_ptr<Item> item)
{
    std::swap(item, currentItem);
    if (item && (!currentItem || item->item != currentItem->item))
        item->attached->setIsCurrentItem(false);
    if (currentItem) {
        placeCurrent();
        currentItem->item->setFocus(true);
        currentItem->attached->setIsCurrentItem(true);
        currentMade();
    }
    updateHighlight();
    Q_EMIT q_func()->currentIndexChanged();
    releaseItem(std::move(item));
}

void QDeclarativeItemViewPrivate::updateCurrent(int index)
{
    Q_Q(QDeclarativeItemView);
    const QDeclarativeWork::Scope scope(&work);
    if (!keptChanges.isEmpty()) {
        work.postpone([=] { updateCurrent(index); });
        return;
    }
    if (!componentIsComplete || !hasRows() || index < 0 || index >= visualModel->count()) {
        const bool changes = currentItem || currentIndex != index;
        if (currentItem)
            currentItem->attached->setIsCurrentItem(false);
        auto left = std::move(currentItem);
        currentIndex = index;
        if (changes)
            Q_EMIT q->currentIndexChanged();
        if (left)
            updateHighlight();
        releaseItem(std::move(left));
        return;
    }
    if (currentItem && index == currentIndex) {
        updateHighlight();
        return;
    }
    currentIndex = index;
    setCurrent(createCurrent(index));
}

/** Shows the current row when the view is complete or has other rows: at once, and the highlight with it. */
void QDeclarativeItemViewPrivate::showCurrent()
{
    moveReason = SetIndex;
    updateCurrent(currentIndex);
    if (highlightItem && currentItem) {
        if (highlightFollows)
            jumpHighlight();
        trackHighlight();
    }
    moveReason = Other;
}

void QDeclarativeItemViewPrivate::jumpHighlight()
{
    highlightTimeLine.clear();
    setHighlightPosition(currentItem->position());
}

void QDeclarativeItemViewPrivate::createHighlight()
{
    const bool had = highlightItem;
    highlightTimeLine.clear();
    if (highlightItem)
        QDeclarativeItemPrivate::get(highlightItem.data())->removeChangeListener(this, GeometryChange);
    discard(highlightItem);
    highlightItem = nullptr;
    if (currentItem)
        highlightItem =
            highlightComponent ? createPart(highlightComponent, content) : new QDeclarativeItem(content);
    if (highlightItem) {
        highlightItem->setParentItem(content);
        if (highlightFollows)
            placeHighlight();
        QDeclarativeItemPrivate::get(highlightItem.data())->addChangeListener(this, GeometryChange);
    }
    if (had || highlightItem)
        Q_EMIT q_func()->highlightItemChanged();
}

void QDeclarativeItemViewPrivate::updateHighlight()
{
    if (bool(currentItem) != bool(highlightItem))
        createHighlight();
    if (currentItem && highlightItem && highlightFollows && !isMoving())
        moveHighlight();
    trackHighlight();
}

void QDeclarativeItemViewPrivate::moveValue(QDeclarativeHighlightValue *value, qreal from, qreal to,
                                            int duration, qreal speed)
{
    // What has just set out goes on; whoever is on the way sets out anew.
    if (value->isSetOut(from, to))
        return;
    highlightTimeLine.reset(*value);
    if (from == to)
        return;
    value->setOut(from, to);
    const int bySpeed = speed > 0 ? QDeclarativeRounding::bounded(qAbs(to - from) * 1000 / speed) : -1;
    int time = duration >= 0 ? duration : bySpeed;
    if (duration >= 0 && bySpeed >= 0)
        time = qMin(duration, bySpeed);
    if (time <= 0)
        value->setValue(to);
    else
        highlightTimeLine.move(*value, to, QEasingCurve(QEasingCurve::InOutQuad), time);
}

/** Moves the view after the highlight when the current row was set. */
void QDeclarativeItemViewPrivate::trackHighlight()
{
    if (moveReason != SetIndex || !currentItem)
        return;
    const qreal position = trackedPosition();
    if (position != viewPosition())
        setViewPosition(position);
}

qreal QDeclarativeItemViewPrivate::trackedPosition() const
{
    const Span span = followed();
    return hasRange() ? rangePosition(span)
                      : nearestPosition(span, {currentItem->position(), currentItem->endPosition()});
}

/** Where the view is to be for one of two spans to be in it: no further off than the nearer one asks for. */
qreal QDeclarativeItemViewPrivate::nearestPosition(const Span &a, const Span &b) const
{
    const qreal now = viewPosition();
    const qreal start = qMax(a.start, b.start);
    if (start < now)
        return start;
    const Span &nearer = a.end <= b.end ? a : b;
    if (nearer.end <= now + viewLength())
        return now;
    return nearer.length() > viewLength() ? nearer.start : nearer.end - viewLength();
}

/** Where the view is to be for the span to be in its range, as far as the rows reach where that is not
 * strict. */
qreal QDeclarativeItemViewPrivate::rangePosition(const Span &span) const
{
    const qreal greatest = span.start - rangeBegin();
    const qreal least = span.end - rangeEnd();
    const qreal position = qMin(greatest, qMax(least, viewPosition()));
    if (isStrict())
        return position;
    const Span rows = coveredByRows();
    return qMax(rows.start, qMin(position, rows.end - viewLength()));
}
