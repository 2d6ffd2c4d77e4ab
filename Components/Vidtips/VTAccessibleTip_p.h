#pragma once

#include <QtWidgets/qaccessiblewidget.h>

namespace Vidtips {

class VTView;
class VTWidget;

/**
 * A tip's window as assistive technology sees it: a tool tip that is called by the content's title and
 * described by its texts, whatever the user interface makes of them. A kept tip is a dialog of that name.
 */
class VTAccessibleTip : public QAccessibleWidget
{
public:
    explicit VTAccessibleTip(VTWidget *tip);

    QAccessible::Role role() const override;

    /** Returns what the host has set for the window, or else what the content says. */
    QString text(QAccessible::Text kind) const override;

private:
    VTView *view() const;
};

} // namespace Vidtips
