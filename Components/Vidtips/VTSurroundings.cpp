#include "VTSurroundings_p.h"

#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace Vidtips {

namespace {

/** Returns the screen that shows @p position, or the one next to it where none does. */
QScreen *screenFor(const QPoint &position)
{
    if (QScreen *const screen = QGuiApplication::screenAt(position))
        return screen;
    const auto distance = [&position](const QScreen *screen) {
        const QRect area = screen->geometry();
        const QPoint nearest(qBound(area.left(), position.x(), area.right()),
                             qBound(area.top(), position.y(), area.bottom()));
        return (position - nearest).manhattanLength();
    };
    const QList<QScreen *> screens = QGuiApplication::screens();
    const auto nearer = [&](const QScreen *a, const QScreen *b) { return distance(a) < distance(b); };
    const auto found = std::min_element(screens.begin(), screens.end(), nearer);
    return found == screens.end() ? nullptr : *found;
}

bool isPopup(const QWidget *window)
{
    return window->isVisible() && window->windowType() == Qt::Popup;
}

/**
 * Returns the room of all open popups, where @p widget or @p position is in one of them: a menu stands by its
 * submenus.
 */
QRect popupsAround(const QWidget *widget, const QPoint &position)
{
    QRect room;
    bool isInside = widget && isPopup(widget->window());
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        if (!isPopup(window))
            continue;
        room |= window->frameGeometry();
        isInside = isInside || window->frameGeometry().contains(position);
    }
    return isInside ? room : QRect();
}

// A menu is no command: those are its entries.
QRect commandRect(const QWidget *widget, const QRect &part)
{
    if (!part.isNull() || !widget || isPopup(widget))
        return part;
    return {widget->mapToGlobal(QPoint(0, 0)), widget->size()};
}

} // namespace

VTPlacement::Surroundings surroundingsOf(const QObject *object, const QRect &rect, const QPoint &pointer,
                                         const QSize &offset)
{
    const auto *const widget = qobject_cast<const QWidget *>(object);
    VTPlacement::Surroundings around;
    around.pointer = pointer;
    around.offset = offset;
    around.command = commandRect(widget, rect);
    around.popups = popupsAround(widget, pointer);
    around.direction = widget ? widget->layoutDirection() : QGuiApplication::layoutDirection();
    const QScreen *const screen = screenFor(pointer);
    around.screen = screen ? screen->availableGeometry() : QRect();
    return around;
}

} // namespace Vidtips
