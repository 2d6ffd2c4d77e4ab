#pragma once

#include "RealPointer.h"

#include <QtGui/QWindow>

/**
 * The outer server's pointer, moved until an application in the nested session has heard that it is there:
 * beside other work the session's compositor may leave a movement lying until there is another one.
 */
class NestedPointer : public QObject
{
public:
    NestedPointer() { qApp->installEventFilter(this); }

    /**
     * Moves the pointer to @p position of the screen, which has to be in one of the application's windows.
     * @p shift is how far that window lies from where the application believes it to be.
     */
    bool moveTo(const QPoint &position, const QPoint &shift = {})
    {
        const QPoint expected = position - shift;
        m_heard = nowhere;
        return moveUntil(position, [&] { return m_heard == expected; });
    }

    /** Moves the pointer to @p position of the screen until @p hasArrived tells that it is there. */
    bool moveUntil(const QPoint &position, const std::function<bool()> &hasArrived)
    {
        for (int waited = 0; waited < RealPointer::patience; waited += once) {
            if (!nudgeTo(position))
                return false;
            if (QTest::qWaitFor(hasArrived, once))
                return true;
        }
        return false;
    }

    /** Clicks with a button; 4 and 5 turn the wheel up and down. */
    bool click(const QPoint &position, int button = 1, const QPoint &shift = {})
    {
        return moveTo(position, shift) && RealPointer::xdotool({"click", QString::number(button)});
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseMove && qobject_cast<QWindow *>(watched))
            m_heard = static_cast<QMouseEvent *>(event)->globalPos();
        return false;
    }

private:
    /** Moves the pointer by hand in the end: mutter heeds no jump, which is no device's doing. */
    static bool nudgeTo(const QPoint &position)
    {
        return RealPointer::jumpTo(position - QPoint(2, 0))
            && RealPointer::xdotool({"mousemove_relative", "2", "0"});
    }

    /** Milliseconds, more than a movement takes on a busy machine. */
    static constexpr int once = 2000;
    static constexpr QPoint nowhere{-1, -1};

    QPoint m_heard = nowhere;
};
