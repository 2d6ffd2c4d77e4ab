#include "qdeclarativeflickable_p_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "input/qdeclarativepointer_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEasingCurve>
#include <QtCore/QScopedValueRollback>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <cmath>
#include <limits>

namespace {

const int fixupDuration = 400; // milliseconds
const qreal minimumFlickVelocity = 75; // pixels per second; less is a hand that stops
const qreal heldFlickVelocity = 100; // pixels per second; a press stops what is faster
const qreal minimumFlickDistance = 20; // pixels between press and release
const qint64 sampleAge = 100 * 1000000; // nanoseconds
const qint64 holdTime = 200 * 1000000; // nanoseconds after which a press drags below the threshold
const qint64 shortestInterval = 1000000; // nanoseconds; events closer together tell no velocity

/** Returns @p way without its fraction; none in an item that is scaled to nothing, where it is no number. */
int wholePixels(qreal way)
{
    const qreal most = std::numeric_limits<int>::max();
    return std::isnan(way) ? 0 : int(qBound(-most, way, most));
}

} // namespace

void QDeclarativeFlickableAxis::setValue(qreal value)
{
    place(value);
    flickable->axisMoved(*this);
}

void QDeclarativeFlickableAxis::place(qreal value)
{
    const qreal before = wholeValue();
    QQuickTimeLineValue::setValue(value);
    flickable->axisPlaced(*this, before);
}

qreal QDeclarativeFlickableAxis::wholeValue() const
{
    // It is the content's place that is rounded, which is the negative value.
    return -QDeclarativeRounding::bounded(-value());
}

void QDeclarativeFlickableAxis::addSample(qint64 now, qreal mousePosition)
{
    samples.append({now, mousePosition});
    while (samples.first().time < now - sampleAge)
        samples.removeFirst();
}

qreal QDeclarativeFlickableAxis::releaseVelocity(qint64 now) const
{
    if (samples.count() < 2 || samples.last().time < now - sampleAge)
        return 0;
    const qint64 time = qMax(samples.last().time - samples.first().time, shortestInterval);
    return (samples.first().position - samples.last().position) * 1e9 / time;
}

QDeclarativeFlickablePrivate::QDeclarativeFlickablePrivate() = default;

void QDeclarativeFlickablePrivate::init()
{
    Q_Q(QDeclarativeFlickable);
    content = new QDeclarativeItem(q);
    clock.start();
    QObject::connect(&timeLine, &QQuickTimeLine::completed, q, [this] { movementEnding(); });
}

qreal QDeclarativeFlickablePrivate::viewSize(const Axis &axis) const
{
    return axis.orientation == Qt::Horizontal ? itemWidth : itemHeight;
}

qreal QDeclarativeFlickablePrivate::contentSize(const Axis &axis) const
{
    return axis.contentSize < 0 ? viewSize(axis) : axis.contentSize;
}

qreal QDeclarativeFlickablePrivate::travelStart(const Axis &) const
{
    return 0;
}

qreal QDeclarativeFlickablePrivate::travelEnd(const Axis &axis) const
{
    return contentSize(axis) - viewSize(axis);
}

qreal QDeclarativeFlickablePrivate::boundedValue(const Axis &axis, qreal value) const
{
    return qMax(travelStart(axis), qMin(value, travelEnd(axis)));
}

bool QDeclarativeFlickablePrivate::canFlick(const Axis &axis) const
{
    if (direction == QDeclarativeFlickable::AutoFlickDirection)
        return contentSize(axis) != viewSize(axis);
    return direction
        & (axis.orientation == Qt::Horizontal ? QDeclarativeFlickable::HorizontalFlick
                                              : QDeclarativeFlickable::VerticalFlick);
}

bool QDeclarativeFlickablePrivate::isFlickingFast() const
{
    return timeLine.isActive()
        && (qAbs(x.velocity) > heldFlickVelocity || qAbs(y.velocity) > heldFlickVelocity);
}

