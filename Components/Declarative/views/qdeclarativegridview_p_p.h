#pragma once

#include "qdeclarativegridview_p.h"
#include "qdeclarativeitemview_p_p.h"

/** An item of a GridView, with its cell. */
class QDeclarativeGridItem : public QDeclarativeViewItem
{
public:
    QDeclarativeGridItem(QDeclarativeItem *item, const QDeclarativeGridViewPrivate *view)
        : QDeclarativeViewItem(item)
        , view(view)
    {
    }

    qreal position() const override { return linePosition; }
    qreal size() const override;

    const QDeclarativeGridViewPrivate *const view;
    qreal linePosition = 0;
    int column = 0; ///< in its line
};

class QDeclarativeGridViewPrivate : public QDeclarativeItemViewPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeGridView)

public:
    QDeclarativeGridViewPrivate();

    Qt::Orientation scrolled() const override;
    std::unique_ptr<Item> newItem(QDeclarativeItem *) const override;
    QDeclarativeItemViewAttached *attachedTo(QDeclarativeItem *) const override;
    void setItemPosition(Item *, qreal position) override;
    qreal positionAt(int index) const override;
    qreal startPosition() const override;
    qreal endPosition() const override;
    bool addVisible(qreal from, qreal to) override;
    void placeVisible() override;
    void rowsInserted(int index, int count) override;
    void rowsMoved(int from, int to, int count) override;
    void rowsRemoved(int firstBefore) override;
    void noRowsLeft(int index, qreal position) override;
    void placeHighlight() override;
    void moveHighlight() override;
    bool snaps() const override { return snapMode != QDeclarativeGridView::NoSnap; }
    qreal snapPosition(qreal position) const override;
    qreal flickTarget(qreal natural, qreal velocity) const override;
    qreal secondPosition() const override { return positionAt(columns()); }
    qreal emptyContentSize() const override { return mainAxis().contentSize; }
    qreal rowLength(const Item *) const override { return lineSize(); }
    qreal highlightPosition() const override { return linePositionOf(highlightItem->pos()); }
    qreal highlightSize() const override { return lineSize(); }
    void setHighlightPosition(qreal position) override;
    int rowUnder(qreal position) const override;
    void viewMoved() override;
    bool isBefore(const Item *, qreal from) const override;
    bool isBeyond(const Item *item, qreal to) const override { return item->position() >= to + lineSize(); }
    qreal centredPosition(qreal start, qreal end) const override;
    void clear() override;
    qreal rowStep() const override { return lineSize() / columns(); }

    bool isTopToBottom() const { return flow == QDeclarativeGridView::TopToBottom; }
    /** How many cells a line has. */
    int columns() const;
    qreal lineSize() const { return isTopToBottom() ? cellWidth : cellHeight; }
    qreal columnSize() const { return isTopToBottom() ? cellHeight : cellWidth; }
    int columnAt(int index) const;
    QPointF cellPosition(qreal linePosition, int column) const;
    qreal linePositionOf(const QPointF &cell) const;
    qreal columnOf(const QPointF &cell) const;
    void place(Item *, qreal linePosition, int column) const;
    void placeInCell(Item *, int cell) const;
    bool reaches(int cell, qreal to) const;
    bool append(qreal to);
    bool prepend(qreal from);
    void jump(qreal from, qreal to);
    void step(int by);
    void cellsChanged();
    qreal rangeOffset() const { return hasRange() ? highlightBegin : 0; }

    QDeclarativeHighlightValue highlightX;
    QDeclarativeHighlightValue highlightY;
    qreal origin = 0; ///< where the first line stands
    bool originIsKnown = false;
    int cellWidth = 100;
    int cellHeight = 100;
    QDeclarativeGridView::Flow flow = QDeclarativeGridView::LeftToRight;
    QDeclarativeGridView::SnapMode snapMode = QDeclarativeGridView::NoSnap;
};

inline qreal QDeclarativeGridItem::size() const
{
    return view->lineSize();
}
