#include "PackageWatcher.h"

#include "shared/Content.h"

#include <QtCore/QDirIterator>

namespace {
// An editor that replaces a file changes its folder several times; what it wrote is complete after that.
constexpr int quietTime = 150; // milliseconds
} // namespace

PackageWatcher::PackageWatcher(QObject *parent)
    : QObject(parent)
{
    m_quiet.setSingleShot(true);
    m_quiet.setInterval(quietTime);
    connect(&m_quiet, &QTimer::timeout, this, &PackageWatcher::changed);
    const auto restart = [this] { m_quiet.start(); };
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, restart);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, restart);
}

void PackageWatcher::watch(const Content &content, const QStringList &others)
{
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    QStringList paths = others + content.dataPaths() + content.emptyFolders();
    for (const Package &package : content.packages()) {
        paths << package.path;
        QDirIterator walk(package.path, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (walk.hasNext())
            paths << walk.next();
    }
    paths.removeDuplicates();
    // A file that was replaced is no longer watched, so all are given again.
    if (!watched.isEmpty())
        m_watcher.removePaths(watched);
    if (!paths.isEmpty())
        m_watcher.addPaths(paths);
}
