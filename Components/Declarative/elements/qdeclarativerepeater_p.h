#pragma once

#include "engine/qdeclarativework_p.h"
#include "item/qdeclarativeitem.h"
#include "models/qdeclarativekeptchanges_p.h"

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtCore/QVector>

class QDeclarativeVisualModel;

/**
 * Makes an item for each row of its model, as siblings that stand before it among its parent's children.
 *
 * Items of a model that is reset are reported removed from the last to the first, each with an index one
 * below its own.
 */
class QDeclarativeRepeater : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QVariant model READ model WRITE setModel NOTIFY modelChanged)
    Q_PROPERTY(QQmlComponent *delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_CLASSINFO("DefaultProperty", "delegate")

public:
    explicit QDeclarativeRepeater(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeRepeater() override;

    QVariant model() const;
    void setModel(const QVariant &);
    QQmlComponent *delegate() const;
    void setDelegate(QQmlComponent *);
    int count() const;

    /** Returns the item of a row, or null. */
    Q_REVISION(1) Q_INVOKABLE QDeclarativeItem *itemAt(int index) const;

Q_SIGNALS:
    void modelChanged();
    void delegateChanged();
    void countChanged();
    Q_REVISION(1) void itemAdded(int index, QDeclarativeItem *item);
    Q_REVISION(1) void itemRemoved(int index, QDeclarativeItem *item);

protected:
    void componentComplete() override;
    QVariant itemChange(GraphicsItemChange, const QVariant &) override;

private:
    /** What a row has for an item, which may be none, once it is made. */
    struct Item
    {
        QPointer<QGraphicsObject> item;
        bool isMade = false;
    };
    using MovedItems = QHash<QPair<int, int>, Item>; ///< by move and place in it

    void announce(void (QDeclarativeRepeater::*signal)());
    void clear();
    void regenerate();
    void makeAnew();
    void makeMissing();
    void makeItem(int index);
    void updateItems(const QQmlChangeSet &, bool reset);
    QGraphicsObject *makeRow(int index);
    void applyChanges(const QQmlChangeSet &, bool reset);
    void applyKeptChanges();
    void stack(int index);
    void restack();
    MovedItems removeRows(const QQmlChangeSet &);
    void insertRows(const QQmlChangeSet &, const MovedItems &);

    QDeclarativeVisualModel *const rows;
    QVector<Item> items;
    QDeclarativeKeptChanges keptChanges;
    QDeclarativeWork work;
};

QML_DECLARE_TYPE(QDeclarativeRepeater)
