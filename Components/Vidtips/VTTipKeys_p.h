#pragma once

#include <QtCore/QtGlobal>

QT_BEGIN_NAMESPACE
class QEvent;
class QKeyEvent;
class QObject;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

class VTView;
class VTWidget;

/**
 * Gives a tip its keys while the keyboard's focus is in the host, where a tip leaves it: Escape closes the
 * tip, F1 and Space are offered to its user interface, and other typing, shortcuts included, closes it, as it
 * would be in the way.
 */
class VTTipKeys
{
public:
    /**
     * Looks at @p event of @p watched and returns whether it is used up. @p tip is the tip on screen, or
     * null. Host code may run meanwhile and destroy anything.
     */
    bool filter(VTWidget *tip, QObject *watched, QEvent *event);

    /** Tells whether the press of a key that was used up is still to come. */
    bool isWaiting() const { return m_taken != 0; }

private:
    bool type(VTWidget *tip, QWidget *typedInto, QKeyEvent *event);
    bool take(VTWidget *tip, const QWidget *typedInto, QKeyEvent *event);

    // A key is offered before the host's shortcuts are tried; its press, which follows, is used up as well.
    int m_taken = 0;
};

} // namespace Vidtips
