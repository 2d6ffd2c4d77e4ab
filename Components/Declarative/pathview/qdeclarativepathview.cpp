#include "qdeclarativepathview_p.h"

#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativepathview_p_p.h"

#include <QtCore/QSignalBlocker>

#include <private/qqmlopenmetaobject_p.h>

QDeclarativePathViewAttached::QDeclarativePathViewAttached(QObject *object)
    : QObject(object)
{
    // A delegate's bindings run before the view knows the item, and already use the path's attributes.
    const auto *making = QDeclarativePathViewPrivate::making;
    if (!making)
        return;
    m_view = static_cast<QDeclarativePathView *>(making->view->q_ptr);
    m_isCurrentItem = making->isCurrent;
    m_attributes = new QQmlOpenMetaObject(this, making->view->attributeType);
    m_attributes->setCached(true);
    m_attributeKeeper = making->view->attributeKeeper;
    const QDeclarativePathPlaces places = making->view->places;
    const QStringList names = places.attributes();
    for (const QString &name : names)
        setAttribute(name, places.attributeAt(name, making->place));
}

QDeclarativePathView *QDeclarativePathViewAttached::view() const
{
    return m_view;
}

void QDeclarativePathViewAttached::setView(QDeclarativePathView *view)
{
    if (view == m_view)
        return;
    m_view = view;
    Q_EMIT viewChanged();
}

void QDeclarativePathViewAttached::setIsCurrentItem(bool current)
{
    if (current == m_isCurrentItem)
        return;
    m_isCurrentItem = current;
    Q_EMIT currentItemChanged();
}

void QDeclarativePathViewAttached::setOnPath(bool onPath)
{
    if (onPath == m_isOnPath)
        return;
    m_isOnPath = onPath;
    Q_EMIT pathChanged();
}

void QDeclarativePathViewAttached::setAttribute(const QString &name, qreal value)
{
    if (m_attributes)
        m_attributes->setValue(name.toUtf8(), value);
}

QDeclarativePathView::QDeclarativePathView(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativePathViewPrivate, parent)
{
    Q_D(QDeclarativePathView);
    setFlag(ItemIsFocusScope);
    d->work.setElement(this);
    setAcceptedMouseButtons(Qt::LeftButton);
    setFiltersChildEvents(true);
    d->visualModel = new QDeclarativeVisualModel(this);
    connect(d->visualModel, &QDeclarativeVisualModel::modelUpdated, this,
            [d](const QQmlChangeSet &changes, bool reset) { d->rowsChanged(changes, reset); });
    connect(d->visualModel, &QDeclarativeVisualModel::beganItem, this,
            [d](int index, QObject *item) { d->beginRow(index, item); });
    // Another view may be in the middle of going.
    connect(
        d->visualModel, &QDeclarativeVisualModel::itemsReturned, this, [d] { d->layOut(); },
        Qt::QueuedConnection);
}

QDeclarativePathView::~QDeclarativePathView()
{
    Q_D(QDeclarativePathView);
    d->work.close();
    d->timeLine.clear();
    d->clear();
    if (d->highlightItem)
        QDeclarativeItemPrivate::get(d->highlightItem.data())
            ->removeChangeListener(d, QDeclarativeItemChanges(GeometryChange) | DestroyedChange);
}

void QDeclarativePathView::componentComplete()
{
    Q_D(QDeclarativePathView);
    QDeclarativeItem::componentComplete();
    d->pathUpdated();
    const QDeclarativeWork::Scope scope(&d->work);
    {
        // What the model has to say of its first rows is read below.
        const QSignalBlocker blocker(d->visualModel);
        d->visualModel->componentComplete();
    }
    d->createHighlight();
    d->reload();
    if (!d->isStrict())
        d->moveHighlight();
}

QVariant QDeclarativePathView::model() const
{
    return d_func()->visualModel->model();
}

void QDeclarativePathView::setModel(const QVariant &model)
{
    Q_D(QDeclarativePathView);
    if (d->work.postponeSetting("model", [=] { setModel(model); }) || model == this->model())
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->clear();
    d->visualModel->setModel(model);
    if (isComponentComplete())
        d->reload();
    d->announce(&QDeclarativePathView::modelChanged);
}

QQmlComponent *QDeclarativePathView::delegate() const
{
    return d_func()->visualModel->delegate();
}

void QDeclarativePathView::setDelegate(QQmlComponent *delegate)
{
    Q_D(QDeclarativePathView);
    const QPointer<QQmlComponent> guard(delegate);
    if (d->work.postponeSetting("delegate", [=] { setDelegate(guard); }) || delegate == this->delegate())
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->clear();
    d->visualModel->setDelegate(delegate);
    if (isComponentComplete())
        d->reload();
    d->announce(&QDeclarativePathView::delegateChanged);
}

QQuickPath *QDeclarativePathView::path() const
{
    return d_func()->path;
}

void QDeclarativePathView::setPath(QQuickPath *path)
{
    Q_D(QDeclarativePathView);
    if (path == d->path)
        return;
    if (d->path)
        d->path->disconnect(this);
    d->path = path;
    if (path) {
        connect(path, &QQuickPath::changed, this, [d] { d->pathUpdated(); });
        connect(path, &QObject::destroyed, this, [d] { d->pathUpdated(); });
    }
    if (isComponentComplete())
        d->pathUpdated();
    Q_EMIT pathChanged();
}

