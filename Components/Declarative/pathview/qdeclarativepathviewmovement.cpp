#include "qdeclarativepathview_p_p.h"

#include "input/qdeclarativepointer_p.h"
#include "models/qdeclarativevisualmodel_p.h"

#include <QtCore/QEasingCurve>
#include <QtCore/QScopedValueRollback>

#include <cmath>
#include <utility>

namespace {

const qreal tolerance = 1e-6; // in rows
const qreal minimumVelocity = 1; // rows per second; less is a hand that stops
const qreal velocityPerRow = 2; // how much of it, for each visible row, a flick has at most
const qint64 sampleAge = 100 * 1000000; // nanoseconds
const qint64 shortestInterval = 1000000; // nanoseconds; events closer together tell no velocity

qreal wrapped(qreal value, qreal range)
{
    const qreal rest = std::fmod(value, range);
    return rest < 0 ? rest + range : rest;
}

} // namespace

/** Moves the rows to @p value at once, brought into the circle of the rows. */
void QDeclarativePathViewPrivate::moveTo(qreal value)
{
    qreal target = value;
    if (componentIsComplete && rowCount > 0) {
        target = wrapped(value, rowCount);
        const qreal whole = std::round(target);
        if (qAbs(target - whole) < tolerance)
            target = whole < rowCount ? whole : 0;
    }
    if (target == offset)
        return;
    offset = target;
    layOut();
    Q_EMIT q_func()->offsetChanged();
    if (moving)
        followOffset();
}

/** Makes the row that the user moved into the range the current one. */
void QDeclarativePathViewPrivate::followOffset()
{
    if (isStrict() && rowCount > 0)
        changeCurrent(int(wrapped(std::round(-offset), rowCount)));
}

void QDeclarativePathViewPrivate::changeCurrent(int index)
{
    if (index == currentIndex)
        return;
    currentIndex = index;
    const QDeclarativeWork::Scope scope(&work);
    updateCurrentItem();
    Q_EMIT q_func()->currentIndexChanged();
}

void QDeclarativePathViewPrivate::updateCurrentItem()
{
    for (const Row row : rows) {
        const bool current = row.index == currentIndex;
        if (current == row.attached->isCurrentItem())
            continue;
        row.item->setFocus(current);
        row.attached->setIsCurrentItem(current);
    }
}

void QDeclarativePathViewPrivate::setCurrent(int index, Direction direction)
{
    if (work.postpone([=] { setCurrent(index, direction); }))
        return;
    if (!componentIsComplete || rowCount <= 0) {
        // Kept until there are rows.
        if (index != currentIndex) {
            currentIndex = index;
            Q_EMIT q_func()->currentIndexChanged();
        }
        return;
    }
    const int target = int(wrapped(index, rowCount));
    if (target == currentIndex)
        return;
    if (isDragging) {
        changeCurrent(target);
        return;
    }
    stop();
    const qreal then = offset + (isStrict() ? wayTo(target, direction) : wayIntoRange(target));
    changeCurrent(target);
    if (currentIndex != target)
        return;
    moveBy(then - offset);
    moveHighlight(then);
}

/** How far the rows have to move for row @p index to come to the start of the range. */
qreal QDeclarativePathViewPrivate::wayTo(int index, Direction direction) const
{
    const qreal way = wrapped(-index - offset, rowCount);
    if (way < tolerance || rowCount - way < tolerance)
        return 0;
    // The rows move backwards for a later one to come.
    if (direction == Forwards || (direction == Shortest && way > rowCount / 2.0))
        return way - rowCount;
    return way;
}

/** How far they have to move for it to come into the range at all. */
qreal QDeclarativePathViewPrivate::wayIntoRange(int index) const
{
    if (rangeMode != QDeclarativePathView::ApplyRange || highlightBegin > highlightEnd)
        return 0;
    const qreal place = placeOf(index);
    if (place >= highlightBegin && place <= highlightEnd)
        return 0;
    const qreal toBegin = wayTo(index, Shortest);
    const qreal width = (highlightEnd - highlightBegin) * visibleRows();
    qreal toEnd = wrapped(toBegin + width, rowCount);
    if (toEnd > rowCount / 2.0)
        toEnd -= rowCount;
    return qAbs(toEnd) < qAbs(toBegin) ? toEnd : toBegin;
}

/** Moves the rows by @p way in the time of highlightMoveDuration. */
void QDeclarativePathViewPrivate::moveBy(qreal way)
{
    timeLine.reset(offsetValue);
    isRunning = false;
    const bool still = qAbs(way) < tolerance;
    if (still || highlightMoveDuration <= 0) {
        if (!still)
            moveTo(offset + way);
        endMovement();
        return;
    }
    offsetValue.QQuickTimeLineValue::setValue(offset);
    timeLine.move(offsetValue, offset + way, QEasingCurve(QEasingCurve::InOutQuad), highlightMoveDuration);
    notifyWhenDone();
}

