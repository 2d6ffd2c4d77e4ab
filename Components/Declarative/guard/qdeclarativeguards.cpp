#include "qdeclarativeguards_p.h"

#include "qdeclarativeguard.h"
#include "qdeclarativeguardedcode_p.h"
#include "qdeclarativeguardedfiles_p.h"
#include "qdeclarativeguardedfunctions_p.h"
#include "qdeclarativeguardednetwork_p.h"
#include "qdeclarativeguardedpictures_p.h"

#include <QtCore/QHash>
#include <QtCore/QReadWriteLock>
#include <QtQml/QQmlAbstractUrlInterceptor>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlFile>
#include <QtQml/QQmlNetworkAccessManagerFactory>

#include <private/qqmldata_p.h>

#include <atomic>

namespace {

/** Has the engine load code from where its guard lets it. */
class Interceptor : public QQmlAbstractUrlInterceptor
{
public:
    explicit Interceptor(QQmlEngine *engine)
        : engine(engine)
        , before(engine->urlInterceptor())
    {
    }

    QUrl intercept(const QUrl &asked, DataType type) override
    {
        const QUrl url = before ? before->intercept(asked, type) : asked;
        const auto guard = QDeclarativeGuards::of(engine);
        // What a property of an address is for is only known when it is used.
        if (!guard || type == UrlString || admits(*guard, url, type))
            return url;
        return QUrl(QStringLiteral("qrc:/refused/") + url.fileName());
    }

    QQmlEngine *const engine;
    QQmlAbstractUrlInterceptor *const before;

private:
    bool admits(QDeclarativeGuard &guard, const QUrl &url, DataType type) const
    {
        if (guard.admits(url))
            return QDeclarativeGuardedCode::isAdmitted(guard, url, type);
        const auto place = QDeclarativeGuardedFunctions::placeOf(engine);
        guard.refused(QDeclarativeGuards::message(url), place.file, place.line);
        return false;
    }
};

/** What an engine has of its own while it has a guard, and what it had before. */
struct Guarded
{
    explicit Guarded(QQmlEngine *engine)
        : engine(engine)
        , interceptor(engine)
        , factory(engine)
        , factoryBefore(engine->networkAccessManagerFactory())
        , importPaths(engine->importPathList())
        , pluginPaths(engine->pluginPathList())
    {
        engine->setUrlInterceptor(&interceptor);
        engine->setNetworkAccessManagerFactory(&factory);
        // What Qt has in its folders of modules are plugins; those of the program need no folder.
        engine->setImportPathList({});
        engine->setPluginPathList({});
    }

    void undo()
    {
        engine->setUrlInterceptor(interceptor.before);
        engine->setNetworkAccessManagerFactory(factoryBefore);
        engine->setImportPathList(importPaths);
        engine->setPluginPathList(pluginPaths);
    }

    QQmlEngine *const engine;
    Interceptor interceptor;
    QDeclarativeGuardedNetworkFactory factory;
    QQmlNetworkAccessManagerFactory *const factoryBefore;
    const QStringList importPaths;
    const QStringList pluginPaths;
};

/** The guard of an engine that goes, whose threads may still be at work. */
class Shut : public QDeclarativeGuard
{
public:
    bool admits(const QUrl &) override { return false; }
    bool admitsModule(const QString &, int, int) override { return false; }
    bool openUrlExternally(const QUrl &) override { return false; }
    void refused(const QString &, const QUrl &, int) override { }
};

struct Entry
{
    std::shared_ptr<QDeclarativeGuard> guard;
    std::shared_ptr<Guarded> guarded;
};

QReadWriteLock lock;
std::atomic_int number{0};

QHash<const QQmlEngine *, Entry> &entries()
{
    static QHash<const QQmlEngine *, Entry> all;
    return all;
}

Entry entryOf(const QQmlEngine *engine)
{
    const QReadLocker locker(&lock);
    return entries().value(engine);
}

void setEntry(const QQmlEngine *engine, const Entry &entry)
{
    const QWriteLocker locker(&lock);
    if (entry.guard)
        entries().insert(engine, entry);
    else
        entries().remove(engine);
    number = entries().count();
}

void tell(QDeclarativeGuard &guard, const QString &what, const QObject *element)
{
    const QQmlContext *const context = qmlContext(element);
    const QQmlData *const data = QQmlData::get(element);
    guard.refused(what, context ? context->baseUrl() : QUrl(), data ? data->lineNumber : 0);
}

} // namespace

std::shared_ptr<QDeclarativeGuard> QDeclarativeGuards::of(const QQmlEngine *engine)
{
    return number == 0 ? nullptr : entryOf(engine).guard;
}

void QDeclarativeGuards::set(QQmlEngine *engine, const std::shared_ptr<QDeclarativeGuard> &guard)
{
    Entry entry = entryOf(engine);
    if (guard && !entry.guarded) {
        QDeclarativeGuardedFunctions::install(engine);
        QDeclarativeGuardedFiles::install();
        entry.guarded = std::make_shared<Guarded>(engine);
    } else if (!guard && entry.guarded) {
        entry.guarded->undo();
        entry.guarded.reset();
    }
    entry.guard = guard;
    setEntry(engine, entry);
}

void QDeclarativeGuards::end(QQmlEngine *engine)
{
    QDeclarativeGuardedFunctions::forget(engine);
    Entry entry = entryOf(engine);
    if (!entry.guard)
        return;
    entry.guard = std::make_shared<Shut>();
    setEntry(engine, entry);
    // Goes after the engine's other children, of which its thread of worker scripts is one.
    auto *const last = new QObject(engine);
    QObject::connect(last, &QObject::destroyed, [engine] { setEntry(engine, {}); });
}

bool QDeclarativeGuards::refuses(const QUrl &url, const QObject *element)
{
    const auto guard = of(qmlEngine(element));
    if (!guard || guard->admits(url))
        return false;
    tell(*guard, message(url), element);
    return true;
}

bool QDeclarativeGuards::refuses(const QString &what, const QObject *element)
{
    const auto guard = of(qmlEngine(element));
    if (guard)
        tell(*guard, what, element);
    return guard != nullptr;
}

bool QDeclarativeGuards::refusesPicture(const QUrl &url, const QObject *element)
{
    if (refuses(url, element))
        return true;
    const auto guard = of(qmlEngine(element));
    const QString problem =
        guard ? QDeclarativeGuardedPictures::problemOf(QQmlFile::urlToLocalFileOrQrc(url)) : QString();
    if (problem.isEmpty())
        return false;
    tell(*guard, QStringLiteral("%1: %2").arg(problem, url.toString()), element);
    return true;
}

QString QDeclarativeGuards::message(const QUrl &url)
{
    return QStringLiteral("reading %1").arg(url.toString());
}
