#include "AdmissionCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace {

constexpr int headSize = 4096;

bool isWordCharacter(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character == '_';
}

// The first tag in the sense of the library, which does not know comments.
struct FirstTag
{
    int offset = -1;
    QString name;
};

FirstTag firstTag(const QString &text)
{
    for (int mark = text.indexOf('<'); mark >= 0; mark = text.indexOf('<', mark + 1)) {
        int end = mark + 1;
        while (end < text.size() && isWordCharacter(text.at(end)))
            ++end;
        if (end > mark + 1)
            return {mark, text.mid(mark + 1, end - mark - 1)};
    }
    return {};
}

bool hasControlFiles(const Content &content, const Package &package)
{
    const auto &files = content.controlFiles();
    return std::any_of(files.cbegin(), files.cend(),
                       [&](const ControlFile &file) { return file.package == package.path; });
}

} // namespace

void AdmissionCheck::run(const Content &content, Findings &findings)
{
    for (const QString &link : content.links())
        findings.add("VT207", link, {}, "the symbolic link is skipped");
    checkFolders(content, findings);
    for (const ControlFile &file : content.controlFiles())
        checkFile(file, findings);
    for (const Package &package : content.packages()) {
        checkStrayFiles(package, findings);
        checkSuffixes(package, findings);
        // A control file that is refused has a finding of its own.
        if (!content.knows(package.name) && !hasControlFiles(content, package)
            && content.unreadable().filter(package.path + '/').isEmpty())
            findings.add("VT208", package.path, {},
                         QString("no control file of the package \"%1\" is admitted").arg(package.name));
    }
}

bool AdmissionCheck::looksLikeControlFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly)
        && firstTag(QString::fromUtf8(file.read(headSize))).name == "vidtips";
}

void AdmissionCheck::checkFolders(const Content &content, Findings &findings)
{
    for (const QString &path : content.unreadable()) {
        const QFileInfo folder(path);
        if (folder.isDir())
            findings.add("VT100", path, {},
                         folder.isReadable() ? "the folder cannot be entered" : "the folder cannot be read");
    }
}

void AdmissionCheck::checkFile(const ControlFile &file, Findings &findings)
{
    if (!file.document.isReadable())
        return;
    const XmlNode *const root = file.document.root();
    if (!file.isAdmitted)
        checkRefused(file, findings);
    else if (root && root->name != "vidtips")
        findings.add(
            "VT202", file.path, file.document.positionAt(firstTag(file.document.text()).offset),
            QString("this \"vidtips\" admits a file whose document element is \"%1\"").arg(root->name));
}

void AdmissionCheck::checkRefused(const ControlFile &file, Findings &findings)
{
    const XmlDocument &document = file.document;
    if (document.isUtf16()) {
        findings.add("VT210", file.path, {1, 1},
                     "the file is UTF-16, which is never admitted: save it as UTF-8");
        return;
    }
    const XmlNode *const root = document.root();
    const FirstTag tag = firstTag(document.text());
    if (tag.offset < 0) {
        if (!document.encodingProblem().message.isEmpty())
            return;
        if (document.error().isEmpty() || document.text().trimmed().isEmpty())
            findings.add("VT203", file.path, {}, "the file holds no element");
        return;
    }
    const Position position = document.positionAt(tag.offset);
    if (root && position < root->position)
        findings.add("VT202", file.path, position,
                     QString("the tag \"%1\" before the document element keeps the file out").arg(tag.name));
    else if (tag.name != "vidtips")
        findings.add("VT201", file.path, position,
                     QString("the first element is \"%1\" instead of \"vidtips\"").arg(tag.name));
    else
        findings.add("VT204", file.path, position, "the library does not recognise this tag as \"vidtips\"");
}

void AdmissionCheck::checkStrayFiles(const Package &package, Findings &findings)
{
    const QString looked = package.controlFolder();
    QDirIterator files(package.path, {"*.xml"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (files.fileInfo().absolutePath() == looked)
            continue;
        if (path.startsWith(looked + '/') || looksLikeControlFile(path))
            findings.add("VT205", path, {}, "the file is not in the control folder itself and is never read");
    }
}

void AdmissionCheck::checkSuffixes(const Package &package, Findings &findings)
{
    const auto files = QDir(package.controlFolder())
                           .entryInfoList(QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDir::Name);
    for (const QFileInfo &file : files) {
        const bool isXml = file.suffix().compare("xml", Qt::CaseInsensitive) == 0;
        if ((isXml && !file.isHidden()) || !looksLikeControlFile(file.filePath()))
            continue;
        findings.add("VT206", file.filePath(), {},
                     isXml ? "the file is hidden, by the dot before its name, and never read"
                           : "the file's name does not end in \".xml\", so it is never read");
    }
}
