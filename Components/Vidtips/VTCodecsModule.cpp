#include "VTCodecsModule_p.h"

#ifdef VIDTIPS_STATIC_DEFINE
#include "VTFFmpegCodecs_p.h"
#endif
#include "VTVideoDecoder_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>
#include <QtCore/QMutex>
#include <QtCore/QPluginLoader>

#ifdef Q_OS_UNIX
#include <dlfcn.h>
#endif

namespace Vidtips {

namespace {

#ifdef VIDTIPS_STATIC_DEFINE

VTCodecs *makeCodecs(QString *)
{
    return new VTFFmpegCodecs;
}

#else

// The folder that the library was loaded from, wherever the tree was moved to.
QString libraryFolder()
{
#ifdef Q_OS_UNIX
    Dl_info library;
    if (dladdr(reinterpret_cast<const void *>(&VTCodecsModule::load), &library))
        return QFileInfo(QFile::decodeName(library.dli_fname)).canonicalPath() + QLatin1Char('/');
#endif
    return QString();
}

VTCodecs *makeCodecs(QString *problem)
{
    const QString path = libraryFolder() + QLatin1String(VIDTIPS_CODECS_MODULE);
    if (!QFileInfo(path).isFile()) {
        *problem = QStringLiteral("there is no %1").arg(path);
        return nullptr;
    }
    QPluginLoader loader(path);
    loader.setLoadHints(QLibrary::PreventUnloadHint);
    // Known without running any of its code, as a file that was cut off must not be loaded.
    const QString version = loader.metaData().value(QLatin1String("IID")).toString();
    if (!version.isEmpty() && version != QLatin1String(VTCodecs_iid)) {
        *problem = QStringLiteral("%1 is \"%2\", not \"%3\"").arg(path, version, QLatin1String(VTCodecs_iid));
        return nullptr;
    }
    auto *const codecs = qobject_cast<VTCodecs *>(loader.instance());
    if (!codecs)
        *problem = loader.errorString();
    return codecs;
}

#endif

} // namespace

VTCodecs *VTCodecsModule::load(QString *problem)
{
    static QMutex lock;
    static VTCodecs *codecs = nullptr;
    const QMutexLocker locker(&lock);
    if (!codecs)
        codecs = makeCodecs(problem);
    return codecs;
}

} // namespace Vidtips
