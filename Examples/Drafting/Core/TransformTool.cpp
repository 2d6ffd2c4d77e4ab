#include "TransformTool.h"

#include "DraftingScene.h"

#include <QtCore/QLineF>
#include <QtGui/QPainter>

namespace {

QTransform rotation(const QVector<QPointF> &points)
{
    const QPointF centre = points.at(0);
    const qreal angle = QLineF(centre, points.at(1)).angle() - QLineF(centre, points.at(2)).angle();
    return QTransform::fromTranslate(-centre.x(), -centre.y()) * QTransform().rotate(angle)
        * QTransform::fromTranslate(centre.x(), centre.y());
}

QTransform reflection(const QVector<QPointF> &points)
{
    const QPointF origin = points.at(0);
    const qreal angle = -QLineF(origin, points.at(1)).angle();
    return QTransform::fromTranslate(-origin.x(), -origin.y()) * QTransform().rotate(-angle)
        * QTransform::fromScale(1, -1) * QTransform().rotate(angle)
        * QTransform::fromTranslate(origin.x(), origin.y());
}

} // namespace

TransformTool::TransformTool(DraftingScene *scene, Operation operation)
    : Tool(scene)
    , m_operation(operation)
{
}

QTransform TransformTool::transform(const QVector<QPointF> &points) const
{
    if (points.size() < pickCount() || points.at(0) == points.at(1))
        return {};
    if (m_operation == Move)
        return QTransform::fromTranslate(points.at(1).x() - points.at(0).x(),
                                         points.at(1).y() - points.at(0).y());
    return m_operation == Rotate ? rotation(points) : reflection(points);
}

QString TransformTool::name() const
{
    return m_operation == Move ? tr("moving") : m_operation == Rotate ? tr("rotating") : tr("mirroring");
}

void TransformTool::press(const QPointF &point)
{
    if (m_scene->selectedShapes().isEmpty())
        return;
    addPick(point);
    if (m_picks.size() < pickCount())
        return;
    const QTransform mapping = transform(m_picks);
    cancel();
    m_scene->transformSelection(mapping, name());
}

void TransformTool::draw(QPainter *painter) const
{
    painter->setBrush(Qt::NoBrush);
    if (isBusy()) {
        painter->setPen(previewPen(Qt::DotLine));
        painter->drawLine(m_picks.first(), m_pointer);
        if (m_picks.size() > 1)
            painter->drawLine(m_picks.at(0), m_picks.at(1));
        const QTransform mapping = transform(picksAndPointer());
        painter->setPen(previewPen(Qt::DashLine));
        for (const Shape *shape : m_scene->selectedShapes()) {
            QVector<QPointF> points = shape->points();
            for (QPointF &point : points)
                point = mapping.map(point);
            painter->drawPath(Shape::outline(shape->kind(), points));
        }
    }
    for (const QPointF &pick : m_picks)
        paintMarker(painter, pick);
    paintMarker(painter, m_pointer);
}

QString TransformTool::prompt() const
{
    const int picked = m_picks.size();
    switch (m_operation) {
    case Move:
        return picked == 0 ? tr("Move: pick a base point") : tr("Move: pick where it goes");
    case Rotate:
        return picked == 0 ? tr("Rotate: pick the centre")
            : picked == 1  ? tr("Rotate: pick where the turn starts")
                           : tr("Rotate: pick where the turn ends");
    case Mirror:
        break;
    }
    return picked == 0 ? tr("Mirror: pick a point on the axis")
                       : tr("Mirror: pick a second point on the axis");
}
