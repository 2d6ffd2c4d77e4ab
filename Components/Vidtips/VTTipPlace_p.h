#pragma once

#include <QtCore/QPoint>

namespace Vidtips {

/**
 * Where a tip is: nobody can drag it, so that is where it was put. Window managers may report the corner of
 * the screen while they frame a window, and answer late, when the next change has been asked for already.
 */
class VTTipPlace
{
public:
    /** How often a tip asks for its place before it believes a window manager that reports another. */
    static constexpr int mostRequests = 10;

    QPoint position() const { return m_position; }

    /** Is told that the tip is put at @p position. */
    void put(const QPoint &position);

    /**
     * Is told that the window system reports the tip at @p position; returns whether the tip has to ask for
     * its place again. A busy window manager answers at any time, and each request once: those that were on
     * their way are through when it has been asked often enough, and what it reports then is its will.
     */
    bool mustAskAgain(const QPoint &position);

private:
    QPoint m_position;
    int m_requests = 0; ///< since the tip was put there
};

} // namespace Vidtips
