#pragma once

#include "item/qdeclarativeitem_p.h"

#include <QtCore/QPointer>
#include <QtCore/QVariant>

#include <private/qqmlchangeset_p.h>
#include <private/qqmlobjectmodel_p.h>

/**
 * What the model and delegate properties of a Repeater or view amount to: something to get items from.
 *
 * A model may be a VisualItemModel or VisualDataModel, which is used as it is, or anything else that gives
 * rows: a ListModel or other item model, a list, a number, an object. Around those it makes a model of its
 * own with the delegate. Nothing is made before componentComplete().
 *
 * Items go with their container: they are given back when it is about to be destroyed, since the model does
 * not get over items that are destroyed behind its back. An item that several views of one model use stands
 * in the container that asked for it last; when that is done with the model, in that of another.
 */
class QDeclarativeVisualModel : public QObject, public QDeclarativeItemChangeListener
{
    Q_OBJECT

public:
    /** @p view is what delegates are created in the context of, and what messages name. */
    explicit QDeclarativeVisualModel(QDeclarativeItem *view);
    ~QDeclarativeVisualModel() override;

    /**
     * To be called from the view's own componentComplete(), and before if rows are to count from when there
     * is a model.
     *
     * A model declared beside the view gives its rows to the view that is complete first, even before it is
     * told that it is complete itself.
     */
    void componentComplete();

    QVariant model() const { return source; }

    /** Returns whether this is another model; its items have to be released before. */
    bool setModel(const QVariant &);

    QQmlComponent *delegate() const;

    /** Returns whether this is another delegate; its items have to be released before. */
    bool setDelegate(QQmlComponent *);

    /** The model that gives the items, null where there is none. */
    QQmlInstanceModel *instance() const { return items; }
    int count() const;
    /**
     * The count that QML is told: below zero for a negative number of rows and for XML not read yet, and the
     * new one already while rows of XML come and go.
     */
    int statedCount() const;

    /** Whether the items are of a model made here, rather than of one that other views may share. */
    bool ownsItems() const { return isOwn; }

    /** Whether there are items to get: a model, and a delegate where it needs one. */
    bool isValid() const;

    /**
     * Returns the item at @p index, made if need be, as child of @p container.
     *
     * The container is known before the item's bindings run. Null, with a message, where the delegate makes
     * something that is not visual. Each call needs one releaseItem().
     */
    QGraphicsObject *item(int index, QGraphicsItem *container);

    /**
     * Gives an item back. Returns whether it is gone, which all but an item of a VisualItemModel and one that
     * another view shares are; the item has then left the scene and is destroyed at the next chance.
     */
    bool releaseItem(QGraphicsObject *);

Q_SIGNALS:
    /** Rows came, went, moved or changed; @p reset says that nothing of what was known holds. */
    void modelUpdated(const QQmlChangeSet &changes, bool reset);
    /** An item is being made, by this view or another one of its model, and its bindings are still to run. */
    void beganItem(int index, QObject *item);
    void createdItem(int index, QObject *item);
    void destroyingItem(QObject *item);
    /** Items stand in our container again that others had taken into theirs; they are to be placed anew. */
    void itemsReturned();

private:
    void adopt(QQmlInstanceModel *, bool own);
    void initItem(int index, QObject *);
    void watch(QGraphicsItem *container);
    void dispose();
    void lend(QGraphicsObject *);
    void partWithLent(const QGraphicsItem *container);
    bool handOn(QGraphicsObject *);
    void itemDestroyed(QDeclarativeItem *) override;

    QDeclarativeItem *const view;
    QVariant source;
    QPointer<QQmlInstanceModel> items;
    QPointer<QQmlComponent> component; ///< kept for the own model while another one is used
    QGraphicsItem *container = nullptr; ///< of the item that is being made
    QDeclarativeItem *watched = nullptr; ///< the container of the items that are out
    QVector<QPointer<QGraphicsObject>> borrowed; ///< items of a model that is not ours
    QVector<QPointer<QGraphicsObject>> lent; ///< items given back, which others keep in our container
    bool isOwn = false;
    bool isComplete = false;
};
