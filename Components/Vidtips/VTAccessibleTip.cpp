#include "VTAccessibleTip_p.h"

#include "VTTipWords_p.h"
#include "VTView.h"
#include "VTWidget.h"

namespace Vidtips {

VTAccessibleTip::VTAccessibleTip(VTWidget *tip)
    : QAccessibleWidget(tip, QAccessible::ToolTip)
{
}

// Clients may ask once more while the window is being destroyed, when it is none of ours any more.
VTView *VTAccessibleTip::view() const
{
    const auto *const tip = qobject_cast<const VTWidget *>(object());
    return tip ? tip->view() : nullptr;
}

QAccessible::Role VTAccessibleTip::role() const
{
    return view() && view()->reserved() ? QAccessible::Dialog : QAccessible::ToolTip;
}

QString VTAccessibleTip::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name && widget()->accessibleName().isEmpty())
        return VTTipWords(view()).title();
    if (kind == QAccessible::Description && widget()->accessibleDescription().isEmpty())
        return VTTipWords(view()).description();
    return QAccessibleWidget::text(kind);
}

} // namespace Vidtips
