#include "VTControlFile_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace Vidtips {

namespace {

constexpr int bytesPerRead = 1024;

bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == QLatin1Char('_');
}

bool opensTag(const QString &line, int afterName)
{
    int next = afterName;
    while (next < line.size() && line.at(next).isSpace())
        ++next;
    return next == line.size() || isWordCharacter(line.at(next)) || line.at(next) == QLatin1Char('>')
        || line.midRef(next, 2) == QLatin1String("/>");
}

enum class FirstElement { None, Vidtips, Other };

// A hand-written search for "<(\w+)\s*(\w|>|/>|$)" that never gives back a part of the name: a regular
// expression's engine costs more than reading the file does.
FirstElement firstElement(const QString &line)
{
    for (int mark = line.indexOf(QLatin1Char('<')); mark >= 0;
         mark = line.indexOf(QLatin1Char('<'), mark + 1)) {
        int end = mark + 1;
        while (end < line.size() && isWordCharacter(line.at(end)))
            ++end;
        if (end == mark + 1)
            continue;
        const bool isVidtips = line.midRef(mark + 1, end - mark - 1) == QLatin1String("vidtips");
        return isVidtips && opensTag(line, end) ? FirstElement::Vidtips : FirstElement::Other;
    }
    return FirstElement::None;
}

int depthByCanonicalPath(const QString &controlFile, const QString &package)
{
    const QString target = QDir(package).canonicalPath();
    if (target.isEmpty())
        return outsidePackage;
    QDir directory(controlFile);
    for (int depth = 0;; ++depth) {
        if (directory.canonicalPath() == target)
            return depth;
        if (directory.isRoot() || !directory.cdUp())
            return outsidePackage;
    }
}

} // namespace

// A pipe that has come into the place of a file would be waited for, and a device may have no end.
bool openRegular(QFile &file)
{
    return QFileInfo(file.fileName()).isFile() && file.open(QIODevice::ReadOnly);
}

bool startsWithVidtips(const QString &controlFile)
{
    QFile file(controlFile);
    if (!openRegular(file))
        return false;
    FirstElement found = FirstElement::None;
    while (found == FirstElement::None) {
        const QByteArray line = file.readLine(bytesPerRead);
        if (line.isEmpty())
            return false;
        found = firstElement(QString::fromUtf8(line));
    }
    return found == FirstElement::Vidtips;
}

// Between clean paths without symbolic links, levels can be counted in the text; asking the file system for
// the canonical path of each level takes longer than reading the file.
int depthInPackage(const QString &controlFile, const QString &package)
{
    const bool isClean = package.size() > 1 && QDir::isAbsolutePath(package)
        && QDir::cleanPath(package) == package && QDir::cleanPath(controlFile) == controlFile;
    if (!isClean || !controlFile.startsWith(package + QLatin1Char('/')))
        return depthByCanonicalPath(controlFile, package);

    int depth = 1;
    int slash = controlFile.indexOf(QLatin1Char('/'), package.size() + 1);
    for (; slash >= 0; slash = controlFile.indexOf(QLatin1Char('/'), slash + 1)) {
        if (QFileInfo(controlFile.left(slash)).isSymLink())
            return depthByCanonicalPath(controlFile, package);
        ++depth;
    }
    return depth;
}

} // namespace Vidtips
