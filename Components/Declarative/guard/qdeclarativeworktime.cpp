#include "qdeclarativeworktime_p.h"

#include <QtCore/QAbstractEventDispatcher>

#include <atomic>
#include <chrono>

namespace {

QDeclarativeWorkTime::Begun begunFunction = nullptr;

// When the first event was delivered since the thread last looked for events; 0 where none was.
std::atomic<qint64> begin{0};

thread_local bool isFollowed = false;

QMetaObject::Connection blocking;
QMetaObject::Connection waking;

qint64 now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

// Called for each event of each thread. Events that cause more of them before the thread looks for others
// hold it as one that does not end.
bool eventIsDelivered(void **)
{
    if (isFollowed && begin.load(std::memory_order_relaxed) == 0)
        QDeclarativeWorkTime::restart();
    return false;
}

void looksForEvents()
{
    begin.store(0, std::memory_order_relaxed);
}

} // namespace

void QDeclarativeWorkTime::follow(Begun begun)
{
    begunFunction = begun;
    isFollowed = true;
    QInternal::registerCallback(QInternal::EventNotifyCallback, &eventIsDelivered);
    const QAbstractEventDispatcher *const dispatcher = QAbstractEventDispatcher::instance();
    blocking = QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &looksForEvents);
    waking = QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &looksForEvents);
}

void QDeclarativeWorkTime::leave()
{
    QInternal::unregisterCallback(QInternal::EventNotifyCallback, &eventIsDelivered);
    QObject::disconnect(blocking);
    QObject::disconnect(waking);
    isFollowed = false;
    begin = 0;
}

void QDeclarativeWorkTime::restart(qint64 elapsed)
{
    begin = now() - elapsed;
    begunFunction();
}

qint64 QDeclarativeWorkTime::elapsed()
{
    const qint64 since = begin;
    return since ? now() - since : -1;
}
