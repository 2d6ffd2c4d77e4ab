#include "Shape.h"

#include "DraftingScene.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPathStroker>
#include <QtWidgets/QStyleOptionGraphicsItem>

#include <cmath>

namespace {

constexpr qreal gripSize = 6;

QPointF circleCentre(const QPointF &a, const QPointF &b, const QPointF &c)
{
    const qreal d = 2 * (a.x() * (b.y() - c.y()) + b.x() * (c.y() - a.y()) + c.x() * (a.y() - b.y()));
    const auto square = [](const QPointF &p) { return QPointF::dotProduct(p, p); };
    const qreal x = square(a) * (b.y() - c.y()) + square(b) * (c.y() - a.y()) + square(c) * (a.y() - b.y());
    const qreal y = square(a) * (c.x() - b.x()) + square(b) * (a.x() - c.x()) + square(c) * (b.x() - a.x());
    return {x / d, y / d};
}

bool onOneLine(const QPointF &a, const QPointF &b, const QPointF &c)
{
    const QPointF u = b - a;
    const QPointF v = c - a;
    return std::abs(u.x() * v.y() - u.y() * v.x()) < 1e-6;
}

QPainterPath circleOutline(const QPointF &centre, const QPointF &rim)
{
    QPainterPath path;
    const qreal radius = QLineF(centre, rim).length();
    path.addEllipse(centre, radius, radius);
    return path;
}

QPainterPath arcOutline(const QPointF &start, const QPointF &through, const QPointF &end)
{
    QPainterPath path(start);
    if (onOneLine(start, through, end)) {
        path.lineTo(end);
        return path;
    }
    const QPointF centre = circleCentre(start, through, end);
    const qreal radius = QLineF(centre, start).length();
    const qreal first = QLineF(centre, start).angle();
    const auto ahead = [first, centre](const QPointF &p) {
        return std::fmod(QLineF(centre, p).angle() - first + 360, 360);
    };
    const qreal sweep = ahead(through) < ahead(end) ? ahead(end) : ahead(end) - 360;
    path.arcTo(QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius), first, sweep);
    return path;
}

} // namespace

Shape::Shape(Kind kind, const QVector<QPointF> &points)
    : m_kind(kind)
    , m_points(points)
    , m_outline(outline(kind, points))
{
    setFlag(ItemIsSelectable);
}

QVector<QPointF> Shape::completePoints(Kind kind, const QVector<QPointF> &picked)
{
    if (kind != Rectangle || picked.size() != 2)
        return picked;
    const QPointF a = picked.first();
    const QPointF b = picked.last();
    return {a, {b.x(), a.y()}, b, {a.x(), b.y()}};
}

QPainterPath Shape::outline(Kind kind, const QVector<QPointF> &points)
{
    if (points.size() < 2)
        return {};
    if (kind == Circle)
        return circleOutline(points.at(0), points.at(1));
    if (kind == Arc && points.size() == 3)
        return arcOutline(points.at(0), points.at(1), points.at(2));
    QPainterPath path;
    path.addPolygon(QPolygonF(points));
    if (kind == Rectangle)
        path.closeSubpath();
    return path;
}

void Shape::apply(const QTransform &transform)
{
    prepareGeometryChange();
    for (QPointF &point : m_points)
        point = transform.map(point);
    m_outline = outline(m_kind, m_points);
    update();
}

QRectF Shape::boundingRect() const
{
    return m_outline.boundingRect().adjusted(-8, -8, 8, 8);
}

QPainterPath Shape::shape() const
{
    QPainterPathStroker stroker;
    stroker.setWidth(6);
    return stroker.createStroke(m_outline);
}

void Shape::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    const auto *drawing = qobject_cast<const DraftingScene *>(scene());
    if (!drawing)
        return;
    const bool selected = option->state & QStyle::State_Selected;
    const CanvasColors &colors = drawing->colors();
    QPen pen(selected ? colors.accent : colors.ink, (selected ? 2.2 : 1.8) * drawing->penScale());
    pen.setCosmetic(true);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::RoundCap);
    painter->setPen(pen);
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(m_outline);
    if (!selected)
        return;
    const qreal side =
        gripSize * drawing->penScale() / option->levelOfDetailFromTransform(painter->worldTransform());
    pen.setWidthF(1.4 * drawing->penScale());
    painter->setPen(pen);
    painter->setBrush(colors.paper);
    for (const QPointF &point : m_points)
        painter->drawRect(QRectF(point.x() - side / 2, point.y() - side / 2, side, side));
}
