#include "qdeclarativeitemview_p.h"

#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativeitemview_p_p.h"

#include <utility>

QDeclarativeItemViewAttached::QDeclarativeItemViewAttached(QObject *object)
    : QObject(object)
{
    // A delegate's bindings run before the view knows the item, which has its place in the content by then.
    const auto *item = qobject_cast<QDeclarativeItem *>(object);
    const QGraphicsObject *content = item ? item->parentObject() : nullptr;
    if (content)
        m_view = qobject_cast<QDeclarativeItemView *>(content->parentObject());
}

QDeclarativeItemView *QDeclarativeItemViewAttached::itemView() const
{
    return m_view;
}

void QDeclarativeItemViewAttached::setItemView(QDeclarativeItemView *view)
{
    if (view == m_view)
        return;
    m_view = view;
    Q_EMIT viewChanged();
}

void QDeclarativeItemViewAttached::setIsCurrentItem(bool current)
{
    if (current == m_isCurrentItem)
        return;
    m_isCurrentItem = current;
    Q_EMIT currentItemChanged();
}

void QDeclarativeItemViewAttached::setDelayRemove(bool delay)
{
    if (delay == m_delayRemove)
        return;
    m_delayRemove = delay;
    Q_EMIT delayRemoveChanged();
}

QDeclarativeItemView::QDeclarativeItemView(QDeclarativeItemViewPrivate &dd, QDeclarativeItem *parent)
    : QDeclarativeFlickable(dd, parent)
{
    Q_D(QDeclarativeItemView);
    setFlag(ItemIsFocusScope);
    d->work.setElement(this);
    d->visualModel = new QDeclarativeVisualModel(this);
    // The rows count from when there is a model; items are made when the view is complete.
    d->visualModel->componentComplete();
    connect(d->visualModel, &QDeclarativeVisualModel::modelUpdated, this,
            [d](const QQmlChangeSet &changes, bool reset) { d->applyChanges(changes, reset); });
    // Another view may be in the middle of going.
    connect(
        d->visualModel, &QDeclarativeVisualModel::itemsReturned, this, [d] { d->takeBackItems(); },
        Qt::QueuedConnection);
    connect(&d->timeLine, &QQuickTimeLine::completed, this, [d] { d->releaseDeferred(); });
    connect(d->visualModel, &QDeclarativeVisualModel::createdItem, this, [d](int index) {
        if (index == d->requestedIndex)
            d->isNewItem = true;
    });
}

QDeclarativeItemView::~QDeclarativeItemView()
{
    Q_D(QDeclarativeItemView);
    // No handler may see the view while it is taken apart.
    blockSignals(true);
    d->work.close();
    d->highlightTimeLine.clear();
    d->timeLine.clear();
    d->clear();
    for (QDeclarativeItem *part : {d->headerItem.data(), d->footerItem.data()}) {
        if (part)
            QDeclarativeItemPrivate::get(part)->removeChangeListener(d, GeometryChange);
    }
}

QVariant QDeclarativeItemView::model() const
{
    return d_func()->visualModel->model();
}

void QDeclarativeItemView::setModel(const QVariant &model)
{
    Q_D(QDeclarativeItemView);
    if (d->work.postponeSetting("model", [=] { setModel(model); }) || model == this->model())
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->keptChanges.clear();
    d->clear();
    d->keptChanges.clear();
    {
        // What the model has to say of its new rows is said below.
        const QSignalBlocker blocker(d->visualModel);
        d->visualModel->setModel(model);
    }
    d->setViewPosition(0);
    if (isComponentComplete()) {
        d->refill();
        if ((d->currentIndex >= count() || d->currentIndex < 0) && !d->currentIsCleared)
            d->currentIndex = 0;
        d->showCurrent();
        d->updateContentSize();
    }
    d->announce(&QDeclarativeItemView::countChanged);
    d->announce(&QDeclarativeItemView::modelChanged);
}

QQmlComponent *QDeclarativeItemView::delegate() const
{
    return d_func()->visualModel->delegate();
}

void QDeclarativeItemView::setDelegate(QQmlComponent *delegate)
{
    Q_D(QDeclarativeItemView);
    const QPointer<QQmlComponent> guard(delegate);
    if (d->work.postponeSetting("delegate", [=] { setDelegate(guard); }) || delegate == this->delegate())
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->keptChanges.clear();
    d->clear();
    d->keptChanges.clear();
    {
        const QSignalBlocker blocker(d->visualModel);
        d->visualModel->setDelegate(delegate);
    }
    if (isComponentComplete()) {
        d->refill();
        d->showCurrent();
        d->updateContentSize();
    }
    d->announce(&QDeclarativeItemView::delegateChanged);
}

