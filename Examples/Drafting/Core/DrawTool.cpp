#include "DrawTool.h"

#include "DraftingScene.h"

#include <QtGui/QPainter>

#include <climits>

DrawTool::DrawTool(DraftingScene *scene, Shape::Kind kind)
    : Tool(scene)
    , m_kind(kind)
{
}

int DrawTool::pickCount() const
{
    if (m_kind == Shape::Polyline)
        return INT_MAX;
    return m_kind == Shape::Arc ? 3 : 2;
}

void DrawTool::press(const QPointF &point)
{
    const QPointF pick = m_scene->snapped(point);
    if (isBusy() && m_picks.last() == pick)
        return;
    addPick(point);
    if (m_picks.size() == pickCount())
        commit();
}

void DrawTool::finish()
{
    if (m_kind == Shape::Polyline && m_picks.size() > 1)
        commit();
    else
        cancel();
}

void DrawTool::commit()
{
    m_scene->draw(m_kind, Shape::completePoints(m_kind, m_picks));
    cancel();
}

void DrawTool::draw(QPainter *painter) const
{
    painter->setBrush(Qt::NoBrush);
    if (isBusy()) {
        painter->setPen(previewPen(Qt::SolidLine));
        painter->drawPath(Shape::outline(m_kind, Shape::completePoints(m_kind, picksAndPointer())));
        if (m_kind == Shape::Circle) {
            painter->setPen(previewPen(Qt::DotLine));
            painter->drawLine(m_picks.first(), m_pointer);
        }
    }
    for (const QPointF &pick : m_picks)
        paintMarker(painter, pick);
    paintMarker(painter, m_pointer);
}

QString DrawTool::prompt() const
{
    const int picked = m_picks.size();
    switch (m_kind) {
    case Shape::Line:
        return picked == 0 ? tr("Line: pick the start point") : tr("Line: pick the end point");
    case Shape::Rectangle:
        return picked == 0 ? tr("Rectangle: pick a corner") : tr("Rectangle: pick the opposite corner");
    case Shape::Circle:
        return picked == 0 ? tr("Circle: pick the centre") : tr("Circle: pick a point on the circle");
    case Shape::Arc:
        return picked == 0 ? tr("Arc: pick the start point")
            : picked == 1  ? tr("Arc: pick a point on the arc")
                           : tr("Arc: pick the end point");
    case Shape::Polyline:
        break;
    }
    return picked == 0 ? tr("Polyline: pick the start point")
                       : tr("Polyline: pick the next point, Enter or double click ends it");
}
