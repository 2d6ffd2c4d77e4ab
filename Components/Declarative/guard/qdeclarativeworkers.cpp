#include "qdeclarativeworkers_p.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QWaitCondition>
#include <QtQml/QQmlEngine>

#include <private/qqmlengine_p.h>
#include <private/qquickworkerscript_p.h>
#include <private/qv4engine_p.h>

namespace {

/** The beginning of what Qt knows of the thread, which no header of Qt's declares. */
struct Known : QObject
{
    QQmlEngine *engine;
    QMutex lock; ///< for the workers
    QWaitCondition wait;
    QHash<int, QV4::ExecutionEngine *> workers;
};

// Nor does it let anybody have it; only who names a template's arguments may say what is private.
using Member = QQuickWorkerScriptEnginePrivate *QQuickWorkerScriptEngine::*;
Member knownMember();

template <Member member>
struct Named
{
    friend Member knownMember() { return member; }
};
template struct Named<&QQuickWorkerScriptEngine::d>;

Known *knownOf(const QQmlEngine *engine)
{
    auto *const thread = QQmlEnginePrivate::get(engine)->workerScriptEngine;
    if (!thread)
        return nullptr;
    auto *const known =
        reinterpret_cast<Known *>(static_cast<QQuickWorkerScriptEngine *>(thread)->*knownMember());
    // Of another release it may be laid out otherwise.
    return known->engine == engine ? known : nullptr;
}

} // namespace

void QDeclarativeWorkers::interrupt(const QQmlEngine *engine)
{
    Known *const known = knownOf(engine);
    if (!known)
        return;
    const QMutexLocker locker(&known->lock);
    for (QV4::ExecutionEngine *worker : qAsConst(known->workers))
        worker->isInterrupted.storeRelaxed(true);
}
