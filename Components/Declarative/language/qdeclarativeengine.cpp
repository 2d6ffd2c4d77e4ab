#include "qdeclarativeengine.h"

#include "bounds/qdeclarativedownloads_p.h"
#include "guard/qdeclarativeguards_p.h"
#include "guard/qdeclarativeworkers_p.h"
#include "qdeclarativeengine_p.h"
#include "qdeclarativeimageprovider.h"
#include "qdeclarativenetworkaccessmanagerfactory.h"

#include <private/qqmlengine_p.h>
#include <private/qv4engine_p.h>

namespace {

// How many calls deep the engine lets scripts go.
int measuredCallDepth(QQmlEngine *engine)
{
    const QString script = QStringLiteral("(function() { var n = 0; function f() { ++n; f() }"
                                          "try { f() } catch (error) {} return n })()");
    return engine->evaluate(script).toInt();
}

// A handler that causes its own signal takes many times the stack of a function that calls itself, and at the
// engine's bound of calls there would be none left.
void boundCallDepth(QQmlEngine *engine)
{
    constexpr int mostCalls = 300;
    static const int engineBound = measuredCallDepth(engine);
    engine->handle()->callDepth += qMax(0, engineBound - mostCalls);
}

} // namespace

QDeclarativeEngine::QDeclarativeEngine(QObject *parent)
    : QQmlEngine(parent)
    , m_downloads(new QDeclarativeDownloads(this))
{
    boundCallDepth(this);
    prepareDeclarativeEngine(this);
    QDeclarativeWorkers::adopt(this);
    // Goes after the threads.
    connect(m_downloads.get(), &QObject::destroyed, [this] { QDeclarativeWorkers::forget(this); });
    connect(this, &QQmlEngine::warnings, this, [this](const QList<QQmlError> &errors) {
        ++m_warningsInHand;
        Q_EMIT warnings(QDeclarativeError::named(errors));
        --m_warningsInHand;
    });
}

QDeclarativeEngine::~QDeclarativeEngine()
{
    QDeclarativeGuards::end(this);
    QDeclarativeWorkers::interrupt(this);
    // Goes after the engine's other children, of which its threads are some.
    m_downloads.release()->setParent(this);
}

QDeclarativeImageProvider *QDeclarativeEngine::imageProvider(const QString &id) const
{
    return dynamic_cast<QDeclarativeImageProvider *>(QQmlEngine::imageProvider(id));
}

QDeclarativeNetworkAccessManagerFactory *QDeclarativeEngine::networkAccessManagerFactory() const
{
    return dynamic_cast<QDeclarativeNetworkAccessManagerFactory *>(QQmlEngine::networkAccessManagerFactory());
}

std::shared_ptr<QDeclarativeGuard> QDeclarativeEngine::guard() const
{
    return QDeclarativeGuards::of(this);
}

void QDeclarativeEngine::setGuard(const std::shared_ptr<QDeclarativeGuard> &guard)
{
    QDeclarativeGuards::set(this, guard);
}

int QDeclarativeEngine::pictureLimit() const
{
    return m_downloads->pictureLimit();
}

void QDeclarativeEngine::setPictureLimit(int megapixels)
{
    m_downloads->setPictureLimit(megapixels);
}

bool QDeclarativeEngine::importPlugin(const QString &filePath, const QString &uri, QString *error)
{
    QList<QQmlError> errors;
    if (QQmlEngine::importPlugin(filePath, uri, &errors))
        return true;
    if (error)
        *error = errors.value(0).description();
    return false;
}

bool QDeclarativeEngine::isRunning() const
{
    auto *const made = QQmlEnginePrivate::get(static_cast<const QQmlEngine *>(this));
    return handle()->currentStackFrame || made->inProgressCreations > 0 || m_warningsInHand > 0;
}
