#include "VTAccessibleView_p.h"

#include "VTItemTree_p.h"
#include "VTView.h"

#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

namespace Vidtips {

VTAccessibleView::VTAccessibleView(VTView *view)
    : QAccessibleWidget(view, QAccessible::Pane)
{
    QObject::connect(view->scene(), &QGraphicsScene::focusItemChanged, &m_context, &tellFocus);
}

// Null while the view is being destroyed.
VTView *VTAccessibleView::view() const
{
    return qobject_cast<VTView *>(object());
}

QList<QGraphicsObject *> VTAccessibleView::items() const
{
    QGraphicsObject *const root = view() ? view()->rootObject() : nullptr;
    if (!root || !root->isVisible())
        return {};
    const bool isTold = VTItemTree::role(root) != QAccessible::NoRole;
    return isTold ? QList<QGraphicsObject *>{root} : VTItemTree::children(root);
}

QAccessible::State VTAccessibleView::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.focused = state.focused && !focusChild();
    return state;
}

int VTAccessibleView::childCount() const
{
    return items().size();
}

QAccessibleInterface *VTAccessibleView::child(int index) const
{
    return QAccessible::queryAccessibleInterface(items().value(index));
}

int VTAccessibleView::indexOfChild(const QAccessibleInterface *child) const
{
    return child ? items().indexOf(qobject_cast<QGraphicsObject *>(child->object())) : -1;
}

QAccessibleInterface *VTAccessibleView::childAt(int x, int y) const
{
    return QAccessibleObject::childAt(x, y);
}

QAccessibleInterface *VTAccessibleView::focusChild() const
{
    if (!view() || !view()->hasFocus())
        return nullptr;
    return QAccessible::queryAccessibleInterface(VTItemTree::teller(view()->scene()->focusItem()));
}

void VTAccessibleView::tellFocus(QGraphicsItem *item)
{
    QGraphicsObject *const told = VTItemTree::teller(item);
    if (!told)
        return;
    QAccessibleEvent event(told, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

} // namespace Vidtips