void QDeclarativeFlickablePrivate::axisPlaced(Axis &axis, qreal before)
{
    Q_Q(QDeclarativeFlickable);
    placeContent();
    if (axis.wholeValue() != before) {
        updateVelocity(axis, axis.wholeValue() - before);
        if (axis.orientation == Qt::Horizontal)
            Q_EMIT q->contentXChanged();
        else
            Q_EMIT q->contentYChanged();
    }
}

void QDeclarativeFlickablePrivate::axisMoved(Axis &axis)
{
    viewportMoved(axis);
    updateBounds();
}

/** Takes note of a movement by @p way. */
void QDeclarativeFlickablePrivate::updateVelocity(Axis &axis, qreal way)
{
    const qint64 now = isPressed ? clock.nsecsElapsed() : lineTime();
    const qint64 time = qMax(now - axis.lastMove, shortestInterval);
    if (isPressed)
        setVelocity(axis, (axis.velocity + way * 1e9 / time) / 2);
    else if (timeLine.isActive())
        setVelocity(axis, way * 1e9 / time);
    axis.lastMove = now;
}

void QDeclarativeFlickablePrivate::placeContent()
{
    content->setPos(-x.wholeValue(), -y.wholeValue());
    content->setSize(QSizeF(contentSize(x), contentSize(y)));
}

void QDeclarativeFlickablePrivate::updateBounds()
{
    Q_Q(QDeclarativeFlickable);
    bool changed = false;
    const auto assign = [&changed](bool *member, bool value) {
        changed = changed || *member != value;
        *member = value;
    };
    for (Axis *axis : {&x, &y}) {
        assign(&axis->atBeginning, axis->value() <= travelStart(*axis));
        assign(&axis->atEnd, axis->value() >= std::trunc(travelEnd(*axis)));
    }
    if (visibleArea)
        visibleArea->update();
    if (changed)
        Q_EMIT q->isAtBoundaryChanged();
}

void QDeclarativeFlickablePrivate::setContentSize(Axis &axis, qreal size)
{
    Q_Q(QDeclarativeFlickable);
    if (size == axis.contentSize)
        return;
    axis.contentSize = size;
    placeContent();
    if (!isPressed && !axis.moving)
        fixup(axis, Immediate);
    if (axis.orientation == Qt::Horizontal)
        Q_EMIT q->contentWidthChanged();
    else
        Q_EMIT q->contentHeightChanged();
    updateBounds();
}

void QDeclarativeFlickablePrivate::viewResized(Axis &axis)
{
    Q_Q(QDeclarativeFlickable);
    if (axis.contentSize < 0) {
        placeContent();
        if (axis.orientation == Qt::Horizontal)
            Q_EMIT q->contentWidthChanged();
        else
            Q_EMIT q->contentHeightChanged();
    }
    if (componentIsComplete && !isPressed && !axis.moving)
        fixup(axis, Immediate);
}

void QDeclarativeFlickablePrivate::moveTo(Axis &axis, qreal value)
{
    timeLine.reset(axis);
    endMovement(axis);
    if (value != axis.value())
        axis.setValue(value);
}

void QDeclarativeFlickablePrivate::settle(Axis &axis, qreal target, FixupMode mode)
{
    timeLine.reset(axis);
    if (axis.value() == target)
        return;
    if (mode == Immediate) {
        axis.place(target);
        updateBounds();
        return;
    }
    const qreal half = (axis.value() + target) / 2;
    timeLine.move(axis, half, QEasingCurve(QEasingCurve::InQuad), fixupDuration / 4);
    timeLine.move(axis, target, QEasingCurve(QEasingCurve::OutExpo), 3 * fixupDuration / 4);
    axis.lastMove = lineTime();
}

void QDeclarativeFlickablePrivate::fixup(Axis &axis, FixupMode mode)
{
    const qreal target = boundedValue(axis, axis.value());
    if (target != axis.value())
        settle(axis, target, mode);
}

/** Lets the axis slow down from @p velocity, over @p maximumDistance at most. */
bool QDeclarativeFlickablePrivate::runOut(Axis &axis, qreal velocity, qreal maximumDistance)
{
    if (maximumDistance <= 0 || deceleration <= 0)
        return false;
    timeLine.reset(axis);
    timeLine.accel(axis, velocity, deceleration, maximumDistance);
    endRun(axis);
    return true;
}

