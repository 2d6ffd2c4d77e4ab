#include "qdeclarativeflickable_p_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "input/qdeclarativepointer_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QScopedValueRollback>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <cmath>
#include <limits>
#include <utility>

namespace {

const qreal minimumFlickVelocity = 75; // pixels per second; less is a hand that stops
const qreal heldFlickVelocity = 100; // pixels per second; a press stops what is faster
const qreal minimumFlickDistance = 20; // pixels between press and release
const qint64 holdTime = 200 * 1000000; // nanoseconds after which a press drags below the threshold

/** Returns @p way without its fraction; none in an item that is scaled to nothing, where it is no number. */
int wholePixels(qreal way)
{
    const qreal most = std::numeric_limits<int>::max();
    return std::isnan(way) ? 0 : int(qBound(-most, way, most));
}

} // namespace

bool QDeclarativeFlickablePrivate::isFlickingFast() const
{
    return timeLine.isActive()
        && (qAbs(x.velocity) > heldFlickVelocity || qAbs(y.velocity) > heldFlickVelocity);
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
        axis.setValue(-QDeclarativeRounding::bounded(-draggedValue(axis, value)));
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

/** Lets go of the mouse; tells whether it was held. */
bool QDeclarativeFlickablePrivate::endPress()
{
    if (!std::exchange(isPressed, false))
        return false;
    steals = false;
    q_func()->setKeepMouseGrab(false);
    return true;
}

void QDeclarativeFlickablePrivate::release()
{
    if (!endPress())
        return;
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
    if (!endPress())
        return;
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
    bool taking = steals;
    if ((!taking && !q->boundingRect().contains(mapped.pos())) || QDeclarativePointer::isKeptFrom(q)) {
        if (event->type() == QEvent::GraphicsSceneMouseRelease)
            cancel();
        return false;
    }
    switch (event->type()) {
    case QEvent::GraphicsSceneMouseMove:
        move(mapped);
        break;
    case QEvent::GraphicsSceneMouseRelease:
        return filterRelease(child);
    default:
        if (event->button() != Qt::LeftButton || isPressed)
            return false;
        press(mapped);
        taking = steals;
        if (!taking && delayPress(*event))
            return true;
        break;
    }
    if (taking && QDeclarativePointer::grabber(q) != q)
        takeMouse();
    return taking || delayedPress;
}

/** Lets go with a child, which gets a press that was kept from it first; tells whether it shall not get the
 * release. */
bool QDeclarativeFlickablePrivate::filterRelease(QGraphicsItem *child)
{
    const bool taking = steals;
    if (!delayedPress) {
        release();
        return taking;
    }
    replayPress();
    release();
    return QDeclarativePointer::grabber(q_func()) != child;
}

/** Takes the rest of the gesture away from the child that has it. */
void QDeclarativeFlickablePrivate::takeMouse()
{
    const QScopedValueRollback<bool> guard(grabbing, true);
    delayedPressTimer.stop();
    delayedPress.reset();
    QDeclarativePointer::steal(q_func());
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
