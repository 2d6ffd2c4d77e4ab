#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <private/qqmlchangeset_p.h>
#include <private/qqmldelegatemodel_p.h>

class QAbstractItemModel;
class QDeclarativeVisualDataModel;

/** VisualDataModel has nothing to attach, unlike what it is made of. */
template <>
struct QQmlPrivate::OverridableAttachedType<QDeclarativeVisualDataModel, QQmlDelegateModelAttached>
{
    using Type = void;
};

/**
 * Makes an item, or a package of items, with its delegate for each row of its model.
 *
 * Views and repeaters that are given any other model make one of these for themselves.
 */
class QDeclarativeVisualDataModel : public QQmlDelegateModel
{
    Q_OBJECT
    Q_PROPERTY(QVariant model READ model WRITE setModel)
    Q_PROPERTY(QString part READ part WRITE setPart)
    Q_PROPERTY(QObject *parts READ parts CONSTANT)

public:
    QDeclarativeVisualDataModel();
    explicit QDeclarativeVisualDataModel(QQmlContext *);

    /** Takes an item model, a list, a number or an object; arrays of scripts are taken as they are now. */
    void setModel(const QVariant &);

    /** The part that a view shows which has this model itself, not one of its parts, as model. */
    QString part() const { return partName; }
    void setPart(const QString &name) { partName = name; }

    void classBegin() override;
    /** Has the rows available from now on; views need not wait until the declared model itself is told. */
    void componentComplete() override;

    /** Returns the model of that part, or this one where none is named. */
    QQmlInstanceModel *shownModel();

    /** Has packages that come and go through @p part, one of the parts, reported. */
    void watchPart(QQmlInstanceModel *part);

Q_SIGNALS:
    void itemsInserted(int index, int count);
    void itemsRemoved(int index, int count);
    void itemsMoved(int from, int to, int count);
    void itemsChanged(int index, int count);
    void modelReset();
    void createdItem(int index, QDeclarativeItem *item);
    void destroyingItem(QDeclarativeItem *item);
    void createdPackage(int index, QObject *package);
    void destroyingPackage(QObject *package);

private:
    void watchItems();
    void adoptRoles();
    void reportChange(const QModelIndex &first, const QModelIndex &last);
    void watchMoves(QAbstractItemModel *);
    void takeMoves();
    void moveRows(const QModelIndex &source, int first, int last, const QModelIndex &target, int before);
    void moveOneByOne(int from, int to, int count);
    bool hasItemsBetween(int first, int end) const;
    void reportPackage(int index, QObject *item);
    void reportPackageEnd(QObject *item);

    QString partName;
    bool isComplete = true;
    QMetaObject::Connection reset;
    QMetaObject::Connection change;
    QMetaObject::Connection beforeMove;
    QMetaObject::Connection move;
    QHash<int, QByteArray> roles; ///< of the item model, as the delegates know them
    QVector<QPointer<QQmlInstanceModel>> shownParts;
    QHash<QObject *, QObject *> packages; ///< of the parts that are shown
};

/** Emits which rows came, went and moved in @p changes as the signals that QML 1 models have. */
template <typename Model>
void emitDeclarativeChanges(Model *model, const QQmlChangeSet &changes, bool reset)
{
    if (reset) {
        Q_EMIT model->modelReset();
        return;
    }
    for (const QQmlChangeSet::Change &remove : changes.removes()) {
        if (!remove.isMove())
            Q_EMIT model->itemsRemoved(remove.index, remove.count);
    }
    for (const QQmlChangeSet::Change &insert : changes.inserts()) {
        if (!insert.isMove()) {
            Q_EMIT model->itemsInserted(insert.index, insert.count);
            continue;
        }
        for (const QQmlChangeSet::Change &remove : changes.removes()) {
            if (remove.moveId == insert.moveId)
                Q_EMIT model->itemsMoved(remove.index + insert.offset - remove.offset, insert.index,
                                         insert.count);
        }
    }
}

QML_DECLARE_TYPE(QDeclarativeVisualDataModel)
