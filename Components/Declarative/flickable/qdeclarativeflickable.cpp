#include "qdeclarativeflickable_p.h"

#include "input/qdeclarativepointer_p.h"
#include "qdeclarativeflickable_p_p.h"

#include <QtWidgets/QGraphicsSceneEvent>

QDeclarativeFlickableVisibleArea::QDeclarativeFlickableVisibleArea(QDeclarativeFlickable *parent)
    : QObject(parent)
    , m_flickable(parent)
{
}

void QDeclarativeFlickableVisibleArea::update()
{
    const QDeclarativeFlickablePrivate *d = m_flickable->d_func();
    // Where there is no content at all in a direction this divides by zero, and so it is reported.
    const auto ratios = [d](const QDeclarativeFlickableAxis &axis) {
        const qreal start = d->travelStart(axis);
        const qreal whole = d->travelEnd(axis) - start + d->viewSize(axis);
        return QPair<qreal, qreal>((axis.value() - start) / whole, d->viewSize(axis) / whole);
    };
    const auto assign = [this](qreal *member, qreal value,
                               void (QDeclarativeFlickableVisibleArea::*changed)(qreal)) {
        if (*member == value || (qIsNaN(*member) && qIsNaN(value)))
            return;
        *member = value;
        Q_EMIT(this->*changed)(value);
    };
    const auto across = ratios(d->x);
    const auto down = ratios(d->y);
    assign(&m_widthRatio, across.second, &QDeclarativeFlickableVisibleArea::widthRatioChanged);
    assign(&m_xPosition, across.first, &QDeclarativeFlickableVisibleArea::xPositionChanged);
    assign(&m_heightRatio, down.second, &QDeclarativeFlickableVisibleArea::heightRatioChanged);
    assign(&m_yPosition, down.first, &QDeclarativeFlickableVisibleArea::yPositionChanged);
}

QDeclarativeFlickable::QDeclarativeFlickable(QDeclarativeItem *parent)
    : QDeclarativeFlickable(*new QDeclarativeFlickablePrivate, parent)
{
}

QDeclarativeFlickable::QDeclarativeFlickable(QDeclarativeFlickablePrivate &dd, QDeclarativeItem *parent)
    : QDeclarativeItem(dd, parent)
{
    d_func()->init();
    setAcceptedMouseButtons(Qt::LeftButton);
    setFiltersChildEvents(true);
}

QDeclarativeFlickable::~QDeclarativeFlickable()
{
    d_func()->timeLine.clear();
}

QQmlListProperty<QObject> QDeclarativeFlickable::flickableData()
{
    return QDeclarativeItemPrivate::get(d_func()->content)->data();
}

QQmlListProperty<QGraphicsObject> QDeclarativeFlickable::flickableChildren()
{
    return QDeclarativeItemPrivate::get(d_func()->content)->children();
}

QDeclarativeItem *QDeclarativeFlickable::contentItem() const
{
    return d_func()->content;
}

qreal QDeclarativeFlickable::contentWidth() const
{
    return d_func()->x.contentSize;
}

void QDeclarativeFlickable::setContentWidth(qreal width)
{
    Q_D(QDeclarativeFlickable);
    d->setContentSize(d->x, width);
}

qreal QDeclarativeFlickable::contentHeight() const
{
    return d_func()->y.contentSize;
}

void QDeclarativeFlickable::setContentHeight(qreal height)
{
    Q_D(QDeclarativeFlickable);
    d->setContentSize(d->y, height);
}

qreal QDeclarativeFlickable::contentX() const
{
    return d_func()->x.wholeValue();
}

void QDeclarativeFlickable::setContentX(qreal value)
{
    Q_D(QDeclarativeFlickable);
    d->moveTo(d->x, value);
}

qreal QDeclarativeFlickable::contentY() const
{
    return d_func()->y.wholeValue();
}

void QDeclarativeFlickable::setContentY(qreal value)
{
    Q_D(QDeclarativeFlickable);
    d->moveTo(d->y, value);
}

qreal QDeclarativeFlickable::horizontalVelocity() const
{
    return d_func()->x.velocity;
}

qreal QDeclarativeFlickable::verticalVelocity() const
{
    return d_func()->y.velocity;
}

QDeclarativeFlickable::BoundsBehavior QDeclarativeFlickable::boundsBehavior() const
{
    return d_func()->boundsBehavior;
}

void QDeclarativeFlickable::setBoundsBehavior(BoundsBehavior behavior)
{
    Q_D(QDeclarativeFlickable);
    if (behavior == d->boundsBehavior)
        return;
    d->boundsBehavior = behavior;
    Q_EMIT boundsBehaviorChanged();
}

qreal QDeclarativeFlickable::maximumFlickVelocity() const
{
    return d_func()->maximumVelocity;
}

void QDeclarativeFlickable::setMaximumFlickVelocity(qreal velocity)
{
    Q_D(QDeclarativeFlickable);
    if (velocity == d->maximumVelocity)
        return;
    d->maximumVelocity = velocity;
    Q_EMIT maximumFlickVelocityChanged();
}

qreal QDeclarativeFlickable::flickDeceleration() const
{
    return d_func()->deceleration;
}

void QDeclarativeFlickable::setFlickDeceleration(qreal deceleration)
{
    Q_D(QDeclarativeFlickable);
    if (deceleration == d->deceleration)
        return;
    d->deceleration = deceleration;
    Q_EMIT flickDecelerationChanged();
}

bool QDeclarativeFlickable::isMoving() const
{
    return isMovingHorizontally() || isMovingVertically();
}

bool QDeclarativeFlickable::isMovingHorizontally() const
{
    return d_func()->x.moving;
}

