#include "qdeclarativeloader_p.h"

#include "engine/qdeclarativelocalfile_p.h"
#include "guard/qdeclarativeitemcount_p.h"
#include "item/qdeclarativeitem_p.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QScopedValueRollback>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlInfo>

#include <private/qqmlengine_p.h>

// Before the event loop is reached; beyond what anything sensible needs.
static const int mostGoing = 250;

QDeclarativeLoader::QDeclarativeLoader(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
{
    setFlag(ItemIsFocusScope);
}

QDeclarativeLoader::~QDeclarativeLoader()
{
    if (loadedItem)
        loadedItem->disconnect(this);
}

QUrl QDeclarativeLoader::source() const
{
    return url;
}

void QDeclarativeLoader::setSource(const QUrl &source)
{
    if (source == url)
        return;
    clear();
    url = source;
    load();
}

QQmlComponent *QDeclarativeLoader::sourceComponent() const
{
    return ownsComponent ? nullptr : component.data();
}

void QDeclarativeLoader::setSourceComponent(QQmlComponent *source)
{
    if (source == component && (source || (url.isEmpty() && !loadedItem)))
        return;
    clear();
    component = source;
    load();
}

void QDeclarativeLoader::resetSourceComponent()
{
    setSourceComponent(nullptr);
}

QGraphicsObject *QDeclarativeLoader::item() const
{
    return loadedItem;
}

QDeclarativeLoader::Status QDeclarativeLoader::status() const
{
    if (component)
        return Status(component->status());
    if (loadedItem)
        return Ready;
    return url.isEmpty() || !isComponentComplete() ? Null : Error;
}

qreal QDeclarativeLoader::progress() const
{
    if (component)
        return component->progress();
    return loadedItem ? 1 : 0;
}

void QDeclarativeLoader::componentComplete()
{
    QDeclarativeItem::componentComplete();
    if (component || !url.isEmpty())
        load();
}

void QDeclarativeLoader::clear()
{
    if (component) {
        component->disconnect(this);
        // Its own statusChanged may be what brought us here.
        if (ownsComponent)
            component->deleteLater();
    }
    component.clear();
    ownsComponent = false;
    url.clear();
    if (!loadedItem)
        return;
    QGraphicsObject *const old = loadedItem;
    loadedItem.clear();
    givesWidth = false;
    givesHeight = false;
    old->disconnect(this);
    // It goes with the loader at the latest, which may stand nearer to what its bindings name.
    old->QObject::setParent(this);
    QDeclarativeItemPrivate::discard(old);
    countGoing();
}

/** An item that goes may load another one, whose end does the same, and the event loop never goes on. */
void QDeclarativeLoader::countGoing()
{
    QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    if (!dispatcher)
        return;
    if (++going > 1)
        return;
    waking = connect(dispatcher, &QAbstractEventDispatcher::awake, this, [this] {
        going = 0;
        disconnect(waking);
    });
}

void QDeclarativeLoader::announce()
{
    Q_EMIT sourceChanged();
    Q_EMIT statusChanged();
    Q_EMIT progressChanged();
    Q_EMIT itemChanged();
}

void QDeclarativeLoader::load()
{
    if (!isComponentComplete())
        return;
    if (going > mostGoing) {
        qmlWarning(this) << tr("Items that go keep loading others");
        component.clear();
        url.clear();
    }
    if (!url.isEmpty() && !QDeclarativeLocalFile::refuse(url, this)) {
        component = new QQmlComponent(qmlEngine(this), url, this);
        ownsComponent = true;
    }
    if (!component || !component->isLoading()) {
        finishLoading();
        return;
    }
    connect(component, &QQmlComponent::statusChanged, this, &QDeclarativeLoader::finishLoading);
    connect(component, &QQmlComponent::progressChanged, this, &QDeclarativeLoader::progressChanged);
    announce();
}

void QDeclarativeLoader::finishLoading()
{
    const QPointer<QQmlComponent> loading = component;
    QObject *object = nullptr;
    if (component) {
        component->disconnect(this);
        object = component->isError() ? nullptr : createObject();
    }
    // Making the object may have set another source, which has then been announced.
    if (component != loading) {
        delete object;
        return;
    }
    if (component && component->isError())
        QQmlEnginePrivate::warning(qmlEngine(this), component->errors());
    if (object && !loadedItem) {
        qmlWarning(this) << tr("Loader does not support loading non-visual elements.");
        delete object;
    }
    announce();
    if (loadedItem && component == loading)
        Q_EMIT loaded();
}

QObject *QDeclarativeLoader::createObject()
{
    if (!QDeclarativeItemCount::admits(component))
        return nullptr;
    const QPointer<QQmlComponent> creating = component;
    QQmlContext *outer = component->creationContext();
    auto *context = new QQmlContext(outer ? outer : qmlContext(this));
    context->setContextObject(this);
    QObject *object = component->beginCreate(context);
    if (!object) {
        delete context;
        return nullptr;
    }
    context->setParent(object);
    if (auto *item = qobject_cast<QGraphicsObject *>(object))
        adopt(item);
    creating->completeCreate();
    return object;
}

void QDeclarativeLoader::adopt(QGraphicsObject *item)
{
    loadedItem = item;
    item->setParent(this);
    item->setParentItem(this);
    takeSize();
    noteGivenSize(item);
    giveSize();
    connect(item, &QGraphicsObject::widthChanged, this, &QDeclarativeLoader::itemWidthChanged);
    connect(item, &QGraphicsObject::heightChanged, this, &QDeclarativeLoader::itemHeightChanged);
}

// An item that is given its size before it has one of its own tells by its implicit size what it would have
// been.
void QDeclarativeLoader::noteGivenSize(QGraphicsObject *item)
{
    const auto *own = qobject_cast<QDeclarativeItem *>(item);
    givesWidth = own && widthValid() && !QDeclarativeItemPrivate::get(own)->widthIsSet;
    givesHeight = own && heightValid() && !QDeclarativeItemPrivate::get(own)->heightIsSet;
}

void QDeclarativeLoader::itemWidthChanged()
{
    if (isSizing)
        return;
    givesWidth = false;
    takeSize();
}

void QDeclarativeLoader::itemHeightChanged()
{
    if (isSizing)
        return;
    givesHeight = false;
    takeSize();
}

void QDeclarativeLoader::takeSize()
{
    const QScopedValueRollback<bool> guard(isSizing, true);
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(loadedItem.data());
    const auto *own = qobject_cast<QDeclarativeItem *>(loadedItem.data());
    const qreal newWidth = givesWidth ? own->implicitWidth() : d->width();
    const qreal newHeight = givesHeight ? own->implicitHeight() : d->height();
    setImplicitWidth(newWidth);
    setImplicitHeight(newHeight);
}

void QDeclarativeLoader::giveSize()
{
    const QScopedValueRollback<bool> guard(isSizing, true);
    if (widthValid() && loadedItem)
        QGraphicsItemPrivate::get(loadedItem.data())->setWidth(width());
    if (heightValid() && loadedItem)
        QGraphicsItemPrivate::get(loadedItem.data())->setHeight(height());
}

void QDeclarativeLoader::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    // The implicit size is what the item was before it is given ours, and is found out with each move as
    // well.
    if (newGeometry != oldGeometry && loadedItem && !isSizing) {
        takeSize();
        giveSize();
    }
    QDeclarativeItem::geometryChanged(newGeometry, oldGeometry);
}

#include "moc_qdeclarativeloader_p.cpp"