/** Lets the axis slow down from @p velocity so that it has gone @p distance. */
bool QDeclarativeFlickablePrivate::runOutTo(Axis &axis, qreal velocity, qreal distance)
{
    timeLine.reset(axis);
    timeLine.accelDistance(axis, velocity, distance);
    endRun(axis);
    return true;
}

void QDeclarativeFlickablePrivate::endRun(Axis &axis)
{
    timeLine.callback(QQuickTimeLineCallback(
        &axis,
        [](void *data) {
            auto *axis = static_cast<Axis *>(data);
            axis->flickable->fixup(*axis, Animated);
        },
        &axis));
    axis.lastMove = lineTime();
    startFlick(axis);
}

bool QDeclarativeFlickablePrivate::flick(Axis &axis, qreal velocity)
{
    const qreal limited = qBound(-maximumVelocity, velocity, maximumVelocity);
    const qreal way = limited > 0 ? travelEnd(axis) - axis.value() : axis.value() - travelStart(axis);
    if (way <= 0)
        return false;
    const bool overshoots = boundsBehavior == QDeclarativeFlickable::DragAndOvershootBounds;
    const qreal overshoot =
        overshoots && maximumVelocity > 0 ? viewSize(axis) / 4 * qAbs(limited) / maximumVelocity : 0;
    return runOut(axis, limited, way + overshoot);
}

void QDeclarativeFlickablePrivate::notifyMoving(const Axis &axis)
{
    Q_Q(QDeclarativeFlickable);
    Q_EMIT q->movingChanged();
    if (axis.orientation == Qt::Horizontal)
        Q_EMIT q->movingHorizontallyChanged();
    else
        Q_EMIT q->movingVerticallyChanged();
}

void QDeclarativeFlickablePrivate::notifyFlicking(const Axis &axis)
{
    Q_Q(QDeclarativeFlickable);
    Q_EMIT q->flickingChanged();
    if (axis.orientation == Qt::Horizontal)
        Q_EMIT q->flickingHorizontallyChanged();
    else
        Q_EMIT q->flickingVerticallyChanged();
}

void QDeclarativeFlickablePrivate::startMovement(Axis &axis)
{
    Q_Q(QDeclarativeFlickable);
    if (axis.moving)
        return;
    const bool first = !q->isMoving();
    axis.moving = true;
    if (isPressed)
        axis.lastMove = clock.nsecsElapsed();
    notifyMoving(axis);
    if (first)
        Q_EMIT q->movementStarted();
}

void QDeclarativeFlickablePrivate::startFlick(Axis &axis)
{
    Q_Q(QDeclarativeFlickable);
    startMovement(axis);
    if (axis.flicking)
        return;
    const bool first = !q->isFlicking();
    axis.flicking = true;
    notifyFlicking(axis);
    if (first)
        Q_EMIT q->flickStarted();
}

void QDeclarativeFlickablePrivate::endMovement(Axis &axis)
{
    Q_Q(QDeclarativeFlickable);
    setVelocity(axis, 0);
    if (axis.flicking) {
        axis.flicking = false;
        notifyFlicking(axis);
        if (!q->isFlicking())
            Q_EMIT q->flickEnded();
    }
    if (axis.moving) {
        axis.moving = false;
        notifyMoving(axis);
        if (!q->isMoving())
            Q_EMIT q->movementEnded();
    }
}

void QDeclarativeFlickablePrivate::movementEnding()
{
    if (isPressed)
        return;
    endMovement(x);
    endMovement(y);
}

void QDeclarativeFlickablePrivate::setVelocity(Axis &axis, qreal velocity)
{
    Q_Q(QDeclarativeFlickable);
    if (velocity == axis.velocity)
        return;
    axis.velocity = velocity;
    if (axis.orientation == Qt::Horizontal)
        Q_EMIT q->horizontalVelocityChanged();
    else
        Q_EMIT q->verticalVelocityChanged();
}

