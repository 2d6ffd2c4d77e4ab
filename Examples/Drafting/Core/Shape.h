#pragma once

#include <QtCore/QVector>
#include <QtGui/QTransform>
#include <QtWidgets/QGraphicsItem>

/**
 * One drawn object: a kind and the points that define it.
 *
 * Every kind is defined by points alone (a rectangle by its corners, an arc by three points on it), so
 * moving, rotating and mirroring are the same mapping of points for all of them. Lengths are millimetres.
 */
class Shape : public QGraphicsItem
{
public:
    enum Kind { Line, Rectangle, Circle, Arc, Polyline };
    enum { Type = UserType + 1 };

    /** Makes a shape of @p kind through @p points, as many as the kind takes; see completePoints(). */
    Shape(Kind kind, const QVector<QPointF> &points);

    /** The points that a shape of @p kind is made of when the user has picked @p picked. */
    static QVector<QPointF> completePoints(Kind kind, const QVector<QPointF> &picked);

    /** The outline of a shape of @p kind; empty while there are too few points. */
    static QPainterPath outline(Kind kind, const QVector<QPointF> &points);

    Kind kind() const { return m_kind; }
    QVector<QPointF> points() const { return m_points; }

    /** Maps every point with @p transform. */
    void apply(const QTransform &transform);

    /** The length of the outline. */
    qreal length() const { return m_outline.length(); }

    /** The smallest upright rectangle around the outline, without pen and grips. */
    QRectF extent() const { return m_outline.boundingRect(); }

    int type() const override { return Type; }
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

private:
    Kind m_kind;
    QVector<QPointF> m_points;
    QPainterPath m_outline;
};
