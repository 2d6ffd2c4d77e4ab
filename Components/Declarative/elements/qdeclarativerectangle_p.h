#pragma once

#include "item/qdeclarativeitem.h"

#include <QtGui/QColor>

class QDeclarativeRectangle;
class QDeclarativeRectanglePrivate;
class QQuickGradient;

/**
 * The border of a rectangle, its `border` group.
 *
 * Nothing is drawn until the width (in pixels) or the colour is set; a width below 1 draws nothing either.
 */
class QDeclarativePen : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int width READ width WRITE setWidth NOTIFY penChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY penChanged)

public:
    /** The pen of @p rectangle, which owns it. */
    explicit QDeclarativePen(QDeclarativeRectangle *rectangle);

    int width() const { return m_width; }
    void setWidth(int);
    QColor color() const { return m_color; }
    void setColor(const QColor &);

    bool isVisible() const { return m_isSet && m_width >= 1 && m_color.alpha() > 0; }
    /** The pixels that the border needs of an item's bounding rectangle, transparent or not. */
    int extent() const { return m_isSet && m_width >= 1 ? m_width : 0; }

Q_SIGNALS:
    void penChanged();

private:
    void announce();

    QDeclarativeRectangle *const m_rectangle;
    QColor m_color = Qt::black;
    int m_width = 1;
    bool m_isSet = false;
};

/**
 * A filled rectangle with an optional border, rounded corners and gradient from top to bottom.
 *
 * The border is centred on the item's edge and so lies half outside of it. Painted without antialiasing
 * unless `smooth`.
 */
class QDeclarativeRectangle : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(QQuickGradient *gradient READ gradient WRITE setGradient RESET resetGradient)
    Q_PROPERTY(QDeclarativePen *border READ border CONSTANT)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)

public:
    explicit QDeclarativeRectangle(QDeclarativeItem *parent = nullptr);

    QColor color() const;
    void setColor(const QColor &);
    QQuickGradient *gradient() const;
    void setGradient(QQuickGradient *);
    void resetGradient();
    QDeclarativePen *border();
    qreal radius() const;
    void setRadius(qreal);

    QRectF boundingRect() const override;
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

Q_SIGNALS:
    void colorChanged();
    void radiusChanged();

private:
    friend class QDeclarativePen;
    void penUpdated();

    Q_DISABLE_COPY(QDeclarativeRectangle)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeRectangle)
};
