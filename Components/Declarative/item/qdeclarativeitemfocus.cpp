#include "qdeclarativeitem.h"

#include "qdeclarativeitem_p.h"

#include <QtQml/qqmlinfo.h>
#include <QtWidgets/QGraphicsScene>

#include <private/qgraphicsscene_p.h>

/** The focus scope that the item belongs to, null at the top. */
static const QGraphicsItem *scopeOf(const QGraphicsItem *item)
{
    const QGraphicsItem *scope = item->parentItem();
    while (scope && !(scope->flags() & QGraphicsItem::ItemIsFocusScope))
        scope = scope->parentItem();
    return scope;
}

bool QDeclarativeItemPrivate::hasSubFocus() const
{
    // Graphics View tells every ancestor; only a focus scope has the focus on behalf of an item inside.
    return subFocusItem == q_ptr || (subFocusItem && (flags & QGraphicsItem::ItemIsFocusScope));
}

bool QDeclarativeItemPrivate::hasActiveFocus() const
{
    return hasSubFocus() && scene && scene->isActive() && scene->focusItem() == subFocusItem;
}

/** The item that gets the active focus with the window, null while this is active. */
static QGraphicsItem *passiveFocusItem(QGraphicsScene *scene)
{
    if (scene->isActive())
        return nullptr;
    return static_cast<QGraphicsScenePrivate *>(QObjectPrivate::get(scene))->passiveFocusItem;
}

bool QDeclarativeItemPrivate::hasPassiveFocus() const
{
    if (!hasSubFocus() || !scene)
        return hasSubFocus();
    // The window gives it to none that is hidden or disabled.
    return passiveFocusItem(scene) == subFocusItem && subFocusItem->isVisible() && subFocusItem->isEnabled();
}

void QDeclarativeItemPrivate::activeFocusChange(bool active)
{
    Q_Q(QDeclarativeItem);
    const QPointer<QDeclarativeItem> guard(q);
    announcedActiveFocus = active;
    Q_EMIT q->activeFocusChanged(active);
    if (!guard)
        return;
    // Outside every scope both are the same. An item that gives the active focus back to its scope loses both
    // at once, and Graphics View leaves it to the item to say so.
    const QGraphicsItem *scope = scopeOf(q);
    if (!scope || !QGraphicsItemPrivate::get(scope)->focusScopeItem)
        announceFocus();
}

void QDeclarativeItemPrivate::announceFocus()
{
    Q_Q(QDeclarativeItem);
    const bool focus = q->hasFocus();
    if (focus == announcedFocus)
        return;
    announcedFocus = focus;
    Q_EMIT q->focusChanged(focus);
}

void QDeclarativeItemPrivate::yieldActiveFocus()
{
    if (subFocusItem != q_ptr || !hasActiveFocus())
        return;
    // Graphics View looks for the item with the focus inside the scope, where it is not.
    clearSubFocus();
    scene->setFocusItem(nullptr);
    leaveSceneFocus();
}

/** The item and the focus scopes around it, from the inside out. */
static QVector<QPointer<QDeclarativeItem>> focusChain(QDeclarativeItem *item)
{
    QVector<QPointer<QDeclarativeItem>> chain{item};
    for (const QGraphicsItem *scope = scopeOf(item); scope; scope = scopeOf(scope)) {
        if (auto *above =
                qobject_cast<QDeclarativeItem *>(const_cast<QGraphicsItem *>(scope)->toGraphicsObject()))
            chain.append(above);
    }
    return chain;
}

void QDeclarativeItemPrivate::takeSceneFocus()
{
    const auto chain = focusChain(q_func());
    for (const QPointer<QDeclarativeItem> &item : chain) {
        QDeclarativeItemPrivate *d = item ? get(item.data()) : nullptr;
        // A handler may have moved the focus on by now.
        if (d && !d->announcedActiveFocus && d->hasActiveFocus())
            d->activeFocusChange(true);
    }
}

void QDeclarativeItemPrivate::leaveSceneFocus()
{
    const QGraphicsItem *const left = q_ptr;
    const auto chain = focusChain(q_func());
    for (const QPointer<QDeclarativeItem> &item : chain) {
        QDeclarativeItemPrivate *d = item ? get(item.data()) : nullptr;
        if (!d)
            continue;
        // A scope around both items stays active while one hands the focus to the other.
        if (item != left && d->subFocusItem && d->subFocusItem != left)
            return;
        // A handler may have brought the focus back by now.
        if (d->announcedActiveFocus && !d->hasActiveFocus())
            d->activeFocusChange(false);
    }
}

/**
 * Has the items around @p item forget what is inside and not the one with the focus any more.
 *
 * Graphics View leaves the visible ones with it where a hidden scope takes the focus over, and reads it after
 * its end.
 */
