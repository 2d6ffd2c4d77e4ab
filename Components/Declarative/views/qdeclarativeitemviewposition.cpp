#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <QtCore/QScopedValueRollback>

#include <cmath>

void QDeclarativeItemViewPrivate::setViewPosition(qreal position)
{
    moveTo(mainAxis(), toContent(position, viewLength()));
}

bool QDeclarativeItemViewPrivate::hasRange() const
{
    return rangeMode != QDeclarativeItemView::NoHighlightRange && highlightBegin <= highlightEnd;
}

// The range stays where it is in a view that runs from right to left.
qreal QDeclarativeItemViewPrivate::rangeBegin() const
{
    return runsBackwards() ? viewLength() - highlightEnd : highlightBegin;
}

qreal QDeclarativeItemViewPrivate::rangeEnd() const
{
    return runsBackwards() ? viewLength() - highlightBegin : highlightEnd;
}

bool QDeclarativeItemViewPrivate::isStrict() const
{
    return hasRange() && rangeMode == QDeclarativeItemView::StrictlyEnforceRange;
}

qreal QDeclarativeItemViewPrivate::leastPosition() const
{
    const qreal least = startPosition() - (visibleItems.empty() ? 0 : headerSize());
    if (keepsEndInView())
        return qMin(least - 1, greatestPosition());
    const bool isBound = isStrict() && visualModel->count() > 0;
    return isBound ? qMin(least - rangeBegin(), firstEnd() - rangeEnd()) : least;
}

qreal QDeclarativeItemViewPrivate::greatestPosition() const
{
    const int rows = visualModel->count();
    qreal greatest = 0;
    if (rows > 0 && isStrict()) {
        greatest = positionAt(rows - 1) - rangeBegin();
        if (rangeEnd() != rangeBegin())
            greatest = qMax(greatest, endPosition() - rangeEnd());
    } else if (rows > 0) {
        greatest = endPosition() - viewLength();
    }
    if (keepsEndInView())
        return endPosition() + footerSize() - viewLength() - 1;
    return rows > 0 ? qMax(leastPosition(), greatest + footerSize()) : leastPosition();
}

qreal QDeclarativeItemViewPrivate::boundedPosition(qreal position) const
{
    return qMax(leastPosition(), qMin(position, greatestPosition()));
}

qreal QDeclarativeItemViewPrivate::travelStart(const Axis &axis) const
{
    if (axis.orientation != scrolled())
        return QDeclarativeFlickablePrivate::travelStart(axis);
    return toContent(runsBackwards() ? greatestPosition() : leastPosition(), viewLength());
}

qreal QDeclarativeItemViewPrivate::travelEnd(const Axis &axis) const
{
    if (axis.orientation != scrolled())
        return QDeclarativeFlickablePrivate::travelEnd(axis);
    return toContent(runsBackwards() ? leastPosition() : greatestPosition(), viewLength());
}

bool QDeclarativeItemViewPrivate::snapsAt(qreal position) const
{
    return isStrict() || (position > leastPosition() && position < greatestPosition());
}

void QDeclarativeItemViewPrivate::fixup(Axis &axis, FixupMode mode)
{
    if (axis.orientation != scrolled())
        return;
    const FixupMode how = moveReason == Mouse ? mode : Immediate;
    const qreal now = viewPosition();
    if (snaps() && !visibleItems.empty() && snapsAt(now)) {
        settleAt(boundedPosition(snapPosition(now)), how);
        return;
    }
    if (isStrict() && moveReason != SetIndex) {
        if (!currentItem)
            return;
        updateHighlight();
        const qreal target = qMax(now, currentItem->endPosition() - rangeEnd());
        settleAt(qMin(target, currentPosition() - rangeBegin()), how);
        return;
    }
    QDeclarativeFlickablePrivate::fixup(axis, how);
    // The user let go of the view where it had been put.
    if (mode != how)
        refill();
}

void QDeclarativeItemViewPrivate::settleAt(qreal position, FixupMode mode)
{
    settle(mainAxis(), toContent(position, viewLength()), mode);
}

bool QDeclarativeItemViewPrivate::flick(Axis &axis, qreal velocity)
{
    if (!snaps() || axis.orientation != scrolled() || deceleration <= 0)
        return QDeclarativeFlickablePrivate::flick(axis, velocity);
    const qreal limited = qBound(-maximumVelocity, velocity, maximumVelocity);
    const qreal along = runsBackwards() ? -limited : limited;
    const qreal natural = along * qAbs(along) / (2 * deceleration);
    const qreal target = boundedPosition(flickTarget(viewPosition() + natural, along));
    const qreal way = toContent(target, viewLength()) - axis.value();
    if (way == 0 || (way > 0) != (limited > 0))
        return false;
    return runOutTo(axis, limited, way);
}

