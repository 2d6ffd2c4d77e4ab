#include "VTWindowKind_p.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace Vidtips {

namespace {

/** More than any window is away from the edges of its screen; the compositor knows these and sees to them. */
constexpr int beyond = 20000;

QRect roomOf(const QWidget *window)
{
    return {window->mapToGlobal(QPoint(0, 0)), window->size()};
}

bool canCarry(const QWidget *window, const QWidget *tip)
{
    return window && window != tip && window->isVisible() && window->windowHandle()
        && window->windowType() != Qt::Popup && window->windowType() != Qt::ToolTip;
}

QRect obstacleOf(const VTPlacement::Surroundings &around)
{
    return around.popups.isNull() ? QRect(around.pointer, QSize(1, 1)) : around.popups;
}

} // namespace

bool VTWindowKind::isPopup()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

void VTWindowKind::setFlags(QWidget *tip, bool isToolWindow)
{
    if (!isToolWindow || isPopup())
        tip->setWindowFlags(Qt::ToolTip);
    if (!isPopup())
        tip->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
}

QWidget *VTWindowKind::footing(QWidget *owner, const QWidget *tip)
{
    if (!isPopup() || canCarry(owner, tip))
        return owner;
    QWidget *const active = QApplication::activeWindow();
    if (canCarry(active, tip))
        return active;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *const window : windows) {
        if (window->underMouse() && canCarry(window, tip))
            return window;
    }
    return nullptr;
}

QPoint VTWindowKind::place(const QSize &size, const QWidget *footing, VTPlacement::Surroundings around)
{
    around.screen = roomOf(footing);
    const QRect inside = VTPlacement::placed(size, around);
    if (around.screen.contains(inside) && !inside.intersects(obstacleOf(around)))
        return inside.topLeft();
    around.screen.adjust(-beyond, -beyond, beyond, beyond);
    return VTPlacement::placed(size, around).topLeft();
}

bool VTWindowKind::isWellPlaced(const QRect &popup, const QWidget *footing,
                                const VTPlacement::Surroundings &around)
{
    return roomOf(footing).contains(popup) && !popup.intersects(obstacleOf(around));
}

} // namespace Vidtips
