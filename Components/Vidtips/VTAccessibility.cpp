#include "VTAccessibility_p.h"

#include "VTAccessibleItem_p.h"
#include "VTAccessibleTip_p.h"
#include "VTAccessibleView_p.h"
#include "VTItemTree_p.h"
#include "VTView.h"
#include "VTWidget.h"

#include <QtCore/QPointer>

#include <initializer_list>

namespace Vidtips::VTAccessibility {

namespace {

QAccessibleInterface *make(const QString &className, QObject *object)
{
    Q_UNUSED(className)
    if (auto *const tip = qobject_cast<VTWidget *>(object))
        return new VTAccessibleTip(tip);
    if (auto *const view = qobject_cast<VTView *>(object))
        return new VTAccessibleView(view);
    auto *const item = qobject_cast<QGraphicsObject *>(object);
    return VTAccessibleItem::viewOf(item) ? new VTAccessibleItem(item) : nullptr;
}

void tell(const QPointer<VTWidget> &tip, QAccessible::Event change)
{
    if (!tip)
        return;
    QAccessibleEvent event(tip, change);
    QAccessible::updateAccessibility(&event);
}

// The number that Qt gave last is given once more as soon as it is free: somebody else gets it in between.
void useUpNumber()
{
    QWidget nobody;
    QAccessible::queryAccessibleInterface(&nobody);
}

void forget(QObject *object)
{
    QAccessibleInterface *const known = QAccessible::queryAccessibleInterface(object);
    if (!known)
        return;
    QAccessibleEvent event(known, QAccessible::ObjectDestroyed);
    QAccessible::updateAccessibility(&event);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
}

} // namespace

void install()
{
    QAccessible::installFactory(&make);
}

// The host is asked for translations meanwhile, and may destroy the tip.
void contentHasChanged(VTView *view)
{
    const QPointer<VTWidget> tip(qobject_cast<VTWidget *>(view->parentWidget()));
    if (!QAccessible::isActive())
        return;
    tell(tip, QAccessible::NameChanged);
    tell(tip, QAccessible::DescriptionChanged);
    if (tip && tip->isVisible())
        tell(tip, QAccessible::ObjectShow);
}

void titleHasChanged(VTView *view)
{
    if (QAccessible::isActive())
        tell(qobject_cast<VTWidget *>(view->parentWidget()), QAccessible::NameChanged);
}

void hasBecomeDialog(VTWidget *tip)
{
    if (!QAccessible::isActive())
        return;
    useUpNumber();
    if (tip->view())
        forget(tip->view());
    forget(tip);
}

} // namespace Vidtips::VTAccessibility
