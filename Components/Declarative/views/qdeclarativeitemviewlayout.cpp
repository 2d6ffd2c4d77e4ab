#include "engine/qdeclarativerounding_p.h"
#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEasingCurve>
#include <QtCore/QEvent>
#include <QtCore/QScopedValueRollback>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlInfo>

#include <utility>

// More than any screen shows, and as many as are made well within a second.
static const int mostRows = 10000;

QDeclarativeItemViewPrivate::QDeclarativeItemViewPrivate()
    : work([this] { dropRows(); })
{
}

QDeclarativeItemViewPrivate::~QDeclarativeItemViewPrivate() = default;

bool QDeclarativeItemViewPrivate::isRightToLeft() const
{
    return (layoutDirection == Qt::RightToLeft) != isMirrored();
}

void QDeclarativeItemViewPrivate::setViewPosition(qreal position)
{
    moveTo(mainAxis(), toContent(position, viewLength()));
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
    item->setPos(scrolled() == Qt::Horizontal ? QPointF(place, 0) : QPointF(0, place));
}

bool QDeclarativeItemViewPrivate::hasRange() const
{
    return rangeMode != QDeclarativeItemView::NoHighlightRange && highlightBegin <= highlightEnd;
}

bool QDeclarativeItemViewPrivate::isStrict() const
{
    return hasRange() && rangeMode == QDeclarativeItemView::StrictlyEnforceRange;
}

qreal QDeclarativeItemViewPrivate::leastPosition() const
{
    const qreal least = startPosition() - headerSize();
    if (!isStrict() || visualModel->count() == 0)
        return least;
    return qMin(least - highlightBegin, secondPosition() - highlightEnd);
}

qreal QDeclarativeItemViewPrivate::greatestPosition() const
{
    if (!isStrict() || visualModel->count() == 0)
        return qMax(leastPosition(), endPosition() + footerSize() - viewLength());
    const qreal lastAtBegin = positionAt(visualModel->count() - 1) - highlightBegin;
    const qreal lastAtEnd = highlightEnd != highlightBegin ? endPosition() - highlightEnd : lastAtBegin;
    return qMax(leastPosition(), qMax(lastAtBegin, lastAtEnd));
}

qreal QDeclarativeItemViewPrivate::boundedPosition(qreal position) const
{
    return qMax(leastPosition(), qMin(position, greatestPosition()));
}

qreal QDeclarativeItemViewPrivate::travelStart(const Axis &axis) const
{
    if (axis.orientation != scrolled())
        return QDeclarativeFlickablePrivate::travelStart(axis);
    return toContent(runsBackwards() ? greatestPosition() : leastPosition(), viewLength());
}

qreal QDeclarativeItemViewPrivate::travelEnd(const Axis &axis) const
{
    if (axis.orientation != scrolled())
        return QDeclarativeFlickablePrivate::travelEnd(axis);
    return toContent(runsBackwards() ? leastPosition() : greatestPosition(), viewLength());
}

void QDeclarativeItemViewPrivate::fixup(Axis &axis, FixupMode mode)
{
    if (mode == Immediate || axis.orientation != scrolled() || visibleItems.empty()) {
        QDeclarativeFlickablePrivate::fixup(axis, mode);
        return;
    }
    const qreal now = viewPosition();
    qreal target = now;
    if (snaps()) {
        target = snapPosition(now);
    } else if (isStrict() && currentItem) {
        target = qMin(target, currentItem->position() - highlightBegin);
        target = qMax(target,
                      currentItem->endPosition() - qMax(highlightEnd, highlightBegin + currentItem->size()));
    }
    settle(axis, toContent(boundedPosition(target), viewLength()), mode);
}

bool QDeclarativeItemViewPrivate::flick(Axis &axis, qreal velocity)
{
    if (!snaps() || axis.orientation != scrolled() || deceleration <= 0)
        return QDeclarativeFlickablePrivate::flick(axis, velocity);
    const qreal limited = qBound(-maximumVelocity, velocity, maximumVelocity);
    const qreal along = runsBackwards() ? -limited : limited;
    const qreal natural = along * qAbs(along) / (2 * deceleration);
    const qreal target = boundedPosition(flickTarget(viewPosition() + natural, along));
    const qreal way = toContent(target, viewLength()) - axis.value();
    if (way == 0 || (way > 0) != (limited > 0))
        return false;
    return runOutTo(axis, limited, way);
}

void QDeclarativeItemViewPrivate::dragStarting()
{
    moveReason = Mouse;
}

void QDeclarativeItemViewPrivate::mirrorChange()
{
    QDeclarativeFlickablePrivate::mirrorChange();
    if (!componentIsComplete || work.postpone([this] { regenerate(); }))
        return;
    const QDeclarativeWork::Scope scope(&work);
    regenerate();
}

