#pragma once

#include "VTCommandWatch_p.h"
#include "VTPointerWatch_p.h"
#include "VTPopupMouse_p.h"
#include "VTTipKeys_p.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>

namespace Vidtips {

class VTWidget;

/**
 * Sees to it that a tip goes with its command, at once where that is gone and by the window's own countdown
 * where only the pointer has left, and that it gets along with what the host has on the screen meanwhile.
 *
 * While no tip is shown it watches nothing.
 */
class VTTipWatch : public QObject
{
    Q_OBJECT

public:
    explicit VTTipWatch(QObject *parent = nullptr);

    /**
     * Watches over @p tip, which is shown for @p object, or for the rectangle @p rect in it, at the global
     * @p position. Without an object the tip goes by the pointer and the keyboard alone.
     */
    void begin(VTWidget *tip, QObject *object, const QRect &rect, const QPoint &position);

    /** Lets the tip alone. */
    void end();

    /** Tells whether events of the application matter; checked for each of them. */
    bool isAtWork() const { return m_tip || m_keys.isWaiting(); }

    /**
     * Is told of an event of the application, by hosts that let all of them be watched; returns whether the
     * event is used up.
     */
    bool filter(QObject *watched, QEvent *event);

    /** Is told that the pointer moved to the global @p position, over @p widget. */
    void pointerMoved(const QWidget *widget, const QPoint &position);

Q_SIGNALS:
    /** Emitted when a popup has come onto the screen that the tip stays for, and must not cover. */
    void popupJoined();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Q_DISABLE_COPY(VTTipWatch)
    bool isOfTip(const QObject *object) const;
    bool isOfAnotherWindow(const QWidget *widget) const;
    void locateCommand(const QWidget *under, const QPoint &position);
    void handleLook(const QWidget *under, const QPoint &position);
    void handleGone();
    void endTip(const char *reason);
    void handlePassedOn();
    bool handleTakenAway();
    void handleShown(const QWidget *widget);
    void handleApplicationEvent(const QWidget *widget, const QEvent *event);

    QPointer<VTWidget> m_tip;
    VTCommandWatch m_command;
    VTPointerWatch m_pointer;
    VTTipKeys m_keys;
    VTPopupMouse m_mouse;
    bool m_hasPassedOn = false;
};

} // namespace Vidtips
