#include "qdeclarativeworkers_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QThreadStorage>
#include <QtCore/QWaitCondition>
#include <QtQml/QQmlEngine>

#include <private/qqmlengine_p.h>
#include <private/qqmlglobal_p.h>
#include <private/qquickworkerscript_p.h>
#include <private/qv4engine_p.h>

#include <atomic>

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

QMutex enginesLock;

QSet<const QObject *> &engines()
{
    static QSet<const QObject *> all;
    return all;
}

std::atomic<QDeclarativeWorkers::MakeObject> makeApplication{nullptr};

QObject *applicationOfThread()
{
    // Goes with the thread, after its scripts.
    static QThreadStorage<QObject *> applications;
    const QDeclarativeWorkers::MakeObject make = makeApplication;
    if (make && !applications.hasLocalData())
        applications.setLocalData(make());
    return applications.localData();
}

/**
 * What Qt asks for the program, for scripts of all engines. Those of our workers, which are no engine's that
 * could be changed before they run, are given what QML 1 has; what is not for threads is not there.
 */
class Provider : public QQmlGuiProvider
{
public:
    QObject *application(QObject *parent) override
    {
        return QDeclarativeWorkers::engine() ? applicationOfThread() : before.load()->application(parent);
    }

    QObject *inputMethod() override
    {
        return QDeclarativeWorkers::engine() ? nullptr : before.load()->inputMethod();
    }

    QObject *styleHints() override
    {
        return QDeclarativeWorkers::engine() ? nullptr : before.load()->styleHints();
    }

    QStringList fontFamilies() override { return before.load()->fontFamilies(); }
    bool openUrlExternally(QUrl &url) override { return before.load()->openUrlExternally(url); }
    QString pluginName() const override { return before.load()->pluginName(); }

    // Qt Quick's, or that of whoever set one since.
    std::atomic<QQmlGuiProvider *> before{nullptr};
};

} // namespace

void QDeclarativeWorkers::adopt(const QQmlEngine *engine)
{
    const QMutexLocker locker(&enginesLock);
    engines().insert(engine);
    static auto *const provider = new Provider;
    QQmlGuiProvider *const before = QQml_setGuiProvider(provider);
    if (before != provider)
        provider->before = before;
}

void QDeclarativeWorkers::setApplication(MakeObject make)
{
    makeApplication = make;
}

void QDeclarativeWorkers::forget(const QQmlEngine *engine)
{
    const QMutexLocker locker(&enginesLock);
    engines().remove(engine);
}

const QQmlEngine *QDeclarativeWorkers::engine()
{
    const QThread *const thread = QThread::currentThread();
    if (!QCoreApplication::instance() || thread == QCoreApplication::instance()->thread())
        return nullptr;
    const QMutexLocker locker(&enginesLock);
    const bool isOurs = thread->inherits("QQuickWorkerScriptEngine") && engines().contains(thread->parent());
    // Its class may be destroyed already.
    return isOurs ? static_cast<const QQmlEngine *>(thread->parent()) : nullptr;
}

void QDeclarativeWorkers::interrupt(const QQmlEngine *engine)
{
    Known *const known = knownOf(engine);
    if (!known)
        return;
    const QMutexLocker locker(&known->lock);
    for (QV4::ExecutionEngine *worker : qAsConst(known->workers))
        worker->isInterrupted.storeRelaxed(true);
}
