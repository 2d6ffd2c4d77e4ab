#include "VTAccessibleItem_p.h"

#include "VTAccessible_p.h"
#include "VTItemTree_p.h"
#include "VTTipWords_p.h"
#include "VTVideoComponent.h"
#include "VTView.h"

#include <QtCore/QPointer>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <initializer_list>

namespace Vidtips {

namespace {

// Straight to the area: at its middle there may be others on top of it.
void sendMouse(QGraphicsObject *area, QEvent::Type type, Qt::MouseButtons held)
{
    const QPointF middle = area->boundingRect().center();
    const QPointF scenePosition = area->mapToScene(middle);
    QGraphicsSceneMouseEvent event(type);
    event.setPos(middle);
    event.setLastPos(middle);
    event.setButtonDownPos(Qt::LeftButton, middle);
    event.setScenePos(scenePosition);
    event.setLastScenePos(scenePosition);
    event.setButtonDownScenePos(Qt::LeftButton, scenePosition);
    event.setButton(Qt::LeftButton);
    event.setButtons(held);
    area->scene()->sendEvent(area, &event);
}

void click(QGraphicsObject *area)
{
    const QPointer<QGraphicsObject> guard(area);
    sendMouse(area, QEvent::GraphicsSceneMousePress, Qt::LeftButton);
    if (guard && guard->scene())
        sendMouse(area, QEvent::GraphicsSceneMouseRelease, Qt::NoButton);
}

void press(QGraphicsObject *item)
{
    VTAccessible *const said = VTAccessible::of(item);
    QGraphicsObject *const area = VTItemTree::clickableArea(item);
    auto *const clip = qobject_cast<VTVideoComponent *>(item);
    if (said && said->canBePressed())
        Q_EMIT said->pressed();
    else if (area && area->scene())
        click(area);
    else if (clip && clip->state() == VTVideoComponent::playingState)
        clip->pause();
    else if (clip)
        clip->play();
}

void focus(QGraphicsObject *item)
{
    VTView *const view = VTAccessibleItem::viewOf(item);
    auto *const target = qobject_cast<QDeclarativeItem *>(item);
    if (!view || !target)
        return;
    const QPointer<QDeclarativeItem> guard(target);
    view->activateWindow();
    view->setFocus();
    if (guard)
        guard->forceActiveFocus();
}

} // namespace

VTAccessibleItem::VTAccessibleItem(QGraphicsObject *item)
    : QAccessibleObject(item)
    , m_watch(item)
{
}

VTView *VTAccessibleItem::viewOf(const QGraphicsItem *item)
{
    const QList<QGraphicsView *> views =
        item && item->scene() ? item->scene()->views() : QList<QGraphicsView *>();
    return views.isEmpty() ? nullptr : qobject_cast<VTView *>(views.constFirst());
}

QGraphicsObject *VTAccessibleItem::item() const
{
    return static_cast<QGraphicsObject *>(object());
}

QAccessible::Role VTAccessibleItem::role() const
{
    return VTItemTree::role(item());
}

QAccessible::State VTAccessibleItem::state() const
{
    const VTView *const view = viewOf(item());
    const auto *const clip = qobject_cast<const VTVideoComponent *>(object());
    QAccessible::State state;
    state.invisible = !view || !view->isVisible() || !item()->isVisible();
    state.offscreen = visibleRect().isEmpty();
    state.disabled = !isEnabled();
    state.focusable = isFocusable();
    state.focused = view && view->hasFocus() && VTItemTree::teller(view->scene()->focusItem()) == item();
    state.animated = clip && clip->state() == VTVideoComponent::playingState;
    return state;
}

QString VTAccessibleItem::text(QAccessible::Text kind) const
{
    const VTAccessible *const said = VTAccessible::of(object());
    switch (kind) {
    case QAccessible::Name:
        return name();
    case QAccessible::Description:
        return said ? said->description() : QString();
    case QAccessible::Value:
        return role() == QAccessible::EditableText ? VTItemTree::text(item()) : QString();
    default:
        return {};
    }
}

QString VTAccessibleItem::name() const
{
    const VTAccessible *const said = VTAccessible::of(object());
    if (said && !said->name().isEmpty())
        return said->name();
    if (object()->inherits("QDeclarativeText"))
        return VTItemTree::text(item());
    // A tip has one clip, which shows what the tip is about.
    if (qobject_cast<const VTVideoComponent *>(object()))
        return VTTipWords(viewOf(item())).title();
    return VTItemTree::isWhole(item()) ? VTItemTree::label(item()) : QString();
}

QRect VTAccessibleItem::rect() const
{
    const VTView *const view = viewOf(item());
    if (!view)
        return {};
    const QRect rect = view->viewportTransform().mapRect(item()->sceneBoundingRect()).toAlignedRect();
    return {view->viewport()->mapToGlobal(rect.topLeft()), rect.size()};
}

QRectF VTAccessibleItem::visibleRect() const
{
    QRectF rect = item()->sceneBoundingRect();
    for (const QGraphicsItem *holder = item()->parentItem(); holder; holder = holder->parentItem()) {
        if (holder->flags() & QGraphicsItem::ItemClipsChildrenToShape)
            rect &= holder->sceneBoundingRect();
    }
    const VTView *const view = viewOf(item());
    return view ? rect & view->sceneRect() : QRectF();
}

QWindow *VTAccessibleItem::window() const
{
    const QAccessibleInterface *const holder = parent();
    return holder ? holder->window() : nullptr;
}

QAccessibleInterface *VTAccessibleItem::parent() const
{
    QGraphicsObject *const holder = VTItemTree::teller(item()->parentItem());
    return holder ? QAccessible::queryAccessibleInterface(holder)
                  : QAccessible::queryAccessibleInterface(viewOf(item()));
}

int VTAccessibleItem::childCount() const
{
    return VTItemTree::children(item()).size();
}

QAccessibleInterface *VTAccessibleItem::child(int index) const
{
    return QAccessible::queryAccessibleInterface(VTItemTree::children(item()).value(index));
}

int VTAccessibleItem::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? VTItemTree::children(item()).indexOf(qobject_cast<QGraphicsObject *>(child->object()))
                 : -1;
}