int QDeclarativePathView::currentIndex() const
{
    return d_func()->currentIndex;
}

void QDeclarativePathView::setCurrentIndex(int index)
{
    d_func()->setCurrent(index);
}

void QDeclarativePathView::incrementCurrentIndex()
{
    Q_D(QDeclarativePathView);
    if (d->rowCount > 0)
        d->setCurrent(d->currentIndex + 1);
}

void QDeclarativePathView::decrementCurrentIndex()
{
    Q_D(QDeclarativePathView);
    if (d->rowCount > 0)
        d->setCurrent(d->currentIndex + d->rowCount - 1);
}

qreal QDeclarativePathView::offset() const
{
    return d_func()->offset;
}

void QDeclarativePathView::setOffset(qreal offset)
{
    Q_D(QDeclarativePathView);
    if (!qIsFinite(offset))
        return;
    d->stop();
    d->moveTo(offset);
}

QQmlComponent *QDeclarativePathView::highlight() const
{
    return d_func()->highlightComponent;
}

void QDeclarativePathView::setHighlight(QQmlComponent *component)
{
    Q_D(QDeclarativePathView);
    const QPointer<QQmlComponent> guard(component);
    if (component == d->highlightComponent || d->work.postpone([=] { setHighlight(guard); }))
        return;
    d->highlightComponent = component;
    if (isComponentComplete())
        d->createHighlight();
    Q_EMIT highlightChanged();
}

QDeclarativeItem *QDeclarativePathView::highlightItem() const
{
    return d_func()->highlightItem;
}

qreal QDeclarativePathView::preferredHighlightBegin() const
{
    return d_func()->highlightBegin;
}

void QDeclarativePathView::setPreferredHighlightBegin(qreal begin)
{
    Q_D(QDeclarativePathView);
    if (begin == d->highlightBegin || !(begin >= 0 && begin <= 1))
        return;
    d->highlightBegin = begin;
    d->layOut();
    Q_EMIT preferredHighlightBeginChanged();
    Q_EMIT snapPositionChanged();
}

qreal QDeclarativePathView::preferredHighlightEnd() const
{
    return d_func()->highlightEnd;
}

void QDeclarativePathView::setPreferredHighlightEnd(qreal end)
{
    Q_D(QDeclarativePathView);
    if (end == d->highlightEnd || !(end >= 0 && end <= 1))
        return;
    d->highlightEnd = end;
    d->layOut();
    Q_EMIT preferredHighlightEndChanged();
}

QDeclarativePathView::HighlightRangeMode QDeclarativePathView::highlightRangeMode() const
{
    return d_func()->rangeMode;
}

void QDeclarativePathView::setHighlightRangeMode(HighlightRangeMode mode)
{
    Q_D(QDeclarativePathView);
    if (mode == d->rangeMode)
        return;
    d->rangeMode = mode;
    // Without a range the rows stay where they are until something else moves them.
    if (mode == StrictlyEnforceRange)
        d->keepCurrent();
    if (mode != NoHighlightRange)
        d->layOut();
    Q_EMIT highlightRangeModeChanged();
}

int QDeclarativePathView::highlightMoveDuration() const
{
    return d_func()->highlightMoveDuration;
}

void QDeclarativePathView::setHighlightMoveDuration(int duration)
{
    Q_D(QDeclarativePathView);
    if (duration == d->highlightMoveDuration)
        return;
    d->highlightMoveDuration = duration;
    Q_EMIT highlightMoveDurationChanged();
}

qreal QDeclarativePathView::dragMargin() const
{
    return d_func()->dragMargin;
}

void QDeclarativePathView::setDragMargin(qreal margin)
{
    Q_D(QDeclarativePathView);
    if (margin == d->dragMargin)
        return;
    d->dragMargin = margin;
    Q_EMIT dragMarginChanged();
}

qreal QDeclarativePathView::flickDeceleration() const
{
    return d_func()->deceleration;
}

void QDeclarativePathView::setFlickDeceleration(qreal deceleration)
{
    Q_D(QDeclarativePathView);
    if (deceleration == d->deceleration)
        return;
    d->deceleration = deceleration;
    Q_EMIT flickDecelerationChanged();
}

bool QDeclarativePathView::isInteractive() const
{
    return d_func()->interactive;
}

void QDeclarativePathView::setInteractive(bool interactive)
{
    Q_D(QDeclarativePathView);
    if (interactive == d->interactive)
        return;
    d->interactive = interactive;
    if (!interactive)
        d->cancel();
    Q_EMIT interactiveChanged();
}

bool QDeclarativePathView::isMoving() const
{
    return d_func()->moving;
}

bool QDeclarativePathView::isFlicking() const
{
    return d_func()->flicking;
}

int QDeclarativePathView::count() const
{
    return d_func()->rowCount;
}

int QDeclarativePathView::pathItemCount() const
{
    return d_func()->pathItemCount;
}

void QDeclarativePathView::setPathItemCount(int count)
{
    Q_D(QDeclarativePathView);
    const int limited = count == 0 ? 1 : qMax(count, -1);
    if (limited == d->pathItemCount)
        return;
    d->pathItemCount = limited;
    d->layOut();
    Q_EMIT pathItemCountChanged();
}

QDeclarativePathViewAttached *QDeclarativePathView::qmlAttachedProperties(QObject *object)
{
    return new QDeclarativePathViewAttached(object);
}

#include "moc_qdeclarativepathview_p.cpp"