/** Lets the rows run out over @p way, from @p velocity on. */
void QDeclarativePathViewPrivate::run(qreal velocity, qreal way)
{
    timeLine.reset(offsetValue);
    offsetValue.QQuickTimeLineValue::setValue(offset);
    timeLine.accelDistance(offsetValue, velocity, way);
    notifyWhenDone();
    startFlick();
}

void QDeclarativePathViewPrivate::notifyWhenDone()
{
    isRunning = true;
    timeLine.callback(QQuickTimeLineCallback(
        &offsetValue,
        [](void *data) {
            auto *view = static_cast<QDeclarativePathViewPrivate *>(data);
            view->isRunning = false;
            view->endMovement();
        },
        this));
}

/** Ends what moves by itself, wherever it is. */
void QDeclarativePathViewPrivate::stop()
{
    timeLine.reset(offsetValue);
    isRunning = false;
    if (!isPressed)
        endMovement();
}

void QDeclarativePathViewPrivate::startMovement()
{
    Q_Q(QDeclarativePathView);
    if (moving)
        return;
    moving = true;
    Q_EMIT q->movingChanged();
    Q_EMIT q->movementStarted();
}

void QDeclarativePathViewPrivate::startFlick()
{
    Q_Q(QDeclarativePathView);
    if (flicking)
        return;
    flicking = true;
    Q_EMIT q->flickingChanged();
    Q_EMIT q->flickStarted();
}

void QDeclarativePathViewPrivate::endFlick()
{
    Q_Q(QDeclarativePathView);
    if (!flicking)
        return;
    flicking = false;
    Q_EMIT q->flickingChanged();
    Q_EMIT q->flickEnded();
}

void QDeclarativePathViewPrivate::endMovement()
{
    Q_Q(QDeclarativePathView);
    endFlick();
    if (!moving)
        return;
    moving = false;
    Q_EMIT q->movingChanged();
    Q_EMIT q->movementEnded();
}

/** Tells whether a drag may start at @p point: on an item, or near enough to the path. */
bool QDeclarativePathViewPrivate::isDragPoint(const QPointF &point) const
{
    Q_Q(const QDeclarativePathView);
    if (!interactive || !hasPath() || rowCount <= 0)
        return false;
    for (const Row &row : rows) {
        const QRectF area(0, 0, row.item->width(), row.item->height());
        if (area.contains(row.item->mapFromItem(q, point)))
            return true;
    }
    qreal distance = 0;
    if (dragMargin <= 0)
        return false;
    nearestPlace(point, &distance);
    return distance <= dragMargin;
}

bool QDeclarativePathViewPrivate::press(const QPointF &point)
{
    Q_Q(QDeclarativePathView);
    if (!isDragPoint(point))
        return false;
    isPressed = true;
    isDragging = false;
    // A press that stops a flick is not meant for what happens to be under it.
    steals = flicking;
    q->setKeepMouseGrab(steals);
    timeLine.reset(offsetValue);
    wasStopped = std::exchange(isRunning, false);
    endFlick();
    pressPosition = point;
    dragPlace = nearestPlace(point, nullptr);
    dragWay = 0;
    samples.clear();
    samples.append({clock.nsecsElapsed(), 0});
    return true;
}

void QDeclarativePathViewPrivate::move(const QPointF &point)
{
    Q_Q(QDeclarativePathView);
    if (!isPressed || !hasPath() || rowCount <= 0)
        return;
    if (steals) {
        drag(point);
        return;
    }
    const QPointF way = point - pressPosition;
    if (!QDeclarativePointer::passesThreshold(way.x()) && !QDeclarativePointer::passesThreshold(way.y()))
        return;
    // The rows follow from here on, so that they do not leap.
    steals = true;
    q->setKeepMouseGrab(true);
    dragPlace = nearestPlace(point, nullptr);
}

/** Moves the rows along with the mouse. */
void QDeclarativePathViewPrivate::drag(const QPointF &point)
{
    const qreal place = nearestPlace(point, nullptr);
    qreal way = place - dragPlace;
    if (path->isClosed())
        way -= std::round(way);
    dragPlace = place;
    way *= visibleRows();
    if (!isDragging) {
        isDragging = true;
        startMovement();
    }
    dragWay += way;
    const qint64 now = clock.nsecsElapsed();
    samples.append({now, dragWay});
    while (samples.first().time < now - sampleAge)
        samples.removeFirst();
    moveTo(offset + way);
}

