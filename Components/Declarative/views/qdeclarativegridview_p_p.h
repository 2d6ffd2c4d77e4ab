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
    bool addVisible(qreal from, qreal to, bool isBuffer) override;
    void placeVisible() override;
    bool rowsInserted(int index, int count, AddedItems *) override;
    void rowsMoved(int from, int to, int count) override;
    void noRowsLeft(int index) override;
    void placeHighlight() override;
    void moveHighlight() override;
    bool snaps() const override { return snapMode != QDeclarativeGridView::NoSnap; }
    bool snapsAt(qreal position) const override;
    qreal snapPosition(qreal position) const override;
    qreal flickTarget(qreal natural, qreal velocity) const override;
    qreal firstEnd() const override { return positionAt(0) + lineSize(); }
    Span followed() const override;
    Span coveredByRows() const override;
    qreal travelStart(const Axis &) const override;
    qreal travelEnd(const Axis &) const override;
    void placeCurrent() override;
    void placeUnseenCurrent() override;
    bool followsMoves() const override { return false; }
    void viewResized(qreal) override { }
    bool keepsEndInView() const override { return runsBackwards() && !isStrict() && hasRows(); }
    bool isLaidOutIn(const QSizeF &now, const QSizeF &before) const override { return now != before; }
    void updateAverage() override;
    qreal rowStep() const override { return lineSize() / columns(); }
    int lineStart(int index) const override { return index - index % columns(); }
    void finishLayout() override;
    void placePart(QDeclarativeItem *, qreal position) const override;
    void setViewPosition(qreal) override;
    void returnToStart() override { moveTo(mainAxis(), 0); }
    qreal highlightPosition() const override { return linePositionOf(highlightItem->pos()); }
    qreal highlightSize() const override { return lineSize(); }
    qreal centredPosition(qreal start, qreal end) const override;
    bool contains(const Item *, const QPointF &) const override;
    qreal placeOfFirst() const override { return headerSize(); }
    void setPlaceOfFirst(qreal place) override;
    void setHighlightPosition(qreal position) override;
    int rowUnder(qreal position) const override;
    bool isBefore(const Item *, qreal from) const override;
    bool isBeyond(const Item *, qreal to) const override;

    bool isTopToBottom() const { return flow == QDeclarativeGridView::TopToBottom; }
    /** How many cells a line has. */
    int columns() const;
    qreal lineSize() const { return isTopToBottom() ? cellWidth : cellHeight; }
    qreal columnSize() const { return isTopToBottom() ? cellHeight : cellWidth; }
    QPointF cellPosition(qreal linePosition, int column) const;
    qreal linePositionOf(const QPointF &cell) const;
    qreal columnOf(const QPointF &cell) const;
    void place(Item *, qreal linePosition, int column) const;
    struct Cell
    {
        qreal line = 0; ///< where its line stands
        int column = 0;
    };
    Cell cellOf(const Item *) const;
    Cell cellAfter(const Cell &, int by = 1) const;
    Cell cellAt(int index) const;
    void place(Item *, const Cell &) const;
    bool reaches(const Cell &, qreal to) const;
    bool append(qreal to, int most);
    bool prepend(qreal from, int most);
    void jump(qreal from, qreal to);
    int slotFrom(int index) const;
    Cell cellOfSlot(int slot) const;
    void insertCells(int index, int count, AddedItems *);
    void goBack(int by);
    void goForth(int by);
    void cellsChanged();
    qreal rangeOffset() const { return hasRange() ? rangeBegin() : 0; }

    QDeclarativeHighlightValue highlightX;
    QDeclarativeHighlightValue highlightY;
    qreal firstLine = 0; ///< of the row visibleIndex while no row has an item, where that is known
    bool firstLineIsKnown = false;
    int cellWidth = 100;
    int cellHeight = 100;
    QDeclarativeGridView::Flow flow = QDeclarativeGridView::LeftToRight;
    QDeclarativeGridView::SnapMode snapMode = QDeclarativeGridView::NoSnap;
};

inline qreal QDeclarativeGridItem::size() const
{
    return view->lineSize();
}