void *VTAccessibleItem::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

bool VTAccessibleItem::isEnabled() const
{
    return item()->isEnabled() && item()->property("enabled").toBool();
}

bool VTAccessibleItem::isPressable() const
{
    const VTAccessible *const said = VTAccessible::of(object());
    if (!isEnabled())
        return false;
    return (said && said->canBePressed()) || qobject_cast<const VTVideoComponent *>(object())
        || (VTItemTree::isWhole(item()) && VTItemTree::clickableArea(item()))
        || VTItemTree::clickableArea(item()) == item();
}

// Only a kept tip has the keyboard. What has a sign of focus is for QML to say.
bool VTAccessibleItem::isFocusable() const
{
    const VTView *const view = viewOf(item());
    const VTAccessible *const said = VTAccessible::of(object());
    if (!view || !view->reserved() || !isEnabled())
        return false;
    if (role() == QAccessible::EditableText)
        return true;
    const auto role = said ? said->role() : VTAccessible::NoRole;
    return role == VTAccessible::Button || role == VTAccessible::Link;
}

QStringList VTAccessibleItem::actionNames() const
{
    QStringList names;
    if (isPressable())
        names << pressAction();
    if (isFocusable())
        names << setFocusAction();
    return names;
}

void VTAccessibleItem::doAction(const QString &name)
{
    if (!actionNames().contains(name))
        return;
    QGraphicsObject *const target = item();
    const auto act = name == pressAction() ? &press : &focus;
    QMetaObject::invokeMethod(
        target, [target, act] { act(target); }, Qt::QueuedConnection);
}

} // namespace Vidtips
