#pragma once

#include "engine/qdeclarativework_p.h"
#include "flickable/qdeclarativeflickable_p_p.h"
#include "models/qdeclarativekeptchanges_p.h"
#include "qdeclarativeitemview_p.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

class QDeclarativeVisualModel;

/** An item that stands in a view, with the row that it shows; -1 where that row is gone. */
class QDeclarativeViewItem
{
public:
    explicit QDeclarativeViewItem(QDeclarativeItem *item)
        : item(item)
    {
    }
    virtual ~QDeclarativeViewItem() = default;

    virtual qreal position() const = 0;
    virtual qreal size() const = 0;
    virtual qreal endPosition() const { return position() + size(); }

    QDeclarativeItem *const item;
    QDeclarativeItemViewAttached *attached = nullptr;
    int index = -1;
};

/** A number of the highlight's geometry that moves to where it should be. */
class QDeclarativeHighlightValue : public QQuickTimeLineValue
{
public:
    explicit QDeclarativeHighlightValue(std::function<void(qreal)> apply)
        : m_apply(std::move(apply))
    {
    }
    void setValue(qreal value) override
    {
        QQuickTimeLineValue::setValue(value);
        m_apply(value);
    }
    /** Takes note of a way that a time line is to take it. */
    void setOut(qreal from, qreal to)
    {
        QQuickTimeLineValue::setValue(from);
        m_from = from;
        m_to = to;
    }
    /** Tells whether a time line is taking it that very way. */
    bool isSetOut(qreal from, qreal to) const { return timeLine() && from == m_from && to == m_to; }

private:
    const std::function<void(qreal)> m_apply;
    qreal m_from = 0;
    qreal m_to = 0;
};

class QDeclarativeItemViewPrivate : public QDeclarativeFlickablePrivate, public QDeclarativeItemChangeListener
{
    Q_DECLARE_PUBLIC(QDeclarativeItemView)

public:
    using Item = QDeclarativeViewItem;
    enum MoveReason { Other, SetIndex, Mouse };

    QDeclarativeItemViewPrivate();
    ~QDeclarativeItemViewPrivate() override;

    // What a kind of view decides.
    virtual Qt::Orientation scrolled() const = 0;
    virtual std::unique_ptr<Item> newItem(QDeclarativeItem *) const = 0;
    virtual QDeclarativeItemViewAttached *attachedTo(QDeclarativeItem *) const = 0;
    virtual void setItemPosition(Item *, qreal position) = 0;
    /** Where the row stands, estimated where it has no item. */
    virtual qreal positionAt(int index) const = 0;
    virtual qreal startPosition() const = 0;
    virtual qreal endPosition() const = 0;
    /** Makes the items between @p from and @p to, or the next one at both ends; tells whether there are new.
     */
    virtual bool addVisible(qreal from, qreal to, bool isBuffer) = 0;
    /** Gives up the items that lie outside; tells whether there were any. */
    bool removeInvisible(qreal from, qreal to);
    /** Moves the visible items to where they belong. */
    virtual void placeVisible() = 0;
    using AddedItems = QVector<QPointer<QDeclarativeItemViewAttached>>;
    /** Takes note of new rows, and makes items for those that show; tells whether it matters to what shows.
     */
    virtual bool rowsInserted(int index, int count, AddedItems *) = 0;
    virtual void rowsMoved(int from, int to, int count) = 0;
    /** Called when the last of the visible items went, with the row @p index. */
    virtual void noRowsLeft(int index) = 0;
    /** Called after rows went that took @p above before @p first, which was the first in view, or null. */
    virtual void rowsRemoved(const Item * /*first*/, qreal /*above*/) { }
    /** Brings the highlight to the current item, at once or at its speed. */
    virtual void placeHighlight() = 0;
    virtual void moveHighlight() = 0;
    virtual bool snaps() const { return false; }
    /** Tells whether a view that snaps does so from @p position. */
    virtual bool snapsAt(qreal position) const;
    /** Where the view comes to rest that was let go at @p position. */
    virtual qreal snapPosition(qreal position) const { return position; }
    /** The same for a view that would by itself run on to @p natural. */
    virtual qreal flickTarget(qreal natural, qreal) const { return natural; }
    virtual void viewMoved() { }
    /** Keeps what is seen in place where it is counted from the end that moved by @p growth. */
    virtual void viewResized(qreal growth) { moveTo(x, x.value() - growth); }
    /** Where the first row ends. */
    virtual qreal firstEnd() const = 0;
    /** A piece of the scrolled direction. */
    struct Span
    {
        qreal start;
        qreal end;

