#pragma once

#include <QtCore/QtGlobal>

QT_BEGIN_NAMESPACE
class QEvent;
class QMouseEvent;
class QObject;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * Gives a tip the mouse while a menu or another popup is open: that grabs the mouse, and would take a click
 * into the tip for one outside itself, and close.
 */
class VTPopupMouse
{
public:
    /** Passes @p event of @p watched on to @p tip if it happened there; returns whether it is used up. */
    bool filter(QWidget *tip, QObject *watched, QEvent *event);

private:
    // A click that began in the tip ends there.
    bool m_isPressed = false;
};

} // namespace Vidtips
