#include "qdeclarativeitemcount_p.h"

#include <QtCore/QHash>

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
