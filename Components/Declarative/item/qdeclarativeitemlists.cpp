#include "qdeclarativeitem.h"

#include "qdeclarativeitem_p.h"

#include <private/qquickstategroup_p.h>

namespace {

using ObjectList = QQmlListProperty<QObject>;
using ChildList = QQmlListProperty<QGraphicsObject>;
using TransformList = QQmlListProperty<QGraphicsTransform>;

QDeclarativeItemPrivate *privateOf(const ObjectList *list)
{
    return static_cast<QDeclarativeItemPrivate *>(list->data);
}

void append(ObjectList *list, QObject *object)
{
    privateOf(list)->appendData(object);
}

QDeclarativeItem *itemOf(const TransformList *list)
{
    return static_cast<QDeclarativeItem *>(list->object);
}

} // namespace

void QDeclarativeItemPrivate::appendData(QObject *object)
{
    Q_Q(QDeclarativeItem);
    if (!object)
        return;
    if (auto *item = qobject_cast<QGraphicsObject *>(object))
        item->setParentItem(q);
    else
        object->setParent(q);
}

/** What was declared in the item: items that stand here are listed too. */
QObjectList QDeclarativeItemPrivate::resourceObjects() const
{
    QObjectList objects = q_func()->QObject::children();
    objects.removeOne(itemStateGroup);
    return objects;
}

QQmlListProperty<QObject> QDeclarativeItemPrivate::resources()
{
    Q_Q(QDeclarativeItem);
    return {q, this,
            // An item that is given here is kept, but has no parent that it would be shown in.
            [](ObjectList *list, QObject *object) {
                if (object)
                    object->setParent(list->object);
            },
            [](ObjectList *list) { return privateOf(list)->resourceObjects().count(); },
            [](ObjectList *list, int index) { return privateOf(list)->resourceObjects().value(index); },
            nullptr};
}

QQmlListProperty<QObject> QDeclarativeItemPrivate::data()
{
    Q_Q(QDeclarativeItem);
    return {q,
            this,
            append,
            [](ObjectList *list) {
                const auto *d = privateOf(list);
                return d->resourceObjects().count() + childObjects(d->q_ptr).count();
            },
            [](ObjectList *list, int index) -> QObject * {
                const auto *d = privateOf(list);
                const QObjectList resources = d->resourceObjects();
                if (index < resources.count())
                    return resources.at(index);
                return childObjects(d->q_ptr).value(index - resources.count());
            },
            nullptr};
}

QList<QGraphicsObject *> QDeclarativeItemPrivate::childObjects(const QGraphicsItem *item)
{
    QList<QGraphicsObject *> objects;
    const auto children = item->childItems();
    for (QGraphicsItem *child : children) {
        if (QGraphicsObject *object = child->toGraphicsObject())
            objects.append(object);
    }
    return objects;
}

/** The children that are objects. A script that goes through them asks for the list with each step. */
const QList<QGraphicsObject *> &QDeclarativeItemPrivate::childList()
{
    ExtraData &data = extra();
    ensureSortedChildren();
    // Whoever changes the list of all children leaves ours with the old one.
    if (!data.listedChildren.isSharedWith(QGraphicsItemPrivate::children)) {
        data.listedChildren = QGraphicsItemPrivate::children;
        data.childList = childObjects(q_func());
    }
    return data.childList;
}

QQmlListProperty<QGraphicsObject> QDeclarativeItemPrivate::children()
{
    Q_Q(QDeclarativeItem);
    return {q,
            nullptr,
            [](ChildList *list, QGraphicsObject *child) {
                if (child)
                    child->setParentItem(static_cast<QDeclarativeItem *>(list->object));
            },
            [](ChildList *list) {
                return get(static_cast<QDeclarativeItem *>(list->object))->childList().count();
            },
            [](ChildList *list, int index) {
                return get(static_cast<QDeclarativeItem *>(list->object))->childList().value(index);
            },
            nullptr};
}

QQmlListProperty<QObject> QDeclarativeItem::data()
{
    return d_func()->data();
}

QQmlListProperty<QGraphicsTransform> QDeclarativeItem::transform()
{
    // Graphics View applies the first of its list last, QML 1 the other way round.
    return {this,
            nullptr,
            [](TransformList *list, QGraphicsTransform *transform) {
                if (transform)
                    itemOf(list)->setTransformations(QList<QGraphicsTransform *>{transform}
                                                     + itemOf(list)->transformations());
            },
            [](TransformList *list) { return itemOf(list)->transformations().count(); },
            [](TransformList *list, int index) {
                const auto all = itemOf(list)->transformations();
                return all.value(all.count() - 1 - index);
            },
            [](TransformList *list) { itemOf(list)->setTransformations({}); }};
}
