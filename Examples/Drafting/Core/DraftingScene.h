#pragma once

#include "CanvasColors.h"
#include "Shape.h"

#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QUndoStack>

class Tool;

/** The drawing: its shapes, its grid, its undo history and the tool at work on it. */
class DraftingScene : public QGraphicsScene
{
    Q_OBJECT

public:
    /** The distance between two grid lines, in millimetres. */
    static constexpr qreal gridStep = 10;

    explicit DraftingScene(QObject *parent = nullptr);
    ~DraftingScene() override;

    const CanvasColors &colors() const { return m_colors; }
    void setColors(const CanvasColors &colors);

    /** How many pixels wide a pen of width 1 is; more than 1 for pictures of high resolution. */
    qreal penScale() const { return m_penScale; }
    void setPenScale(qreal scale) { m_penScale = scale; }

    bool snapsToGrid() const { return m_snap; }
    void setSnapsToGrid(bool snap) { m_snap = snap; }
    bool showsGrid() const { return m_grid; }
    void setShowsGrid(bool show);

    QUndoStack *undoStack() { return &m_undo; }

    /** The tool that receives picks; never null once a tool was set. */
    Tool *tool() const { return m_tool; }

    /** Makes @p tool the one that receives picks; the caller keeps it alive. */
    void setTool(Tool *tool);

    /** @p point, or the grid point next to it while snapping is on. */
    QPointF snapped(const QPointF &point) const;

    /** The shape within a few millimetres of @p point, or null. */
    Shape *shapeAt(const QPointF &point) const;
    QList<Shape *> shapes() const;
    QList<Shape *> selectedShapes() const;

    /** Adds a shape through the undo history. */
    void draw(Shape::Kind kind, const QVector<QPointF> &points);

    /** Maps the selected shapes through the undo history, named @p text there. */
    void transformSelection(const QTransform &transform, const QString &text);
    void deleteSelection();

    /** Removes everything, the history too. */
    void reset();

Q_SIGNALS:
    /** A tool asks for its next pick; @p prompt is shown to the user. */
    void promptChanged(const QString &prompt);

    /** Shapes came, went or moved. */
    void shapesChanged();

protected:
    void drawBackground(QPainter *painter, const QRectF &rect) override;
    void drawForeground(QPainter *painter, const QRectF &rect) override;

private:
    void drawGrid(QPainter *painter, const QRectF &rect, qreal step, const QColor &color) const;

    CanvasColors m_colors = CanvasColors::light();
    QUndoStack m_undo;
    Tool *m_tool = nullptr;
    qreal m_penScale = 1;
    bool m_snap = true;
    bool m_grid = true;
};