        qreal length() const { return end - start; }
    };
    /** As far as the view follows within a range that is not strict. */
    virtual Span coveredByRows() const { return {startPosition(), endPosition()}; }
    /** What the view follows: the highlight, or the current item where there is none. */
    virtual Span followed() const = 0;
    virtual void placeCurrent() = 0;
    /** Estimates anew where the current item is that is not in view. */
    virtual void placeUnseenCurrent() { }
    /** Whether content shorter than the view stands at the view's far end. */
    virtual bool keepsEndInView() const { return false; }
    virtual bool contains(const Item *, const QPointF &) const;
    virtual bool isLaidOutIn(const QSizeF &now, const QSizeF &before) const;
    virtual qreal highlightPosition() const { return placeOf(highlightItem); }
    virtual qreal highlightSize() const { return lengthOf(highlightItem); }
    virtual void setHighlightPosition(qreal position) { placeAt(highlightItem, position); }
    /** Tells whether an item lies so far before @p from, or beyond @p to, that the view gives it up. */
    virtual bool isBefore(const Item *item, qreal from) const { return item->endPosition() - 1 < from; }
    virtual bool isBeyond(const Item *item, qreal to) const { return item->position() > to; }
    /** The row that a highlight at @p position is about, or -1. */
    virtual int rowUnder(qreal position) const;
    virtual void itemMade(Item *) { }
    /** Called for an item that is to stand among the visible ones. */
    virtual void rowMade(Item *) { }
    /** How far rows of the same kind are from each other along the scrolled direction, divided by those in a
     * line. */
    virtual qreal rowStep() const = 0;

    // Geometry along the scrolled direction.
    Axis &mainAxis() { return scrolled() == Qt::Horizontal ? x : y; }
    const Axis &mainAxis() const { return scrolled() == Qt::Horizontal ? x : y; }
    bool isRightToLeft() const;
    bool runsBackwards() const { return scrolled() == Qt::Horizontal && isRightToLeft(); }
    qreal viewLength() const { return viewSize(mainAxis()); }
    qreal toContent(qreal position, qreal length) const
    {
        return runsBackwards() ? -position - length : position;
    }
    qreal viewPosition() const { return toContent(mainAxis().wholeValue(), viewLength()); }
    virtual void setViewPosition(qreal);
    /** Puts a view without rows to its beginning. */
    virtual void returnToStart() { setViewPosition(0); }
    qreal placeOf(const QDeclarativeItem *) const;
    qreal lengthOf(const QDeclarativeItem *) const;
    void placeAt(QDeclarativeItem *, qreal position) const;
    qreal headerSize() const { return headerItem ? lengthOf(headerItem) : 0; }
    qreal footerSize() const { return footerItem ? lengthOf(footerItem) : 0; }
    qreal leastPosition() const;
    qreal greatestPosition() const;
    qreal boundedPosition(qreal position) const;
    bool hasRange() const;
    bool isStrict() const;
    qreal rangeBegin() const;
    qreal rangeEnd() const;

    qreal travelStart(const Axis &) const override;
    qreal travelEnd(const Axis &) const override;
    void fixup(Axis &, FixupMode) override;
    bool flick(Axis &, qreal velocity) override;
    void viewportMoved(Axis &) override;
    void dragStarting() override;
    void mirrorChange() override;

    // Items.
    std::unique_ptr<Item> createItem(int index);
    /** Makes an item that is to stand among the visible ones; null where no more are to be made. */
    std::unique_ptr<Item> createRow(int index);
    qreal cacheLength() const;
    void announce(void (QDeclarativeItemView::*signal)());
    void dropRows();
    void releaseItem(std::unique_ptr<Item>);
    void takeBackItems();
    bool isUsed(const QDeclarativeItem *) const;
    void takeVisible(int slot);
    void dropBeyond(qreal to);
    void dropFrom(int slot);
    Item *visibleItem(int index) const;
    Item *firstVisibleItem() const;
    int lastVisibleIndex() const;
    virtual void clear();
    bool hasRows() const;
    void regenerate(MoveReason reason = Other);
    void turnRound();
    void visibleChanged();
    void jumpTo(int index);
    void showRow(int index, QDeclarativeItemView::PositionMode);
    /** Where the view is to be to show an item in the given way, when it was at @p now. */
    qreal shownPosition(const Item &, QDeclarativeItemView::PositionMode, qreal now) const;
    qreal beginningWith(const Item &) const;
    qreal endingWith(const Item &) const;
    /** Where the view stands when what is between @p start and @p end is in its middle. */
    virtual qreal centredPosition(qreal start, qreal end) const { return (start + end - viewLength()) / 2; }
    /** Called when the items are in place. */
    virtual void finishLayout();
    virtual void placePart(QDeclarativeItem *part, qreal position) const { placeAt(part, position); }
    /** The first row of the line that holds the row. */
    virtual int lineStart(int index) const { return index; }
    /** Where the row visibleIndex goes while no row has an item. */
    virtual qreal placeOfFirst() const { return 0; }
    virtual void setPlaceOfFirst(qreal) { }
    void showCurrent();
    bool isMoving() const { return x.moving || y.moving; }
    void settleAt(qreal position, FixupMode);
    virtual void updateAverage() = 0;
    /** Makes the item of a row that is to be the current one. */
    virtual std::unique_ptr<Item> createCurrent(int index) { return createItem(index); }
    virtual void currentMade() { }
    /** Whether the highlight goes with the current item when that moves, not only when it is resized. */
    virtual bool followsMoves() const { return true; }
    /** Where the current item stands by itself, without what heads it. */
    virtual qreal currentPosition() const { return currentItem->position(); }
    /** Puts the highlight where the current row begins; across the scrolled direction it stays. */
    void jumpHighlight();
    /** Called when the view was put somewhere while the highlight follows the current item. */
    virtual void highlightPositioned() { jumpHighlight(); }
    void refill();
    void fillView();
    void releaseDeferred();
    void layout();
    void layoutWhenIdle();
    void scheduleLayout();
    void scheduleFill();
    void flushLayout();
    void updateContentSize();
    void updateCurrent(int index);
    void updateHighlight();
    void createHighlight();
    void trackHighlight();
    void fixupPosition();
    qreal trackedPosition() const;
    qreal nearestPosition(const Span &, const Span &) const;
    qreal rangePosition(const Span &) const;
    void moveValue(QDeclarativeHighlightValue *, qreal from, qreal to, int duration, qreal speed);
    void followView();
    void setCurrent(std::unique_ptr<Item>);
    void removeDelayed();

