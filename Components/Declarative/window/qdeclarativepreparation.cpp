#include <QtDeclarative/qdeclarativepreparation.h>

#include "engine/qdeclarativelocalfile_p.h"
#include "qdeclarativetypes_p.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtQml/QQmlAbstractUrlInterceptor>
#include <QtQml/QQmlComponent>

#include <private/qv4executablecompilationunit_p.h>

namespace {

using QV4::ExecutableCompilationUnit;
using QV4::CompiledData::Unit;

bool isCached(const QUrl &url, const QDateTime &sourceTime)
{
    QFile file(ExecutableCompilationUnit::localCacheFilePath(url));
    Unit header;
    const bool isRead = !qEnvironmentVariableIsSet("QML_DISABLE_DISK_CACHE") && file.open(QIODevice::ReadOnly)
        && file.read(reinterpret_cast<char *>(&header), sizeof(header)) == qint64(sizeof(header));
    QString reason;
    return isRead && ExecutableCompilationUnit::verifyHeader(&header, sourceTime, &reason);
}

} // namespace

// Nobody has asked to see the file yet, so nothing is fetched for it.
class VIDTIPS_DECLARATIVE_NO_EXPORT QDeclarativePreparation::Private : public QQmlAbstractUrlInterceptor
{
public:
    Private() { engine.setUrlInterceptor(this); }

    QUrl intercept(const QUrl &url, DataType) override
    {
        const bool isLocal =
            url.isLocalFile() || url.scheme().isEmpty() || url.scheme() == QLatin1String("qrc");
        return isLocal ? QDeclarativeLocalFile::codeAt(url) : QUrl();
    }

    QDeclarativeEngine engine;
    QQmlComponent component{&engine};
};

QDeclarativePreparation::QDeclarativePreparation(const QUrl &url)
    : d(new Private)
{
    const auto tellOfEnd = [this](QQmlComponent::Status status) {
        if (status != QQmlComponent::Loading)
            QMetaObject::invokeMethod(this, &QDeclarativePreparation::finished, Qt::QueuedConnection);
    };
    connect(&d->component, &QQmlComponent::statusChanged, this, tellOfEnd);
    d->component.loadUrl(url, QQmlComponent::Asynchronous);
}

QDeclarativePreparation::~QDeclarativePreparation() = default;

void QDeclarativePreparation::registerTypes()
{
    registerOwnDeclarativeTypes();
}

bool QDeclarativePreparation::isDue(const QUrl &url)
{
    const QFileInfo source(url.toLocalFile());
    return source.isFile() && !isCached(url, source.lastModified());
}
