#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QScopedValueRollback>
#include <QtQml/QQmlInfo>

#include <utility>

// More than any screen shows, and as many as are made well within a second.
static const int mostRows = 10000;
static const int mostPasses = 10; // in which the view finds its place

QDeclarativeItemViewPrivate::QDeclarativeItemViewPrivate()
    : work([this] { dropRows(); })
{
}

QDeclarativeItemViewPrivate::~QDeclarativeItemViewPrivate() = default;

bool QDeclarativeItemViewPrivate::isRightToLeft() const
{
    return (layoutDirection == Qt::RightToLeft) != isMirrored();
}

qreal QDeclarativeItemViewPrivate::lengthOf(const QDeclarativeItem *item) const
{
    return scrolled() == Qt::Horizontal ? item->width() : item->height();
}

qreal QDeclarativeItemViewPrivate::placeOf(const QDeclarativeItem *item) const
{
    return toContent(scrolled() == Qt::Horizontal ? item->x() : item->y(), lengthOf(item));
}

void QDeclarativeItemViewPrivate::placeAt(QDeclarativeItem *item, qreal position) const
{
    const qreal place = toContent(position, lengthOf(item));
    if (scrolled() == Qt::Horizontal)
        item->setX(place);
    else
        item->setY(place);
}

void QDeclarativeItemViewPrivate::mirrorChange()
{
    QDeclarativeFlickablePrivate::mirrorChange();
    if (!componentIsComplete || work.postpone([this] { turnRound(); }))
        return;
    const QDeclarativeWork::Scope scope(&work);
    turnRound();
}

std::unique_ptr<QDeclarativeViewItem> QDeclarativeItemViewPrivate::createItem(int index)
{
    Q_Q(QDeclarativeItemView);
    // The rows are no longer numbered as the view knows them.
    if (!keptChanges.isEmpty() || work.isExhausted())
        return nullptr;
    requestedIndex = index;
    isNewItem = false;
    work.countItem();
    QGraphicsObject *object = visualModel->item(index, content);
    requestedIndex = -1;
    auto *item = qobject_cast<QDeclarativeItem *>(object);
    if (!item) {
        visualModel->releaseItem(object);
        return nullptr;
    }
    // Rows stand above the highlight; an item that a VisualItemModel owns stays as it was declared.
    if (isNewItem && !qobject_cast<QQmlObjectModel *>(visualModel->instance()))
        item->setZValue(1);
    auto made = newItem(item);
    made->index = index;
    made->attached = attachedTo(item);
    made->attached->setItemView(q);
    QDeclarativeItemPrivate::get(item)->addChangeListener(
        this, QDeclarativeItemChanges(GeometryChange) | DestroyedChange);
    itemMade(made.get());
    return made;
}

std::unique_ptr<QDeclarativeViewItem> QDeclarativeItemViewPrivate::createRow(int index)
{
    if (visibleItems.size() >= size_t(mostRows)) {
        if (!std::exchange(hasTooManyRows, true))
            qmlWarning(q_func()) << QDeclarativeItemView::tr("Only %1 rows are shown at once").arg(mostRows);
        return nullptr;
    }
    auto item = createItem(index);
    if (item)
        rowMade(item.get());
    return item;
}

/** How far the view makes items beyond what is seen: no more of them than have room in it. */
qreal QDeclarativeItemViewPrivate::cacheLength() const
{
    const qreal most = mostRows / 4 * qMax<qreal>(1, rowStep());
    return qBound(-most, qreal(cacheBuffer), most);
}

/** Says that something has changed, once the view is done with what it is about. */
void QDeclarativeItemViewPrivate::announce(void (QDeclarativeItemView::*signal)())
{
    Q_Q(QDeclarativeItemView);
    if (!work.postpone([q, signal] { Q_EMIT(q->*signal)(); }))
        Q_EMIT(q->*signal)();
}

/** Shows nothing, until the next change from outside. */
void QDeclarativeItemViewPrivate::dropRows()
{
    const QDeclarativeWork::Scope scope(&work);
    keptChanges.clear();
    clear();
}

bool QDeclarativeItemViewPrivate::isUsed(const QDeclarativeItem *item) const
{
    if (currentItem && currentItem->item == item)
        return true;
    for (const auto &visible : visibleItems) {
        if (visible->item == item)
            return true;
    }
    return false;
}

