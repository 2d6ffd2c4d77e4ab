#include "VTStyledRectangleComponent.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QPalette>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolTip>

namespace Vidtips {

namespace {

struct StyleElement
{
    QLatin1String name;
    int type;
};

const StyleElement styleElements[] = {
    {QLatin1String("PE_Widget"), QStyle::PE_Widget},
    {QLatin1String("PE_Frame"), QStyle::PE_Frame},
};

} // namespace

struct VIDTIPS_NO_EXPORT VTStyledRectangleComponent::Private
{
    int elementType = styleElements[0].type;
    QString element = styleElements[0].name;
    bool toolTipStyle = false;
};

VTStyledRectangleComponent::VTStyledRectangleComponent(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , d(new Private)
{
    setFlag(QGraphicsItem::ItemHasNoContents, false);
}

VTStyledRectangleComponent::~VTStyledRectangleComponent() = default;

QString VTStyledRectangleComponent::element() const
{
    return d->element;
}

void VTStyledRectangleComponent::setElement(const QString &element)
{
    for (const StyleElement &known : styleElements) {
        if (element == known.name) {
            d->elementType = known.type;
            d->element = element;
            Q_EMIT elementChanged();
        }
    }
}

int VTStyledRectangleComponent::elementType() const
{
    return d->elementType;
}

QColor VTStyledRectangleComponent::textColor() const
{
    if (d->toolTipStyle)
        return Qt::black;
    return QGuiApplication::palette().color(QPalette::Active, QPalette::WindowText);
}

bool VTStyledRectangleComponent::toolTipStyle() const
{
    return d->toolTipStyle;
}

void VTStyledRectangleComponent::setToolTipStyle(bool toolTipStyle)
{
    d->toolTipStyle = toolTipStyle;
    Q_EMIT toolTipStyleChanged();
    Q_EMIT textColorChanged();
}

void VTStyledRectangleComponent::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (!painter)
        return;
    QRectF rect = boundingRect();
    if (d->toolTipStyle) {
        painter->setBrush(QToolTip::palette().brush(QPalette::Current, QPalette::ToolTipBase));
    } else {
        if (QGraphicsItem::parentItem())
            return;
        rect.adjust(-1, -1, 1, 1);
        painter->setBrush(QGuiApplication::palette().color(QPalette::Active, QPalette::Window));
    }
    // Content may ask for any size; whole numbers end somewhere beyond the largest widget.
    const QRectF limits(-QWIDGETSIZE_MAX, -QWIDGETSIZE_MAX, 2.0 * QWIDGETSIZE_MAX, 2.0 * QWIDGETSIZE_MAX);
    painter->drawRect(rect.intersected(limits).toRect());
}

} // namespace Vidtips
