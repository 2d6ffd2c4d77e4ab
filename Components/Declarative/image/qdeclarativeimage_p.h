#pragma once

#include "qdeclarativeimagebase_p.h"

class QDeclarativeImagePrivate;

/**
 * Shows a picture, fitted into the item by `fillMode`.
 *
 * A picture that PreserveAspectCrop makes larger than the item is painted beyond its edges unless `clip`.
 */
class QDeclarativeImage : public QDeclarativeImageBase
{
    Q_OBJECT
    Q_PROPERTY(FillMode fillMode READ fillMode WRITE setFillMode NOTIFY fillModeChanged)
    Q_PROPERTY(qreal paintedWidth READ paintedWidth NOTIFY paintedGeometryChanged)
    Q_PROPERTY(qreal paintedHeight READ paintedHeight NOTIFY paintedGeometryChanged)

public:
    enum FillMode { Stretch, PreserveAspectFit, PreserveAspectCrop, Tile, TileVertically, TileHorizontally };
    Q_ENUM(FillMode)

    explicit QDeclarativeImage(QDeclarativeItem *parent = nullptr);

    FillMode fillMode() const;
    void setFillMode(FillMode);
    qreal paintedWidth() const;
    qreal paintedHeight() const;

    QRectF boundingRect() const override;
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

Q_SIGNALS:
    void fillModeChanged();
    /** Emitted whenever the painted size is worked out, also when it stays the same. */
    void paintedGeometryChanged();

protected:
    explicit QDeclarativeImage(QDeclarativeImagePrivate &dd, QDeclarativeItem *parent);

    void pictureChanged() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void updatePaintedGeometry();

    Q_DISABLE_COPY(QDeclarativeImage)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeImage)
};

class QDeclarativeImagePrivate : public QDeclarativeImageBasePrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeImage)

public:
    QSizeF fittedSize() const;
    QRectF paintedRect() const;
    QSizeF originExtent() const override;
    void draw(QPainter *) const;

    QSizeF paintedSize = QSizeF(0, 0);
    QDeclarativeImage::FillMode fillMode = QDeclarativeImage::Stretch;
};
