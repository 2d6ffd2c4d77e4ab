#pragma once

#include "Patience.h"

#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>
#include <QtGui/QHelpEvent>
#include <QtGui/QScreen>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

/**
 * The X server's own pointer and keyboard, as a user's hands have them. The program goes on while they move,
 * and hears of it by events.
 */
namespace RealPointer {

/** What the X server, a window manager and a compositing manager may take on a busy machine, in milliseconds.
 */
constexpr int patience = Patience::longest;

/** Lets everything that is waiting for the event loop have its turn, and what that gave rise to. */
inline bool passEvents()
{
    for (int i = 0; i < 3; ++i) {
        QTimer turn;
        turn.setSingleShot(true);
        QSignalSpy passed(&turn, &QTimer::timeout);
        turn.start(0);
        if (!passed.wait(patience))
            return false;
    }
    return true;
}

inline bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start("xdotool", arguments);
    return QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, patience)
        && process.exitCode() == 0;
}

inline bool jumpTo(const QPoint &position)
{
    return xdotool({"mousemove", QString::number(position.x()), QString::number(position.y())});
}

/**
 * Knows where the last tool tip was asked for. A pointer that comes in steps may have one asked for at each;
 * who goes on before the last has been asked for sees it come in between.
 */
class ToolTipRequests : public QObject
{
public:
    ToolTipRequests() { qApp->installEventFilter(this); }

    bool haveReached(const QPoint &position) const { return m_last == position; }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ToolTip)
            m_last = static_cast<QHelpEvent *>(event)->globalPos();
        return false;
    }

private:
    QPoint m_last{-1, -1};
};

/** Moves the pointer there in two steps: one that jumps onto a widget sends it no movement. */
inline bool moveTo(const QPoint &position)
{
    return jumpTo(position - QPoint(2, 2)) && jumpTo(position);
}

/** Clicks with a button; 4 and 5 turn the wheel up and down. */
inline bool click(const QPoint &position, int button = 1)
{
    return moveTo(position) && xdotool({"click", QString::number(button)});
}

/** Types one key, by the X server's name for it, such as "Escape" or "ctrl+z". */
inline bool type(const QString &key)
{
    return xdotool({"key", key});
}

inline QPoint center(const QWidget *widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

/** Tells whether the pointer would reach @p window: one that has been asked for is on the screen some time
 * later. */
inline bool isOnScreen(const QWidget *window)
{
    const QWidget *const there = window->isVisible() ? QApplication::widgetAt(center(window)) : nullptr;
    return there && there->window() == window;
}

/** Waits until @p window has the keyboard and can be reached; a pointer that is there before sends no
 * movement. */
inline bool waitForWindow(QWidget *window)
{
    return QTest::qWaitForWindowActive(window, patience)
        && QTest::qWaitFor([=] { return isOnScreen(window); }, patience);
}

/** Returns where the window is for the X server, whatever the program believes. */
inline QPoint placeOf(const QWidget *window)
{
    QProcess process;
    process.start("xdotool", {"getwindowgeometry", "--shell", QString::number(window->winId())});
    if (!process.waitForFinished(patience))
        return {};
    QPoint place;
    const QByteArrayList lines = process.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("X="))
            place.setX(line.mid(2).toInt());
        else if (line.startsWith("Y="))
            place.setY(line.mid(2).toInt());
    }
    return place;
}

/** Returns the colour that the user sees at @p position. */
inline QColor colorAt(const QPoint &position)
{
    QScreen *const screen = QGuiApplication::primaryScreen();
    return screen->grabWindow(0, position.x(), position.y(), 1, 1).toImage().pixelColor(0, 0);
}

} // namespace RealPointer
