#include "qdeclarativerectangle_p.h"

#include "engine/qdeclarativerounding_p.h"
#include "item/qdeclarativeitem_p.h"

#include <QtCore/QPointer>
#include <QtCore/qmath.h>
#include <QtGui/QPainter>
#include <QtGui/QPixmapCache>
#include <QtWidgets/qdrawutil.h>

#include <private/qquickrectangle_p.h>

#include <cmath>
#include <memory>

/** What is longer is cut to what can be seen first: Qt's rasterizer has no more room for it. */
static constexpr int lengthLimit = 8192;

/** The widest border and corner that are painted from a picture; larger ones are drawn each time. */
static constexpr int tileMarginLimit = 128;

class QDeclarativeRectanglePrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeRectangle)

public:
    /** The border and corners with one pixel between them, shared by the rectangles of one look. */
    struct Tile
    {
        QPixmap pixmap;
        qreal radius = 0;
    };

    bool isBordered() const { return pen && pen->isVisible(); }
    bool isFilled() const { return gradient || color.alpha() > 0; }
    qreal cornerRadius() const;
    int tileMargin() const;
    QRect tiledRect() const;
    bool canTile(const QPainter *) const;
    const QPixmap &needTile();
    void drawTile(QPainter *);
    void drawShape(QPainter *);
    QBrush fill(const QRectF &area);
    void gradientUpdated();
    void shapeUpdated();
    void penUpdated();

    QColor color = Qt::white;
    QPointer<QQuickGradient> gradient;
    std::unique_ptr<QDeclarativePen> pen;
    // Kept ready to paint with: Qt complains of a stop outside 0…1 each time that it meets one.
    std::unique_ptr<QLinearGradient> shading;
    std::unique_ptr<Tile> tile;
    qreal radius = 0;
    int penExtent = 0;
};

qreal QDeclarativeRectanglePrivate::cornerRadius() const
{
    return qBound(0.0, radius, qMin(itemWidth, itemHeight) / 2);
}

int QDeclarativeRectanglePrivate::tileMargin() const
{
    return qCeil(qMin(cornerRadius(), qreal(tileMarginLimit)))
        + (isBordered() ? qMin(pen->width(), tileMarginLimit + 1) : 0);
}

/** Returns the whole pixels that the border and what it surrounds take up. */
QRect QDeclarativeRectanglePrivate::tiledRect() const
{
    const int border = isBordered() ? pen->width() : 0;
    return QRect(-(border / 2), -(border / 2), QDeclarativeRounding::truncated(itemWidth) + border,
                 QDeclarativeRounding::truncated(itemHeight) + border);
}

/** Returns @p rect with the sides that are far out of sight, by @p reach or more, moved closer. */
static QRectF visiblePart(const QPainter *painter, const QRectF &rect, qreal reach)
{
    if (rect.width() <= lengthLimit && rect.height() <= lengthLimit)
        return rect;
    const QRectF device(0, 0, painter->device()->width(), painter->device()->height());
    const QRectF visible = painter->deviceTransform().inverted().mapRect(device);
    return rect & visible.adjusted(-reach, -reach, reach, reach);
}

/** Tells whether one pixel of a scene takes up no whole number of the device's, and nothing is turned. */
static bool isBetweenPixels(const QPainter *painter)
{
    const qreal ratio = painter->device()->devicePixelRatioF();
    return ratio != std::floor(ratio) && painter->deviceTransform().type() <= QTransform::TxScale;
}

/** Returns the length of @p pixels on a device of @p scale, in whole pixels of that and not less than one. */
static qreal wholePixels(qreal pixels, qreal scale)
{
    return qMax(1.0, std::floor(pixels * scale));
}

/** Moves @p start and @p end to whole pixels; lines of one pixel are of one width wherever they lie. */
static void moveToPixels(qreal *start, qreal *end, qreal scale)
{
    const bool isLine = qFuzzyCompare(*end - *start, scale);
    *start = std::round(*start);
    *end = isLine ? *start + wholePixels(1, scale) : std::round(*end);
}