/** Rows per second at the release of the mouse. */
qreal QDeclarativePathViewPrivate::releaseVelocity() const
{
    const qint64 now = clock.nsecsElapsed();
    if (samples.count() < 2 || samples.last().time < now - sampleAge)
        return 0;
    const qint64 time = qMax(samples.last().time - samples.first().time, shortestInterval);
    const qreal most = velocityPerRow * visibleRows();
    return qBound(-most, (samples.last().way - samples.first().way) * 1e9 / time, most);
}

void QDeclarativePathViewPrivate::release()
{
    if (isPressed)
        settle(isDragging ? releaseVelocity() : 0);
}

/** Ends a drag that another item took over, or that is no more allowed. */
void QDeclarativePathViewPrivate::cancel()
{
    if (isPressed)
        settle(0);
}

/** Lets the rows that the user let go of come to rest: with a strict range on a row. */
void QDeclarativePathViewPrivate::settle(qreal velocity)
{
    Q_Q(QDeclarativePathView);
    isPressed = false;
    isDragging = false;
    steals = false;
    q->setKeepMouseGrab(false);
    if (rowCount <= 0 || (!moving && !wasStopped)) {
        endMovement();
        return;
    }
    if (qAbs(velocity) > minimumVelocity && deceleration > 0) {
        flick(velocity);
        return;
    }
    // A drag has made the nearest row the current one.
    moveBy(isStrict() ? wayTo(currentIndex, Shortest) : 0);
}

void QDeclarativePathViewPrivate::flick(qreal velocity)
{
    const qreal sign = velocity > 0 ? 1 : -1;
    qreal way = sign * qMin<qreal>(velocity * velocity / (2 * deceleration / 10), rowCount - 1);
    if (isStrict()) {
        const qreal next = sign > 0 ? std::floor(offset) + 1 : std::ceil(offset) - 1;
        const qreal target = std::round(offset + way);
        way = (sign > 0 ? qMax(target, next) : qMin(target, next)) - offset;
    }
    if (qAbs(way) < tolerance)
        endMovement();
    else
        run(velocity, way);
}

/** Lets the view see a child's event first; tells whether the child shall not get it. */
bool QDeclarativePathViewPrivate::filterMouse(QGraphicsSceneMouseEvent *event)
{
    Q_Q(QDeclarativePathView);
    const QDeclarativeMappedMouseEvent mapped(*event, q);
    const bool isRelease = event->type() == QEvent::GraphicsSceneMouseRelease;
    const bool taking = steals;
    if (QDeclarativePointer::isKeptFrom(q)) {
        if (isRelease)
            cancel();
        return false;
    }
    if (event->type() == QEvent::GraphicsSceneMouseMove)
        move(mapped.pos());
    else if (isRelease)
        release();
    else if (event->button() != Qt::LeftButton || isPressed || !press(mapped.pos()))
        return false;
    const bool takes = taking || steals;
    if (takes && !isRelease && QDeclarativePointer::grabber(q) != q) {
        const QScopedValueRollback<bool> guard(grabbing, true);
        QDeclarativePointer::steal(q);
    }
    return takes;
}

void QDeclarativePathView::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativePathView);
    event->setAccepted(d->isPressed || d->press(event->pos()));
}

void QDeclarativePathView::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativePathView);
    event->setAccepted(d->interactive);
    d->move(event->pos());
}

void QDeclarativePathView::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativePathView);
    d->release();
    event->accept();
    // Taken from a child, the mouse does not come free by itself.
    if (QDeclarativePointer::grabber(this) == this)
        ungrabMouse();
}

bool QDeclarativePathView::sceneEvent(QEvent *event)
{
    if (event->type() == QEvent::UngrabMouse)
        d_func()->cancel();
    return QDeclarativeItem::sceneEvent(event);
}

bool QDeclarativePathView::sceneEventFilter(QGraphicsItem *child, QEvent *event)
{
    Q_D(QDeclarativePathView);
    if (!isVisible() || !d->interactive)
        return QDeclarativeItem::sceneEventFilter(child, event);
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
    case QEvent::GraphicsSceneMouseDoubleClick:
    case QEvent::GraphicsSceneMouseMove:
    case QEvent::GraphicsSceneMouseRelease:
        return d->filterMouse(static_cast<QGraphicsSceneMouseEvent *>(event));
    case QEvent::UngrabMouse:
        if (!d->grabbing)
            d->cancel();
        break;
    default:
        break;
    }
    return QDeclarativeItem::sceneEventFilter(child, event);
}
