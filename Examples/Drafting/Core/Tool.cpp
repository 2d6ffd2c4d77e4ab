#include "Tool.h"

#include "DraftingScene.h"

#include <QtGui/QPainter>

void Tool::move(const QPointF &point)
{
    m_pointer = m_scene->snapped(point);
    m_scene->update();
}

void Tool::cancel()
{
    m_picks.clear();
    Q_EMIT m_scene->promptChanged(prompt());
    m_scene->update();
}

void Tool::addPick(const QPointF &point)
{
    m_pointer = m_scene->snapped(point);
    m_picks.append(m_pointer);
    Q_EMIT m_scene->promptChanged(prompt());
    m_scene->update();
}

QPen Tool::previewPen(Qt::PenStyle style) const
{
    QPen pen(m_scene->colors().accent, 1.6 * m_scene->penScale(), style, Qt::RoundCap, Qt::RoundJoin);
    pen.setCosmetic(true);
    return pen;
}

void Tool::paintMarker(QPainter *painter, const QPointF &point) const
{
    const qreal radius = 4 * m_scene->penScale() / painter->worldTransform().m11();
    painter->setPen(previewPen(Qt::SolidLine));
    painter->setBrush(m_scene->colors().paper);
    painter->drawEllipse(point, radius, radius);
    painter->setBrush(Qt::NoBrush);
}