static void forgetFormerFocus(QGraphicsItem *item)
{
    const QGraphicsItem *inside = item;
    for (QGraphicsItem *around = item->parentItem(); around; around = around->parentItem()) {
        QGraphicsItem *&held = QGraphicsItemPrivate::get(around)->subFocusItem;
        if (held && held != QGraphicsItemPrivate::get(inside)->subFocusItem
            && (held == inside || inside->isAncestorOf(held)))
            held = nullptr;
        inside = around;
    }
}

void QDeclarativeItemPrivate::dropFocus()
{
    announcedActiveFocus = false;
    forgetFormerFocus(q_ptr);
    if (!subFocusItem || !parent)
        return;
    // Graphics View would let the scopes know later, from what is left of the item.
    auto chain = focusChain(q_func());
    chain.removeFirst();
    QGraphicsItemPrivate::get(subFocusItem)->clearSubFocus(parent);
    for (const QPointer<QDeclarativeItem> &scope : qAsConst(chain)) {
        if (scope && get(scope.data())->announcedActiveFocus && !get(scope.data())->hasActiveFocus())
            get(scope.data())->activeFocusChange(false);
    }
}

void QDeclarativeItemPrivate::releaseFocus()
{
    Q_Q(QDeclarativeItem);
    const QPointer<QDeclarativeItem> guard(q);
    QGraphicsItem *const inside = hasSubFocus() ? subFocusItem : nullptr;
    q->clearFocus();
    if (!guard || !inside || subFocusItem != inside || hasActiveFocus())
        return;
    // Graphics View still has the item entered: one inside a scope always, any while the window is not
    // active.
    QGraphicsItemPrivate::get(inside)->clearSubFocus();
    if (!scene || scene->isActive())
        return;
    static_cast<QGraphicsScenePrivate *>(QObjectPrivate::get(scene))->passiveFocusItem = nullptr;
    if (const QGraphicsItem *scope = scopeOf(q))
        QGraphicsItemPrivate::get(const_cast<QGraphicsItem *>(scope))
            ->setFocusHelper(Qt::OtherFocusReason, false, false);
}

bool QDeclarativeItem::hasFocus() const
{
    const QGraphicsItem *scope = scopeOf(this);
    if (scope)
        return QGraphicsItemPrivate::get(scope)->focusScopeItem == this;
    // The scene is the scope, and remembers its item while its window is not active.
    return !scene() || !scene()->isActive() ? d_func()->hasPassiveFocus() : hasActiveFocus();
}

/** Says what has become of the focus of the outermost of the scopes around the item, or of itself. */
static void announceOutermost(QGraphicsItem *item)
{
    auto *inside = item ? qobject_cast<QDeclarativeItem *>(item->toGraphicsObject()) : nullptr;
    if (inside)
        QDeclarativeItemPrivate::get(focusChain(inside).constLast().data())->announceFocus();
}

void QDeclarativeItemPrivate::followPassiveFocus()
{
    if (scene && !scene->isActive() && subFocusItem)
        announceOutermost(q_ptr);
}

/** Tells whether the item, enabled or not, is inside of one that is not. */
static bool isInsideDisabled(const QGraphicsItem *item)
{
    const QGraphicsItem *around = item->parentItem();
    while (around && around->isEnabled())
        around = around->parentItem();
    return around;
}

void QDeclarativeItemPrivate::takeFocus()
{
    Q_Q(QDeclarativeItem);
    // Graphics View asks the item alone, which may be enabled by itself.
    if (isInsideDisabled(q))
        return;
    const QPointer<QDeclarativeItem> guard(q);
    q->QGraphicsItem::setFocus(Qt::OtherFocusReason);
    if (!guard || !scene)
        return;
    forgetFormerFocus(q);
    // What a handler of the focus that went asked for came later, and counts.
    QGraphicsItem *const wanted = QGraphicsItemPrivate::get(q->topLevelItem())->subFocusItem;
    if (scene->focusItem() && wanted && wanted != scene->focusItem() && wanted->panel() == q->panel())
        scene->setFocusItem(wanted);
}

void QDeclarativeItem::setFocus(bool focus)
{
    Q_D(QDeclarativeItem);
    const QPointer<QDeclarativeItem> guard(this);
    QGraphicsItem *const passive = scene() ? passiveFocusItem(scene()) : nullptr;
    const QPointer<QGraphicsObject> before = passive ? passive->toGraphicsObject() : nullptr;
    if (focus)
        d->takeFocus();
    else
        d->releaseFocus();
    // Nobody else says so while the window is not active.
    if (!guard || !scene() || scene()->isActive())
        return;
    announceOutermost(before);
    if (guard)
        announceOutermost(this);
}

bool QDeclarativeItem::hasActiveFocus() const
{
    return d_func()->hasActiveFocus();
}

void QDeclarativeItem::forceActiveFocus()
{
    const auto chain = focusChain(this);
    for (const QPointer<QDeclarativeItem> &item : chain) {
        if (item)
            item->setFocus(true);
    }
}