/** Gives up an item that is in no list any more. */
void QDeclarativeItemViewPrivate::releaseItem(std::unique_ptr<Item> released)
{
    if (!released)
        return;
    QDeclarativeItem *item = released->item;
    if (!isUsed(item)) {
        // The view keeps the focus that goes with the item.
        if (item->hasActiveFocus())
            item->setFocus(false);
        QDeclarativeItemPrivate::get(item)->removeChangeListener(
            this, QDeclarativeItemChanges(GeometryChange) | DestroyedChange);
        released->attached->disconnect(q_func());
    }
    released.reset();
    visualModel->releaseItem(item);
}

/** Places the items anew that another view of the same model had placed. */
void QDeclarativeItemViewPrivate::takeBackItems()
{
    Q_Q(QDeclarativeItemView);
    const QDeclarativeWork::Scope scope(&work);
    for (size_t slot = 0; slot < visibleItems.size(); ++slot)
        visibleItems[slot]->attached->setItemView(q);
    layoutWhenIdle();
}

QDeclarativeViewItem *QDeclarativeItemViewPrivate::visibleItem(int index) const
{
    for (const auto &item : visibleItems) {
        if (item->index == index)
            return item.get();
    }
    return nullptr;
}

QDeclarativeViewItem *QDeclarativeItemViewPrivate::firstVisibleItem() const
{
    const qreal position = viewPosition();
    for (const auto &item : visibleItems) {
        if (item->index >= 0 && item->endPosition() > position)
            return item.get();
    }
    return visibleItems.empty() ? nullptr : visibleItems.front().get();
}

bool QDeclarativeItemViewPrivate::hasRows() const
{
    return visualModel->isValid() && visualModel->count() > 0;
}

int QDeclarativeItemViewPrivate::lastVisibleIndex() const
{
    for (auto it = visibleItems.rbegin(); it != visibleItems.rend(); ++it) {
        if ((*it)->index >= 0)
            return (*it)->index;
    }
    return -1;
}

void QDeclarativeItemViewPrivate::clear()
{
    const QDeclarativeWork::Scope scope(&work);
    const QScopedValueRollback<bool> guard(layingOut, true);
    timeLine.reset(mainAxis());
    highlightTimeLine.clear();
    while (!visibleItems.empty()) {
        auto item = std::move(visibleItems.back());
        visibleItems.pop_back();
        releaseItem(std::move(item));
    }
    releaseItem(std::move(currentItem));
    createHighlight();
    visibleIndex = 0;
    averageSize = 0;
}

/** Makes everything anew, for another direction. */
void QDeclarativeItemViewPrivate::regenerate(MoveReason reason)
{
    clear();
    setViewPosition(0);
    if (!hasRows())
        placeParts();
    refill();
    moveReason = reason;
    updateCurrent(currentIndex);
}

/** Makes everything anew the other way round; a view that went to the current row stays with it. */
void QDeclarativeItemViewPrivate::turnRound()
{
    regenerate(moveReason);
    fixup(mainAxis(), Immediate);
    if (hasRows())
        updateBounds();
}

void QDeclarativeItemViewPrivate::scheduleLayout()
{
    Q_Q(QDeclarativeItemView);
    if (layoutScheduled || !componentIsComplete)
        return;
    layoutScheduled = true;
    QCoreApplication::postEvent(q, new QEvent(QEvent::LayoutRequest));
}

/** Has the next row beyond what is seen made in a while, and nothing moved. */
void QDeclarativeItemViewPrivate::scheduleFill()
{
    if (!std::exchange(fillScheduled, true))
        QCoreApplication::postEvent(q_func(), new QEvent(QEvent::LayoutRequest), Qt::LowEventPriority);
}

void QDeclarativeItemViewPrivate::flushLayout()
{
    if (layoutScheduled)
        layout();
}

/** Lays out for what QML has set, at once unless that was in the middle of other work. */
void QDeclarativeItemViewPrivate::layoutWhenIdle()
{
    if (!work.postpone([this] { layout(); }))
        layout();
}

