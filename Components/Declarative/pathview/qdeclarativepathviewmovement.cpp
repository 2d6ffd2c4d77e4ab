#include "qdeclarativepathview_p_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "input/qdeclarativepointer_p.h"
#include "models/qdeclarativevisualmodel_p.h"

#include <QtCore/QEasingCurve>
#include <QtCore/QScopedValueRollback>

#include <cmath>
#include <utility>

namespace {

const qreal minimumVelocity = 1; // rows per second; less is a hand that stops
const qreal velocityPerRow = 2; // how much of it, for each visible row, a flick has at most

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
    if (mover == User)
        followOffset();
}

/** Makes the row that the user moved into a strict range the current one. */
void QDeclarativePathViewPrivate::followOffset()
{
    if (isStrict() && rowCount > 0)
        changeCurrent(rowInRange());
}

/** The row that is nearest to the start of the range. */
int QDeclarativePathViewPrivate::rowInRange() const
{
    return QDeclarativeRounding::truncated(wrapped(std::round(-offset), rowCount));
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

void QDeclarativePathViewPrivate::setCurrent(int index)
{
    if (work.postpone([=] { setCurrent(index); }))
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
    mover = Script;
    changeCurrent(target);
    if (currentIndex != target)
        return;
    if (isStrict())
        moveToCurrent();
    else
        moveHighlight();
}

/** Whether a way of @p way rows is shorter over an end of the circle. A single row has its way round, too. */
QDeclarativePathViewPrivate::Turn QDeclarativePathViewPrivate::turnFor(qreal way) const
{
    const int half = rowCount / 2;
    if (way > half)
        return OverTheStart;
    return way <= -half ? OverTheEnd : NoTurn;
}

/**
 * Moves @p value from @p from to @p to in a circle of the rows, the shorter way; @p end is where the circle
 * starts again.
 */
void QDeclarativePathViewPrivate::moveRound(Value &value, qreal from, qreal to, qreal end)
{
    timeLine.reset(value);
    value.QQuickTimeLineValue::setValue(from);
    if (highlightMoveDuration <= 0) {
        value.setValue(to);
        return;
    }
    const Turn turn = turnFor(to - from);
    if (turn == NoTurn) {
        timeLine.move(value, to, QEasingCurve(QEasingCurve::InOutQuad), highlightMoveDuration);
        return;
    }
    // Over the end of the circle, in two parts that share the time. One without any is left out, and the
    // value stays at the end if that is the last one.
    const bool isRising = turn == OverTheEnd;
    const qreal first = isRising ? rowCount - from : from;
    const qreal second = isRising ? to : rowCount - to;
    const auto part = [&](qreal distance) {
        return first + second > 0 ? int(highlightMoveDuration * distance / (first + second)) : 0;
    };
    timeLine.move(value, isRising ? end : 0, QEasingCurve(QEasingCurve::InQuad), part(first));
    timeLine.set(value, isRising ? 0 : end);
    timeLine.move(value, to, QEasingCurve(QEasingCurve::OutQuad), part(second));
}

/** Moves the rows until the current one is at the start of a strict range. */
void QDeclarativePathViewPrivate::moveToCurrent()
{
    const qreal target = wrapped(-currentIndex, rowCount);
    if (qAbs(target - offset) < tolerance) {
        timeLine.reset(offsetValue);
        isRunning = false;
        endMovement();
        return;
    }
    moveRound(offsetValue, offset, target, rowCount);
    if (highlightMoveDuration > 0)
        notifyWhenDone();
    else
        endMovement();
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
    if (!interactive || places.isEmpty() || rowCount <= 0)
        return false;
    for (const Row &row : rows) {
        const QRectF area(0, 0, row.item->width(), row.item->height());
        if (area.contains(row.item->mapFromItem(q, point)))
            return true;
    }
    if (dragMargin <= 0)
        return false;
    QPointF nearest;
    places.nearestTo(point, &nearest);
    return (point - nearest).manhattanLength() <= dragMargin;
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
    isRunning = false;
    endFlick();
    // However far from the path the press is, how far a drag has come is measured along it.
    dragPlace = places.nearestTo(point, &dragStart);
    lastWay = 0;
    lastInterval = 0;
    clock.start();
    return true;
}

void QDeclarativePathViewPrivate::move(const QPointF &point)
{
    Q_Q(QDeclarativePathView);
    if (!isPressed || places.isEmpty() || rowCount <= 0)
        return;
    if (!steals) {
        QPointF nearest;
        const qreal place = places.nearestTo(point, &nearest);
        const QPointF way = nearest - dragStart;
        if (!QDeclarativePointer::passesThreshold(way.x()) && !QDeclarativePointer::passesThreshold(way.y()))
            return;
        steals = true;
        q->setKeepMouseGrab(true);
        // The rows follow from here on, so that they do not leap.
        dragPlace = place;
    }
    drag(point);
}

/** Moves the rows along with the mouse. */
void QDeclarativePathViewPrivate::drag(const QPointF &point)
{
    isDragging = true;
    mover = User;
    startMovement();
    const qreal place = places.nearestTo(point);
    const qreal way = (place - dragPlace) * visibleRows();
    dragPlace = place;
    if (way == 0)
        return;
    lastWay = way - (qAbs(way) > rowCount / 2 ? std::copysign(rowCount, way) : 0);
    lastInterval = clock.restart();
    moveTo(offset + way);
}

/** Rows per second at the release of the mouse: the last way, in the time since the one before it. */
qreal QDeclarativePathViewPrivate::releaseVelocity() const
{
    const qint64 time = qMax<qint64>(1, lastInterval + clock.elapsed());
    const qreal most = velocityPerRow * (pathItemCount < 0 ? rowCount : pathItemCount);
    return qBound(-most, lastWay * 1000 / time, most);
}

void QDeclarativePathViewPrivate::release()
{
    if (isPressed)
        settle(releaseVelocity());
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
    if (rowCount <= 0) {
        endMovement();
        return;
    }
    if (qAbs(velocity) > minimumVelocity && deceleration > 0)
        flick(velocity);
    if (isRunning)
        return;
    if (!isStrict()) {
        endMovement();
        return;
    }
    changeCurrent(rowInRange());
    moveToCurrent();
}

void QDeclarativePathViewPrivate::flick(qreal velocity)
{
    const qreal distance = velocity * velocity / (2 * deceleration / 10);
    const bool isRising = velocity > 0;
    qreal way = qMin<qreal>(distance, rowCount - 1);
    if (isStrict()) {
        // Somewhat farther, so that it takes less to get to the next row.
        way = qMin<qreal>(distance + 0.25, rowCount - 1);
        way =
            qMax<qreal>(0, isRising ? std::round(way + offset) - offset : std::round(way - offset) + offset);
    }
    if (way > tolerance)
        run(velocity, isRising ? way : -way);
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
    QDeclarativePointer::letGo(this);
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
    if (auto *mouse = QDeclarativePointer::mouseEvent(event))
        return d->filterMouse(mouse);
    if (event->type() == QEvent::UngrabMouse && !d->grabbing)
        d->cancel();
    return QDeclarativeItem::sceneEventFilter(child, event);
}
