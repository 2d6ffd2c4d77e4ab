#pragma once

#include "qdeclarativeitem.h"

#include "qdeclarativegraphicsitem_p.h"

#include <QtCore/QVector>

#include <memory>

struct QDeclarativeAnchorLine;
class QDeclarativeAnchors;
class QDeclarativeContents;
class QDeclarativeItemCount;
class QDeclarativeKeyFilter;
class QDeclarativeLayoutMirroring;
class QQmlComponent;
class QQmlContext;
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
    BaselineOffsetChange = 0x80,
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
    virtual void itemBaselineOffsetChanged(QDeclarativeItem *) { }
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

    using QGraphicsItemPrivate::get;
    static QDeclarativeItemPrivate *get(QDeclarativeItem *item) { return item->d_func(); }
    static const QDeclarativeItemPrivate *get(const QDeclarativeItem *item) { return item->d_func(); }

    void init(QDeclarativeItem *parent);

    /** Has the item painted; only for a constructor, since nobody is told of the change. */
    void enablePainting() { flags &= ~quint32(QGraphicsItem::ItemHasNoContents); }

    QQmlListProperty<QObject> data();
    QQmlListProperty<QObject> resources();
    QQmlListProperty<QGraphicsObject> children();
    QQmlListProperty<QQuickState> states();
    QQmlListProperty<QQuickTransition> transitions();
    QString state() const;
    void setState(const QString &);
    QQuickStateGroup *stateGroup();

    QRectF childrenRect();
    QDeclarativeAnchors *anchors();
    QDeclarativeAnchorLine left() const;
    QDeclarativeAnchorLine right() const;
    QDeclarativeAnchorLine horizontalCenter() const;
    QDeclarativeAnchorLine top() const;
    QDeclarativeAnchorLine bottom() const;
    QDeclarativeAnchorLine verticalCenter() const;
    QDeclarativeAnchorLine baseline() const;

    /** The anchors if any were named, else null: reading `anchors` makes them. */
    QDeclarativeAnchors *existingAnchors() const { return itemAnchors.get(); }

    void appendData(QObject *);
    QObjectList resourceObjects() const;
    static QList<QGraphicsObject *> childObjects(const QGraphicsItem *);
    const QList<QGraphicsObject *> &childList();
    QPointF computeTransformOrigin() const;
    /** The size in which transformOrigin is a place. */
    virtual QSizeF originExtent() const;
    void updateTransformOrigin();
    QRectF geometry() const;

    void addChangeListener(QDeclarativeItemChangeListener *, QDeclarativeItemChanges);
    void removeChangeListener(QDeclarativeItemChangeListener *, QDeclarativeItemChanges);
    bool listens(const QDeclarativeItemChangeListener *, QDeclarativeItemChange) const;
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
    void changeSize(const QSizeF &, bool announce = false);

    /** Whether left and right are exchanged in the item's layout. */
    bool isMirrored() const { return effectiveMirror; }
    void resolveMirroring();
    /** Called when isMirrored() changed; call the base. */
    virtual void mirrorChange();

    QDeclarativeKeyFilter *keyFilter() const { return extraData ? extraData->keyFilter : nullptr; }
    void setKeyFilter(QDeclarativeKeyFilter *filter) { extra().keyFilter = filter; }
    QVariant queryInputMethod(Qt::InputMethodQuery query) const { return q_func()->inputMethodQuery(query); }

    /** Whether the item, or an item inside this focus scope, has the focus as far as its window has it. */
    bool hasSubFocus() const;
    /** Whether keys go to the item, or through it as a focus scope to an item inside, right now. */
    bool hasActiveFocus() const;
    /** Whether the active focus comes back to the item with its window. */
    bool hasPassiveFocus() const;
    void takeSceneFocus();
    void leaveSceneFocus();
    /** Makes the item the one with the focus, of the scope around it if there is one. */
    void takeFocus();
    /** Gives the focus up, to the scope around the item if there is one. */
    void releaseFocus();
    /** Gives up what Graphics View leaves to a focus scope that is hidden or disabled. */
    void yieldActiveFocus();
    /** Says what has become of the focus of an item that is shown or hidden while its window is not active.
     */
    void followPassiveFocus();
    /** Says what has become of the focus of an item outside every scope, if that is news. */
    void announceFocus();
    /** Lets the scopes around the item, which is about to go, know that it takes the focus along. */
    void dropFocus();
    void leaveToThemselves();
    /** Called to announce that the active focus has come or gone; call the base. */
    virtual void activeFocusChange(bool active);

    /**
     * Makes a part of the element, which owns it, as a child of @p parent; null where that is no item.
     *
     * A @p context given goes with the part, or at once where there is none.
     */
    QDeclarativeItem *createPart(QQmlComponent *, QDeclarativeItem *parent, QQmlContext *context = nullptr);

    void parentHasChanged();
    /** Sees to the focus of an item that can no longer have it, or can again. */
    void availabilityHasChanged(bool isAvailable);

    /**
     * Takes an item out of the scene and has it deleted at the next chance, with its owner at the latest.
     *
     * Not at once: one of the item's own handlers may be what brought this about. Nothing happens for null.
     */
    static void discard(QGraphicsObject *);

    /**
     * Puts @p item right below @p sibling if it is above, as QGraphicsItem::stackBefore() does, but in no
     * more time than the items between them take.
     */
    static void stackBefore(QGraphicsItem *item, const QGraphicsItem *sibling);

    void setPosHelper(const QPointF &) override;
    void transformChanged() override;
    void focusScopeItemChange(bool isSubFocusItem) override;
    void siblingOrderChange() override;

    /** What few items have. */
    struct ExtraData
    {
        QDeclarativeKeyFilter *keyFilter = nullptr;
        QDeclarativeLayoutMirroring *mirroring = nullptr;
        std::unique_ptr<QDeclarativeContents> contents;
        QList<QGraphicsItem *> listedChildren; ///< all those at the time that childList was made
        QList<QGraphicsObject *> childList;
    };
    ExtraData &extra();

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
    std::unique_ptr<QDeclarativeAnchors> itemAnchors;
    std::unique_ptr<ExtraData> extraData;
    QDeclarativeItemCount *itemCount = nullptr; ///< that this item is part of
    QQuickStateGroup *itemStateGroup = nullptr;
    QDeclarativeItem::TransformOrigin origin = QDeclarativeItem::Center;
    bool widthIsSet : 1;
    bool heightIsSet : 1;
    bool componentIsComplete : 1;
    bool keepMouse : 1;
    bool isSmooth : 1;
    bool announcedActiveFocus : 1; ///< what was said last: the focus may have gone silently since
    bool announcedFocus : 1; ///< the same for the focus
    bool parentWasSet : 1; ///< the item had a parent before
    bool mirrorIsSet : 1; ///< LayoutMirroring.enabled was given
    bool mirrorValue : 1; ///< what was given
    bool childrenInheritMirror : 1;
    bool inheritsMirror : 1; ///< an ancestor passes its value on
    bool inheritedMirror : 1;
    bool effectiveMirror : 1;
    bool passedMirrorOn : 1; ///< what the children were told last
    bool passedMirror : 1;
    quint32 listenerChanges = 0; ///< counts additions and removals

private:
    bool passesMirrorOn() const { return (mirrorIsSet && childrenInheritMirror) || inheritsMirror; }
    bool mirrorForChildren() const
    {
        return mirrorIsSet && childrenInheritMirror ? mirrorValue : bool(inheritedMirror);
    }
};

template <typename Notify>
void QDeclarativeItemPrivate::notifyListeners(QDeclarativeItemChange change, Notify notify)
{
    if (listeners.isEmpty())
        return;
    const QVector<ListenerEntry> current = listeners;
    const quint32 before = listenerChanges;
    for (const ListenerEntry &entry : current) {
        // A listener that another one removed may be gone by now.
        if ((entry.changes & change) && (before == listenerChanges || listens(entry.listener, change)))
            notify(entry.listener);
    }
}
