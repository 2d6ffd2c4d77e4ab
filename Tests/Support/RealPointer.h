#pragma once

#include <QtCore/QProcess>
#include <QtCore/QStringList>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

/**
 * The X server's own pointer and keyboard, as a user's hands have them. The program goes on while they move,
 * and hears of it by events.
 */
namespace RealPointer {

inline bool xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start("xdotool", arguments);
    return QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000)
        && process.exitCode() == 0;
}

inline bool jumpTo(const QPoint &position)
{
    return xdotool({"mousemove", QString::number(position.x()), QString::number(position.y())});
}

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

/** Returns where the window is for the X server, whatever the program believes. */
inline QPoint placeOf(const QWidget *window)
{
    QProcess process;
    process.start("xdotool", {"getwindowgeometry", "--shell", QString::number(window->winId())});
    if (!process.waitForFinished())
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

} // namespace RealPointer
