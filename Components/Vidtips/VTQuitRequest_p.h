#pragma once

#include <QtCore/QSemaphore>

namespace Vidtips {

/** The request to a thread that it end, which wakes it where it sleeps. For any thread. */
class VTQuitRequest
{
public:
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