/** Returns @p rect with its sides between pixels of the device. */
static QRectF onPixels(const QPainter *painter, const QRectF &rect)
{
    const QTransform toDevice = painter->deviceTransform();
    qreal left, top, right, bottom;
    toDevice.mapRect(rect).getCoords(&left, &top, &right, &bottom);
    moveToPixels(&left, &right, qAbs(toDevice.m11()));
    moveToPixels(&top, &bottom, qAbs(toDevice.m22()));
    return toDevice.inverted().mapRect(QRectF(QPointF(left, top), QPointF(right, bottom)));
}

bool QDeclarativeRectanglePrivate::canTile(const QPainter *painter) const
{
    const int margin = tileMargin();
    return !gradient && margin <= tileMarginLimit && itemWidth <= lengthLimit && itemHeight <= lengthLimit
        && tiledRect().width() >= 2 * margin && tiledRect().height() >= 2 * margin
        && painter->device()->devicePixelRatioF() == 1;
}

const QPixmap &QDeclarativeRectanglePrivate::needTile()
{
    const qreal corner = cornerRadius();
    if (!tile)
        tile = std::make_unique<Tile>();
    QPixmap &pixmap = tile->pixmap;
    if (!pixmap.isNull() && corner == tile->radius)
        return pixmap;
    tile->radius = corner;
    const int border = isBordered() ? pen->width() : 0;
    const QString key = QString::asprintf("declarative_rectangle_%x_%x_%d_%a", color.rgba(),
                                          border ? pen->color().rgba() : 0, border, corner);
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const int side = 2 * tileMargin() + 1;
    pixmap = QPixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(border ? QPen(pen->color(), border, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin)
                          : QPen(Qt::NoPen));
    painter.setBrush(color);
    const qreal inset = border / 2.0;
    const QRectF outline(inset, inset, side - border, side - border);
    if (corner > 0)
        painter.drawRoundedRect(outline, corner, corner);
    else
        painter.drawRect(outline);
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

void QDeclarativeRectanglePrivate::drawTile(QPainter *painter)
{
    const int margin = tileMargin();
    const QMargins margins(margin, margin, margin, margin);
    const QPixmap &pixmap = needTile();
    qDrawBorderPixmap(painter, tiledRect(), margins, pixmap, pixmap.rect(), margins, Qt::StretchTile);
}

void QDeclarativeRectanglePrivate::drawShape(QPainter *painter)
{
    qreal border = isBordered() ? qMin(pen->width(), lengthLimit) : 0;
    const qreal corner = qMin(cornerRadius(), qreal(lengthLimit));
    const qreal shift = int(border) % 2 / 2.0;
    // Where a gradient is, a border of odd width keeps its spare pixel inside.
    const qreal spare = gradient ? 2 * shift : 0;
    QRectF rect(shift, shift, itemWidth - spare, itemHeight - spare);
    if (border > 0 && isBetweenPixels(painter)) {
        const QRectF outside = onPixels(painter, rect + QMarginsF(border, border, border, border) / 2);
        const qreal scale = qAbs(painter->deviceTransform().m11());
        border = wholePixels(border, scale) / scale;
        rect = outside - QMarginsF(border, border, border, border) / 2;
    }
    painter->setPen(border ? QPen(pen->color(), border, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin)
                           : QPen(Qt::NoPen));
    painter->setBrush(isFilled() ? fill(rect) : QBrush());
    const QRectF outline = visiblePart(painter, rect, border + corner);
    if (corner > 0) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->drawRoundedRect(outline, corner, corner);
    } else {
        painter->drawRect(outline);
    }
}

QBrush QDeclarativeRectanglePrivate::fill(const QRectF &area)
{
    if (!gradient)
        return color;
    if (!shading) {
        shading = std::make_unique<QLinearGradient>();
        const QGradientStops stops = gradient->gradientStops();
        for (const QGradientStop &stop : stops)
            shading->setColorAt(stop.first, stop.second);
    }
    shading->setStart(area.topLeft());
    shading->setFinalStop(area.bottomLeft());
    return *shading;
}

void QDeclarativeRectanglePrivate::gradientUpdated()
{
    shading.reset();
    q_func()->update();
}

void QDeclarativeRectanglePrivate::shapeUpdated()
{
    tile.reset();
    q_func()->update();
}

