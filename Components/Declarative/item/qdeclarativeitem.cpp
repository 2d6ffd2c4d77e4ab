#include "qdeclarativeitem.h"

#include "engine/qdeclarativedepth_p.h"
#include "guard/qdeclarativeitemcount_p.h"
#include "qdeclarativeanchors_p.h"
#include "qdeclarativecontents_p.h"
#include "qdeclarativeitem_p.h"
#include "qdeclarativekeyfilter_p.h"

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlInfo>
#include <QtWidgets/QGraphicsScene>

#include <private/qquickstate_p.h>
#include <private/qquickstategroup_p.h>
#include <private/qquicktransition_p.h>

QDeclarativeItemPrivate::QDeclarativeItemPrivate()
    : widthIsSet(false)
    , heightIsSet(false)
    , componentIsComplete(true)
    , keepMouse(false)
    , isSmooth(false)
    , announcedActiveFocus(false)
    , announcedFocus(false)
    , parentWasSet(false)
    , mirrorIsSet(false)
    , mirrorValue(false)
    , childrenInheritMirror(false)
    , inheritsMirror(false)
    , inheritedMirror(false)
    , effectiveMirror(false)
    , passedMirrorOn(false)
    , passedMirror(false)
{
    isDeclarativeItem = 1;
    // A press gives the focus only where an item asks for it, as the editors do.
    mouseSetsFocus = 0;
}

QDeclarativeItemPrivate::~QDeclarativeItemPrivate() = default;

void QDeclarativeItemPrivate::init(QDeclarativeItem *parent)
{
    Q_Q(QDeclarativeItem);
    QDeclarativeDepth::watchSignals();
    if (parent) {
        q->QObject::setParent(parent);
        q->setParentItem(parent);
    }
    flags = quint32(QGraphicsItem::ItemHasNoContents | QGraphicsItem::ItemIsFocusable
                    | QGraphicsItem::ItemNegativeZStacksBehindParent);
    acceptedMouseButtons = Qt::NoButton;
}

QQuickStateGroup *QDeclarativeItemPrivate::stateGroup()
{
    Q_Q(QDeclarativeItem);
    if (!itemStateGroup) {
        itemStateGroup = new QQuickStateGroup(q);
        if (!componentIsComplete)
            itemStateGroup->classBegin();
        QObject::connect(itemStateGroup, &QQuickStateGroup::stateChanged, q, &QDeclarativeItem::stateChanged);
    }
    return itemStateGroup;
}

QQmlListProperty<QQuickState> QDeclarativeItemPrivate::states()
{
    return stateGroup()->statesProperty();
}

QQmlListProperty<QQuickTransition> QDeclarativeItemPrivate::transitions()
{
    return stateGroup()->transitionsProperty();
}

QString QDeclarativeItemPrivate::state() const
{
    return itemStateGroup ? itemStateGroup->state() : QString();
}

void QDeclarativeItemPrivate::setState(const QString &state)
{
    stateGroup()->setState(state);
}

QDeclarativeItem *QDeclarativeItemPrivate::createPart(QQmlComponent *component, QDeclarativeItem *parent,
                                                      QQmlContext *context)
{
    Q_Q(QDeclarativeItem);
    if (!context)
        context = new QQmlContext(qmlContext(q));
    QObject *object = QDeclarativeItemCount::admits(component) ? component->beginCreate(context) : nullptr;
    auto *item = qobject_cast<QDeclarativeItem *>(object);
    if (!item) {
        // Or the component makes no other one.
        if (object)
            component->completeCreate();
        delete object;
        delete context;
        return nullptr;
    }
    context->setParent(item);
    item->QObject::setParent(q);
    item->setParentItem(parent);
    component->completeCreate();
    return item;
}

void QDeclarativeItemPrivate::discard(QGraphicsObject *item)
{
    if (!item)
        return;
    // The scene takes it out of its parent as well, once that has got the focus back.
    if (item->scene())
        item->scene()->removeItem(item);
    else
        item->setParentItem(nullptr);
    item->deleteLater();
}

void QDeclarativeItemPrivate::stackBefore(QGraphicsItem *item, const QGraphicsItem *sibling)
{
    QGraphicsItem *const parent = item->parentItem();
    if (item == sibling || !parent || sibling->parentItem() != parent)
        return;
    get(parent)->ensureSequentialSiblingIndex();
    const int to = get(sibling)->siblingIndex;
    const int from = get(item)->siblingIndex;
    if (from < to)
        return;
    QList<QGraphicsItem *> &siblings = get(parent)->children;
    siblings.move(from, to);
    for (int i = to; i <= from; ++i)
        get(siblings.at(i))->siblingIndex = i;
    get(parent)->needSortChildren = 1;
    const auto moved = siblings.mid(to, from - to + 1);
    for (QGraphicsItem *one : moved)
        get(one)->siblingOrderChange();
}

