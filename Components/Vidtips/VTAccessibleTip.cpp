#include "VTAccessibleTip_p.h"

#include "VTTipWords_p.h"
#include "VTView.h"
#include "VTWidget.h"

namespace Vidtips {

VTAccessibleTip::VTAccessibleTip(VTWidget *tip)
    : QAccessibleWidget(tip, QAccessible::ToolTip)
{
}

VTView *VTAccessibleTip::view() const
{
    return static_cast<VTWidget *>(object())->view();
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
