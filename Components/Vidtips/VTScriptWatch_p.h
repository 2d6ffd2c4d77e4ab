#pragma once

#include <QtDeclarative/QDeclarativeEngine>

#include <functional>
#include <memory>

class QDeclarativeWatchdog;

namespace Vidtips {

/**
 * Stops scripts of a view that hold the application up, where the QML module has the means. GUI thread only.
 */
class VTScriptWatch
{
public:
    /**
     * Watches over @p engine, which outlives it. @p timeout tells how many milliseconds scripts have, 0 or
     * less: for ever. @p stopped is called by the event loop after they were stopped.
     */
    VTScriptWatch(QDeclarativeEngine *engine, const std::function<int()> &timeout,
                  const std::function<void()> &stopped);
    ~VTScriptWatch();

    /** Returns why scripts were stopped for the last time, as the end of a sentence about their file. */
    QString reason() const;

    /** Gives scripts all of their time from now on. */
    void restart();

    /** What happens between these takes none of the time; they nest. */
    void beginPause();
    void endPause();

    /** Lets scripts run again that were stopped just now, and tells whether they were. */
    bool resume();

private:
    Q_DISABLE_COPY(VTScriptWatch)

    const std::function<int()> m_timeout;
    const std::unique_ptr<QDeclarativeWatchdog> m_watchdog;
};

} // namespace Vidtips
