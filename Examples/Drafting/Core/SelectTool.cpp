#include "SelectTool.h"

#include "DraftingScene.h"

#include <QtGui/QPainter>

void SelectTool::press(const QPointF &point)
{
    m_picks = {point};
    m_pointer = point;
}

void SelectTool::move(const QPointF &point)
{
    m_pointer = point;
    if (isBusy())
        m_scene->update();
}

void SelectTool::release(const QPointF &point)
{
    if (!isBusy())
        return;
    const QRectF frame = QRectF(m_picks.first(), point).normalized();
    m_picks.clear();
    m_scene->clearSelection();
    if (frame.width() + frame.height() < 3) {
        if (Shape *shape = m_scene->shapeAt(point))
            shape->setSelected(true);
    } else {
        for (Shape *shape : m_scene->shapes())
            shape->setSelected(frame.contains(shape->extent()));
    }
    m_scene->update();
}

void SelectTool::draw(QPainter *painter) const
{
    if (!isBusy())
        return;
    QColor fill = m_scene->colors().accent;
    fill.setAlpha(38);
    painter->setPen(previewPen(Qt::DashLine));
    painter->setBrush(fill);
    painter->drawRect(QRectF(m_picks.first(), m_pointer).normalized());
}

QString SelectTool::prompt() const
{
    return tr("Select: click a shape, or drag a frame around several");
}