void QDeclarativeItemViewPrivate::viewportMoved(Axis &axis)
{
    if (!componentIsComplete || axis.orientation != scrolled())
        return;
    if (layingOut) {
        movesInLayout = true;
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    lazyRelease = true;
    refill();
    if (axis.flicking)
        moveReason = Mouse;
    followView();
    viewMoved();
}

/** Where the highlight may not leave its range, the view's movement changes the current item. */
void QDeclarativeItemViewPrivate::followView()
{
    if (moveReason == SetIndex || !isStrict() || !highlightItem || !currentItem)
        return;
    qreal place = highlightPosition();
    place = qMin(place, viewPosition() + highlightEnd - highlightSize());
    place = qMax(place, viewPosition() + highlightBegin);
    highlightTimeLine.clear();
    setHighlightPosition(place);
    const int row = rowUnder(place);
    if (row >= 0 && row != currentIndex)
        updateCurrent(row);
}

int QDeclarativeItemViewPrivate::rowUnder(qreal position) const
{
    for (const auto &item : visibleItems) {
        const qreal half = item->size() / 2;
        if (item->index >= 0 && position >= item->position() - half && position < item->position() + half)
            return item->index;
    }
    return -1;
}

std::unique_ptr<QDeclarativeViewItem> QDeclarativeItemViewPrivate::createItem(int index)
{
    Q_Q(QDeclarativeItemView);
    // The rows are no longer numbered as the view knows them.
    if (!keptChanges.isEmpty() || work.isExhausted())
        return nullptr;
    requestedIndex = index;
    isNewItem = false;
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

QDeclarativeViewItem *QDeclarativeItemViewPrivate::currentRow() const
{
    Item *visible = visibleItem(currentIndex);
    return visible ? visible : currentItem.get();
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

/** Makes everything anew, for another delegate or direction. */
void QDeclarativeItemViewPrivate::regenerate()
{
    clear();
    setViewPosition(0);
    layout();
    placeParts();
    if (visualModel->isValid() && currentIndex >= 0) {
        moveReason = Other;
        updateCurrent(currentIndex);
    }
    QDeclarativeFlickablePrivate::fixup(mainAxis(), Immediate);
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

/** Lays out for another size. */
void QDeclarativeItemViewPrivate::relayout()
{
    if (work.postpone([this] { relayout(); }))
        return;
    layout();
    QDeclarativeFlickablePrivate::fixup(mainAxis(), Immediate);
}

void QDeclarativeItemViewPrivate::placeCurrent()
{
    if (!currentItem || currentIndex < 0)
        return;
    for (const auto &item : visibleItems) {
        if (item->item == currentItem->item)
            return;
    }
    setItemPosition(currentItem.get(), positionAt(currentIndex));
}

void QDeclarativeItemViewPrivate::layout()
{
    if (!componentIsComplete || layingOut) {
        scheduleLayout();
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    layoutScheduled = false;
    if (visibleItems.empty() && visualModel->count() == 0) {
        if (visualModel->isValid()) {
            visibleIndex = 0;
            setViewPosition(0);
            updateContentSize();
        }
        viewMoved();
        return;
    }
    {
        const QScopedValueRollback<bool> guard(layingOut, true);
        placeVisible();
        placeCurrent();
    }
    lazyRelease = false;
    refill();
    updateHighlight();
    updateContentSize();
    viewMoved();
}

void QDeclarativeItemViewPrivate::refill()
{
    if (!visualModel->isValid() || layingOut)
        return;
    const QDeclarativeWork::Scope scope(&work);
    hasJumped = false;
    movesInLayout = false;
    fillView();
    // Where the view went, rows that are shorter than was expected bring it back to where some are missing.
    if (hasJumped && movesInLayout)
        fillView();
}

void QDeclarativeItemViewPrivate::fillView()
{
    const QScopedValueRollback<bool> guard(layingOut, true);
    const qreal from = viewPosition() - cacheLength();
    const qreal to = viewPosition() + viewLength() + cacheLength();
    bool changed = addVisible(from, to);
    // While the view moves, items are not destroyed in the frame in which others are made.
    if (!lazyRelease || !changed || deferredRelease) {
        changed = removeInvisible(from, to) || changed;
        deferredRelease = false;
    } else {
        deferredRelease = true;
    }
    lazyRelease = false;
    if (changed) {
        placeVisible();
        placeCurrent();
    }
    placeParts();
    if (changed)
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
    if (!visualModel->isValid() && visibleItems.empty())
        return;
    const bool isEmpty = visibleItems.empty() || visualModel->count() == 0;
    setContentSize(mainAxis(), isEmpty ? emptyContentSize() : endPosition() - startPosition());
}

void QDeclarativeItemViewPrivate::setCurrent(std::unique_ptr<Item> item)
{
    std::swap(item, currentItem);
    if (item && (!currentItem || item->item != currentItem->item))
        item->attached->setIsCurrentItem(false);
    if (currentItem) {
        if (visibleItems.empty())
            averageSize = QDeclarativeRounding::bounded(currentItem->size());
        if (currentIndex > visibleIndex && currentIndex < lastVisibleIndex() && !visibleItem(currentIndex))
            addSkipped();
        placeCurrent();
        currentItem->item->setFocus(true);
        currentItem->attached->setIsCurrentItem(true);
    }
    updateHighlight();
    Q_EMIT q_func()->currentIndexChanged();
    releaseItem(std::move(item));
}

void QDeclarativeItemViewPrivate::updateCurrent(int index)
{
    if (currentItem && index == currentIndex) {
        updateHighlight();
        return;
    }
    const QDeclarativeWork::Scope scope(&work);
    if (!keptChanges.isEmpty()) {
        work.postpone([=] { updateCurrent(index); });
        return;
    }
    auto item = index >= 0 ? createItem(index) : nullptr;
    currentIndex = index;
    setCurrent(std::move(item));
}

void QDeclarativeItemViewPrivate::createHighlight()
{
    const bool had = highlightItem;
    highlightTimeLine.clear();
    discard(highlightItem);
    highlightItem = nullptr;
    if (currentItem)
        highlightItem =
            highlightComponent ? createPart(highlightComponent, content) : new QDeclarativeItem(content);
    if (highlightItem) {
        highlightItem->setParentItem(content);
        placeHighlight();
    }
    if (had || highlightItem)
        Q_EMIT q_func()->highlightItemChanged();
}

void QDeclarativeItemViewPrivate::updateHighlight()
{
    Q_Q(QDeclarativeItemView);
    if (bool(currentItem) != bool(highlightItem))
        createHighlight();
    if (currentItem && highlightItem && highlightFollows && !q->isMoving())
        moveHighlight();
    trackHighlight();
}

void QDeclarativeItemViewPrivate::moveValue(QDeclarativeHighlightValue *value, qreal from, qreal to,
                                            int duration, qreal speed)
{
    highlightTimeLine.reset(*value);
    if (from == to)
        return;
    value->QQuickTimeLineValue::setValue(from);
    const int bySpeed = speed > 0 ? QDeclarativeRounding::bounded(qAbs(to - from) * 1000 / speed) : -1;
    int time = duration >= 0 ? duration : bySpeed;
    if (duration >= 0 && bySpeed >= 0)
        time = qMin(duration, bySpeed);
    highlightJumps = time <= 0;
    if (highlightJumps)
        value->setValue(to);
    else
        highlightTimeLine.move(*value, to, QEasingCurve(QEasingCurve::InOutQuad), time);
}

/** Moves the view after the highlight when the current row was set; tells whether it moved. */
bool QDeclarativeItemViewPrivate::trackHighlight()
{
    if (moveReason != SetIndex || !currentItem || visibleItems.empty())
        return false;
    const bool isHighlight = highlightItem && highlightFollows;
    const Item *row = currentRow();
    const qreal gap = row->size() - rowLength(row); // a heading before the item itself
    const qreal start = qCeil(isHighlight ? highlightPosition() : row->position() + gap);
    const qreal end = start + (isHighlight ? highlightSize() : rowLength(row));
    const qreal now = viewPosition();
    const qreal length = viewLength();
    qreal position = now;
    if (hasRange()) {
        position = qMax(position, end - highlightEnd);
        position = qMin(position, start - highlightBegin);
        if (!isStrict())
            position = boundedPosition(position);
    } else if (start - gap < now && row->position() < now) {
        position = qMax(start - gap, row->position());
    } else if (end >= now + length && row->endPosition() >= now + length) {
        position = qMin(end, row->endPosition()) - length;
        if (end - start > length)
            position = start;
    }
    if (position == now)
        return false;
    setViewPosition(position);
    return true;
}

// On the last step of a movement, which may be the only one, the time line is no longer active.
void QDeclarativeItemViewPrivate::highlightMoved()
{
    if (trackHighlight())
        followsHighlight = !highlightJumps;
}

/** Replaces the header or the footer. */
void QDeclarativeItemViewPrivate::recreate(QPointer<QDeclarativeItem> *part, QQmlComponent *component)
{
    if (*part)
        QDeclarativeItemPrivate::get(part->data())->removeChangeListener(this, GeometryChange);
    discard(*part);
    *part = nullptr;
    *part = component ? createPart(component, content) : nullptr;
    if (*part) {
        (*part)->setZValue(1);
        QDeclarativeItemPrivate::get(part->data())->addChangeListener(this, GeometryChange);
    }
    placeParts();
}

void QDeclarativeItemViewPrivate::placeParts()
{
    if (headerItem)
        placeAt(headerItem, startPosition() - headerSize());
    if (footerItem)
        placeAt(footerItem, endPosition());
}

void QDeclarativeItemViewPrivate::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now,
                                                      const QRectF &before)
{
    if (now.size() == before.size() || !componentIsComplete)
        return;
    if (item == headerItem || item == footerItem) {
        placeParts();
        if (!isPressed && !mainAxis().moving && !layingOut)
            QDeclarativeFlickablePrivate::fixup(mainAxis(), Immediate);
        updateBounds();
        return;
    }
    scheduleLayout();
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
    while (visibleItems.size() > 1 && isBeyond(visibleItems.back().get(), to)
           && !visibleItems.back()->attached->delayRemove())
        takeVisible(int(visibleItems.size()) - 1);
    return visibleItems.size() != before;
}
