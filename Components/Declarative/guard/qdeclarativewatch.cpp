#include "qdeclarativewatch_p.h"

#include "qdeclarativeworktime_p.h"

#include <QtQml/QQmlEngine>

#include <private/qv4engine_p.h>

#include <chrono>

namespace {

constexpr int forEver = -1;

// Between looks at an engine whose time is up and that runs no script at the moment.
constexpr int shortTime = 20;

// The record of what runs is the engine's own, and one word, which can be read at any time.
bool isRunning(QQmlEngine *engine)
{
    QV4::CppStackFrame *volatile *const frame = &engine->handle()->currentStackFrame;
    return *frame != nullptr;
}

void interrupt(QDeclarativeWatched *watched, QDeclarativeWatchdog::Reason reason)
{
    watched->isInterrupted = true;
    watched->reason = reason;
    watched->engine->setInterrupted(true);
    // What the thread does next is up to its events, of which this is one.
    QMetaObject::invokeMethod(watched->watchdog, "announce", Qt::QueuedConnection);
}

} // namespace

QDeclarativeWatch *QDeclarativeWatch::instance()
{
    // Never destroyed: who leaves an engine behind leaves the thread running.
    static auto *const watch = new QDeclarativeWatch;
    return watch;
}

void QDeclarativeWatch::add(QDeclarativeWatched *watched)
{
    const std::lock_guard<std::mutex> locker(m_lock);
    m_watched.append(watched);
    if (m_watched.count() > 1)
        return;
    QDeclarativeWorkTime::follow([] { instance()->wake(); });
    m_ends = false;
    start();
}

void QDeclarativeWatch::remove(QDeclarativeWatched *watched)
{
    std::unique_lock<std::mutex> locker(m_lock);
    m_watched.removeOne(watched);
    if (!m_watched.isEmpty())
        return;
    QDeclarativeWorkTime::leave();
    m_ends = true;
    m_change.notify_all();
    locker.unlock();
    wait();
}

void QDeclarativeWatch::setTimeout(QDeclarativeWatched *watched, int timeout)
{
    const std::lock_guard<std::mutex> locker(m_lock);
    watched->timeout = timeout;
    m_change.notify_all();
}

void QDeclarativeWatch::interruptItems(QDeclarativeWatched *watched)
{
    const std::lock_guard<std::mutex> locker(m_lock);
    if (!watched->isInterrupted)
        interrupt(watched, QDeclarativeWatchdog::ManyItems);
}

bool QDeclarativeWatch::resume(QDeclarativeWatched *watched)
{
    const std::lock_guard<std::mutex> locker(m_lock);
    if (!watched->isInterrupted)
        return false;
    watched->isInterrupted = false;
    watched->engine->setInterrupted(false);
    return true;
}

void QDeclarativeWatch::wake()
{
    if (!m_isAsleep)
        return;
    const std::lock_guard<std::mutex> locker(m_lock);
    m_change.notify_all();
}

void QDeclarativeWatch::run()
{
    std::unique_lock<std::mutex> locker(m_lock);
    while (!m_ends) {
        // Said before the time is asked for: who begins to work meanwhile wakes this thread.
        m_isAsleep = true;
        const int time = timeToNextLook();
        m_isAsleep = time == forEver;
        if (time == forEver)
            m_change.wait(locker);
        else
            m_change.wait_for(locker, std::chrono::milliseconds(time));
    }
}

int QDeclarativeWatch::timeToNextLook()
{
    const qint64 elapsed = QDeclarativeWorkTime::elapsed();
    if (elapsed < 0)
        return forEver;
    int next = forEver;
    for (QDeclarativeWatched *watched : qAsConst(m_watched)) {
        if (watched->timeout <= 0 || watched->isInterrupted)
            continue;
        int time = int(qMin<qint64>(watched->timeout - elapsed, watched->timeout));
        if (time <= 0) {
            if (watched->pauses == 0 && ::isRunning(watched->engine))
                interrupt(watched, QDeclarativeWatchdog::LongWork);
            time = shortTime;
        }
        next = next == forEver ? time : qMin(next, time);
    }
    return next;
}
