#include "DraftingScene.h"

#include "Tool.h"
#include "UndoCommands.h"

#include <QtCore/qmath.h>
#include <QtGui/QPainter>

#include <cmath>

DraftingScene::DraftingScene(QObject *parent)
    : QGraphicsScene(parent)
{
    setSceneRect(-400, -300, 800, 600);
    setItemIndexMethod(NoIndex);
    connect(&m_undo, &QUndoStack::indexChanged, this, &DraftingScene::shapesChanged);
}

// The history goes first: it owns the shapes that are not in the scene.
DraftingScene::~DraftingScene()
{
    m_undo.disconnect(this);
    m_undo.clear();
}

void DraftingScene::setColors(const CanvasColors &colors)
{
    m_colors = colors;
    update();
}

void DraftingScene::setShowsGrid(bool show)
{
    m_grid = show;
    update();
}

void DraftingScene::setTool(Tool *tool)
{
    if (m_tool)
        m_tool->cancel();
    m_tool = tool;
    Q_EMIT promptChanged(tool->prompt());
    update();
}

QPointF DraftingScene::snapped(const QPointF &point) const
{
    if (!m_snap)
        return point;
    return {std::round(point.x() / gridStep) * gridStep, std::round(point.y() / gridStep) * gridStep};
}

Shape *DraftingScene::shapeAt(const QPointF &point) const
{
    const QList<QGraphicsItem *> hits = items(QRectF(point - QPointF(2, 2), QSizeF(4, 4)));
    return hits.isEmpty() ? nullptr : qgraphicsitem_cast<Shape *>(hits.first());
}

QList<Shape *> DraftingScene::shapes() const
{
    QList<Shape *> result;
    for (QGraphicsItem *item : items(Qt::AscendingOrder)) {
        if (auto *shape = qgraphicsitem_cast<Shape *>(item))
            result.append(shape);
    }
    return result;
}

QList<Shape *> DraftingScene::selectedShapes() const
{
    QList<Shape *> result = shapes();
    result.erase(
        std::remove_if(result.begin(), result.end(), [](Shape *shape) { return !shape->isSelected(); }),
        result.end());
    return result;
}

void DraftingScene::draw(Shape::Kind kind, const QVector<QPointF> &points)
{
    m_undo.push(new AddShape(this, new Shape(kind, points)));
}

void DraftingScene::transformSelection(const QTransform &transform, const QString &text)
{
    const QList<Shape *> shapes = selectedShapes();
    if (!shapes.isEmpty() && !transform.isIdentity())
        m_undo.push(new TransformShapes(shapes, transform, text));
}

void DraftingScene::deleteSelection()
{
    const QList<Shape *> shapes = selectedShapes();
    if (!shapes.isEmpty())
        m_undo.push(new RemoveShapes(this, shapes));
}

void DraftingScene::reset()
{
    if (m_tool)
        m_tool->cancel();
    m_undo.clear();
    clear();
    Q_EMIT shapesChanged();
}

void DraftingScene::drawBackground(QPainter *painter, const QRectF &rect)
{
    painter->fillRect(rect, m_colors.paper);
    if (!m_grid)
        return;
    const qreal scale = painter->worldTransform().m11() / m_penScale;
    const qreal step = gridStep * scale < 6 ? 5 * gridStep : gridStep;
    drawGrid(painter, rect, step, m_colors.minorGrid);
    drawGrid(painter, rect, 5 * step, m_colors.majorGrid);
}

void DraftingScene::drawGrid(QPainter *painter, const QRectF &rect, qreal step, const QColor &color) const
{
    QVector<QLineF> lines;
    for (int column = qFloor(rect.left() / step); column * step <= rect.right(); ++column)
        lines.append(QLineF(column * step, rect.top(), column * step, rect.bottom()));
    for (int row = qFloor(rect.top() / step); row * step <= rect.bottom(); ++row)
        lines.append(QLineF(rect.left(), row * step, rect.right(), row * step));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->setPen(QPen(color, 0));
    painter->drawLines(lines);
    painter->restore();
}

void DraftingScene::drawForeground(QPainter *painter, const QRectF &)
{
    if (m_tool)
        m_tool->draw(painter);
}
