#pragma once

#include "qdeclarativewatchdog.h"

#include <QtCore/QThread>
#include <QtCore/QVector>

#include <atomic>
#include <condition_variable>
#include <mutex>

class QDeclarativeItemCount;
class QQmlEngine;

/** What the watch knows of an engine. */
struct QDeclarativeWatched
{
    QDeclarativeWatched(QDeclarativeWatchdog *watchdog, QQmlEngine *engine)
        : watchdog(watchdog)
        , engine(engine)
    {
    }

    QDeclarativeWatchdog *const watchdog;
    QQmlEngine *const engine;
    QDeclarativeItemCount *items = nullptr;
    int timeout = 0; ///< milliseconds; 0 or less: never
    bool isInterrupted = false;
    std::atomic<QDeclarativeWatchdog::Reason> reason{QDeclarativeWatchdog::LongWork}; ///< for the last time
    std::atomic_int pauses{0};
    qint64 elapsed = 0; ///< when the pause began; GUI thread
};

/**
 * The thread that interrupts scripts, for all engines that are watched. It runs while there are any, and
 * sleeps while the GUI thread waits for events.
 */
class QDeclarativeWatch : public QThread
{
public:
    /** Returns the one watch. */
    static QDeclarativeWatch *instance();

    /** Begins and ends to look after an engine. GUI thread. */
    void add(QDeclarativeWatched *watched);
    void remove(QDeclarativeWatched *watched);

    /** Changes after how long scripts of an engine are interrupted. GUI thread. */
    void setTimeout(QDeclarativeWatched *watched, int timeout);

    /** Interrupts an engine that has more items than it may have, if it is not interrupted. GUI thread. */
    void interruptItems(QDeclarativeWatched *watched);

    /** Lets an engine run scripts again, and tells whether they were interrupted. GUI thread. */
    bool resume(QDeclarativeWatched *watched);

protected:
    void run() override;

private:
    void wake();
    int timeToNextLook();

    std::mutex m_lock;
    std::condition_variable m_change;
    QVector<QDeclarativeWatched *> m_watched;
    std::atomic_bool m_isAsleep{false};
    bool m_ends = false;
};