void QDeclarativeFlickablePrivate::press(const QGraphicsSceneMouseEvent &event)
{
    Q_Q(QDeclarativeFlickable);
    // A press that stops a flick is not meant for what happens to be under it.
    steals = isFlickingFast();
    q->setKeepMouseGrab(steals);
    isPressed = true;
    timeLine.clear();
    pressPosition = event.pos();
    const qint64 now = clock.nsecsElapsed();
    pressTime = now;
    for (Axis *axis : {&x, &y}) {
        axis->dragged = false;
        axis->pressValue = axis->value();
        axis->pressStart = travelStart(*axis);
        axis->pressEnd = travelEnd(*axis);
        axis->clearSamples();
    }
    x.addSample(now, event.pos().x());
    y.addSample(now, event.pos().y());
}

/** Has the content follow the mouse, which has gone @p way since the press. */
void QDeclarativeFlickablePrivate::drag(Axis &axis, int way, bool stealing)
{
    Q_Q(QDeclarativeFlickable);
    const bool passes = QDeclarativePointer::passesThreshold(way);
    if (!canFlick(axis) || (!passes && clock.nsecsElapsed() - pressTime <= holdTime))
        return;
    if (!axis.dragged)
        axis.dragStart = way;
    qreal value = axis.pressValue - (way - axis.dragStart);
    const bool goesOn =
        boundsBehavior != QDeclarativeFlickable::StopAtBounds || stopAtBounds(axis, way, &value);
    if (stealing && goesOn) {
        axis.dragged = true;
        dragStarting();
        axis.setValue(-qRound(-draggedValue(axis, value)));
    }
    if (passes) {
        steals = true;
        q->setKeepMouseGrab(true);
    }
}

/** Beyond the bounds the content goes half the way of the mouse. */
qreal QDeclarativeFlickablePrivate::draggedValue(const Axis &axis, qreal value) const
{
    if (value < axis.pressStart)
        return axis.pressStart - (axis.pressStart - value) / 2;
    // Content that is smaller than the view has no bound at its end.
    if (value > axis.pressEnd && axis.pressStart <= axis.pressEnd)
        return axis.pressEnd + (value - axis.pressEnd) / 2;
    return value;
}

/** Keeps the value within the bounds; tells whether the mouse, @p way from the press, moves the content. */
bool QDeclarativeFlickablePrivate::stopAtBounds(const Axis &axis, int way, qreal *value) const
{
    bool moves = true;
    if (*value >= axis.pressEnd) {
        *value = axis.pressEnd;
        moves = axis.pressValue != axis.pressEnd || way > 0;
    }
    if (*value <= axis.pressStart) {
        *value = axis.pressStart;
        moves = axis.pressValue != axis.pressStart || way < 0;
    }
    return moves;
}

void QDeclarativeFlickablePrivate::move(const QGraphicsSceneMouseEvent &event)
{
    if (!isPressed)
        return;
    const bool stealing = steals;
    const QPointF way = event.pos() - pressPosition;
    const qint64 now = clock.nsecsElapsed();
    drag(y, wholePixels(way.y()), stealing);
    drag(x, wholePixels(way.x()), stealing);
    // In one direction at a time, also where both begin with the same move.
    if (x.dragged && !x.moving)
        startMovement(x);
    else if (y.dragged)
        startMovement(y);
    x.addSample(now, event.pos().x());
    y.addSample(now, event.pos().y());
    if (steals)
        delayedPress.reset();
}

void QDeclarativeFlickablePrivate::release()
{
    Q_Q(QDeclarativeFlickable);
    if (!isPressed)
        return;
    isPressed = false;
    steals = false;
    q->setKeepMouseGrab(false);
    const qint64 now = clock.nsecsElapsed();
    for (Axis *axis : {&x, &y}) {
        const qreal velocity = axis->dragged ? axis->releaseVelocity(now) : 0;
        const qreal way = axis->samples.isEmpty() ? 0
                                                  : axis->samples.last().position
                - (axis->orientation == Qt::Horizontal ? pressPosition.x() : pressPosition.y());
        const bool wants = qAbs(velocity) > minimumFlickVelocity && qAbs(way) > minimumFlickDistance;
        if (!wants || !flick(*axis, velocity))
            fixup(*axis, Animated);
        axis->dragged = false;
    }
    if (!timeLine.isActive())
        movementEnding();
}

