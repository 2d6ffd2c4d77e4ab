#pragma once

#include "qdeclarativeitem.h"

#include "qdeclarativegraphicsitem_p.h"

#include <QtCore/QVector>

class QQuickStateGroup;

/** What a QDeclarativeItemChangeListener can hear of. */
enum QDeclarativeItemChange {
    GeometryChange = 0x01,
    SiblingOrderChange = 0x02,
    VisibilityChange = 0x04,
    OpacityChange = 0x08,
    DestroyedChange = 0x10,
    ParentChange = 0x20,
    ChildrenChange = 0x40,
};
Q_DECLARE_FLAGS(QDeclarativeItemChanges, QDeclarativeItemChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(QDeclarativeItemChanges)

/**
 * Hears of changes of items it was added to with QDeclarativeItemPrivate::addChangeListener.
 *
 * Cheaper than signals: an item that nobody listens to pays for one empty vector. A listener must be removed
 * before it goes, unless the item told it of its own end through itemDestroyed().
 */
class QDeclarativeItemChangeListener
{
public:
    virtual void itemGeometryChanged(QDeclarativeItem *, const QRectF & /*now*/, const QRectF & /*before*/) {
    }
    virtual void itemSiblingOrderChanged(QDeclarativeItem *) { }
    virtual void itemVisibilityChanged(QDeclarativeItem *) { }
    virtual void itemOpacityChanged(QDeclarativeItem *) { }
    virtual void itemDestroyed(QDeclarativeItem *) { }
    virtual void itemParentChanged(QDeclarativeItem *, QDeclarativeItem * /*parent*/) { }
    virtual void itemChildAdded(QDeclarativeItem *, QGraphicsObject * /*child*/) { }
    virtual void itemChildRemoved(QDeclarativeItem *, QGraphicsObject * /*child*/) { }

protected:
    ~QDeclarativeItemChangeListener() = default;
};

class QDeclarativeItemPrivate : public QGraphicsItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeItem)

public:
    QDeclarativeItemPrivate();
    ~QDeclarativeItemPrivate() override;

    static QDeclarativeItemPrivate *get(QDeclarativeItem *item) { return item->d_func(); }
    static const QDeclarativeItemPrivate *get(const QDeclarativeItem *item) { return item->d_func(); }

    void init(QDeclarativeItem *parent);

    QQmlListProperty<QObject> data();
    QQmlListProperty<QObject> resources();
    QQmlListProperty<QGraphicsObject> children();
    QQmlListProperty<QQuickState> states();
    QQmlListProperty<QQuickTransition> transitions();
    QString state() const;
    void setState(const QString &);
    QQuickStateGroup *stateGroup();

    void appendData(QObject *);
    void appendTransform(QGraphicsTransform *);
    QPointF computeTransformOrigin() const;
    void updateTransformOrigin();
    QRectF geometry() const;

    void addChangeListener(QDeclarativeItemChangeListener *, QDeclarativeItemChanges);
    void removeChangeListener(QDeclarativeItemChangeListener *, QDeclarativeItemChanges);
    template <typename Notify>
    void notifyListeners(QDeclarativeItemChange change, Notify notify);

    // The width and height that QGraphicsObject declares.
    qreal width() const override { return itemWidth; }
    void setWidth(qreal) override;
    void resetWidth() override;
    qreal height() const override { return itemHeight; }
    void setHeight(qreal) override;
    void resetHeight() override;
    virtual qreal implicitWidth() const { return itemImplicitWidth; }
    virtual qreal implicitHeight() const { return itemImplicitHeight; }
    void changeSize(const QSizeF &);

    void setPosHelper(const QPointF &) override;
    void transformChanged() override;
    void focusScopeItemChange(bool isSubFocusItem) override;
    void subFocusItemChange() override;
    void siblingOrderChange() override;

    struct ListenerEntry
    {
        QDeclarativeItemChangeListener *listener;
        QDeclarativeItemChanges changes;
    };

    qreal itemWidth = 0;
    qreal itemHeight = 0;
    qreal itemImplicitWidth = 0;
    qreal itemImplicitHeight = 0;
    qreal itemBaselineOffset = 0;
    QVector<ListenerEntry> listeners;
    QList<QObject *> resourceObjects;
    QList<QGraphicsTransform *> transforms;
    QQuickStateGroup *itemStateGroup = nullptr;
    QDeclarativeItem::TransformOrigin origin = QDeclarativeItem::Center;
    bool widthIsSet : 1;
    bool heightIsSet : 1;
    bool componentIsComplete : 1;
    bool keepMouse : 1;
    bool isSmooth : 1;
    bool hasActiveFocus : 1;
};

template <typename Notify>
void QDeclarativeItemPrivate::notifyListeners(QDeclarativeItemChange change, Notify notify)
{
    if (listeners.isEmpty())
        return;
    const QVector<ListenerEntry> current = listeners;
    for (const ListenerEntry &entry : current) {
        if (entry.changes & change)
            notify(entry.listener);
    }
}
