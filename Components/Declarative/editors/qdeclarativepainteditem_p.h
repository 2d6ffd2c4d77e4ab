#pragma once

#include "item/qdeclarativeitem_p.h"

#include <QtCore/QSize>
#include <QtGui/QColor>

class QDeclarativePaintedItemPrivate;

/**
 * The base of the editors: an item that draws contents over a colour, in a scale of their own.
 *
 * The contents' size is in pixels before contentsScale. They are drawn anew at every repaint, which for text
 * is cheaper than keeping its pixels: pixelCacheSize and smoothCache keep what they are set to and do
 * nothing.
 */
class QDeclarativePaintedItem : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QSize contentsSize READ contentsSize WRITE setContentsSize NOTIFY contentsSizeChanged)
    Q_PROPERTY(QColor fillColor READ fillColor WRITE setFillColor NOTIFY fillColorChanged)
    Q_PROPERTY(int pixelCacheSize READ pixelCacheSize WRITE setPixelCacheSize)
    Q_PROPERTY(bool smoothCache READ smoothCache WRITE setSmoothCache)
    Q_PROPERTY(qreal contentsScale READ contentsScale WRITE setContentsScale NOTIFY contentsScaleChanged)
    Q_PROPERTY(qreal implicitWidth READ implicitWidth NOTIFY implicitWidthChanged REVISION 1)
    Q_PROPERTY(qreal implicitHeight READ implicitHeight NOTIFY implicitHeightChanged REVISION 1)

public:
    ~QDeclarativePaintedItem() override;

    QSize contentsSize() const;
    void setContentsSize(const QSize &);
    QColor fillColor() const;
    void setFillColor(const QColor &);
    int pixelCacheSize() const;
    void setPixelCacheSize(int pixels);
    bool smoothCache() const;
    void setSmoothCache(bool);
    qreal contentsScale() const;
    /** Scales that are not positive are refused. */
    void setContentsScale(qreal);

    QRectF boundingRect() const override;
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

Q_SIGNALS:
    void fillColorChanged();
    void contentsSizeChanged();
    void contentsScaleChanged();

protected:
    explicit QDeclarativePaintedItem(QDeclarativePaintedItemPrivate &dd, QDeclarativeItem *parent);

    QVariant itemChange(GraphicsItemChange, const QVariant &) override;

    /**
     * Draws the contents, at least what is in @p exposed; both are in coordinates of the contents. The
     * painter's state is restored afterwards.
     */
    virtual void drawContents(QPainter *, const QRectF &exposed) = 0;

    /** What drawContents() covers, which may reach beyond the item; in coordinates of the contents. */
    virtual QRectF drawnRect() const = 0;

    /** Schedules a repaint of @p rect, in coordinates of the contents. */
    void updateContents(const QRectF &rect);

private:
    Q_DISABLE_COPY(QDeclarativePaintedItem)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativePaintedItem)
};

class QDeclarativePaintedItemPrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativePaintedItem)

public:
    QSize contentsSize = QSize(0, 0);
    QColor fillColor = Qt::transparent;
    qreal contentsScale = 1;
    int pixelCacheSize = 100000;
    bool smoothCache = true;
};
