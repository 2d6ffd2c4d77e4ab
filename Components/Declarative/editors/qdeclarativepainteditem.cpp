#include "qdeclarativepainteditem_p.h"

#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

QDeclarativePaintedItem::QDeclarativePaintedItem(QDeclarativePaintedItemPrivate &dd, QDeclarativeItem *parent)
    : QDeclarativeItem(dd, parent)
{
    d_func()->enablePainting();
}

QDeclarativePaintedItem::~QDeclarativePaintedItem() = default;

QSize QDeclarativePaintedItem::contentsSize() const
{
    return d_func()->contentsSize;
}

void QDeclarativePaintedItem::setContentsSize(const QSize &size)
{
    Q_D(QDeclarativePaintedItem);
    if (size == d->contentsSize)
        return;
    prepareGeometryChange();
    d->contentsSize = size;
    update();
    Q_EMIT contentsSizeChanged();
}

QColor QDeclarativePaintedItem::fillColor() const
{
    return d_func()->fillColor;
}

void QDeclarativePaintedItem::setFillColor(const QColor &color)
{
    Q_D(QDeclarativePaintedItem);
    if (color == d->fillColor)
        return;
    d->fillColor = color;
    update();
    Q_EMIT fillColorChanged();
}

int QDeclarativePaintedItem::pixelCacheSize() const
{
    return d_func()->pixelCacheSize;
}

void QDeclarativePaintedItem::setPixelCacheSize(int pixels)
{
    Q_D(QDeclarativePaintedItem);
    d->pixelCacheSize = pixels;
}

bool QDeclarativePaintedItem::smoothCache() const
{
    return d_func()->smoothCache;
}

void QDeclarativePaintedItem::setSmoothCache(bool smooth)
{
    Q_D(QDeclarativePaintedItem);
    d->smoothCache = smooth;
}

qreal QDeclarativePaintedItem::contentsScale() const
{
    return d_func()->contentsScale;
}

void QDeclarativePaintedItem::setContentsScale(qreal scale)
{
    Q_D(QDeclarativePaintedItem);
    if (scale == d->contentsScale || !(scale > 0))
        return;
    prepareGeometryChange();
    d->contentsScale = scale;
    update();
    Q_EMIT contentsScaleChanged();
}

QRectF QDeclarativePaintedItem::boundingRect() const
{
    Q_D(const QDeclarativePaintedItem);
    const QRectF item = QDeclarativeItem::boundingRect();
    if (clip())
        return item;
    const QRectF drawn = drawnRect() | QRectF(QPointF(), d->contentsSize);
    return item | QRectF(drawn.topLeft() * d->contentsScale, drawn.size() * d->contentsScale);
}

void QDeclarativePaintedItem::updateContents(const QRectF &rect)
{
    Q_D(QDeclarativePaintedItem);
    update(QRectF(rect.topLeft() * d->contentsScale, rect.size() * d->contentsScale));
}

void QDeclarativePaintedItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    Q_D(QDeclarativePaintedItem);
    painter->save();
    if (smooth())
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (clip())
        painter->setClipRect(QDeclarativeItem::boundingRect(), Qt::IntersectClip);
    if (d->fillColor.alpha() > 0)
        painter->fillRect(QDeclarativeItem::boundingRect(), d->fillColor);
    if (d->contentsScale != 1)
        painter->scale(d->contentsScale, d->contentsScale);
    const QRectF exposed = option ? option->exposedRect : boundingRect();
    drawContents(painter, QRectF(exposed.topLeft() / d->contentsScale, exposed.size() / d->contentsScale));
    painter->restore();
}

QVariant QDeclarativePaintedItem::itemChange(GraphicsItemChange change, const QVariant &value)
{
    // Clipping decides whether the item reaches beyond its own rectangle.
    if (change == ItemFlagsChange)
        prepareGeometryChange();
    return QDeclarativeItem::itemChange(change, value);
}

#include "moc_qdeclarativepainteditem_p.cpp"