void QDeclarativeItemViewPrivate::layout()
{
    if (!componentIsComplete || layingOut) {
        scheduleLayout();
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    layoutScheduled = false;
    if (!hasRows() && visibleItems.empty()) {
        clear();
        returnToStart();
        return;
    }
    {
        const QScopedValueRollback<bool> guard(layingOut, true);
        placeVisible();
        placeUnseenCurrent();
    }
    lazyRelease = false;
    refill();
    updateHighlight();
    finishLayout();
    viewMoved();
}

void QDeclarativeItemViewPrivate::finishLayout()
{
    if (!isMoving() && !isPressed) {
        fixupPosition();
        refill();
    }
    placeParts();
    updateContentSize();
}

/** Tells whether the item is at @p point of the content. */
bool QDeclarativeItemViewPrivate::contains(const Item *item, const QPointF &point) const
{
    return QRectF(item->item->pos(), QSizeF(item->item->width(), item->item->height())).contains(point);
}

/** Tells whether the change of the view's size concerns its rows. */
bool QDeclarativeItemViewPrivate::isLaidOutIn(const QSizeF &now, const QSizeF &before) const
{
    return scrolled() == Qt::Horizontal ? now.width() != before.width() : now.height() != before.height();
}

void QDeclarativeItemViewPrivate::refill()
{
    if (!hasRows() || !componentIsComplete || layingOut)
        return;
    const QDeclarativeWork::Scope scope(&work);
    // Where the view went, rows of another length than was expected may bring it back.
    for (int pass = 0; pass < mostPasses; ++pass) {
        movesInLayout = false;
        const qreal before = viewPosition();
        fillView();
        if (!movesInLayout) {
            // Back within the bounds after a jump to the current row, rows may be missing before that.
            if (moveReason == SetIndex && viewPosition() < before)
                scheduleFill();
            return;
        }
        lazyRelease = true;
    }
}

void QDeclarativeItemViewPrivate::fillView()
{
    const QScopedValueRollback<bool> guard(layingOut, true);
    // From right to left, the pixel at which the next row begins counts as seen.
    const qreal from = viewPosition() + (runsBackwards() ? 1 : 0);
    const qreal to = from + viewLength() - 1;
    bool changed = addVisible(from, to, false);
    // While the view moves, items are not destroyed in the frame in which others are made.
    if (!lazyRelease || !changed || deferredRelease) {
        changed = removeInvisible(from - cacheLength(), to + cacheLength()) || changed;
        deferredRelease = false;
    } else {
        deferredRelease = true;
    }
    lazyRelease = false;
    // What is not seen yet is made one by one while nothing else is.
    if (!changed && cacheBuffer > 0 && addVisible(from - cacheLength(), to + cacheLength(), true)) {
        changed = true;
    }
    if (changed)
        visibleChanged();
    else
        viewMoved();
}

/** Puts right what depends on which items there are. */
void QDeclarativeItemViewPrivate::visibleChanged()
{
    updateAverage();
    placeUnseenCurrent();
    viewMoved();
    placeParts();
    updateContentSize();
}

/** Gives up what the last frame of a movement left over. */
void QDeclarativeItemViewPrivate::releaseDeferred()
{
    if (deferredRelease)
        refill();
}

void QDeclarativeItemViewPrivate::updateContentSize()
{
    setContentSize(mainAxis(), endPosition() - startPosition());
}

void QDeclarativeItemViewPrivate::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now,
                                                      const QRectF &before)
{
    if (!componentIsComplete)
        return;
    if (item == highlightItem) {
        trackHighlight();
        return;
    }
    const bool isResized =
        scrolled() == Qt::Horizontal ? now.width() != before.width() : now.height() != before.height();
    if (isResized)
        scheduleLayout();
    if (isResized && (item == headerItem || item == footerItem))
        placeParts();
    if (currentItem && currentItem->item == item && (followsMoves() || now.size() != before.size()))
        updateHighlight();
}

bool QDeclarativeItemViewPrivate::removeInvisible(qreal from, qreal to)
{
    const auto before = visibleItems.size();
    while (visibleItems.size() > 1 && isBefore(visibleItems.front().get(), from)
           && !visibleItems.front()->attached->delayRemove()) {
        if (visibleItems.front()->index >= 0)
            ++visibleIndex;
        takeVisible(0);
        visibleIndex = qMax(visibleIndex, visibleItems.front()->index);
    }
    dropBeyond(to);
    return visibleItems.size() != before;
}

/** Gives up the items after @p to, but for the only one and those that delay their removal. */
void QDeclarativeItemViewPrivate::dropBeyond(qreal to)
{
    while (visibleItems.size() > 1 && isBeyond(visibleItems.back().get(), to)
           && !visibleItems.back()->attached->delayRemove())
        takeVisible(int(visibleItems.size()) - 1);
}

/** Gives up the items from @p slot on. */
void QDeclarativeItemViewPrivate::dropFrom(int slot)
{
    while (int(visibleItems.size()) > slot)
        takeVisible(int(visibleItems.size()) - 1);
}
