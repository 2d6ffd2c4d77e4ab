#include "qdeclarativevisualmodel_p.h"

#include "engine/qdeclarativenesting_p.h"
#include "guard/qdeclarativeitemcount_p.h"
#include "qdeclarativevisualdatamodel_p.h"
#include "qdeclarativexmllistmodel_p.h"

#include <QtCore/QSignalBlocker>
#include <QtQml/QJSValue>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlInfo>
#include <QtQml/qqml.h>
#include <QtWidgets/QGraphicsScene>

#include <algorithm>
#include <utility>

namespace {

/** Returns the model that @p part is a part of, or null. */
QDeclarativeVisualDataModel *wholeModel(const QQmlInstanceModel *part)
{
    const QObject *parts = part->parent();
    return parts ? qobject_cast<QDeclarativeVisualDataModel *>(parts->parent()) : nullptr;
}

bool isNumber(const QVariant &model)
{
    return model.userType() == QMetaType::Int || model.userType() == QMetaType::Double;
}

/** Those that show items of models that are not theirs, which others may show too. */
QVector<QDeclarativeVisualModel *> &borrowers()
{
    static QVector<QDeclarativeVisualModel *> all;
    return all;
}

/** Returns what to show of a model that gives items by itself. */
QQmlInstanceModel *shownModel(QQmlInstanceModel *given)
{
    if (auto *data = qobject_cast<QDeclarativeVisualDataModel *>(given))
        return data->shownModel();
    if (auto *data = wholeModel(given))
        data->watchPart(given);
    return given;
}

} // namespace

QDeclarativeVisualModel::QDeclarativeVisualModel(QDeclarativeItem *view)
    : QObject(view)
    , view(view)
{
}

QDeclarativeVisualModel::~QDeclarativeVisualModel()
{
    borrowers().removeOne(this);
    dispose();
}

void QDeclarativeVisualModel::watch(QGraphicsItem *container)
{
    QGraphicsObject *object = container ? container->toGraphicsObject() : nullptr;
    auto *item = qobject_cast<QDeclarativeItem *>(object);
    if (item == watched)
        return;
    if (watched)
        QDeclarativeItemPrivate::get(watched)->removeChangeListener(this, DestroyedChange);
    watched = item;
    if (watched)
        QDeclarativeItemPrivate::get(watched)->addChangeListener(this, DestroyedChange);
}

void QDeclarativeVisualModel::itemDestroyed(QDeclarativeItem *container)
{
    watched = nullptr;
    dispose();
    partWithLent(container);
}

void QDeclarativeVisualModel::dispose()
{
    watch(nullptr);
    // Our own model takes its items along, at once.
    if (std::exchange(isOwn, false))
        delete items;
    const auto left = std::exchange(borrowed, {});
    for (const QPointer<QGraphicsObject> &item : left)
        releaseItem(item);
}

/** Remembers an item that is still in use elsewhere, and stands where we put it. */
void QDeclarativeVisualModel::lend(QGraphicsObject *item)
{
    const QGraphicsItem *const place = item->parentItem();
    const auto isElsewhere = [=](const QPointer<QGraphicsObject> &one) {
        return !one || one->parentItem() != place;
    };
    lent.erase(std::remove_if(lent.begin(), lent.end(), isElsewhere), lent.end());
    if (place && !lent.contains(item))
        lent.append(item);
}

/** Has the last of the other views that use the item show it, if there is one. */
bool QDeclarativeVisualModel::handOn(QGraphicsObject *item)
{
    const auto uses = [=](const QDeclarativeVisualModel *other) {
        return other != this && other->watched && other->borrowed.contains(item);
    };
    const auto &all = borrowers();
    const auto found = std::find_if(all.crbegin(), all.crend(), uses);
    if (found == all.crend())
        return false;
    const QPointer<QDeclarativeVisualModel> other(*found);
    item->setParentItem(other->watched);
    if (other)
        Q_EMIT other->itemsReturned();
    return true;
}

/** Keeps items that others have not given back yet from going with their parent. */
void QDeclarativeVisualModel::partWithLent(const QGraphicsItem *container)
{
    const auto left = std::exchange(lent, {});
    for (const QPointer<QGraphicsObject> &item : left) {
        if (!item || item->parentItem() != container || handOn(item))
            continue;
        item->setParentItem(nullptr);
        if (item->scene())
            item->scene()->removeItem(item);
    }
}

void QDeclarativeVisualModel::componentComplete()
{
    isComplete = true;
    if (!items)
        return;
    auto *data = qobject_cast<QDeclarativeVisualDataModel *>(items);
    if (!data)
        data = wholeModel(items);
    if (data)
        data->componentComplete();
}

