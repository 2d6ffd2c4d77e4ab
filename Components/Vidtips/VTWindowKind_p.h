#pragma once

#include "VTPlacement.h"

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * What kind of window a tip is on the window system at hand.
 *
 * Elsewhere it is a window that is put where the tip belongs. A Wayland compositor places ordinary windows
 * where it likes, activates them, and tells nobody where anything is. There a tip is a popup that stands on
 * one of the application's windows: its place in that is taken when it comes up, and kept until it goes.
 */
class VTWindowKind
{
public:
    /** Tells whether tips are popups. */
    static bool isPopup();

    /** Gives @p tip the flags of its kind; @p isToolWindow is what the host has set. */
    static void setFlags(QWidget *tip, bool isToolWindow);

    /**
     * Returns the window that @p tip comes up on if @p owner, which may be null, is the one of its command;
     * null where it cannot stand on any, or stands by itself.
     */
    static QWidget *footing(QWidget *owner, const QWidget *tip);

    /**
     * Returns where a popup of @p size goes within @p around, of which the screen is not known: inside @p
     * footing, which may lie at the screen's edge, or beyond its border where there is no room off the
     * pointer.
     */
    static QPoint place(const QSize &size, const QWidget *footing, VTPlacement::Surroundings around);

    /** Tells whether a popup may stay at @p popup after it has grown. */
    static bool isWellPlaced(const QRect &popup, const QWidget *footing,
                             const VTPlacement::Surroundings &around);
};

} // namespace Vidtips
