#include "qdeclarativepincharea_p.h"

#include "qdeclarativepointer_p.h"

#include <QtCore/QLineF>
#include <QtGui/QTouchEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <algorithm>
#include <limits>

/** As single precision has it, which is what content reads. */
constexpr qreal unlimited = std::numeric_limits<float>::max();

static qreal bounded(qreal value, qreal minimum, qreal maximum)
{
    return qMin(qMax(value, minimum), maximum);
}

QDeclarativePinch::QDeclarativePinch(QObject *parent)
    : QObject(parent)
    , m_minimumX(-unlimited)
    , m_maximumX(unlimited)
    , m_minimumY(-unlimited)
    , m_maximumY(unlimited)
{
}

void QDeclarativePinch::setTarget(QGraphicsObject *target)
{
    if (target == m_target)
        return;
    m_target = target;
    Q_EMIT targetChanged();
}

void QDeclarativePinch::setActive(bool active)
{
    if (active == m_active)
        return;
    m_active = active;
    Q_EMIT activeChanged();
}

void QDeclarativePinch::begin()
{
    if (m_target) {
        m_startPosition = m_target->pos();
        m_startScale = m_target->scale();
        m_startRotation = m_target->rotation();
    }
    setActive(true);
}

void QDeclarativePinch::follow(const QPointF &drag, qreal scale, qreal rotation)
{
    if (!m_target)
        return;
    m_target->setScale(bounded(m_startScale * scale, m_minimumScale, m_maximumScale));
    if (m_dragAxis & XAxis)
        m_target->setX(bounded(m_startPosition.x() + drag.x(), m_minimumX, m_maximumX));
    if (m_dragAxis & YAxis)
        m_target->setY(bounded(m_startPosition.y() + drag.y(), m_minimumY, m_maximumY));
    m_target->setRotation(bounded(m_startRotation + rotation, m_minimumRotation, m_maximumRotation));
}

void QDeclarativePinch::end()
{
    setActive(false);
}

QDeclarativePinchArea::QDeclarativePinchArea(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
{
    setAcceptTouchEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton);
}

QDeclarativePinchArea::~QDeclarativePinchArea() = default;

void QDeclarativePinchArea::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    Q_EMIT enabledChanged();
}

bool QDeclarativePinchArea::sceneEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
        if (!m_enabled)
            break;
        Q_FALLTHROUGH();
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        touch(*static_cast<QTouchEvent *>(event));
        event->accept();
        return true;
    case QEvent::TouchCancel:
        m_fingers.clear();
        finish(0);
        return true;
    default:
        break;
    }
    return QDeclarativeItem::sceneEvent(event);
}

void QDeclarativePinchArea::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    event->setAccepted(m_enabled);
}

/** Fingers that came down over different items begin in events of their own. */
void QDeclarativePinchArea::touch(const QTouchEvent &event)
{
    for (const QTouchEvent::TouchPoint &point : event.touchPoints()) {
        const auto place = std::lower_bound(m_fingers.begin(), m_fingers.end(), point.id(),
                                            [](const Finger &finger, int id) { return finger.id < id; });
        const bool isKnown = place != m_fingers.end() && place->id == point.id();
        if (point.state() != Qt::TouchPointReleased && isKnown)
            place->position = point.pos();
        else if (point.state() != Qt::TouchPointReleased)
            m_fingers.insert(place, {point.id(), point.pos()});
        else if (isKnown)
            m_fingers.erase(place);
    }
    if (m_fingers.count() < 2)
        finish(m_fingers.count());
    else
        takeFingers(m_fingers.at(0).position, m_fingers.at(1).position, m_fingers.count());
}

void QDeclarativePinchArea::takeFingers(const QPointF &point1, const QPointF &point2, int pointCount)
{
    const State now = stateOf(point1, point2);
    if (m_phase == NoPinch) {
        m_start = m_last = now;
        m_phase = TwoFingers;
        return;
    }
    if (m_phase == TwoFingers) {
        const QPointF first = point1 - m_start.point1, second = point2 - m_start.point2;
        for (qreal distance : {first.x(), first.y(), second.x(), second.y()}) {
            if (!QDeclarativePointer::passesThreshold(distance))
                continue;
            // It counts from here on, so that the target does not jump by the threshold.
            m_start = m_last = {point1, point2, 1, now.angle, 0};
            start(pointCount);
            return;
        }
    } else if (m_phase == Pinching) {
        update(now, pointCount);
    }
}

QDeclarativePinchArea::State QDeclarativePinchArea::stateOf(const QPointF &point1,
                                                            const QPointF &point2) const
{
    State state{point1, point2, 1, QLineF(point1, point2).angle(), 0};
    if (state.angle > 180)
        state.angle -= 360;
    if (m_phase == NoPinch)
        return state;
    const qreal length = QLineF(m_start.point1, m_start.point2).length();
    if (length > 0)
        state.scale = QLineF(point1, point2).length() / length;
    // The screen's angles grow the other way round than an item's rotation.
    qreal turn = m_last.angle - state.angle;
    if (turn > 180)
        turn -= 360;
    else if (turn < -180)
        turn += 360;
    state.rotation = m_last.rotation + turn;
    return state;
}

void QDeclarativePinchArea::start(int pointCount)
{
    QDeclarativePinchEvent event(m_start, m_last, m_last, pointCount);
    Q_EMIT pinchStarted(&event);
    if (!event.accepted()) {
        m_phase = Refused;
        return;
    }
    m_phase = Pinching;
    m_pinch.begin();
}

void QDeclarativePinchArea::update(const State &now, int pointCount)
{
    QDeclarativePinchEvent event(m_start, m_last, now, pointCount);
    m_last = now;
    Q_EMIT pinchUpdated(&event);
    QPointF drag = now.center() - m_start.center();
    if (m_pinch.target() && m_pinch.target()->parentItem()) {
        const QGraphicsItem *parent = m_pinch.target()->parentItem();
        drag = parent->mapFromItem(this, now.center()) - parent->mapFromItem(this, m_start.center());
    }
    m_pinch.follow(drag, now.scale, now.rotation);
}

void QDeclarativePinchArea::finish(int pointCount)
{
    const Phase before = m_phase;
    m_phase = NoPinch;
    if (before != Pinching)
        return;
    QDeclarativePinchEvent event(m_start, m_last, m_last, pointCount);
    m_pinch.end();
    Q_EMIT pinchFinished(&event);
}
