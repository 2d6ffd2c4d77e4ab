#include "VTPackageLoader_p.h"

#include "VTContext.h"
#include "VTManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace Vidtips {

void VTPackageLoader::inform(const QString &message) const
{
    m_manager->handleMessage(VTMessageInformation, message);
}

void VTPackageLoader::loadFolders(const QStringList &folders, QStringList *loaded) const
{
    for (const QString &path : folders) {
        const QFileInfo folder(path);
        if (!folder.isDir())
            continue;
        const QDir dir(folder.absoluteFilePath());
        const QVariant suffix = m_manager->context().get(PackageSuffix, QStringLiteral("vidtips"));
        const QString filter = QStringLiteral("*.%1").arg(suffix.toString());
        inform(QStringLiteral("indexing packages (%2) in %1 ").arg(dir.absolutePath(), filter));
        const QFileInfoList packages = dir.entryInfoList(
            {filter}, QDir::Dirs | QDir::Readable | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Unsorted);
        for (const QFileInfo &package : packages)
            m_manager->loadPackage(package);
        const QString canonicalPath = dir.canonicalPath();
        if (!loaded->contains(canonicalPath))
            loaded->prepend(canonicalPath);
    }
}

// The filter admits files only, so a package's control files are those of one level.
void VTPackageLoader::loadPackage(const QFileInfo &package) const
{
    const QDir dir(package.absoluteFilePath());
    inform(QStringLiteral("indexing control files in %1").arg(dir.absolutePath()));
    const QVariant name = m_manager->context().get(ControlFolder, QStringLiteral("Control"));
    const QFileInfo folder(dir.absoluteFilePath(name.toString()));
    inform(QStringLiteral("looking for control files in :%1").arg(folder.absoluteFilePath()));
    const QFileInfoList entries =
        QDir(folder.absoluteFilePath())
            .entryInfoList({QStringLiteral("*.xml")},
                           QDir::Files | QDir::Readable | QDir::NoSymLinks | QDir::NoDotAndDotDot,
                           QDir::Unsorted);
    for (const QFileInfo &entry : entries) {
        inform(QStringLiteral("found control file :%1").arg(entry.canonicalFilePath()));
        m_manager->indexControFile(entry.canonicalFilePath(), package.canonicalFilePath());
    }
}

} // namespace Vidtips
