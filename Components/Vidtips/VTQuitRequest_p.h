#pragma once

#include <QtCore/QSemaphore>

namespace Vidtips {

/** The request to a thread that it end, which wakes it where it sleeps. For any thread. */
class VTQuitRequest
{
public:
    /** How many milliseconds a thread has to end, first by itself and then when it is terminated. */
    static constexpr unsigned long timeout = 10000;
    /** How many milliseconds a thread sleeps before it looks again whether there is something to do. */
    static constexpr int idleInterval = 100;

    /** Makes the request. It stays made. */
    void make() { m_requests.release(); }

    /** Sleeps for @p milliseconds, less where the request is made meanwhile or was before. */
    void idle(int milliseconds)
    {
        if (m_requests.tryAcquire(1, milliseconds))
            m_requests.release();
    }

private:
    QSemaphore m_requests;
};

} // namespace Vidtips
