#include "VTScriptWatch_p.h"

// A module from elsewhere does not have it.
#if __has_include(<QtDeclarative/QDeclarativeWatchdog>)
#include <QtDeclarative/QDeclarativeWatchdog>
#else
class QDeclarativeWatchdog : public QObject
{
public:
    explicit QDeclarativeWatchdog(QDeclarativeEngine *) { }
    void setTimeout(int) { }
    void restart() { }
    void beginPause() { }
    void endPause() { }
    bool resume() { return false; }
};
#endif

namespace Vidtips {

VTScriptWatch::VTScriptWatch(QDeclarativeEngine *engine, const std::function<int()> &timeout,
                             const std::function<void()> &stopped)
    : m_timeout(timeout)
    , m_watchdog(new QDeclarativeWatchdog(engine))
{
#if __has_include(<QtDeclarative/QDeclarativeWatchdog>)
    QObject::connect(m_watchdog.get(), &QDeclarativeWatchdog::interrupted, stopped);
#else
    Q_UNUSED(stopped)
#endif
}

VTScriptWatch::~VTScriptWatch() = default;

void VTScriptWatch::restart()
{
    m_watchdog->restart();
    m_watchdog->setTimeout(timeout());
}

void VTScriptWatch::beginPause()
{
    m_watchdog->beginPause();
}

void VTScriptWatch::endPause()
{
    m_watchdog->endPause();
}

bool VTScriptWatch::resume()
{
    return m_watchdog->resume();
}

} // namespace Vidtips
