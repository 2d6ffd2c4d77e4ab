#include "qdeclarativerectangle_p.h"

#include "qdeclarativeitem_p.h"
#include "qdeclarativetypes_p.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>

#include <private/qquickrectangle_p.h>

class QDeclarativeRectanglePrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeRectangle)

public:
    QBrush fill();
    void gradientUpdated();
    void penUpdated();

    QColor color = Qt::white;
    QPointer<QQuickGradient> gradient;
    QDeclarativePen *pen = nullptr;
    // Kept ready to paint with: Qt complains of a stop outside 0…1 each time that it meets one.
    QLinearGradient shading;
    qreal radius = 0;
    int penExtent = 0;
    bool shadingIsStale = true;
};

QBrush QDeclarativeRectanglePrivate::fill()
{
    if (!gradient)
        return color;
    if (shadingIsStale) {
        shading = QLinearGradient();
        const QGradientStops stops = gradient->gradientStops();
        for (const QGradientStop &stop : stops)
            shading.setColorAt(stop.first, stop.second);
        shadingIsStale = false;
    }
    shading.setStart(0, 0);
    shading.setFinalStop(0, itemHeight);
    return shading;
}

void QDeclarativeRectanglePrivate::gradientUpdated()
{
    shadingIsStale = true;
    q_func()->update();
}

void QDeclarativeRectanglePrivate::penUpdated()
{
    Q_Q(QDeclarativeRectangle);
    if (penExtent != pen->extent()) {
        q->prepareGeometryChange();
        penExtent = pen->extent();
    }
    q->update();
}

QDeclarativePen::QDeclarativePen(QObject *parent)
    : QObject(parent)
{
}

void QDeclarativePen::setWidth(int width)
{
    if (width == m_width && m_isSet)
        return;
    m_width = width;
    m_isSet = width >= 1;
    Q_EMIT penChanged();
}

void QDeclarativePen::setColor(const QColor &color)
{
    if (color == m_color && m_isSet)
        return;
    m_color = color;
    m_isSet = m_width >= 1;
    Q_EMIT penChanged();
}

QDeclarativeRectangle::QDeclarativeRectangle(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativeRectanglePrivate, parent)
{
    setFlag(ItemHasNoContents, false);
}

QColor QDeclarativeRectangle::color() const
{
    return d_func()->color;
}

void QDeclarativeRectangle::setColor(const QColor &color)
{
    Q_D(QDeclarativeRectangle);
    if (color == d->color)
        return;
    d->color = color;
    if (!d->gradient)
        update();
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
    if (!d->pen) {
        d->pen = new QDeclarativePen(this);
        connect(d->pen, &QDeclarativePen::penChanged, this, [d] { d->penUpdated(); });
    }
    return d->pen;
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
    update();
    Q_EMIT radiusChanged();
}

QRectF QDeclarativeRectangle::boundingRect() const
{
    Q_D(const QDeclarativeRectangle);
    const int before = d->penExtent / 2;
    const int after = (d->penExtent + 1) / 2;
    return QRectF(-before, -before, d->itemWidth + before + after, d->itemHeight + before + after);
}

void QDeclarativeRectangle::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    Q_D(QDeclarativeRectangle);
    const bool bordered = d->pen && d->pen->isVisible();
    const bool filled = d->gradient || d->color.alpha() > 0;
    if (d->itemWidth <= 0 || d->itemHeight <= 0 || (!bordered && !filled))
        return;
    const QRectF rect(0, 0, d->itemWidth, d->itemHeight);
    const bool wasAntialiased = painter->testRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::Antialiasing, d->isSmooth);
    if (!bordered && d->radius <= 0) {
        painter->fillRect(rect, d->fill());
    } else {
        painter->setPen(
            bordered ? QPen(d->pen->color(), d->pen->width(), Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin)
                     : QPen(Qt::NoPen));
        painter->setBrush(filled ? d->fill() : Qt::NoBrush);
        if (d->radius > 0)
            painter->drawRoundedRect(rect, d->radius, d->radius);
        else
            painter->drawRect(rect);
    }
    painter->setRenderHint(QPainter::Antialiasing, wasAntialiased);
}

void registerDeclarativeRectangleTypes()
{
    qmlRegisterAnonymousType<QDeclarativePen>("QtQuick", 1);
    registerDeclarativeType<QDeclarativeRectangle>("Rectangle");
}

#include "moc_qdeclarativerectangle_p.cpp"