void QDeclarativeItemViewPrivate::dragStarting()
{
    moveReason = Mouse;
}

void QDeclarativeItemViewPrivate::viewportMoved(Axis &axis)
{
    if (!componentIsComplete || inMovement)
        return;
    if (layingOut) {
        movesInLayout = true;
        return;
    }
    if (visualModel->count() == 0)
        return;
    const QDeclarativeWork::Scope scope(&work);
    // Where the rows that come into view change the bounds, and these the view, more rows wait for the next
    // time.
    const QScopedValueRollback<bool> guard(inMovement, true);
    lazyRelease = true;
    refill();
    if (axis.moving)
        moveReason = Mouse;
    followView();
}

/** Goes to a row that has no item. */
void QDeclarativeItemViewPrivate::jumpTo(int index)
{
    const qreal place = std::trunc(positionAt(index));
    const qreal target = qMin(place, greatestPosition());
    auto left = std::move(visibleItems);
    visibleItems.clear();
    visibleIndex = lineStart(index);
    setPlaceOfFirst(place);
    setViewPosition(target);
    if (visibleItems.empty())
        refill();
    for (auto &item : left)
        releaseItem(std::move(item));
}

/** Puts the view to where it shows the row, and the highlight to the current one. */
void QDeclarativeItemViewPrivate::showRow(int index, QDeclarativeItemView::PositionMode mode)
{
    flushLayout();
    releaseDeferred();
    moveReason = Other;
    const qreal before = viewPosition();
    // As far as it was before the row has an item, too.
    const qreal greatest = greatestPosition();
    if (!visibleItem(index))
        jumpTo(index);
    const Item *item = visibleItem(index);
    if (!item)
        return;
    setViewPosition(qMax(leastPosition(), qMin(shownPosition(*item, mode, before), greatest)));
    if (highlightItem && currentItem && highlightFollows)
        highlightPositioned();
    fixupPosition();
}

qreal QDeclarativeItemViewPrivate::beginningWith(const Item &item) const
{
    return item.position() - (lineStart(item.index) == 0 ? headerSize() : 0);
}

qreal QDeclarativeItemViewPrivate::endingWith(const Item &item) const
{
    const bool isLast = item.index == visualModel->count() - 1;
    return item.position() + item.size() - viewLength() + (isLast ? footerSize() : 0);
}

qreal QDeclarativeItemViewPrivate::shownPosition(const Item &item, QDeclarativeItemView::PositionMode mode,
                                                 qreal now) const
{
    const qreal start = item.position();
    const qreal aligned = start + item.size() - viewLength();
    const qreal last = item.endPosition() - 1;
    const bool isWhole = mode == QDeclarativeItemView::Contain;
    switch (mode) {
    case QDeclarativeItemView::Beginning:
        return beginningWith(item);
    case QDeclarativeItemView::Center:
        return centredPosition(start, start + item.size());
    case QDeclarativeItemView::End:
        return endingWith(item);
    default:
        break;
    }
    // Seen in part, or wholly as asked for, a row leaves the view where it is.
    if ((isWhole ? last : start) > now + viewLength())
        return isWhole ? qMin(start, aligned) : aligned;
    return (isWhole ? start : last) < now ? start : now;
}

void QDeclarativeItemViewPrivate::fixupPosition()
{
    // Where the view is bound to rows it goes to one of them.
    if (snaps() || isStrict())
        moveReason = Other;
    fixup(mainAxis(), Immediate);
}

void QDeclarativeItemView::setContentX(qreal x)
{
    // Where the view is put it stays, whatever becomes of the current item.
    d_func()->moveReason = QDeclarativeItemViewPrivate::Other;
    QDeclarativeFlickable::setContentX(x);
}

void QDeclarativeItemView::setContentY(qreal y)
{
    d_func()->moveReason = QDeclarativeItemViewPrivate::Other;
    QDeclarativeFlickable::setContentY(y);
}

void QDeclarativeItemView::positionViewAtIndex(int index, int mode)
{
    Q_D(QDeclarativeItemView);
    if (!d->visualModel->isValid() || index < 0 || index >= count() || mode < Beginning || mode > Contain
        || d->work.postpone([=] { positionViewAtIndex(index, mode); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->showRow(index, PositionMode(mode));
}

void QDeclarativeItemView::positionViewAtBeginning()
{
    Q_D(QDeclarativeItemView);
    if (count() > 0)
        positionViewAtIndex(0, Beginning);
    else
        d->setViewPosition(d->leastPosition());
}

void QDeclarativeItemView::positionViewAtEnd()
{
    Q_D(QDeclarativeItemView);
    if (count() > 0)
        positionViewAtIndex(count() - 1, End);
    else
        d->setViewPosition(d->boundedPosition(d->greatestPosition()));
}
