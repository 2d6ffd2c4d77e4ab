#pragma once

#include <QtWidgets/QGraphicsView>

class DraftingScene;

/** Shows the drawing and hands the pointer to its tool. */
class DraftingView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit DraftingView(DraftingScene *scene, QWidget *parent = nullptr);

    /** Scales the picture by @p factor about its middle, within sensible limits. */
    void zoom(qreal factor);

    /** Shows all shapes, or the middle of an empty drawing. */
    void fit();

Q_SIGNALS:
    /** The pointer is over @p point of the drawing. */
    void pointed(const QPointF &point);
    void zoomChanged(qreal scale);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    DraftingScene *m_drawing;
};