void QDeclarativeItemPrivate::transformChanged()
{
    if (transformData)
        updateTransformOrigin();
}

void QDeclarativeItemPrivate::focusScopeItemChange(bool isSubFocusItem)
{
    Q_Q(QDeclarativeItem);
    announcedFocus = isSubFocusItem;
    Q_EMIT q->focusChanged(isSubFocusItem);
}

void QDeclarativeItemPrivate::siblingOrderChange()
{
    Q_Q(QDeclarativeItem);
    notifyListeners(SiblingOrderChange,
                    [q](QDeclarativeItemChangeListener *listener) { listener->itemSiblingOrderChanged(q); });
}

void QDeclarativeItemPrivate::parentHasChanged()
{
    Q_Q(QDeclarativeItem);
    QDeclarativeItem *const parent = q->parentItem();
    if (inheritsMirror || (parent && get(parent)->passedMirrorOn))
        resolveMirroring();
    // The place in which an item is declared is no change.
    if (componentIsComplete || parentWasSet)
        Q_EMIT q->parentChanged(q->parentItem());
    parentWasSet = true;
    notifyListeners(ParentChange, [q](QDeclarativeItemChangeListener *listener) {
        listener->itemParentChanged(q, q->parentItem());
    });
}

void QDeclarativeItemPrivate::availabilityHasChanged(bool isAvailable)
{
    if (!isAvailable)
        yieldActiveFocus();
    followPassiveFocus();
}

void QDeclarativeItemPrivate::addChangeListener(QDeclarativeItemChangeListener *listener,
                                                QDeclarativeItemChanges changes)
{
    for (ListenerEntry &entry : listeners) {
        if (entry.listener == listener) {
            entry.changes |= changes;
            return;
        }
    }
    ++listenerChanges;
    listeners.append({listener, changes});
}

void QDeclarativeItemPrivate::removeChangeListener(QDeclarativeItemChangeListener *listener,
                                                   QDeclarativeItemChanges changes)
{
    for (int i = 0; i < listeners.count(); ++i) {
        if (listeners.at(i).listener != listener)
            continue;
        ++listenerChanges;
        listeners[i].changes &= ~changes;
        if (!listeners.at(i).changes)
            listeners.remove(i);
        return;
    }
}

bool QDeclarativeItemPrivate::listens(const QDeclarativeItemChangeListener *listener,
                                      QDeclarativeItemChange change) const
{
    for (const ListenerEntry &entry : listeners) {
        if (entry.listener == listener)
            return entry.changes & change;
    }
    return false;
}

QDeclarativeItemPrivate::ExtraData &QDeclarativeItemPrivate::extra()
{
    if (!extraData)
        extraData = std::make_unique<ExtraData>();
    return *extraData;
}

QRectF QDeclarativeItemPrivate::childrenRect()
{
    Q_Q(QDeclarativeItem);
    if (inDestructor)
        return {};
    if (!extra().contents)
        extraData->contents = std::make_unique<QDeclarativeContents>(q);
    return extraData->contents->rect();
}

QDeclarativeAnchors *QDeclarativeItemPrivate::anchors()
{
    Q_Q(QDeclarativeItem);
    if (!itemAnchors)
        itemAnchors = std::make_unique<QDeclarativeAnchors>(q);
    return itemAnchors.get();
}

static QDeclarativeAnchorLine anchorLine(const QDeclarativeItem *item,
                                         QDeclarativeAnchorLine::AnchorLine line)
{
    return {const_cast<QDeclarativeItem *>(item), line};
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::left() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::Left);
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::right() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::Right);
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::horizontalCenter() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::HCenter);
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::top() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::Top);
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::bottom() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::Bottom);
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::verticalCenter() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::VCenter);
}

QDeclarativeAnchorLine QDeclarativeItemPrivate::baseline() const
{
    return anchorLine(q_func(), QDeclarativeAnchorLine::Baseline);
}

QDeclarativeItem::QDeclarativeItem(QDeclarativeItem *parent)
    : QGraphicsObject(*new QDeclarativeItemPrivate, nullptr)
{
    d_func()->init(parent);
}

QDeclarativeItem::QDeclarativeItem(QDeclarativeItemPrivate &dd, QDeclarativeItem *parent)
    : QGraphicsObject(dd, nullptr)
{
    d_func()->init(parent);
}

QDeclarativeItem::~QDeclarativeItem()
{
    Q_D(QDeclarativeItem);
    d->notifyListeners(DestroyedChange,
                       [this](QDeclarativeItemChangeListener *listener) { listener->itemDestroyed(this); });
    d->itemAnchors.reset();
    if (d->extraData)
        d->extraData->contents.reset();
    d->dropFocus();
    d->leaveToThemselves();
    if (d->itemCount)
        d->itemCount->drop();
}

/** Parts with the children that are being destroyed already, in whose course this item, which they own, goes.
 */
