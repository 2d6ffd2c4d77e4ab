#include "VTContentGate_p.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>

namespace Vidtips {

namespace {

// What is longer names no file.
constexpr int longestPath = 4096;

/** Returns the path without links; empty where nobody can tell which file it would open. */
QString realPath(const QString &path)
{
    // What follows a null character is not part of the name that the system is given.
    if (path.isEmpty() || path.size() > longestPath || path.contains(QChar::Null))
        return {};
    const QFileInfo file(path);
    if (file.exists())
        return file.canonicalFilePath();
    // Where a link leads that leads nowhere yet, and what ".." means below it, is not known before it does.
    const QString name = file.fileName();
    if (file.isSymLink() || file.isRoot() || name == QLatin1String("..") || name == QLatin1String("."))
        return {};
    const QString parent = file.path();
    const QString folder = parent == path ? QString() : realPath(parent);
    return folder.isEmpty() ? QString() : QDir(folder).filePath(name);
}

/** Returns the path that @p url is opened by; empty where it is not one of a file or a resource. */
QString pathOf(const QUrl &url)
{
    if (!url.authority().isEmpty())
        return {};
    const QString scheme = url.scheme();
    const QString path = url.path(QUrl::FullyDecoded);
    if (scheme == QLatin1String("qrc"))
        return QLatin1Char(':') + path;
    return scheme.isEmpty() || scheme == QLatin1String("file") ? path : QString();
}

} // namespace

VTContentGate::VTContentGate(const QStringList &folders)
{
    for (const QString &folder : folders) {
        const QString root = QFileInfo(folder).canonicalFilePath();
        if (!root.isEmpty())
            m_roots.append(root);
    }
}

bool VTContentGate::admitsFile(const QString &path) const
{
    const QString real = realPath(path);
    if (real.isEmpty())
        return false;
    for (const QString &root : m_roots) {
        const QString prefix = root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
        if (real == root || real.startsWith(prefix))
            return true;
    }
    return false;
}

bool VTContentGate::admits(const QUrl &url) const
{
    return url.isEmpty() || url.scheme() == QLatin1String("image") || admitsFile(pathOf(url));
}

} // namespace Vidtips
