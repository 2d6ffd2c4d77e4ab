#pragma once

#include "item/qdeclarativeitem.h"

#include <private/qqmlobjectmodel_p.h>

/** Gives an item of a VisualItemModel its place there. */
class QDeclarativeVisualItemModelAttached : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int index READ index NOTIFY indexChanged)

public:
    explicit QDeclarativeVisualItemModelAttached(QObject *item);

    /** -1 for an item that is in no model. */
    int index() const { return place->index(); }

Q_SIGNALS:
    void indexChanged();

private:
    QQmlObjectModelAttached *const place;
};

/** Items that are declared as they are, for a view or repeater to show one after the other. */
class QDeclarativeVisualItemModel : public QQmlObjectModel
{
    Q_OBJECT
    Q_PROPERTY(
        QQmlListProperty<QDeclarativeItem> children READ children NOTIFY childrenChanged DESIGNABLE false)
    QML_ATTACHED(QDeclarativeVisualItemModelAttached)

public:
    explicit QDeclarativeVisualItemModel(QObject *parent = nullptr);

    QQmlListProperty<QDeclarativeItem> children();

    static QDeclarativeVisualItemModelAttached *qmlAttachedProperties(QObject *item);

Q_SIGNALS:
    void itemsInserted(int index, int count);
    void itemsRemoved(int index, int count);
    void itemsMoved(int from, int to, int count);
    void itemsChanged(int index, int count);
    void modelReset();
    void createdItem(int index, QDeclarativeItem *item);
    void destroyingItem(QDeclarativeItem *item);
};

QML_DECLARE_TYPE(QDeclarativeVisualItemModel)
