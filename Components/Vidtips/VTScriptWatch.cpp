#include "VTScriptWatch_p.h"

// A module from elsewhere does not have it.
#if __has_include(<QtDeclarative/QDeclarativeWatchdog>)
#include <QtDeclarative/QDeclarativeWatchdog>
#else
class QDeclarativeWatchdog : public QObject
{
public:
    enum Reason { LongWork, ManyItems };
    explicit QDeclarativeWatchdog(QDeclarativeEngine *) { }
    static int mostItems() { return 0; }
    Reason reason() const { return LongWork; }
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

QString VTScriptWatch::reason() const
{
    if (m_watchdog->reason() == QDeclarativeWatchdog::ManyItems)
        return QStringLiteral("it has more than %1 items").arg(QDeclarativeWatchdog::mostItems());
    return QStringLiteral("its scripts ran for more than %1 ms").arg(m_timeout());
}

void VTScriptWatch::restart()
{
    m_watchdog->restart();
    m_watchdog->setTimeout(m_timeout());
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
