#include "qdeclarativedrag_p.h"

#include "qdeclarativepointer_p.h"

#include <limits>

QDeclarativeDrag::QDeclarativeDrag(QObject *parent)
    : QObject(parent)
    , m_minimumX(-std::numeric_limits<float>::max())
    , m_maximumX(std::numeric_limits<float>::max())
    , m_minimumY(-std::numeric_limits<float>::max())
    , m_maximumY(std::numeric_limits<float>::max())
{
}

void QDeclarativeDrag::setTarget(QGraphicsObject *target)
{
    if (target == m_target)
        return;
    m_target = target;
    Q_EMIT targetChanged();
}

void QDeclarativeDrag::setAxis(Axis axis)
{
    if (axis == m_axis)
        return;
    m_axis = axis;
    Q_EMIT axisChanged();
}

void QDeclarativeDrag::setMinimumX(qreal limit)
{
    if (limit == m_minimumX)
        return;
    m_minimumX = limit;
    Q_EMIT minimumXChanged();
}

void QDeclarativeDrag::setMaximumX(qreal limit)
{
    if (limit == m_maximumX)
        return;
    m_maximumX = limit;
    Q_EMIT maximumXChanged();
}

void QDeclarativeDrag::setMinimumY(qreal limit)
{
    if (limit == m_minimumY)
        return;
    m_minimumY = limit;
    Q_EMIT minimumYChanged();
}

void QDeclarativeDrag::setMaximumY(qreal limit)
{
    if (limit == m_maximumY)
        return;
    m_maximumY = limit;
    Q_EMIT maximumYChanged();
}

void QDeclarativeDrag::setActive(bool active)
{
    if (active == m_active)
        return;
    m_active = active;
    Q_EMIT activeChanged();
}

void QDeclarativeDrag::setFilterChildren(bool filter)
{
    if (filter == m_filterChildren)
        return;
    m_filterChildren = filter;
    Q_EMIT filterChildrenChanged();
}

bool QDeclarativeDrag::isAlong(const QPointF &way) const
{
    return ((m_axis & XAxis) && QDeclarativePointer::passesThreshold(way.x()))
        || ((m_axis & YAxis) && QDeclarativePointer::passesThreshold(way.y()));
}

QPointF QDeclarativeDrag::bounded(const QPointF &position) const
{
    return QPointF(qMax(m_minimumX, qMin(position.x(), m_maximumX)),
                   qMax(m_minimumY, qMin(position.y(), m_maximumY)));
}
