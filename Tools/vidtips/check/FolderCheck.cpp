#include "FolderCheck.h"

#include "AdmissionCheck.h"
#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Nearest.h"
#include "shared/Places.h"

#include <QtCore/QDir>

#include <algorithm>

namespace {

// Below the folder that was named: who names a whole disk is not to wait for all of it.
constexpr int deepest = 4;

const QString suffix = QStringLiteral("vidtips");

bool isKnown(const Content &content, const QString &folder)
{
    const QVector<Package> &packages = content.packages();
    return std::any_of(packages.cbegin(), packages.cend(),
                       [&](const Package &package) { return package.path == folder; });
}

bool hasControlFile(const QString &folder)
{
    const auto files = QDir(folder + "/Control").entryInfoList({"*.xml"}, QDir::Files | QDir::NoSymLinks);
    return std::any_of(files.cbegin(), files.cend(), [](const QFileInfo &file) {
        return AdmissionCheck::looksLikeControlFile(file.filePath());
    });
}

// The folder's name as it would have to be: with the suffix, for what may be meant as one.
QString rightName(const QString &name)
{
    const QString trimmed = name.trimmed();
    const int dot = trimmed.lastIndexOf('.');
    const bool hasSuffix = dot > 0 && !Nearest::to(trimmed.mid(dot + 1), {suffix}).isEmpty();
    return (hasSuffix ? trimmed.left(dot) : trimmed) + '.' + suffix;
}

} // namespace

void FolderCheck::run(const Content &content, Findings &findings)
{
    for (const QString &argument : content.arguments())
        search(content, QDir(argument).canonicalPath(), 0);
    m_found.removeDuplicates();
    for (const QString &folder : qAsConst(m_found))
        checkFound(folder, findings);
    for (const QString &folder : content.emptyFolders()) {
        const bool isExplained = std::any_of(m_found.cbegin(), m_found.cend(), [&](const QString &found) {
            return found == folder || found.startsWith(folder + '/');
        });
        if (!isExplained)
            findings.add("VT209", folder, {}, "no package was found here");
    }
}

void FolderCheck::search(const Content &content, const QString &folder, int depth)
{
    if (isKnown(content, folder))
        return;
    if (hasControlFile(folder)) {
        m_found << folder;
        return;
    }
    if (depth == deepest)
        return;
    const auto names =
        QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::Name);
    for (const QString &name : names)
        search(content, QDir(folder).filePath(name), depth + 1);
}

void FolderCheck::checkFound(const QString &folder, Findings &findings) const
{
    const QFileInfo info(folder);
    if (info.suffix() == suffix) {
        findings.add("VT212", folder, {},
                     QString("the package lies too deep to be found: move it up, or name \"%1\" as well")
                         .arg(Places::shown(info.path())));
        return;
    }
    const QString name = rightName(info.fileName());
    const bool isTaken = QFileInfo::exists(info.dir().filePath(name));
    findings.add("VT211", folder, {},
                 QString("the folder is no package, because its name does not end in \".%1\"").arg(suffix)
                     + (isTaken ? QString() : QString(": name it \"%1\"").arg(name)));
}
