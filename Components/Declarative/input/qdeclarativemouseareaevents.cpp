#include "qdeclarativemousearea_p_p.h"

#include "qdeclarativepointer_p.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QTimerEvent>

static const int pressAndHoldDelay = 800; // milliseconds

void QDeclarativeMouseAreaPrivate::saveEvent(const QGraphicsSceneMouseEvent *event)
{
    lastPosition = event->pos();
    lastScenePosition = event->scenePos();
    lastButton = event->button();
    lastButtons = event->buttons();
    lastModifiers = event->modifiers();
}

QDeclarativeMouseEvent QDeclarativeMouseAreaPrivate::mouseEvent(bool isClick) const
{
    return {lastPosition, lastButton, lastButtons, lastModifiers, isClick, held};
}

bool QDeclarativeMouseAreaPrivate::isConnected(
    void (QDeclarativeMouseArea::*signal)(QDeclarativeMouseEvent *)) const
{
    Q_Q(const QDeclarativeMouseArea);
    return q->isSignalConnected(QMetaMethod::fromSignal(signal));
}

void QDeclarativeMouseAreaPrivate::setHovered(bool nowHovered)
{
    Q_Q(QDeclarativeMouseArea);
    if (nowHovered == hovered)
        return;
    hovered = nowHovered;
    Q_EMIT q->hoveredChanged();
    if (nowHovered)
        Q_EMIT q->entered();
    else
        Q_EMIT q->exited();
}

bool QDeclarativeMouseAreaPrivate::press()
{
    Q_Q(QDeclarativeMouseArea);
    if (pressed)
        return true;
    QDeclarativeMouseEvent event = mouseEvent();
    pressed = true;
    if (!doubleClick)
        Q_EMIT q->pressed(&event);
    Q_EMIT q->mousePositionChanged(&event);
    Q_EMIT q->pressedChanged();
    return event.isAccepted();
}

void QDeclarativeMouseAreaPrivate::release()
{
    Q_Q(QDeclarativeMouseArea);
    const bool isClick = hovered && !dragging;
    QDeclarativeMouseEvent event = mouseEvent(isClick);
    pressed = false;
    Q_EMIT q->released(&event);
    Q_EMIT q->mousePositionChanged(&event);
    Q_EMIT q->pressedChanged();
    if (isClick && !held && !doubleClick)
        Q_EMIT q->clicked(&event);
}

/** Ends a press that the area lost, to an item that took the mouse or because it did not accept it. */
void QDeclarativeMouseAreaPrivate::cancel()
{
    Q_Q(QDeclarativeMouseArea);
    if (!pressed)
        return;
    pressed = false;
    dragging = false;
    holdTimer.stop();
    keepMouse = false;
    if (drag)
        drag->setActive(false);
    Q_EMIT q->canceled();
    Q_EMIT q->pressedChanged();
    // Without hover events nothing else would tell that the mouse has left, nor does this say so.
    if (hovered && !(q->acceptHoverEvents() && q->isUnderMouse())) {
        hovered = false;
        Q_EMIT q->hoveredChanged();
    }
}

void QDeclarativeMouseAreaPrivate::followMouse()
{
    Q_Q(QDeclarativeMouseArea);
    QDeclarativeMouseEvent event = mouseEvent();
    Q_EMIT q->mousePositionChanged(&event);
    Q_EMIT q->positionChanged(&event);
}

void QDeclarativeMouseAreaPrivate::startDrag(const QGraphicsSceneMouseEvent *event)
{
    dragStart = event->scenePos();
    if (drag && drag->target())
        dragTargetStart = drag->target()->pos();
}

void QDeclarativeMouseAreaPrivate::dragTo(const QGraphicsSceneMouseEvent *event)
{
    Q_Q(QDeclarativeMouseArea);
    if (!drag || !drag->target())
        return;
    QGraphicsObject *target = drag->target();
    if (!moved)
        dragTargetStart = target->pos();
    const auto toParent = [target](const QPointF &scenePosition) {
        return target->parentItem() ? target->parentItem()->mapFromScene(scenePosition) : scenePosition;
    };
    const QPointF way = toParent(event->scenePos()) - toParent(dragStart);
    if (dragging) {
        drag->setActive(true);
        const QPointF wanted = drag->bounded(dragTargetStart + way);
        if (drag->axis() & QDeclarativeDrag::XAxis)
            target->setX(wanted.x());
        if (drag->axis() & QDeclarativeDrag::YAxis)
            target->setY(wanted.y());
        return;
    }
    if (!drag->isAlong(way) || QDeclarativePointer::isKeptFrom(q))
        return;
    // The way that it took to tell a drag from a click is not made up for.
    dragging = true;
    startDrag(event);
    q->setKeepMouseGrab(true);
}

void QDeclarativeMouseArea::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (!d->enabled) {
        event->ignore();
        return;
    }
    d->moved = false;
    d->dragging = false;
    d->held = false;
    d->saveEvent(event);
    d->startDrag(event);
    setKeepMouseGrab(d->preventStealing);
    d->setHovered(true);
    if (d->isConnected(&QDeclarativeMouseArea::pressAndHold))
        d->holdTimer.start(pressAndHoldDelay, this);
    event->setAccepted(d->press());
}

void QDeclarativeMouseArea::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (!d->enabled) {
        event->ignore();
        return;
    }
    d->saveEvent(event);
    d->setHovered(boundingRect().contains(d->lastPosition));
    d->dragTo(event);
    d->moved = true;
    d->followMouse();
}