bool QDeclarativeFlickable::isMovingVertically() const
{
    return d_func()->y.moving;
}

bool QDeclarativeFlickable::isFlicking() const
{
    return isFlickingHorizontally() || isFlickingVertically();
}

bool QDeclarativeFlickable::isFlickingHorizontally() const
{
    return d_func()->x.flicking;
}

bool QDeclarativeFlickable::isFlickingVertically() const
{
    return d_func()->y.flicking;
}

QDeclarativeFlickable::FlickableDirection QDeclarativeFlickable::flickableDirection() const
{
    return d_func()->direction;
}

void QDeclarativeFlickable::setFlickableDirection(FlickableDirection direction)
{
    Q_D(QDeclarativeFlickable);
    if (direction == d->direction)
        return;
    d->direction = direction;
    Q_EMIT flickableDirectionChanged();
}

bool QDeclarativeFlickable::isInteractive() const
{
    return d_func()->interactive;
}

void QDeclarativeFlickable::setInteractive(bool interactive)
{
    Q_D(QDeclarativeFlickable);
    if (interactive == d->interactive)
        return;
    d->interactive = interactive;
    if (!interactive && isMoving()) {
        d->timeLine.clear();
        d->movementEnding();
    }
    Q_EMIT interactiveChanged();
}

int QDeclarativeFlickable::pressDelay() const
{
    return d_func()->pressDelay;
}

void QDeclarativeFlickable::setPressDelay(int delay)
{
    Q_D(QDeclarativeFlickable);
    if (delay == d->pressDelay)
        return;
    d->pressDelay = delay;
    Q_EMIT pressDelayChanged();
}

bool QDeclarativeFlickable::isAtXEnd() const
{
    return d_func()->x.atEnd;
}

bool QDeclarativeFlickable::isAtYEnd() const
{
    return d_func()->y.atEnd;
}

bool QDeclarativeFlickable::isAtXBeginning() const
{
    return d_func()->x.atBeginning;
}

bool QDeclarativeFlickable::isAtYBeginning() const
{
    return d_func()->y.atBeginning;
}

QDeclarativeFlickableVisibleArea *QDeclarativeFlickable::visibleArea()
{
    Q_D(QDeclarativeFlickable);
    if (!d->visibleArea)
        d->visibleArea = new QDeclarativeFlickableVisibleArea(this);
    return d->visibleArea;
}

void QDeclarativeFlickable::resizeContent(qreal w, qreal h, QPointF center)
{
    Q_D(QDeclarativeFlickable);
    const auto resize = [d](QDeclarativeFlickableAxis &axis, qreal size, qreal centre) {
        const qreal before = axis.contentSize;
        if (size == before)
            return;
        axis.contentSize = size;
        d->placeContent();
        if (axis.orientation == Qt::Horizontal)
            Q_EMIT d->q_func()->contentWidthChanged();
        else
            Q_EMIT d->q_func()->contentHeightChanged();
        if (before != 0)
            d->moveTo(axis, axis.wholeValue() + centre * size / before - centre);
    };
    resize(d->x, w, center.x());
    resize(d->y, h, center.y());
    d->updateBounds();
}

void QDeclarativeFlickable::returnToBounds()
{
    Q_D(QDeclarativeFlickable);
    d->fixup(d->x, QDeclarativeFlickablePrivate::Animated);
    d->fixup(d->y, QDeclarativeFlickablePrivate::Animated);
}

void QDeclarativeFlickable::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeFlickable);
    if (!d->interactive) {
        event->ignore();
        return;
    }
    if (!d->isPressed)
        d->press(*event);
    event->accept();
}

void QDeclarativeFlickable::mouseMoveEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeFlickable);
    if (!d->interactive) {
        event->ignore();
        return;
    }
    d->move(*event);
    event->accept();
}

void QDeclarativeFlickable::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    Q_D(QDeclarativeFlickable);
    d->release();
    event->accept();
    QDeclarativePointer::letGo(this);
}

void QDeclarativeFlickable::wheelEvent(QGraphicsSceneWheelEvent *event)
{
    Q_D(QDeclarativeFlickable);
    auto &axis = event->orientation() == Qt::Vertical ? d->y : d->x;
    event->setAccepted(d->interactive && d->wheel(axis, event->delta()));
}

bool QDeclarativeFlickable::sceneEvent(QEvent *event)
{
    if (event->type() == QEvent::UngrabMouse)
        d_func()->cancel();
    return QDeclarativeItem::sceneEvent(event);
}

bool QDeclarativeFlickable::sceneEventFilter(QGraphicsItem *child, QEvent *event)
{
    Q_D(QDeclarativeFlickable);
    if (!isVisible() || !d->interactive || d->replaying)
        return QDeclarativeItem::sceneEventFilter(child, event);
    if (auto *mouse = QDeclarativePointer::mouseEvent(event))
        return d->filterMouse(child, mouse);
    if (event->type() == QEvent::UngrabMouse && !d->grabbing)
        d->cancel();
    return QDeclarativeItem::sceneEventFilter(child, event);
}

void QDeclarativeFlickable::timerEvent(QTimerEvent *event)
{
    Q_D(QDeclarativeFlickable);
    if (event->timerId() == d->delayedPressTimer.timerId())
        d->replayPress();
}

void QDeclarativeFlickable::geometryChanged(const QRectF &now, const QRectF &before)
{
    Q_D(QDeclarativeFlickable);
    QDeclarativeItem::geometryChanged(now, before);
    if (now.size() == before.size())
        return;
    if (now.width() != before.width())
        d->viewResized(d->x);
    if (now.height() != before.height())
        d->viewResized(d->y);
    d->updateBounds();
}
