#pragma once

#include "item/qdeclarativeitem.h"
#include "qdeclarativedrag_p.h"
#include "qdeclarativemouseevent_p.h"

class QDeclarativeMouseAreaPrivate;

/**
 * An invisible item that turns mouse events into signals.
 *
 * "enabled" is the area's own: a disabled area lets events through to what is below, while a disabled item
 * takes and drops them.
 */
class QDeclarativeMouseArea : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(qreal mouseX READ mouseX NOTIFY mousePositionChanged)
    Q_PROPERTY(qreal mouseY READ mouseY NOTIFY mousePositionChanged)
    Q_PROPERTY(bool containsMouse READ hovered NOTIFY hoveredChanged)
    Q_PROPERTY(bool pressed READ pressed NOTIFY pressedChanged)
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(Qt::MouseButtons pressedButtons READ pressedButtons NOTIFY pressedChanged)
    Q_PROPERTY(Qt::MouseButtons acceptedButtons READ acceptedButtons WRITE setAcceptedButtons NOTIFY
                   acceptedButtonsChanged)
    Q_PROPERTY(bool hoverEnabled READ hoverEnabled WRITE setHoverEnabled NOTIFY hoverEnabledChanged)
    Q_PROPERTY(QDeclarativeDrag *drag READ drag CONSTANT)
    Q_PROPERTY(bool preventStealing READ preventStealing WRITE setPreventStealing NOTIFY
                   preventStealingChanged REVISION 1)

public:
    explicit QDeclarativeMouseArea(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeMouseArea() override;

    /** Where the mouse was last seen by the area, in its coordinates. */
    qreal mouseX() const;
    qreal mouseY() const;
    bool hovered() const;
    bool pressed() const;
    bool isEnabled() const;
    void setEnabled(bool);
    Qt::MouseButtons pressedButtons() const;
    Qt::MouseButtons acceptedButtons() const;
    void setAcceptedButtons(Qt::MouseButtons);
    bool hoverEnabled() const;
    void setHoverEnabled(bool);
    QDeclarativeDrag *drag();
    bool preventStealing() const;
    void setPreventStealing(bool);

Q_SIGNALS:
    void hoveredChanged();
    void pressedChanged();
    void enabledChanged();
    void acceptedButtonsChanged();
    void hoverEnabledChanged();
    Q_REVISION(1) void preventStealingChanged();
    void mousePositionChanged(QDeclarativeMouseEvent *mouse);

    void positionChanged(QDeclarativeMouseEvent *mouse);
    void pressed(QDeclarativeMouseEvent *mouse);
    void pressAndHold(QDeclarativeMouseEvent *mouse);
    void released(QDeclarativeMouseEvent *mouse);
    void clicked(QDeclarativeMouseEvent *mouse);
    void doubleClicked(QDeclarativeMouseEvent *mouse);
    void entered();
    void exited();
    void canceled();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *) override;
    void hoverEnterEvent(QGraphicsSceneHoverEvent *) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent *) override;
    void hoverLeaveEvent(QGraphicsSceneHoverEvent *) override;
    bool sceneEvent(QEvent *) override;
    bool sceneEventFilter(QGraphicsItem *, QEvent *) override;
    void timerEvent(QTimerEvent *) override;
    void geometryChanged(const QRectF &now, const QRectF &before) override;
    QVariant itemChange(GraphicsItemChange, const QVariant &) override;

private:
    Q_DISABLE_COPY(QDeclarativeMouseArea)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeMouseArea)
};

QML_DECLARE_TYPE(QDeclarativeMouseArea)