void QDeclarativeMouseArea::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    // The press ends with its first button; what is still held then goes without notice.
    if (!d->enabled || !d->pressed) {
        event->ignore();
        return;
    }
    d->saveEvent(event);
    d->holdTimer.stop();
    d->release();
    d->dragging = false;
    d->doubleClick = false;
    if (d->drag)
        d->drag->setActive(false);
    if (!acceptHoverEvents())
        d->setHovered(false);
    setKeepMouseGrab(false);
    // What other buttons do until they are released as well is nobody's.
    if (QDeclarativePointer::grabber(this) == this)
        ungrabMouse();
}

void QDeclarativeMouseArea::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (!d->enabled) {
        event->ignore();
        return;
    }
    if (d->isConnected(&QDeclarativeMouseArea::doubleClicked)) {
        d->doubleClick = true;
        d->held = false;
        d->saveEvent(event);
        QDeclarativeMouseEvent mouse = d->mouseEvent(true);
        Q_EMIT doubleClicked(&mouse);
    }
    mousePressEvent(event);
}

void QDeclarativeMouseArea::hoverEnterEvent(QGraphicsSceneHoverEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (!d->enabled)
        return;
    d->lastPosition = event->pos();
    d->lastModifiers = event->modifiers();
    d->setHovered(true);
    QDeclarativeMouseEvent mouse(d->lastPosition, Qt::NoButton, Qt::NoButton, d->lastModifiers);
    Q_EMIT mousePositionChanged(&mouse);
}

void QDeclarativeMouseArea::hoverMoveEvent(QGraphicsSceneHoverEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (!d->enabled)
        return;
    d->lastPosition = event->pos();
    d->lastModifiers = event->modifiers();
    QDeclarativeMouseEvent mouse(d->lastPosition, Qt::NoButton, Qt::NoButton, d->lastModifiers);
    Q_EMIT mousePositionChanged(&mouse);
    Q_EMIT positionChanged(&mouse);
}

void QDeclarativeMouseArea::hoverLeaveEvent(QGraphicsSceneHoverEvent *)
{
    Q_D(QDeclarativeMouseArea);
    if (d->enabled)
        d->setHovered(false);
}

bool QDeclarativeMouseArea::sceneEvent(QEvent *event)
{
    const bool handled = QDeclarativeItem::sceneEvent(event);
    if (event->type() == QEvent::UngrabMouse)
        d_func()->cancel();
    return handled;
}

/** Lets the area see a mouse event of a child first; tells whether it takes the event from the child. */
bool QDeclarativeMouseAreaPrivate::filterMouse(QGraphicsSceneMouseEvent *event)
{
    Q_Q(QDeclarativeMouseArea);
    QDeclarativeMappedMouseEvent mapped(*event, q);
    // Which buttons it is about is the child's matter.
    mapped.setButton(Qt::NoButton);
    mapped.setButtons(Qt::NoButton);
    mapped.setModifiers(Qt::NoModifier);
    const bool ours = dragging;
    if (q->boundingRect().contains(mapped.pos()) ? QDeclarativePointer::isKeptFrom(q) : !ours) {
        if (event->type() == QEvent::GraphicsSceneMouseRelease)
            cancel();
        return false;
    }
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
        q->mousePressEvent(&mapped);
        break;
    case QEvent::GraphicsSceneMouseMove:
        q->mouseMoveEvent(&mapped);
        break;
    case QEvent::GraphicsSceneMouseRelease:
        // The child has the click.
        doubleClick = true;
        q->mouseReleaseEvent(&mapped);
        break;
    default:
        break;
    }
    // A drag that has just begun is taken over with the next event.
    if (ours && event->type() == QEvent::GraphicsSceneMouseMove)
        QDeclarativePointer::steal(q);
    return ours;
}

bool QDeclarativeMouseArea::sceneEventFilter(QGraphicsItem *child, QEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (!d->enabled || !isVisible() || !d->drag || !d->drag->filterChildren())
        return QDeclarativeItem::sceneEventFilter(child, event);
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
    case QEvent::GraphicsSceneMouseMove:
    case QEvent::GraphicsSceneMouseRelease:
        return d->filterMouse(static_cast<QGraphicsSceneMouseEvent *>(event));
    default:
        return QDeclarativeItem::sceneEventFilter(child, event);
    }
}

void QDeclarativeMouseArea::timerEvent(QTimerEvent *event)
{
    Q_D(QDeclarativeMouseArea);
    if (event->timerId() != d->holdTimer.timerId())
        return;
    d->holdTimer.stop();
    if (!d->pressed || d->dragging || !d->hovered)
        return;
    d->held = true;
    QDeclarativeMouseEvent mouse = d->mouseEvent();
    Q_EMIT pressAndHold(&mouse);
}

void QDeclarativeMouseArea::geometryChanged(const QRectF &now, const QRectF &before)
{
    Q_D(QDeclarativeMouseArea);
    QDeclarativeItem::geometryChanged(now, before);
    // The mouse stays where it is on screen while the area moves.
    if (!isComponentComplete() && now.x() && now.y()) {
        // QML 1 takes the first of both for the distance to a mouse at 0, in an order that is not fixed.
        d->lastPosition = -now.topLeft();
        d->lastScenePosition = mapToScene(d->lastPosition);
    } else if (d->lastScenePosition.isNull()) {
        d->lastScenePosition = mapToScene(d->lastPosition);
    } else if (now.topLeft() != before.topLeft()) {
        d->lastPosition = mapFromScene(d->lastScenePosition);
    }
}

QVariant QDeclarativeMouseArea::itemChange(GraphicsItemChange change, const QVariant &value)
{
    Q_D(QDeclarativeMouseArea);
    if (change == ItemVisibleHasChanged && acceptHoverEvents()
        && d->hovered != (isVisible() && isUnderMouse()))
        d->setHovered(!d->hovered);
    return QDeclarativeItem::itemChange(change, value);
}
