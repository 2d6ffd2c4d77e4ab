#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QGraphicsObject>

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
