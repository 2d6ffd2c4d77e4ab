#include "qdeclarativewatchdog.h"

#include "qdeclarativeitemcount_p.h"
#include "qdeclarativewatch_p.h"
#include "qdeclarativeworktime_p.h"

#include <QtQml/QQmlEngine>

QDeclarativeWatchdog::QDeclarativeWatchdog(QQmlEngine *engine, QObject *parent)
    : QObject(parent)
    , d(new QDeclarativeWatched(this, engine))
{
    QDeclarativeWatch::instance()->add(d.get());
    d->items = QDeclarativeItemCount::begin(
        engine, [this] { QDeclarativeWatch::instance()->interruptItems(d.get()); });
}

QDeclarativeWatchdog::~QDeclarativeWatchdog()
{
    d->items->end();
    QDeclarativeWatch::instance()->remove(d.get());
    d->engine->setInterrupted(false);
}

int QDeclarativeWatchdog::timeout() const
{
    return d->timeout;
}

void QDeclarativeWatchdog::setTimeout(int timeout)
{
    if (timeout != d->timeout)
        QDeclarativeWatch::instance()->setTimeout(d.get(), timeout);
}

int QDeclarativeWatchdog::mostItems()
{
    return QDeclarativeItemCount::most;
}

QDeclarativeWatchdog::Reason QDeclarativeWatchdog::reason() const
{
    return d->reason;
}

void QDeclarativeWatchdog::restart()
{
    QDeclarativeWorkTime::restart();
}

void QDeclarativeWatchdog::beginPause()
{
    if (d->pauses++ == 0)
        d->elapsed = qMax<qint64>(0, QDeclarativeWorkTime::elapsed());
}

void QDeclarativeWatchdog::endPause()
{
    if (d->pauses == 1)
        QDeclarativeWorkTime::restart(d->elapsed);
    --d->pauses;
}

bool QDeclarativeWatchdog::resume()
{
    return QDeclarativeWatch::instance()->resume(d.get());
}

void QDeclarativeWatchdog::announce()
{
    if (resume())
        Q_EMIT interrupted();
}
