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
    /** Watches over @p engine, which outlives it; @p stopped is called by the event loop afterwards. */
    VTScriptWatch(QDeclarativeEngine *engine, const std::function<void()> &stopped);
    ~VTScriptWatch();

    /** Gives scripts @p timeout milliseconds from now on; 0 or less: for ever. */
    void restart(int timeout);

    /** What happens between these takes none of the time; they nest. */
    void beginPause();
    void endPause();

    /** Lets scripts run again that were stopped just now, and tells whether they were. */
    bool resume();

private:
    Q_DISABLE_COPY(VTScriptWatch)

    const std::unique_ptr<QDeclarativeWatchdog> m_watchdog;
};

} // namespace Vidtips
