#include "qdeclarativeimage_p.h"

#include <QtGui/QPainter>

/** Returns the size that the picture is to be painted in. */
QSizeF QDeclarativeImagePrivate::fittedSize() const
{
    const QSizeF own = picture.size();
    const bool fits = fillMode == QDeclarativeImage::PreserveAspectFit;
    if (!fits && fillMode != QDeclarativeImage::PreserveAspectCrop)
        return QSizeF(itemWidth, itemHeight);
    // What is to be fitted stays as large as it was when it goes.
    if (own.isEmpty())
        return paintedSize;
    if (!fits)
        return own.scaled(QSizeF(itemWidth, itemHeight), Qt::KeepAspectRatioByExpanding);
    // A side that nobody set does not enlarge the picture.
    const QSizeF frame(widthIsSet ? itemWidth : own.width(), heightIsSet ? itemHeight : own.height());
    return own.scaled(frame, Qt::KeepAspectRatio);
}

QSizeF QDeclarativeImagePrivate::originExtent() const
{
    // The size that was painted last counts, too, also when the item has become smaller just now.
    return paintedSize.expandedTo(QSizeF(itemWidth, itemHeight));
}

QRectF QDeclarativeImagePrivate::paintedRect() const
{
    const QSizeF spare = QSizeF(itemWidth, itemHeight) - paintedSize;
    return QRectF(QPointF(spare.width(), spare.height()) / 2, paintedSize);
}

void QDeclarativeImagePrivate::draw(QPainter *painter) const
{
    const QSizeF own = picture.size();
    switch (fillMode) {
    case QDeclarativeImage::Tile:
        painter->drawTiledPixmap(QRectF(0, 0, itemWidth, itemHeight), picture);
        break;
    case QDeclarativeImage::TileVertically:
        painter->scale(itemWidth / own.width(), 1);
        painter->drawTiledPixmap(QRectF(0, 0, own.width(), itemHeight), picture);
        break;
    case QDeclarativeImage::TileHorizontally:
        painter->scale(1, itemHeight / own.height());
        painter->drawTiledPixmap(QRectF(0, 0, itemWidth, own.height()), picture);
        break;
    default:
        painter->drawPixmap(paintedRect(), picture, picture.rect());
    }
}

QDeclarativeImage::QDeclarativeImage(QDeclarativeItem *parent)
    : QDeclarativeImageBase(*new QDeclarativeImagePrivate, parent)
{
}

QDeclarativeImage::QDeclarativeImage(QDeclarativeImagePrivate &dd, QDeclarativeItem *parent)
    : QDeclarativeImageBase(dd, parent)
{
}

QDeclarativeImage::FillMode QDeclarativeImage::fillMode() const
{
    return d_func()->fillMode;
}

void QDeclarativeImage::setFillMode(FillMode mode)
{
    Q_D(QDeclarativeImage);
    if (mode == d->fillMode)
        return;
    prepareGeometryChange();
    d->fillMode = mode;
    updatePaintedGeometry();
    update();
    Q_EMIT fillModeChanged();
}

qreal QDeclarativeImage::paintedWidth() const
{
    return d_func()->paintedSize.width();
}

qreal QDeclarativeImage::paintedHeight() const
{
    return d_func()->paintedSize.height();
}

void QDeclarativeImage::updatePaintedGeometry()
{
    Q_D(QDeclarativeImage);
    const QSizeF size = d->fittedSize();
    if (size != d->paintedSize) {
        prepareGeometryChange();
        d->paintedSize = size;
    }
    if (d->fillMode == PreserveAspectFit && !d->picture.isNull()) {
        if (widthValid() && !heightValid())
            setImplicitHeight(size.height());
        else if (heightValid() && !widthValid())
            setImplicitWidth(size.width());
    }
    Q_EMIT paintedGeometryChanged();
}

void QDeclarativeImage::pictureChanged()
{
    QDeclarativeImageBase::pictureChanged();
    updatePaintedGeometry();
}

void QDeclarativeImage::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QDeclarativeItem::geometryChanged(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        updatePaintedGeometry();
}

QRectF QDeclarativeImage::boundingRect() const
{
    Q_D(const QDeclarativeImage);
    const QRectF item(0, 0, d->itemWidth, d->itemHeight);
    return d->fillMode == PreserveAspectCrop && !clip() ? item.united(d->paintedRect()) : item;
}

void QDeclarativeImage::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    Q_D(QDeclarativeImage);
    if (d->picture.isNull() || d->itemWidth <= 0 || d->itemHeight <= 0)
        return;
    const auto smoothHints = QPainter::Antialiasing | QPainter::SmoothPixmapTransform;
    painter->save();
    if (d->isSmooth)
        painter->setRenderHints(smoothHints);
    if (clip() && d->fillMode == PreserveAspectCrop)
        painter->setClipRect(QRectF(0, 0, d->itemWidth, d->itemHeight), Qt::IntersectClip);
    if (d->mirror) {
        painter->translate(d->itemWidth, 0);
        painter->scale(-1, 1);
    }
    d->draw(painter);
    painter->restore();
    // After a picture that is scaled and clipped what is painted later is smooth, too, as it has always been.
    const bool isScaled = d->fillMode < Tile && d->picture.size() != QSizeF(d->itemWidth, d->itemHeight);
    if (d->isSmooth && clip() && isScaled)
        painter->setRenderHints(smoothHints);
}

#include "moc_qdeclarativeimage_p.cpp"
