#include "DraftingView.h"

#include "Core/DraftingScene.h"
#include "Core/Tool.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>

#include <cmath>

DraftingView::DraftingView(DraftingScene *scene, QWidget *parent)
    : QGraphicsView(scene, parent)
    , m_drawing(scene)
{
    setRenderHint(QPainter::Antialiasing);
    setMouseTracking(true);
    setFrameShape(NoFrame);
    setTransformationAnchor(AnchorUnderMouse);
    setViewportUpdateMode(FullViewportUpdate);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setCursor(Qt::CrossCursor);
}

void DraftingView::zoom(qreal factor)
{
    const qreal scaled = transform().m11() * factor;
    if (scaled < 0.1 || scaled > 20)
        return;
    scale(factor, factor);
    Q_EMIT zoomChanged(scaled);
}

void DraftingView::fit()
{
    QRectF extent;
    for (const ::Shape *shape : m_drawing->shapes())
        extent |= shape->extent();
    if (extent.isEmpty())
        extent = QRectF(-150, -100, 300, 200);
    fitInView(extent.adjusted(-30, -30, 30, 30), Qt::KeepAspectRatio);
    Q_EMIT zoomChanged(transform().m11());
}

void DraftingView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_drawing->tool()->press(mapToScene(event->pos()));
    else if (event->button() == Qt::RightButton)
        m_drawing->tool()->finish();
}

void DraftingView::mouseMoveEvent(QMouseEvent *event)
{
    const QPointF point = mapToScene(event->pos());
    m_drawing->tool()->move(point);
    Q_EMIT pointed(m_drawing->snapped(point));
}

void DraftingView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_drawing->tool()->release(mapToScene(event->pos()));
}

void DraftingView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && m_drawing->tool()->isBusy())
        m_drawing->tool()->finish();
    else
        mousePressEvent(event);
}

void DraftingView::wheelEvent(QWheelEvent *event)
{
    zoom(std::pow(1.2, event->angleDelta().y() / 120.0));
}

void DraftingView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_drawing->tool()->finish();
    else if (event->key() == Qt::Key_Escape)
        m_drawing->tool()->isBusy() ? m_drawing->tool()->cancel() : m_drawing->clearSelection();
    else
        QGraphicsView::keyPressEvent(event);
}