int QDeclarativeItemView::currentIndex() const
{
    return d_func()->currentIndex;
}

void QDeclarativeItemView::setCurrentIndex(int index)
{
    Q_D(QDeclarativeItemView);
    if (d->work.postpone([=] { setCurrentIndex(index); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->currentIsCleared = index == -1;
    if (index == d->currentIndex)
        return;
    if (isComponentComplete() && d->hasRows()) {
        d->flushLayout();
        d->moveReason = QDeclarativeItemViewPrivate::SetIndex;
        d->updateCurrent(index);
    } else {
        d->currentIndex = index;
        Q_EMIT currentIndexChanged();
    }
}

QDeclarativeItem *QDeclarativeItemView::currentItem() const
{
    Q_D(const QDeclarativeItemView);
    return d->currentItem ? d->currentItem->item : nullptr;
}

int QDeclarativeItemView::count() const
{
    return d_func()->visualModel->count();
}

QQmlComponent *QDeclarativeItemView::highlight() const
{
    return d_func()->highlightComponent;
}

void QDeclarativeItemView::setHighlight(QQmlComponent *component)
{
    Q_D(QDeclarativeItemView);
    const QPointer<QQmlComponent> guard(component);
    if (component == d->highlightComponent || d->work.postpone([=] { setHighlight(guard); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->highlightComponent = component;
    d->createHighlight();
    if (d->currentItem)
        d->updateHighlight();
    d->announce(&QDeclarativeItemView::highlightChanged);
}

QDeclarativeItem *QDeclarativeItemView::highlightItem() const
{
    return d_func()->highlightItem;
}

bool QDeclarativeItemView::highlightFollowsCurrentItem() const
{
    return d_func()->highlightFollows;
}

void QDeclarativeItemView::setHighlightFollowsCurrentItem(bool follows)
{
    Q_D(QDeclarativeItemView);
    if (follows == d->highlightFollows || d->work.postpone([=] { setHighlightFollowsCurrentItem(follows); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->highlightFollows = follows;
    if (!follows)
        d->highlightTimeLine.clear();
    d->updateHighlight();
    d->announce(&QDeclarativeItemView::highlightFollowsCurrentItemChanged);
}

int QDeclarativeItemView::highlightMoveDuration() const
{
    return d_func()->highlightMoveDuration;
}

void QDeclarativeItemView::setHighlightMoveDuration(int duration)
{
    Q_D(QDeclarativeItemView);
    if (duration == d->highlightMoveDuration)
        return;
    d->highlightMoveDuration = duration;
    Q_EMIT highlightMoveDurationChanged();
}

qreal QDeclarativeItemView::preferredHighlightBegin() const
{
    return d_func()->highlightBegin;
}

void QDeclarativeItemView::setPreferredHighlightBegin(qreal begin)
{
    Q_D(QDeclarativeItemView);
    d->highlightBeginIsSet = true;
    if (begin == d->highlightBegin)
        return;
    d->highlightBegin = begin;
    d->scheduleLayout();
    Q_EMIT preferredHighlightBeginChanged();
}

void QDeclarativeItemView::resetPreferredHighlightBegin()
{
    setPreferredHighlightBegin(0);
    d_func()->highlightBeginIsSet = false;
}

qreal QDeclarativeItemView::preferredHighlightEnd() const
{
    return d_func()->highlightEnd;
}

void QDeclarativeItemView::setPreferredHighlightEnd(qreal end)
{
    Q_D(QDeclarativeItemView);
    d->highlightEndIsSet = true;
    if (end == d->highlightEnd)
        return;
    d->highlightEnd = end;
    d->scheduleLayout();
    Q_EMIT preferredHighlightEndChanged();
}

void QDeclarativeItemView::resetPreferredHighlightEnd()
{
    setPreferredHighlightEnd(0);
    d_func()->highlightEndIsSet = false;
}

QDeclarativeItemView::HighlightRangeMode QDeclarativeItemView::highlightRangeMode() const
{
    return d_func()->rangeMode;
}

void QDeclarativeItemView::setHighlightRangeMode(HighlightRangeMode mode)
{
    Q_D(QDeclarativeItemView);
    if (mode == d->rangeMode)
        return;
    d->rangeMode = mode;
    d->scheduleLayout();
    Q_EMIT highlightRangeModeChanged();
}

Qt::LayoutDirection QDeclarativeItemView::layoutDirection() const
{
    return d_func()->layoutDirection;
}

void QDeclarativeItemView::setLayoutDirection(Qt::LayoutDirection direction)
{
    Q_D(QDeclarativeItemView);
    if (direction == d->layoutDirection || d->work.postpone([=] { setLayoutDirection(direction); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->layoutDirection = direction;
    if (isComponentComplete())
        d->turnRound();
    d->announce(&QDeclarativeItemView::layoutDirectionChanged);
}

bool QDeclarativeItemView::isWrapEnabled() const
{
    return d_func()->wraps;
}

void QDeclarativeItemView::setWrapEnabled(bool wraps)
{
    Q_D(QDeclarativeItemView);
    if (wraps == d->wraps)
        return;
    d->wraps = wraps;
    Q_EMIT keyNavigationWrapsChanged();
}

int QDeclarativeItemView::cacheBuffer() const
{
    return d_func()->cacheBuffer;
}

void QDeclarativeItemView::setCacheBuffer(int buffer)
{
    Q_D(QDeclarativeItemView);
    if (buffer == d->cacheBuffer)
        return;
    d->cacheBuffer = buffer;
    d->refill();
    Q_EMIT cacheBufferChanged();
}

QQmlComponent *QDeclarativeItemView::header() const
{
    return d_func()->headerComponent;
}

void QDeclarativeItemView::setHeader(QQmlComponent *component)
{
    Q_D(QDeclarativeItemView);
    const QPointer<QQmlComponent> guard(component);
    if (component == d->headerComponent || d->work.postpone([=] { setHeader(guard); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->headerComponent = component;
    if (isComponentComplete())
        d->recreate(&d->headerItem, component);
    d->announce(&QDeclarativeItemView::headerChanged);
}

QQmlComponent *QDeclarativeItemView::footer() const
{
    return d_func()->footerComponent;
}

void QDeclarativeItemView::setFooter(QQmlComponent *component)
{
    Q_D(QDeclarativeItemView);
    const QPointer<QQmlComponent> guard(component);
    if (component == d->footerComponent || d->work.postpone([=] { setFooter(guard); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->footerComponent = component;
    if (isComponentComplete()) {
        d->recreate(&d->footerItem, component);
        d->QDeclarativeFlickablePrivate::fixup(d->mainAxis(), QDeclarativeFlickablePrivate::Immediate);
        d->refill();
    }
    d->announce(&QDeclarativeItemView::footerChanged);
}

int QDeclarativeItemView::indexAt(qreal x, qreal y) const
{
    Q_D(const QDeclarativeItemView);
    for (const auto &item : d->visibleItems) {
        if (item->index >= 0 && d->contains(item.get(), QPointF(x, y)))
            return item->index;
    }
    return -1;
}

void QDeclarativeItemView::componentComplete()
{
    Q_D(QDeclarativeItemView);
    d->visualModel->componentComplete();
    // Anchors give the view its size when it is complete, and its rows with it.
    d->recreate(&d->headerItem, d->headerComponent);
    d->recreate(&d->footerItem, d->footerComponent);
    QDeclarativeFlickable::componentComplete();
    const QDeclarativeWork::Scope scope(&d->work);
    // From right to left, the first row is at the view's right edge, wherever that came to be.
    if (!d->hasRows())
        return;
    if (d->runsBackwards())
        d->setViewPosition(0);
    d->refill();
    if (d->currentIndex < 0 && !d->currentIsCleared)
        d->currentIndex = 0;
    d->showCurrent();
    const qreal before = d->viewPosition();
    d->fixupPosition();
    if (d->viewPosition() != before)
        d->refill();
}

bool QDeclarativeItemView::event(QEvent *event)
{
    Q_D(QDeclarativeItemView);
    if (event->type() != QEvent::LayoutRequest)
        return QDeclarativeFlickable::event(event);
    d->flushLayout();
    if (std::exchange(d->fillScheduled, false))
        d->refill();
    return true;
}

void QDeclarativeItemView::geometryChanged(const QRectF &now, const QRectF &before)
{
    Q_D(QDeclarativeItemView);
    if (isComponentComplete() && d->runsBackwards() && now.width() != before.width())
        d->viewResized(now.width() - before.width());
    QDeclarativeFlickable::geometryChanged(now, before);
    if (d->isLaidOutIn(now.size(), before.size()))
        d->scheduleLayout();
}