/** Ends a drag that another item took over. */
void QDeclarativeFlickablePrivate::cancel()
{
    Q_Q(QDeclarativeFlickable);
    if (!isPressed)
        return;
    isPressed = false;
    steals = false;
    q->setKeepMouseGrab(false);
    delayedPressTimer.stop();
    delayedPress.reset();
    for (Axis *axis : {&x, &y}) {
        axis->dragged = false;
        fixup(*axis, Animated);
    }
    if (!timeLine.isActive())
        movementEnding();
}

/** Flicks on a turn of the wheel; tells whether there is any way left. */
bool QDeclarativeFlickablePrivate::wheel(Axis &axis, int delta)
{
    if (!canFlick(axis) || delta == 0)
        return false;
    const qreal sign = delta > 0 ? -1 : 1;
    const qreal current = qMax<qreal>(0, axis.velocity * sign);
    const qreal speed = qMax(current + qAbs(delta), maximumVelocity / 4);
    if (sign > 0 ? axis.value() >= travelEnd(axis) : axis.value() <= travelStart(axis))
        return false;
    return flick(axis, sign * speed);
}

/** Lets the flickable see a child's event first; tells whether the child shall not get it. */
bool QDeclarativeFlickablePrivate::filterMouse(QGraphicsItem *child, QGraphicsSceneMouseEvent *event)
{
    Q_Q(QDeclarativeFlickable);
    const QDeclarativeMappedMouseEvent mapped(*event, q);
    const bool isRelease = event->type() == QEvent::GraphicsSceneMouseRelease;
    bool taking = steals;
    if ((!taking && !q->boundingRect().contains(mapped.pos())) || QDeclarativePointer::isKeptFrom(q)) {
        if (isRelease)
            cancel();
        return false;
    }
    switch (event->type()) {
    case QEvent::GraphicsSceneMouseMove:
        move(mapped);
        break;
    case QEvent::GraphicsSceneMouseRelease:
        if (delayedPress) {
            replayPress();
            release();
            QGraphicsItem *grabber = QDeclarativePointer::grabber(q);
            return grabber != child;
        }
        release();
        break;
    default:
        if (event->button() != Qt::LeftButton || isPressed)
            return false;
        press(mapped);
        taking = steals;
        if (!taking && delayPress(*event))
            return true;
        break;
    }
    if (taking && !isRelease && QDeclarativePointer::grabber(q) != q) {
        const QScopedValueRollback<bool> guard(grabbing, true);
        delayedPressTimer.stop();
        delayedPress.reset();
        QDeclarativePointer::steal(q);
    }
    return taking || (delayedPress && !isRelease);
}

/** Keeps a press from the children for the time of pressDelay; the outermost flickable with one decides. */
bool QDeclarativeFlickablePrivate::delayPress(const QGraphicsSceneMouseEvent &event)
{
    Q_Q(QDeclarativeFlickable);
    if (pressDelay <= 0)
        return false;
    for (QGraphicsObject *outer = q->parentObject(); outer; outer = outer->parentObject()) {
        auto *flickable = qobject_cast<QDeclarativeFlickable *>(outer);
        if (flickable && flickable->isInteractive() && flickable->pressDelay() > 0)
            return false;
    }
    delayedPress.reset(new QDeclarativeMappedMouseEvent(event, q));
    delayedPressTimer.start(pressDelay, q);
    return true;
}

void QDeclarativeFlickablePrivate::replayPress()
{
    Q_Q(QDeclarativeFlickable);
    delayedPressTimer.stop();
    QScopedPointer<QGraphicsSceneMouseEvent> event;
    event.swap(delayedPress);
    if (!event || !q->scene())
        return;
    const QScopedValueRollback<bool> guard(replaying, true);
    if (QGraphicsItem *grabber = QDeclarativePointer::grabber(q))
        grabber->ungrabMouse();
    QCoreApplication::sendEvent(q->scene(), event.data());
}
