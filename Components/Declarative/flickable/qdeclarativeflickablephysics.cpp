#include "qdeclarativeflickable_p_p.h"

#include "engine/qdeclarativerounding_p.h"

#include <QtCore/QEasingCurve>

#include <cmath>

namespace {

const int fixupDuration = 400; // milliseconds
const qint64 sampleAge = 100 * 1000000; // nanoseconds
const qint64 shortestInterval = 1000000; // nanoseconds; events closer together tell no velocity

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
