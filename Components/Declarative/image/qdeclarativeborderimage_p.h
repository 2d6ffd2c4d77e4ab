#pragma once

#include "qdeclarativeimagebase_p.h"
#include "qdeclarativescalegrid_p.h"

class QDeclarativeBorderImagePrivate;
class QNetworkReply;

/**
 * Shows a picture whose corners keep their size while its edges and middle are stretched or repeated.
 *
 * The source is a picture, or a text file ending in ".sci" that names one together with its border and tile
 * modes; those then replace the item's own.
 */
class QDeclarativeBorderImage : public QDeclarativeImageBase
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeScaleGrid *border READ border CONSTANT)
    Q_PROPERTY(TileMode horizontalTileMode READ horizontalTileMode WRITE setHorizontalTileMode NOTIFY
                   horizontalTileModeChanged)
    Q_PROPERTY(TileMode verticalTileMode READ verticalTileMode WRITE setVerticalTileMode NOTIFY
                   verticalTileModeChanged)

public:
    enum TileMode { Stretch = Qt::StretchTile, Repeat = Qt::RepeatTile, Round = Qt::RoundTile };
    Q_ENUM(TileMode)

    explicit QDeclarativeBorderImage(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeBorderImage() override;

    QDeclarativeScaleGrid *border();
    TileMode horizontalTileMode() const;
    void setHorizontalTileMode(TileMode);
    TileMode verticalTileMode() const;
    void setVerticalTileMode(TileMode);

    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

Q_SIGNALS:
    void horizontalTileModeChanged();
    void verticalTileModeChanged();

protected:
    void load() override;
    void requestFinished() override;

private:
    Q_DISABLE_COPY(QDeclarativeBorderImage)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeBorderImage)
};
