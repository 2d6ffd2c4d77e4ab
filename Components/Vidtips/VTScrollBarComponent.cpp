#include "VTScrollBarComponent.h"

#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QScrollBar>

#include <cmath>
#include <limits>

namespace {

constexpr double stepsPerUnit = 100.0;

int wholePart(double value, int lowest, int highest)
{
    // Bounded first: converting what no integer holds is undefined.
    return std::isnan(value) ? 0 : int(qBound(double(lowest), value, double(highest)));
}

int toSteps(float value)
{
    return wholePart(double(value) * stepsPerUnit, std::numeric_limits<int>::min(),
                     std::numeric_limits<int>::max());
}

float fromSteps(int steps)
{
    return float(steps / stepsPerUnit);
}

int toPixels(qreal length)
{
    // Widgets take the largest size itself for "not fixed".
    return wholePart(length, 0, QWIDGETSIZE_MAX - 1);
}

} // namespace

struct VIDTIPS_NO_EXPORT VTScrollBarComponent::Private
{
    QScrollBar *scrollBar;
    QGraphicsProxyWidget *proxy;
};

VTScrollBarComponent::VTScrollBarComponent(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , d(new Private{new QScrollBar, nullptr})
{
    d->proxy = new QGraphicsProxyWidget(this);
    d->proxy->setWidget(d->scrollBar);
    connect(d->scrollBar, &QScrollBar::valueChanged, this, &VTScrollBarComponent::scrollBarPositionChanged);
}

VTScrollBarComponent::~VTScrollBarComponent() = default;

float VTScrollBarComponent::start() const
{
    return fromSteps(d->scrollBar->minimum());
}

void VTScrollBarComponent::setStart(float start)
{
    d->scrollBar->setMinimum(toSteps(start));
    Q_EMIT startChanged();
}

float VTScrollBarComponent::end() const
{
    return fromSteps(d->scrollBar->maximum());
}

void VTScrollBarComponent::setEnd(float end)
{
    d->scrollBar->setMaximum(toSteps(end));
    Q_EMIT endChanged();
}

float VTScrollBarComponent::position() const
{
    return fromSteps(d->scrollBar->value());
}

void VTScrollBarComponent::setPosition(float position)
{
    setPositionExternal(position);
    Q_EMIT positionChanged();
}

bool VTScrollBarComponent::orientHorizontal() const
{
    return d->scrollBar->orientation() == Qt::Horizontal;
}

void VTScrollBarComponent::setOrientHorizontal(bool horizontal)
{
    d->scrollBar->setOrientation(horizontal ? Qt::Horizontal : Qt::Vertical);
    Q_EMIT orientHorizontalChanged();
}

float VTScrollBarComponent::scrollBarWidth() const
{
    return float(orientHorizontal() ? d->scrollBar->height() : d->scrollBar->width());
}

void VTScrollBarComponent::updateDimensions()
{
    d->scrollBar->setFixedSize(toPixels(width()), toPixels(height()));
}

void VTScrollBarComponent::setPositionExternal(float value)
{
    d->scrollBar->setValue(toSteps(value));
}

void VTScrollBarComponent::scrollBarPositionChanged(int)
{
    Q_EMIT positionChanged();
}

QVariant VTScrollBarComponent::itemChange(QGraphicsItem::GraphicsItemChange change, const QVariant &value)
{
    if (change == QGraphicsItem::ItemVisibleChange)
        d->scrollBar->setVisible(value.toBool());
    else if (change == QGraphicsItem::ItemOpacityChange)
        d->scrollBar->setWindowOpacity(value.toDouble());
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the item's own handling is passed over on purpose.
    return QGraphicsItem::itemChange(change, value);
}
