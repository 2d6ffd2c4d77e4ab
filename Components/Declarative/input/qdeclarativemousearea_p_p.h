#pragma once

#include "item/qdeclarativeitem_p.h"
#include "qdeclarativemousearea_p.h"

#include <QtCore/QBasicTimer>

class QDeclarativeMouseAreaPrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeMouseArea)

public:
    void saveEvent(const QGraphicsSceneMouseEvent *);
    QDeclarativeMouseEvent mouseEvent(bool isClick = false) const;
    void setHovered(bool);
    bool press();
    void release();
    void cancel();
    void followMouse();
    void startDrag(const QGraphicsSceneMouseEvent *);
    void dragTo(const QGraphicsSceneMouseEvent *);
    bool filterMouse(QGraphicsSceneMouseEvent *);
    bool isConnected(void (QDeclarativeMouseArea::*signal)(QDeclarativeMouseEvent *)) const;

    QDeclarativeDrag *drag = nullptr;
    QPointF lastPosition;
    QPointF lastScenePosition;
    QPointF dragStart;
    QPointF dragTargetStart;
    QBasicTimer holdTimer;
    Qt::KeyboardModifiers lastModifiers = Qt::NoModifier;
    Qt::MouseButtons lastButtons = Qt::NoButton;
    Qt::MouseButton lastButton = Qt::NoButton;
    bool enabled = true;
    bool hovered = false;
    bool pressed = false;
    bool held = false;
    bool doubleClick = false;
    bool dragging = false;
    bool moved = false;
    bool preventStealing = false;
};
