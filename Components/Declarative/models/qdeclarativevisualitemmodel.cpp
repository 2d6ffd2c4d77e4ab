#include "qdeclarativevisualitemmodel_p.h"

#include "qdeclarativevisualdatamodel_p.h"

QDeclarativeVisualItemModelAttached::QDeclarativeVisualItemModelAttached(QObject *item)
    : QObject(item)
    , place(QQmlObjectModel::qmlAttachedProperties(item))
{
    // By name: Qt does not export the class.
    connect(place, SIGNAL(indexChanged()), this, SIGNAL(indexChanged()));
}

QDeclarativeVisualItemModel::QDeclarativeVisualItemModel(QObject *parent)
    : QQmlObjectModel(parent)
{
    connect(this, &QQmlInstanceModel::modelUpdated, this, [this](const QQmlChangeSet &changes, bool reset) {
        emitDeclarativeChanges(this, changes, reset);
    });
    connect(this, &QQmlInstanceModel::createdItem, this, [this](int index, QObject *object) {
        Q_EMIT createdItem(index, qobject_cast<QDeclarativeItem *>(object));
    });
    connect(this, &QQmlInstanceModel::destroyingItem, this,
            [this](QObject *object) { Q_EMIT destroyingItem(qobject_cast<QDeclarativeItem *>(object)); });
}

QQmlListProperty<QDeclarativeItem> QDeclarativeVisualItemModel::children()
{
    using List = QQmlListProperty<QDeclarativeItem>;
    return List(
        this, nullptr,
        [](List *list, QDeclarativeItem *item) {
            if (item)
                static_cast<QDeclarativeVisualItemModel *>(list->object)->append(item);
        },
        [](List *list) { return static_cast<QDeclarativeVisualItemModel *>(list->object)->count(); },
        [](List *list, int index) {
            auto *model = static_cast<QDeclarativeVisualItemModel *>(list->object);
            return qobject_cast<QDeclarativeItem *>(model->get(index));
        },
        [](List *list) { static_cast<QDeclarativeVisualItemModel *>(list->object)->clear(); });
}

QDeclarativeVisualItemModelAttached *QDeclarativeVisualItemModel::qmlAttachedProperties(QObject *item)
{
    return new QDeclarativeVisualItemModelAttached(item);
}

#include "moc_qdeclarativevisualitemmodel_p.cpp"