void QDeclarativeItemPrivate::leaveToThemselves()
{
    const QList<QGraphicsItem *> &all = QGraphicsItemPrivate::children;
    for (int i = all.count() - 1; i >= 0; --i) {
        if (QGraphicsItemPrivate::get(all.at(i))->inDestructor)
            all.at(i)->setParentItem(nullptr);
    }
}

QDeclarativeItem *QDeclarativeItem::parentItem() const
{
    // Asked for with each item that is made, so without a search through the meta objects.
    QGraphicsItem *parent = QGraphicsObject::parentItem();
    if (!parent)
        return nullptr;
    const QGraphicsItemPrivate *its = QGraphicsItemPrivate::get(parent);
    // One that is being destroyed is no QDeclarativeItem any more.
    return its->isDeclarativeItem && !its->inDestructor ? static_cast<QDeclarativeItem *>(parent) : nullptr;
}

void QDeclarativeItem::setParentItem(QDeclarativeItem *parent)
{
    // Graphics View would follow the circle without end.
    if (parent && (parent == this || isAncestorOf(parent))) {
        qmlWarning(this) << tr("An item cannot be its own parent or that of its parent");
        return;
    }
    QGraphicsObject::setParentItem(parent);
}

qreal QDeclarativeItem::baselineOffset() const
{
    return d_func()->itemBaselineOffset;
}

void QDeclarativeItem::setBaselineOffset(qreal offset)
{
    Q_D(QDeclarativeItem);
    if (offset == d->itemBaselineOffset)
        return;
    d->itemBaselineOffset = offset;
    d->notifyListeners(BaselineOffsetChange, [this](QDeclarativeItemChangeListener *listener) {
        listener->itemBaselineOffsetChanged(this);
    });
    Q_EMIT baselineOffsetChanged(offset);
}

bool QDeclarativeItem::clip() const
{
    return flags() & ItemClipsChildrenToShape;
}

void QDeclarativeItem::setClip(bool clip)
{
    if (clip == this->clip())
        return;
    setFlag(ItemClipsChildrenToShape, clip);
    Q_EMIT clipChanged(clip);
}

bool QDeclarativeItem::smooth() const
{
    return d_func()->isSmooth;
}

void QDeclarativeItem::setSmooth(bool smooth)
{
    Q_D(QDeclarativeItem);
    if (smooth == d->isSmooth)
        return;
    d->isSmooth = smooth;
    Q_EMIT smoothChanged(smooth);
    update();
}

void QDeclarativeItem::paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) { }

QVariant QDeclarativeItem::itemChange(GraphicsItemChange change, const QVariant &value)
{
    Q_D(QDeclarativeItem);
    const auto child = [&value] { return value.value<QGraphicsItem *>()->toGraphicsObject(); };
    switch (change) {
    case ItemParentHasChanged:
        d->parentHasChanged();
        break;
    case ItemEnabledChange:
        // The items inside would hand the focus to this scope, which could not take it, and be stuck with it.
        if (!value.toBool() && (flags() & ItemIsFocusScope) && d->hasActiveFocus())
            QGraphicsItem::clearFocus();
        return value;
    case ItemEnabledHasChanged:
        d->availabilityHasChanged(isEnabled());
        break;
    case ItemVisibleHasChanged:
        d->availabilityHasChanged(isVisible());
        d->notifyListeners(VisibilityChange,
                           [this](auto *listener) { listener->itemVisibilityChanged(this); });
        break;
    case ItemOpacityHasChanged:
        d->notifyListeners(OpacityChange, [this](auto *listener) { listener->itemOpacityChanged(this); });
        break;
    case ItemChildAddedChange:
        d->notifyListeners(ChildrenChange, [&](auto *listener) { listener->itemChildAdded(this, child()); });
        break;
    case ItemChildRemovedChange:
        d->notifyListeners(ChildrenChange,
                           [&](auto *listener) { listener->itemChildRemoved(this, child()); });
        break;
    case ItemSceneHasChanged:
        break;
    default:
        return QGraphicsObject::itemChange(change, value);
    }
    // Graphics View asks for no answer to what has happened, and a copy of the value is dear.
    return {};
}

void QDeclarativeItem::classBegin()
{
    Q_D(QDeclarativeItem);
    d->componentIsComplete = false;
    if (d->itemCount)
        return;
    d->itemCount = QDeclarativeItemCount::of(qmlEngine(this));
    if (d->itemCount)
        d->itemCount->add();
}

void QDeclarativeItem::componentComplete()
{
    Q_D(QDeclarativeItem);
    d->componentIsComplete = true;
    if (d->itemStateGroup)
        d->itemStateGroup->componentComplete();
    if (d->itemAnchors)
        d->itemAnchors->updateAll();
    if (QDeclarativeKeyFilter *filter = d->keyFilter())
        filter->componentComplete();
}

bool QDeclarativeItem::isComponentComplete() const
{
    return d_func()->componentIsComplete;
}

#include "moc_qdeclarativeitem.cpp"
