#include "qdeclarativevisualdatamodel_p.h"

#include "qdeclarativetypes_p.h"
#include "qdeclarativevisualitemmodel_p.h"

#include <QtCore/QAbstractItemModel>
#include <QtQml/QJSValue>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>

#include <algorithm>
#include <utility>

QDeclarativeVisualDataModel::QDeclarativeVisualDataModel()
{
    watchItems();
}

QDeclarativeVisualDataModel::QDeclarativeVisualDataModel(QQmlContext *context)
    : QQmlDelegateModel(context)
{
    watchItems();
}

void QDeclarativeVisualDataModel::watchItems()
{
    connect(this, &QQmlInstanceModel::modelUpdated, this, [this](const QQmlChangeSet &changes, bool reset) {
        emitDeclarativeChanges(this, changes, reset);
    });
    connect(this, &QQmlInstanceModel::createdItem, this, [this](int index, QObject *object) {
        if (auto *item = qobject_cast<QDeclarativeItem *>(object))
            Q_EMIT createdItem(index, item);
    });
    connect(this, &QQmlInstanceModel::destroyingItem, this, [this](QObject *object) {
        if (auto *item = qobject_cast<QDeclarativeItem *>(object))
            Q_EMIT destroyingItem(item);
    });
}

void QDeclarativeVisualDataModel::classBegin()
{
    isComplete = false;
    QQmlDelegateModel::classBegin();
}

void QDeclarativeVisualDataModel::componentComplete()
{
    if (!std::exchange(isComplete, true))
        QQmlDelegateModel::componentComplete();
}

void QDeclarativeVisualDataModel::setModel(const QVariant &value)
{
    const QVariant model =
        value.userType() == qMetaTypeId<QJSValue>() ? value.value<QJSValue>().toVariant() : value;
    disconnect(reset);
    disconnect(change);
    roles.clear();
    auto *items = qobject_cast<QAbstractItemModel *>(model.value<QObject *>());
    if (items) {
        roles = items->roleNames();
        // Before the delegates are told, so that they are made once.
        reset =
            connect(items, &QAbstractItemModel::modelReset, this, &QDeclarativeVisualDataModel::adoptRoles);
    }
    QQmlDelegateModel::setModel(model);
    // The base class reports only changes of roles that a view watches.
    if (items)
        change = connect(items, &QAbstractItemModel::dataChanged, this,
                         &QDeclarativeVisualDataModel::reportChange);
}

void QDeclarativeVisualDataModel::reportChange(const QModelIndex &first, const QModelIndex &last)
{
    if (first.parent() == rootIndex().value<QModelIndex>())
        Q_EMIT itemsChanged(first.row(), last.row() - first.row() + 1);
}

void QDeclarativeVisualDataModel::adoptRoles()
{
    const QVariant current = model();
    const auto *items = qobject_cast<QAbstractItemModel *>(current.value<QObject *>());
    if (!items || items->roleNames() == roles)
        return;
    setModel({});
    setModel(current);
}

QQmlInstanceModel *QDeclarativeVisualDataModel::shownModel()
{
    if (partName.isEmpty())
        return this;
    QQmlEngine *engine = qmlEngine(this);
    if (!engine)
        return this;
    QQmlEngine::setObjectOwnership(parts(), QQmlEngine::CppOwnership);
    auto *part =
        qobject_cast<QQmlInstanceModel *>(engine->newQObject(parts()).property(partName).toQObject());
    if (!part)
        return this;
    watchPart(part);
    return part;
}

void QDeclarativeVisualDataModel::watchPart(QQmlInstanceModel *part)
{
    connect(part, &QQmlInstanceModel::createdItem, this, &QDeclarativeVisualDataModel::reportPackage,
            Qt::UniqueConnection);
    connect(part, &QQmlInstanceModel::destroyingItem, this, &QDeclarativeVisualDataModel::reportPackageEnd,
            Qt::UniqueConnection);
}

void QDeclarativeVisualDataModel::reportPackage(int index, QObject *item)
{
    // Parts are declared in the component whose root is the package.
    const QQmlContext *context = item ? qmlContext(item) : nullptr;
    QObject *package = context ? context->contextObject() : nullptr;
    if (!package)
        return;
    const bool isKnown = std::find(packages.cbegin(), packages.cend(), package) != packages.cend();
    packages.insert(item, package);
    if (!isKnown)
        Q_EMIT createdPackage(index, package);
}

void QDeclarativeVisualDataModel::reportPackageEnd(QObject *item)
{
    QObject *const package = packages.take(item);
    if (!package)
        return;
    // All parts of a package go at once.
    for (auto it = packages.begin(); it != packages.end();)
        it = it.value() == package ? packages.erase(it) : std::next(it);
    Q_EMIT destroyingPackage(package);
}

void registerDeclarativeVisualModelTypes()
{
    registerDeclarativeType<QDeclarativeVisualDataModel>("VisualDataModel");
    registerDeclarativeType<QDeclarativeVisualItemModel>("VisualItemModel");
}

#include "moc_qdeclarativevisualdatamodel_p.cpp"
