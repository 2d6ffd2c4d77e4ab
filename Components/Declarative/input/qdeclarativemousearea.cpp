#include "qdeclarativemousearea_p.h"

#include "qdeclarativemousearea_p_p.h"

QDeclarativeMouseArea::QDeclarativeMouseArea(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativeMouseAreaPrivate, parent)
{
    setAcceptedMouseButtons(Qt::LeftButton);
    setFiltersChildEvents(true);
}

QDeclarativeMouseArea::~QDeclarativeMouseArea() = default;

qreal QDeclarativeMouseArea::mouseX() const
{
    return d_func()->lastPosition.x();
}

qreal QDeclarativeMouseArea::mouseY() const
{
    return d_func()->lastPosition.y();
}

bool QDeclarativeMouseArea::hovered() const
{
    return d_func()->hovered;
}

bool QDeclarativeMouseArea::pressed() const
{
    return d_func()->pressed;
}

bool QDeclarativeMouseArea::isEnabled() const
{
    return d_func()->enabled;
}

void QDeclarativeMouseArea::setEnabled(bool enabled)
{
    Q_D(QDeclarativeMouseArea);
    if (enabled == d->enabled)
        return;
    d->enabled = enabled;
    Q_EMIT enabledChanged();
}

Qt::MouseButtons QDeclarativeMouseArea::pressedButtons() const
{
    return d_func()->lastButtons;
}

Qt::MouseButtons QDeclarativeMouseArea::acceptedButtons() const
{
    return acceptedMouseButtons();
}

void QDeclarativeMouseArea::setAcceptedButtons(Qt::MouseButtons buttons)
{
    if (buttons == acceptedMouseButtons())
        return;
    setAcceptedMouseButtons(buttons);
    Q_EMIT acceptedButtonsChanged();
}

bool QDeclarativeMouseArea::hoverEnabled() const
{
    return acceptHoverEvents();
}

void QDeclarativeMouseArea::setHoverEnabled(bool enabled)
{
    Q_D(QDeclarativeMouseArea);
    if (enabled == acceptHoverEvents())
        return;
    setAcceptHoverEvents(enabled);
    Q_EMIT hoverEnabledChanged();
    if (d->hovered != isUnderMouse() && !d->pressed)
        d->setHovered(!d->hovered);
}

QDeclarativeDrag *QDeclarativeMouseArea::drag()
{
    Q_D(QDeclarativeMouseArea);
    if (!d->drag)
        d->drag = new QDeclarativeDrag(this);
    return d->drag;
}

bool QDeclarativeMouseArea::preventStealing() const
{
    return d_func()->preventStealing;
}

void QDeclarativeMouseArea::setPreventStealing(bool prevent)
{
    Q_D(QDeclarativeMouseArea);
    if (prevent == d->preventStealing)
        return;
    d->preventStealing = prevent;
    if (d->pressed)
        setKeepMouseGrab(prevent || d->dragging);
    Q_EMIT preventStealingChanged();
}