bool QDeclarativeVisualModel::setModel(const QVariant &value)
{
    const QVariant model =
        value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toVariant() : value;
    if (model == source)
        return false;
    source = model;
    // Whoever sets it knows that all rows are new.
    const QSignalBlocker blocker(this);
    auto *given = qobject_cast<QQmlInstanceModel *>(model.value<QObject *>());
    if (given) {
        adopt(shownModel(given), false);
        return true;
    }
    if (!isOwn) {
        auto *made = new QDeclarativeVisualDataModel(qmlContext(view));
        made->classBegin();
        if (component)
            made->setDelegate(component);
        adopt(made, true);
        if (isComplete)
            made->componentComplete();
    }
    const bool isNegative = isNumber(model) && model.toInt() < 0;
    static_cast<QDeclarativeVisualDataModel *>(items.data())->setModel(isNegative ? QVariant(0) : model);
    return true;
}

void QDeclarativeVisualModel::adopt(QQmlInstanceModel *model, bool own)
{
    if (items)
        items->disconnect(this);
    partWithLent(watched);
    borrowers().removeOne(this);
    if (!own)
        borrowers().append(this);
    // It may be in the middle of telling us of a change.
    if (isOwn) {
        items->setParent(this);
        items->deleteLater();
    }
    items = model;
    isOwn = own;
    connect(model, &QQmlInstanceModel::modelUpdated, this, &QDeclarativeVisualModel::modelUpdated);
    connect(model, &QQmlInstanceModel::createdItem, this, &QDeclarativeVisualModel::createdItem);
    connect(model, &QQmlInstanceModel::destroyingItem, this, &QDeclarativeVisualModel::destroyingItem);
    connect(model, &QQmlInstanceModel::initItem, this, &QDeclarativeVisualModel::initItem);
}

QQmlComponent *QDeclarativeVisualModel::delegate() const
{
    if (const auto *data = qobject_cast<QQmlDelegateModel *>(items))
        return data->delegate();
    return component;
}

bool QDeclarativeVisualModel::setDelegate(QQmlComponent *delegate)
{
    if (delegate == this->delegate())
        return false;
    component = delegate;
    const QSignalBlocker blocker(this);
    if (auto *data = qobject_cast<QQmlDelegateModel *>(items))
        data->setDelegate(delegate);
    return true;
}

int QDeclarativeVisualModel::count() const
{
    return items ? items->count() : 0;
}

int QDeclarativeVisualModel::statedCount() const
{
    // A number of rows is read back as it was set.
    if (isNumber(source) && source.toInt() < 0)
        return source.toInt();
    const auto *xml = qobject_cast<const QDeclarativeXmlListModel *>(source.value<QObject *>());
    return xml ? xml->readCount() : count();
}

bool QDeclarativeVisualModel::isValid() const
{
    return items && items->isValid();
}

void QDeclarativeVisualModel::initItem(int index, QObject *object)
{
    auto *item = qobject_cast<QGraphicsObject *>(object);
    if (item && container)
        item->setParentItem(container);
    Q_EMIT beganItem(index, object);
}

QGraphicsObject *QDeclarativeVisualModel::item(int index, QGraphicsItem *parent)
{
    if (!isValid() || index < 0 || index >= count())
        return nullptr;
    const QDeclarativeNesting nesting;
    if (nesting.isFirstRefused())
        qmlWarning(view) << tr("Delegates are nested too deep");
    if (nesting.isRefused() || QDeclarativeItemCount::isExceeded(qmlEngine(view))
        || (delegate() && !QDeclarativeItemCount::admits(delegate())))
        return nullptr;
    QGraphicsItem *const outer = std::exchange(container, parent);
    QObject *object = items->object(index, QQmlIncubator::Synchronous);
    container = outer;
    auto *item = qobject_cast<QGraphicsObject *>(object);
    if (item) {
        item->setParentItem(parent);
        watch(parent);
        if (!isOwn)
            borrowed.append(item);
    } else if (object) {
        items->release(object);
        qmlWarning(delegate() ? static_cast<QObject *>(delegate()) : view)
            << tr("Delegate must be of Item type");
    }
    return item;
}

bool QDeclarativeVisualModel::releaseItem(QGraphicsObject *item)
{
    if (!item)
        return true;
    const QPointer<QGraphicsObject> guard(item);
    borrowed.removeOne(guard);
    if (items && items->release(item) & QQmlInstanceModel::Referenced) {
        lend(item);
        return false;
    }
    if (!guard)
        return true;
    // Until it is destroyed it would stand in the scene, and without a parent at the scene's top.
    item->setParentItem(nullptr);
    if (item->scene())
        item->scene()->removeItem(item);
    return true;
}

#include "moc_qdeclarativevisualmodel_p.cpp"
