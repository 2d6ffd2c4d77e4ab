#include "qdeclarativepointer_p.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>

QDeclarativeMappedMouseEvent::QDeclarativeMappedMouseEvent(const QGraphicsSceneMouseEvent &event,
                                                           const QGraphicsItem *item)
    : QGraphicsSceneMouseEvent(event.type())
{
    for (int button = Qt::LeftButton; button <= int(Qt::ExtraButton2); button <<= 1) {
        const auto down = Qt::MouseButton(button);
        if (!(event.buttons() & down) && event.button() != down)
            continue;
        setButtonDownPos(down, item->mapFromScene(event.buttonDownScenePos(down)));
        setButtonDownScenePos(down, event.buttonDownScenePos(down));
        setButtonDownScreenPos(down, event.buttonDownScreenPos(down));
    }
    setPos(item->mapFromScene(event.scenePos()));
    setScenePos(event.scenePos());
    setScreenPos(event.screenPos());
    setLastPos(item->mapFromScene(event.lastScenePos()));
    setLastScenePos(event.lastScenePos());
    setLastScreenPos(event.lastScreenPos());
    setButtons(event.buttons());
    setButton(event.button());
    setModifiers(event.modifiers());
    setWidget(event.widget());
    accept();
}

namespace QDeclarativePointer {

QGraphicsSceneMouseEvent *mouseEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
    case QEvent::GraphicsSceneMouseDoubleClick:
    case QEvent::GraphicsSceneMouseMove:
    case QEvent::GraphicsSceneMouseRelease:
        return static_cast<QGraphicsSceneMouseEvent *>(event);
    default:
        return nullptr;
    }
}

bool passesThreshold(qreal distance)
{
    return qAbs(distance) > QApplication::startDragDistance();
}

QGraphicsItem *grabber(const QGraphicsItem *item)
{
    return item->scene() ? item->scene()->mouseGrabberItem() : nullptr;
}

bool isKeptFrom(const QDeclarativeItem *item)
{
    QGraphicsItem *current = grabber(item);
    if (!current || current == item || !current->toGraphicsObject())
        return false;
    const auto *other = qobject_cast<QDeclarativeItem *>(current->toGraphicsObject());
    return other && other->keepMouseGrab();
}

void steal(QDeclarativeItem *item)
{
    QGraphicsItem *current = grabber(item);
    if (current && current != item && !isKeptFrom(item))
        item->grabMouse();
}

void letGo(QDeclarativeItem *item)
{
    if (grabber(item) == item)
        item->ungrabMouse();
}

} // namespace QDeclarativePointer
