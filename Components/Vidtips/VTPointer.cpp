#include "VTPointer_p.h"

#include "VTWindowKind_p.h"

#include <QtGui/QCursor>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace Vidtips {

namespace {

const QPoint elsewhere(-100000, -100000);

QWidget *entered()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (window->isVisible() && window->underMouse())
            return window;
    }
    return nullptr;
}

} // namespace

// Wayland tells of the pointer while that is in one of the application's windows, and where the last one of
// these was left. What is open as a popup hears of all of it, though, and keeps enter and leave from the
// others.
VTPointer VTPointer::now()
{
    const QPoint position = QCursor::pos();
    if (!VTWindowKind::isPopup() || QApplication::activePopupWidget())
        return {position, QApplication::widgetAt(position)};
    QWidget *const window = entered();
    if (!window)
        return {elsewhere, nullptr};
    QWidget *const child = window->childAt(window->mapFromGlobal(position));
    return {position, child ? child : window};
}

} // namespace Vidtips
