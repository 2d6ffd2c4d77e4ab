#include "qdeclarativeitemcount_p.h"

#include <QtCore/QHash>

#include <private/qqmlcomponent_p.h>
#include <private/qqmlengine_p.h>
#include <private/qv4engine_p.h>

namespace {

using Counts = QHash<const QQmlEngine *, QDeclarativeItemCount *>;

Counts &counts()
{
    static Counts all;
    return all;
}

// Asked for with each item that is made, of which many in a row are of one engine.
const QQmlEngine *lastEngine = nullptr;
QDeclarativeItemCount *lastCount = nullptr;

// The engine first takes a place on its stack for each of them, and does not look whether it has as many. A
// number that is too large for it has become a negative one.
bool hasRoom(QV4::ExecutionEngine *engine, int objects)
{
    return objects >= 0 && objects <= QDeclarativeItemCount::most
        && objects < engine->jsStackLimit - engine->jsStackTop;
}

void warnOfSize(const QQmlComponent *component, QQmlEngine *engine)
{
    QQmlError error;
    error.setUrl(component->url());
    error.setDescription(
        QStringLiteral("Component too large: more than %1 objects").arg(QDeclarativeItemCount::most));
    QQmlEnginePrivate::warning(engine, error);
}

void forgetLast()
{
    lastEngine = nullptr;
    lastCount = nullptr;
}

} // namespace

QDeclarativeItemCount::QDeclarativeItemCount(const QQmlEngine *engine, const std::function<void()> &exceeded)
    : m_engine(engine)
    , m_exceeded(exceeded)
{
}

QDeclarativeItemCount *QDeclarativeItemCount::begin(const QQmlEngine *engine,
                                                    const std::function<void()> &exceeded)
{
    auto *const count = new QDeclarativeItemCount(engine, exceeded);
    counts().insert(engine, count);
    forgetLast();
    return count;
}

void QDeclarativeItemCount::end()
{
    if (of(m_engine) == this)
        counts().remove(m_engine);
    forgetLast();
    m_engine = nullptr;
    m_exceeded = [] {};
    if (m_items == 0)
        delete this;
}

QDeclarativeItemCount *QDeclarativeItemCount::of(const QQmlEngine *engine)
{
    if (engine != lastEngine) {
        lastEngine = engine;
        lastCount = counts().value(engine);
    }
    return lastCount;
}

bool QDeclarativeItemCount::isExceeded(const QQmlEngine *engine)
{
    const QDeclarativeItemCount *const count = of(engine);
    return count && count->m_items > most;
}

bool QDeclarativeItemCount::admits(QQmlComponent *component)
{
    const QQmlComponentPrivate *const d = QQmlComponentPrivate::get(component);
    if (!d->engine || !d->compilationUnit
        || hasRoom(d->engine->handle(), d->compilationUnit->totalObjectCount()))
        return true;
    if (const QDeclarativeItemCount *const count = of(d->engine))
        count->m_exceeded();
    else
        warnOfSize(component, d->engine);
    return false;
}
