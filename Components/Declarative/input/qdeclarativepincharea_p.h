#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>
#include <QtWidgets/QGraphicsObject>

class QTouchEvent;

/**
 * What a pinch handler is told of two fingers; only valid during the handler.
 *
 * Points are in the area's coordinates, angles in degrees. The scale and the rotation are those since the
 * pinch began, so 1 and 0 at first.
 */
class QDeclarativePinchEvent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QPointF center READ center CONSTANT)
    Q_PROPERTY(QPointF startCenter READ startCenter CONSTANT)
    Q_PROPERTY(QPointF previousCenter READ previousCenter CONSTANT)
    Q_PROPERTY(qreal scale READ scale CONSTANT)
    Q_PROPERTY(qreal previousScale READ previousScale CONSTANT)
    Q_PROPERTY(qreal angle READ angle CONSTANT)
    Q_PROPERTY(qreal previousAngle READ previousAngle CONSTANT)
    Q_PROPERTY(qreal rotation READ rotation CONSTANT)
    Q_PROPERTY(QPointF point1 READ point1 CONSTANT)
    Q_PROPERTY(QPointF startPoint1 READ startPoint1 CONSTANT)
    Q_PROPERTY(QPointF point2 READ point2 CONSTANT)
    Q_PROPERTY(QPointF startPoint2 READ startPoint2 CONSTANT)
    Q_PROPERTY(int pointCount READ pointCount CONSTANT)
    Q_PROPERTY(bool accepted READ accepted WRITE setAccepted)

public:
    /** The two fingers at one time. */
    struct State
    {
        QPointF point1;
        QPointF point2;
        qreal scale = 1;
        qreal angle = 0; ///< of the line from the first to the second finger, -180 to 180
        qreal rotation = 0;
        QPointF center() const { return (point1 + point2) / 2; }
    };

    QDeclarativePinchEvent(const State &start, const State &previous, const State &now, int pointCount)
        : m_start(start)
        , m_previous(previous)
        , m_now(now)
        , m_pointCount(pointCount)
    {
    }

    QPointF center() const { return m_now.center(); }
    QPointF startCenter() const { return m_start.center(); }
    QPointF previousCenter() const { return m_previous.center(); }
    qreal scale() const { return m_now.scale; }
    qreal previousScale() const { return m_previous.scale; }
    qreal angle() const { return m_now.angle; }
    qreal previousAngle() const { return m_previous.angle; }
    qreal rotation() const { return m_now.rotation; }
    QPointF point1() const { return m_now.point1; }
    QPointF startPoint1() const { return m_start.point1; }
    QPointF point2() const { return m_now.point2; }
    QPointF startPoint2() const { return m_start.point2; }
    int pointCount() const { return m_pointCount; }
    bool accepted() const { return m_accepted; }
    void setAccepted(bool accepted) { m_accepted = accepted; }

private:
    const State m_start;
    const State m_previous;
    const State m_now;
    const int m_pointCount;
    bool m_accepted = true;
};

/** The "pinch" group of a PinchArea: which item follows the fingers, and how far. */
class QDeclarativePinch : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QGraphicsObject *target READ target WRITE setTarget RESET resetTarget)
    Q_PROPERTY(qreal minimumScale MEMBER m_minimumScale NOTIFY minimumScaleChanged)
    Q_PROPERTY(qreal maximumScale MEMBER m_maximumScale NOTIFY maximumScaleChanged)
    Q_PROPERTY(qreal minimumRotation MEMBER m_minimumRotation NOTIFY minimumRotationChanged)
    Q_PROPERTY(qreal maximumRotation MEMBER m_maximumRotation NOTIFY maximumRotationChanged)
    Q_PROPERTY(Axis dragAxis MEMBER m_dragAxis NOTIFY dragAxisChanged)
    Q_PROPERTY(qreal minimumX MEMBER m_minimumX NOTIFY minimumXChanged)
    Q_PROPERTY(qreal maximumX MEMBER m_maximumX NOTIFY maximumXChanged)
    Q_PROPERTY(qreal minimumY MEMBER m_minimumY NOTIFY minimumYChanged)
    Q_PROPERTY(qreal maximumY MEMBER m_maximumY NOTIFY maximumYChanged)
    Q_PROPERTY(bool active READ active NOTIFY activeChanged)

public:
    enum Axis { NoDrag = 0x00, XAxis = 0x01, YAxis = 0x02, XandYAxis = 0x03 };
    Q_ENUM(Axis)

    explicit QDeclarativePinch(QObject *parent = nullptr);

    QGraphicsObject *target() const { return m_target; }
    void setTarget(QGraphicsObject *);
    void resetTarget() { setTarget(nullptr); }

    /** Whether two fingers move the target now. */
    bool active() const { return m_active; }

    /** Remembers where the target is; the fingers move it from there. */
    void begin();
    /** Moves the target as the fingers moved since begin(): by @p drag in its parent, within the limits. */
    void follow(const QPointF &drag, qreal scale, qreal rotation);
    void end();

Q_SIGNALS:
    void targetChanged();
    void minimumScaleChanged();
    void maximumScaleChanged();
    void minimumRotationChanged();
    void maximumRotationChanged();
    void dragAxisChanged();
    void minimumXChanged();
    void maximumXChanged();
    void minimumYChanged();
    void maximumYChanged();
    void activeChanged();

private:
    void setActive(bool);

    QPointer<QGraphicsObject> m_target;
    qreal m_minimumScale = 1;
    qreal m_maximumScale = 1;
    qreal m_minimumRotation = 0;
    qreal m_maximumRotation = 0;
    qreal m_minimumX;
    qreal m_maximumX;
    qreal m_minimumY;
    qreal m_maximumY;
    QPointF m_startPosition;
    qreal m_startScale = 1;
    qreal m_startRotation = 0;
    Axis m_dragAxis = NoDrag;
    bool m_active = false;
};

/**
 * An invisible item that turns the touches of two fingers into signals and moves an item with them.
 *
 * A pinch begins when one of two fingers has gone further than the distance at which a drag begins. "enabled"
 * is the area's own: a disabled area lets touches and the mouse through to what is below. An enabled one
 * keeps the left button from what is below.
 */
class QDeclarativePinchArea : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QDeclarativePinch *pinch READ pinch CONSTANT)

public:
    explicit QDeclarativePinchArea(QDeclarativeItem *parent = nullptr);
    ~QDeclarativePinchArea() override;

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool);
    QDeclarativePinch *pinch() { return &m_pinch; }

Q_SIGNALS:
    void enabledChanged();
    void pinchStarted(QDeclarativePinchEvent *pinch);
    void pinchUpdated(QDeclarativePinchEvent *pinch);
    void pinchFinished(QDeclarativePinchEvent *pinch);

protected:
    bool sceneEvent(QEvent *) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;

private:
    using State = QDeclarativePinchEvent::State;
    struct Finger
    {
        int id;
        QPointF position;
    };
    enum Phase { NoPinch, TwoFingers, Pinching, Refused };

    void touch(const QTouchEvent &);
    void takeFingers(const QPointF &point1, const QPointF &point2, int pointCount);
    State stateOf(const QPointF &point1, const QPointF &point2) const;
    void start(int pointCount);
    void update(const State &, int pointCount);
    void finish(int pointCount);

    QDeclarativePinch m_pinch;
    QVector<Finger> m_fingers; ///< that are down, by id
    State m_start;
    State m_last;
    Phase m_phase = NoPinch;
    bool m_enabled = true;
};

QML_DECLARE_TYPE(QDeclarativePinchArea)