void QDeclarativeRectanglePrivate::penUpdated()
{
    Q_Q(QDeclarativeRectangle);
    if (penExtent != pen->extent()) {
        q->prepareGeometryChange();
        penExtent = pen->extent();
    }
    shapeUpdated();
}

QDeclarativePen::QDeclarativePen(QDeclarativeRectangle *rectangle)
    : m_rectangle(rectangle)
{
}

void QDeclarativePen::announce()
{
    m_rectangle->penUpdated();
    Q_EMIT penChanged();
}

void QDeclarativePen::setWidth(int width)
{
    if (width == m_width && m_isSet)
        return;
    m_width = width;
    m_isSet = width >= 1;
    announce();
}

void QDeclarativePen::setColor(const QColor &color)
{
    if (color == m_color && m_isSet)
        return;
    m_color = color;
    m_isSet = m_width >= 1;
    announce();
}

QDeclarativeRectangle::QDeclarativeRectangle(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativeRectanglePrivate, parent)
{
    d_func()->enablePainting();
}

QColor QDeclarativeRectangle::color() const
{
    return d_func()->color;
}

void QDeclarativeRectangle::setColor(const QColor &color)
{
    Q_D(QDeclarativeRectangle);
    // What turns out to be no colour, such as an unknown name, leaves the one there was. A colour that was
    // never set is one to begin with: black.
    if (color == d->color || (!color.isValid() && isComponentComplete()))
        return;
    d->color = color;
    d->shapeUpdated();
    Q_EMIT colorChanged();
}

QQuickGradient *QDeclarativeRectangle::gradient() const
{
    return d_func()->gradient;
}

void QDeclarativeRectangle::setGradient(QQuickGradient *gradient)
{
    Q_D(QDeclarativeRectangle);
    if (gradient == d->gradient)
        return;
    const auto updated = [d] { d->gradientUpdated(); };
    if (d->gradient)
        disconnect(d->gradient, nullptr, this, nullptr);
    d->gradient = gradient;
    if (gradient) {
        connect(gradient, &QQuickGradient::updated, this, updated);
        connect(gradient, &QObject::destroyed, this, updated);
    }
    d->gradientUpdated();
}

void QDeclarativeRectangle::resetGradient()
{
    setGradient(nullptr);
}

QDeclarativePen *QDeclarativeRectangle::border()
{
    Q_D(QDeclarativeRectangle);
    if (!d->pen)
        d->pen = std::make_unique<QDeclarativePen>(this);
    return d->pen.get();
}

void QDeclarativeRectangle::penUpdated()
{
    d_func()->penUpdated();
}

qreal QDeclarativeRectangle::radius() const
{
    return d_func()->radius;
}

void QDeclarativeRectangle::setRadius(qreal radius)
{
    Q_D(QDeclarativeRectangle);
    if (radius == d->radius)
        return;
    d->radius = radius;
    d->shapeUpdated();
    Q_EMIT radiusChanged();
}

QRectF QDeclarativeRectangle::boundingRect() const
{
    Q_D(const QDeclarativeRectangle);
    const int before = d->penExtent / 2;
    return QRectF(-before, -before, d->itemWidth + d->penExtent, d->itemHeight + d->penExtent);
}

void QDeclarativeRectangle::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    Q_D(QDeclarativeRectangle);
    const bool bordered = d->isBordered();
    if (d->itemWidth <= 0 || d->itemHeight <= 0 || (!bordered && !d->isFilled()))
        return;
    const QRectF rect(0, 0, d->itemWidth, d->itemHeight);
    const QPainter::RenderHints hints = painter->renderHints();
    if (d->isSmooth)
        painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!bordered && d->radius <= 0)
        painter->fillRect(isBetweenPixels(painter) ? onPixels(painter, rect) : rect, d->fill(rect));
    else if (d->canTile(painter))
        d->drawTile(painter);
    else
        d->drawShape(painter);
    painter->setRenderHint(QPainter::Antialiasing, hints & QPainter::Antialiasing);
    painter->setRenderHint(QPainter::SmoothPixmapTransform, hints & QPainter::SmoothPixmapTransform);
}

#include "moc_qdeclarativerectangle_p.cpp"