    /** The visible items while rows move: by the new numbers of the rows, or by slots where these are gone.
     */
    struct MovedItems
    {
        std::map<int, std::unique_ptr<Item>> rows;
        std::vector<std::pair<int, std::unique_ptr<Item>>> detached;
    };
    static int indexAfterMove(int index, int from, int to, int count);
    MovedItems takeForMove(int from, int to, int count);
    Item *appendMoved(MovedItems *, int index);
    void finishMove(MovedItems);
    void applyChanges(const QQmlChangeSet &, bool reset);
    void applyKeptChanges();
    void changeRows(const QQmlChangeSet &, int *rows);
    void resetRows();
    void insertRows(int index, int count, int *rows);
    AddedItems tellRemoved(int index, int count) const;
    void removeRows(int index, int count, int *rows);
    void moveRows(int from, int to, int count);
    void currentRowRemoved(int index, int count, int rows);
    void detachRow(Item *);
    void releaseParted();
    void noteFirstRow();
    void recreate(QPointer<QDeclarativeItem> *part, QQmlComponent *);
    void placeParts();
    void placeHeader();
    void placeFooter();

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemDestroyed(QDeclarativeItem *) override;

    QDeclarativeVisualModel *visualModel = nullptr;
    std::vector<std::unique_ptr<Item>> visibleItems;
    std::unique_ptr<Item> currentItem;
    std::vector<std::unique_ptr<Item>> partedItems; ///< left the view with a change that is under way
    QPointer<QDeclarativeItem> highlightItem;
    QPointer<QDeclarativeItem> headerItem;
    QPointer<QDeclarativeItem> footerItem;
    QPointer<QQmlComponent> highlightComponent;
    QPointer<QQmlComponent> headerComponent;
    QPointer<QQmlComponent> footerComponent;
    QDeclarativeTimeLine highlightTimeLine;
    QDeclarativeWork work;
    QDeclarativeKeptChanges keptChanges;
    int visibleIndex = 0; ///< the first row in visibleItems
    int currentIndex = -1;
    int averageSize = 0; ///< of the visible items, what the unseen ones are taken to have
    int cacheBuffer = 0;
    int highlightMoveDuration = -1;
    int requestedIndex = -1;
    qreal highlightBegin = 0;
    qreal highlightEnd = 0;
    Qt::LayoutDirection layoutDirection = Qt::LeftToRight;
    QDeclarativeItemView::HighlightRangeMode rangeMode = QDeclarativeItemView::NoHighlightRange;
    MoveReason moveReason = Other;
    bool highlightFollows = true;
    bool highlightBeginIsSet = false;
    bool highlightEndIsSet = false;
    bool wraps = false;
    bool currentIsCleared = false;
    bool isNewItem = false;
    bool hasTooManyRows = false; ///< some were left out, which has been told
    bool layingOut = false; ///< the visible items must stay as they are
    bool inMovement = false; ///< the view looks after the rows that come into view
    bool movesInLayout = false; ///< the view went elsewhere while items were placed
    bool layoutScheduled = false;
    bool fillScheduled = false;
    bool lazyRelease = false;
    bool deferredRelease = false;
};
