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
    qreal endPosition() const { return position() + size(); }
    bool contains(const QPointF &point) const
    {
        return QRectF(item->pos(), QSizeF(item->width(), item->height())).contains(point);
    }

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

private:
    const std::function<void(qreal)> m_apply;
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
    /** Makes the items between @p from and @p to; tells whether there are new ones. */
    virtual bool addVisible(qreal from, qreal to) = 0;
    /** Makes the items that were left out among the visible ones. */
    virtual void addSkipped() { }
    /** Gives up the items that lie outside; tells whether there were any. */
    bool removeInvisible(qreal from, qreal to);
    /** Moves the visible items to where they belong. */
    virtual void placeVisible() = 0;
    /** Takes note of new rows, and makes items for those that show. */
    virtual void rowsInserted(int index, int count) = 0;
    virtual void rowsMoved(int from, int to, int count) = 0;
    /** Called when the last of the visible items went that have a row. */
    virtual void noRowsLeft(int index, qreal position) = 0;
    /** Brings the highlight to the current item, at once or at its speed. */
    virtual void placeHighlight() = 0;
    virtual void moveHighlight() = 0;
    virtual bool snaps() const { return false; }
    /** Where the view comes to rest that was let go at @p position. */
    virtual qreal snapPosition(qreal position) const { return position; }
    /** The same for a view that would by itself run on to @p natural. */
    virtual qreal flickTarget(qreal natural, qreal) const { return natural; }
    virtual void viewMoved() { }
    /** Called after rows went, where @p firstBefore was the first row among the visible items. */
    virtual void rowsRemoved(int /*firstBefore*/) { }
    /** Where the row stands that comes after the first one along the scrolled direction. */
    virtual qreal secondPosition() const { return positionAt(1); }
    virtual qreal emptyContentSize() const { return 1; }
    /** How long a row is without what stands before it. */
    virtual qreal rowLength(const Item *row) const { return lengthOf(row->item); }
    virtual qreal highlightPosition() const { return placeOf(highlightItem); }
    virtual qreal highlightSize() const { return lengthOf(highlightItem); }
    virtual void setHighlightPosition(qreal position) { placeAt(highlightItem, position); }
    /** Tells whether an item lies so far before @p from, or beyond @p to, that the view gives it up. */
    virtual bool isBefore(const Item *item, qreal from) const { return item->endPosition() <= from; }
    virtual bool isBeyond(const Item *item, qreal to) const { return item->position() > to; }
    /** Where the view stands when what is between @p start and @p end is in its middle. */
    virtual qreal centredPosition(qreal start, qreal end) const { return (start + end - viewLength()) / 2; }
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
    void setViewPosition(qreal);
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
    bool isUsed(const QDeclarativeItem *) const;
    void takeVisible(int slot);
    Item *visibleItem(int index) const;
    Item *firstVisibleItem() const;
    int lastVisibleIndex() const;
    virtual void clear();
    /** The current item, in the list of the visible ones where it is among them. */
    Item *currentRow() const;
    void regenerate();
    void refill();
    void fillView();
    void releaseDeferred();
    void layout();
    void relayout();
    void layoutWhenIdle();
    void scheduleLayout();
    void flushLayout();
    void placeCurrent();
    void updateContentSize();
    void updateCurrent(int index);
    void updateHighlight();
    void createHighlight();
    bool trackHighlight();
    /** To be called with each step of the highlight's movement. */
    void highlightMoved();
    void moveValue(QDeclarativeHighlightValue *, qreal from, qreal to, int duration, qreal speed);
    void followView();
    void setCurrent(std::unique_ptr<Item>);
    void removeDelayed();

    /** What a change of the model has to make known once the items are in place. */
    struct Changes
    {
        QVector<QPair<int, int>> inserted; ///< rows from, and up to but not with
        int lostCurrent = -1; ///< where the current row was that is gone
        bool currentMoved = false;
    };
    /** The visible items while rows move: by the new numbers of the rows, or by slots where these are gone.
     */
    struct MovedItems
    {
        std::map<int, std::unique_ptr<Item>> rows;
        std::vector<std::pair<int, std::unique_ptr<Item>>> detached;
    };
    int renumberForInsert(int index, int count);
    void dropBehind(int slot, int made, int count);
    static int indexAfterMove(int index, int from, int to, int count);
    MovedItems takeForMove(int from, int to, int count);
    Item *appendMoved(MovedItems *, int index);
    void finishMove(MovedItems);
    void applyChanges(const QQmlChangeSet &, bool reset);
    void applyKeptChanges();
    void changeRows(const QQmlChangeSet &, Changes *);
    void resetRows();
    void insertRows(int index, int count, Changes *);
    void removeRows(int index, int count, Changes *);
    void moveRows(int from, int to, int count, Changes *);
    void detachRow(Item *);
    void finishChanges(const Changes &);
    void recreate(QPointer<QDeclarativeItem> *part, QQmlComponent *);
    void placeParts();

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
    bool hasJumped = false; ///< all items were given up, for others where these were expected
    bool movesInLayout = false; ///< the view went elsewhere while items were placed
    bool layoutScheduled = false;
    bool lazyRelease = false;
    bool deferredRelease = false;
    bool highlightJumps = false; ///< the highlight goes to its row without a movement
    bool followsHighlight = false; ///< the view has moved with the highlight that is on its way
};
