#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>

/** What a mouse handler is told of the event; only valid during the handler. */
class QDeclarativeMouseEvent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int x READ x CONSTANT)
    Q_PROPERTY(int y READ y CONSTANT)
    Q_PROPERTY(int button READ button CONSTANT)
    Q_PROPERTY(int buttons READ buttons CONSTANT)
    Q_PROPERTY(int modifiers READ modifiers CONSTANT)
    Q_PROPERTY(bool wasHeld READ wasHeld CONSTANT)
    Q_PROPERTY(bool isClick READ isClick CONSTANT)
    Q_PROPERTY(bool accepted READ isAccepted WRITE setAccepted)

public:
    QDeclarativeMouseEvent(const QPointF &position, Qt::MouseButton button, Qt::MouseButtons buttons,
                           Qt::KeyboardModifiers modifiers, bool isClick = false, bool wasHeld = false);

    int x() const { return m_position.x(); }
    int y() const { return m_position.y(); }
    int button() const { return m_button; }
    int buttons() const { return m_buttons; }
    int modifiers() const { return m_modifiers; }
    bool wasHeld() const { return m_wasHeld; }
    bool isClick() const { return m_isClick; }
    bool isAccepted() const { return m_accepted; }
    void setAccepted(bool accepted) { m_accepted = accepted; }

private:
    const QPointF m_position;
    const Qt::MouseButton m_button;
    const Qt::MouseButtons m_buttons;
    const Qt::KeyboardModifiers m_modifiers;
    const bool m_isClick;
    const bool m_wasHeld;
    bool m_accepted = true;
};

/** The "drag" group of a MouseArea: which item follows the mouse, along which axes and how far. */
class QDeclarativeDrag : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QGraphicsObject *target READ target WRITE setTarget RESET resetTarget NOTIFY targetChanged)
    Q_PROPERTY(Axis axis READ axis WRITE setAxis NOTIFY axisChanged)
    Q_PROPERTY(qreal minimumX READ minimumX WRITE setMinimumX NOTIFY minimumXChanged)
    Q_PROPERTY(qreal maximumX READ maximumX WRITE setMaximumX NOTIFY maximumXChanged)
    Q_PROPERTY(qreal minimumY READ minimumY WRITE setMinimumY NOTIFY minimumYChanged)
    Q_PROPERTY(qreal maximumY READ maximumY WRITE setMaximumY NOTIFY maximumYChanged)
    Q_PROPERTY(bool active READ active NOTIFY activeChanged)
    Q_PROPERTY(bool filterChildren READ filterChildren WRITE setFilterChildren NOTIFY filterChildrenChanged)

public:
    enum Axis { XAxis = 0x01, YAxis = 0x02, XandYAxis = 0x03 };
    Q_ENUM(Axis)

    explicit QDeclarativeDrag(QObject *parent = nullptr);

    QGraphicsObject *target() const { return m_target; }
    void setTarget(QGraphicsObject *);
    void resetTarget() { setTarget(nullptr); }
    Axis axis() const { return m_axis; }
    void setAxis(Axis);
    qreal minimumX() const { return m_minimumX; }
    void setMinimumX(qreal);
    qreal maximumX() const { return m_maximumX; }
    void setMaximumX(qreal);
    qreal minimumY() const { return m_minimumY; }
    void setMinimumY(qreal);
    qreal maximumY() const { return m_maximumY; }
    void setMaximumY(qreal);
    bool active() const { return m_active; }
    void setActive(bool);
    bool filterChildren() const { return m_filterChildren; }
    void setFilterChildren(bool);

    /** Whether a drag begins with the mouse moved by @p way: far enough along an axis. */
    bool isAlong(const QPointF &way) const;

    /** @p position held within the limits. */
    QPointF bounded(const QPointF &position) const;

Q_SIGNALS:
    void targetChanged();
    void axisChanged();
    void minimumXChanged();
    void maximumXChanged();
    void minimumYChanged();
    void maximumYChanged();
    void activeChanged();
    void filterChildrenChanged();

private:
    QPointer<QGraphicsObject> m_target;
    qreal m_minimumX;
    qreal m_maximumX;
    qreal m_minimumY;
    qreal m_maximumY;
    Axis m_axis = XandYAxis;
    bool m_active = false;
    bool m_filterChildren = false;
};

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
