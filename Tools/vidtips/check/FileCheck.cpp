#include "FileCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Nearest.h"
#include "shared/Places.h"
#include "shared/Vocabulary.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtGui/QImageReader>

#include <algorithm>

namespace {

constexpr qint64 mostPixels =
    64 * 1024 * 1024; // of a picture that is worth decoding to see whether it is whole

// The largest screen that is common; more pixels of a picture are never seen.
const QSize largestScreen(3840, 2160);

enum class FileKind { None, Picture, Clip, Qml };

FileKind kindOf(const QString &path)
{
    static const QSet<QString> pictures{"png", "jpg", "jpeg", "gif", "svg", "bmp", "webp", "ico", "xpm"};
    static const QSet<QString> clips{"mp4", "webm", "avi",  "mov", "mkv", "ogv",
                                     "m4v", "mpg",  "mpeg", "wmv", "flv"};
    const QString suffix = QFileInfo(path.trimmed()).suffix().toLower();
    if (suffix == "qml")
        return FileKind::Qml;
    return pictures.contains(suffix) ? FileKind::Picture
        : clips.contains(suffix)     ? FileKind::Clip
                                     : FileKind::None;
}

// Attributes whose value may look like a file's name and is none, or is looked up otherwise.
bool isOtherAttribute(const QString &name)
{
    static const QSet<QString> others{"key",       "title",    "ui",        "simple",
                                      "resources", "resource", "l10n_name", "context"};
    return others.contains(name);
}

bool isForHost(const QString &value)
{
    static const QRegularExpression addressOrPlaceholder(
        "^(?!(?:file|https?|ftp):)[A-Za-z][-A-Za-z0-9+.]+:|%\\([-_a-zA-Z0-9]+\\)s",
        QRegularExpression::CaseInsensitiveOption);
    return addressOrPlaceholder.match(value).hasMatch();
}

bool isOfNetwork(const QString &value)
{
    static const QRegularExpression address("^(?:https?|ftp):", QRegularExpression::CaseInsensitiveOption);
    return address.match(value).hasMatch();
}

bool isOfMachine(const QString &value)
{
    static const QRegularExpression path("^(?:file:|/|[A-Za-z]:[/\\\\]|\\\\\\\\)",
                                         QRegularExpression::CaseInsensitiveOption);
    return path.match(value).hasMatch();
}

bool liesIn(const QStringList &folders, const QString &path)
{
    const QString clean = QDir::cleanPath(path);
    return std::any_of(folders.cbegin(), folders.cend(), [&](const QString &folder) {
        return clean.startsWith(QDir::cleanPath(folder) + '/');
    });
}

const char *codeFor(FileKind kind)
{
    return kind == FileKind::Picture ? "VT404" : kind == FileKind::Clip ? "VT405" : "VT406";
}

// A name that differs only in case works on some systems and not on others.
QString similarIn(const QDir &folder, const QFileInfo &wanted)
{
    QMap<QString, QString> names;
    for (const QFileInfo &file : folder.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
        if (file.suffix().compare(wanted.suffix(), Qt::CaseInsensitive) == 0)
            names.insert(file.completeBaseName(), file.fileName());
    }
    return names.value(Nearest::to(wanted.completeBaseName(), names.keys()));
}

// What there is in place of @p path, where folders on the way to it may have other names as well.
QString similarTo(const QString &path)
{
    const QFileInfo wanted(path);
    if (wanted.exists() || wanted.isRoot())
        return path;
    const QString folder = similarTo(wanted.path());
    if (folder.isEmpty())
        return {};
    const QString same = folder + '/' + wanted.fileName();
    const QString name = QFileInfo::exists(same) ? wanted.fileName() : similarIn(folder, wanted);
    return name.isEmpty() ? QString() : folder + '/' + name;
}

// The folder of resources is searched, and is not named once more.
QString similar(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        const QFileInfo wanted(QDir::cleanPath(QString(candidate).replace('\\', '/').trimmed()));
        const QFileInfo found(similarTo(wanted.filePath()));
        if (!found.filePath().isEmpty())
            return found.path() == wanted.path() ? found.fileName() : Places::shown(found.filePath());
        const QFileInfo above(QFileInfo(wanted.path()).path() + '/' + wanted.fileName());
        if (above.isFile())
            return above.fileName();
    }
    return {};
}

QString lookedFor(const QStringList &candidates)
{
    QStringList shown;
    for (const QString &candidate : candidates)
        shown << Places::shown(QDir::cleanPath(candidate));
    shown.removeDuplicates();
    return shown.isEmpty() ? "nowhere to look" : "looked for " + shown.join(", ");
}

// What is in such a folder counts as missing.
bool isBarred(const QString &path)
{
    const QFileInfo folder(path);
    return folder.isDir() && !folder.isExecutable();
}

// The folder on the way to one of them that cannot be entered.
QString barredFolder(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        QFileInfo folder(QFileInfo(QDir::cleanPath(candidate)).path());
        while (!folder.exists() && !folder.isRoot())
            folder.setFile(folder.path());
        if (isBarred(folder.filePath()))
            return folder.filePath();
    }
    return {};
}

QString whyMissing(const QStringList &candidates)
{
    const QString barred = barredFolder(candidates);
    if (!barred.isEmpty())
        return QString("the folder %1 cannot be entered").arg(Places::shown(barred));
    const QString other = similar(candidates);
    return other.isEmpty() ? lookedFor(candidates) : QString("there is \"%1\"").arg(other);
}

} // namespace

void FileCheck::run(const Content &content, Findings &findings)
{
    for (const Package &package : content.packages()) {
        QDirIterator files(package.path, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            gather(QFileInfo(files.next()).canonicalFilePath(), findings);
        checkEntrances(content, package.path, findings);
    }
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted || !file.document.root() || file.document.root()->name != "vidtips")
            continue;
        checkSearch(content, file, findings);
        checkUserInterfaces(content, file, findings);
        checkFolders(content, file, *file.document.root(), findings);
        for (const XmlNode *entry : file.entries()) {
            checkFolders(content, file, *entry, findings);
            checkNode(content, file, *entry, *entry, findings);
        }
    }
    checkPictures(findings);
}

void FileCheck::gather(const QString &path, Findings &findings)
{
    const FileKind kind = kindOf(path);
    const QFileInfo file(path);
    // Of what is in a folder that cannot be entered there is only a name.
    if (kind == FileKind::None || !file.exists())
        return;
    // Who opens a pipe waits for somebody to write to it.
    if (!file.isFile())
        reportUnreadable(path, "this is no file that can be read", findings);
    else if (!file.isReadable())
        reportUnreadable(path, "the file cannot be read", findings);
    else if (kind == FileKind::Picture)
        m_pictures << path;
    else if (kind == FileKind::Clip)
        m_clips << path;
    else if (kind == FileKind::Qml)
        m_qmlFiles << path;
}

// Control folders have been judged with what is in them.
void FileCheck::checkEntrances(const Content &content, const QString &package, Findings &findings)
{
    QDirIterator folders(package, QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (folders.hasNext()) {
        const QString path = QFileInfo(folders.next()).canonicalFilePath();
        if (isBarred(path) && !content.unreadable().contains(path))
            reportUnreadable(path, "the folder cannot be entered", findings);
    }
}

void FileCheck::reportUnreadable(const QString &path, const QString &problem, Findings &findings)
{
    if (m_unreadable.contains(path))
        return;
    m_unreadable << path;
    findings.add("VT100", path, {}, problem);
}

QStringList FileCheck::sorted(QStringList list)
{
    list.removeDuplicates();
    list.sort();
    return list;
}

void FileCheck::checkSearch(const Content &content, const ControlFile &file, Findings &findings)
{
    static const QRegularExpression separator("[,;\\s]+");
    const XmlNode &root = *file.document.root();
    QStringList known;
    for (const Package &package : content.packages())
        known << package.name;
    for (const QString &name : root.attribute("search").split(separator, Qt::SkipEmptyParts)) {
        if (content.knows(name))
            continue;
        const QString meant = Nearest::to(name, known);
        const QString problem = known.contains(name)
            ? QString("which is not known, as it has no control file: one that holds <vidtips/> will do")
            : "and there is no such package"
                + (meant.isEmpty() ? QString() : QString(": did you mean \"%1\"?").arg(meant));
        findings.add("VT401", file.path, root.positionOf("search"),
                     QString("\"search\" names \"%1\", %2").arg(name, problem));
    }
}

void FileCheck::checkUserInterfaces(const Content &content, const ControlFile &file, Findings &findings)
{
    struct Interface
    {
        FileCategory category;
        QString code, missing;
    };
    const QVector<Interface> interfaces{
        {Content::fullUserInterface, "VT402", "there is no user interface: "},
        {Content::simpleUserInterface, "VT403", "there is no simple user interface: "}};
    for (const Interface &interface : interfaces) {
        // Entries that do not name one share that of the file, which is reported once.
        bool isFileReported = false;
        for (const XmlNode *entry : file.entries()) {
            const bool isOwn = entry->find(interface.category.attribute);
            if (!isOwn && isFileReported)
                continue;
            const QString found = content.find(file, entry, interface.category);
            if (!found.isEmpty()) {
                gather(QFileInfo(found).canonicalFilePath(), findings);
                continue;
            }
            isFileReported = isFileReported || !isOwn;
            const XmlNode &holder = isOwn ? *entry : *file.document.root();
            findings.add(interface.code, file.path, holder.positionOf(interface.category.attribute),
                         interface.missing + whyMissing(content.candidates(file, entry, interface.category)));
        }
    }
}

void FileCheck::checkFolders(const Content &content, const ControlFile &file, const XmlNode &node,
                             Findings &findings)
{
    const QString searched = node.attribute("resources");
    const QString told = node.attribute("resource");
    if (searched != told)
        findings.add("VT408", file.path, node.positionOf(searched.isEmpty() ? "resource" : "resources"),
                     QString("\"resources\" is \"%1\" and \"resource\" is \"%2\"").arg(searched, told));
    const QString translations = node.attribute(Content::catalogues.attribute);
    if (!translations.isEmpty() && content.find(file, &node, Content::catalogues).isEmpty())
        findings.add(
            "VT709", file.path, node.positionOf(Content::catalogues.attribute),
            QString("there is no folder \"%1\" with translations: %2")
                .arg(translations, whyMissing(content.candidates(file, &node, Content::catalogues))));
}

void FileCheck::checkNode(const Content &content, const ControlFile &file, const XmlNode &entry,
                          const XmlNode &node, Findings &findings)
{
    for (const XmlAttribute &attribute : node.attributes)
        checkNamed(content, file, entry, attribute, findings);
    checkKind(content, file, entry, node, findings);
    for (const auto &child : node.children)
        checkNode(content, file, entry, *child, findings);
}

// A GIF may be either. Without a schema, an element of this name may be for anything.
void FileCheck::checkKind(const Content &content, const ControlFile &file, const XmlNode &entry,
                          const XmlNode &node, Findings &findings)
{
    const QString source = node.attribute("source");
    const FileKind kind = kindOf(source);
    const bool isGif = source.endsWith(".gif", Qt::CaseInsensitive);
    const bool isSwapped = (node.name == "clip" && kind == FileKind::Picture && !isGif)
        || (node.name == "picture" && kind == FileKind::Clip);
    if (!isSwapped || Vocabulary::pathFor(content, file, &entry).isEmpty())
        return;
    const QString other = kind == FileKind::Clip ? "clip" : "picture";
    findings.add(
        "VT412", file.path, node.positionOf("source"),
        QString("\"%1\" is a %2, and this is a \"%3\": did you mean \"%2\"?").arg(source, other, node.name));
}

void FileCheck::checkNamed(const Content &content, const ControlFile &file, const XmlNode &entry,
                           const XmlAttribute &attribute, Findings &findings)
{
    const FileKind kind = kindOf(attribute.value);
    const bool isSource = attribute.name == "source" && !attribute.value.isEmpty();
    if ((kind == FileKind::None && !isSource) || isOtherAttribute(attribute.name)
        || isForHost(attribute.value))
        return;
    // Elsewhere than in a source, an address is one that the user may go to; and without a schema, anything
    // may stand in a tip.
    if (isOfNetwork(attribute.value) && (!isSource || Vocabulary::pathFor(content, file, &entry).isEmpty()))
        return;
    const QString found = content.find(file, &entry, Content::resources, attribute.value);
    if (!found.isEmpty())
        gather(QFileInfo(found).canonicalFilePath(), findings);
    const bool isOutside = !found.isEmpty() && !liesIn(content.locations(file), found);
    if (isOfNetwork(attribute.value) || isOfMachine(attribute.value) || isOutside)
        reportElsewhere(file, entry, attribute, findings);
    else if (found.isEmpty())
        reportMissing(content, file, entry, attribute, findings);
}

void FileCheck::reportElsewhere(const ControlFile &file, const XmlNode &entry, const XmlAttribute &attribute,
                                Findings &findings)
{
    const QString reason = isOfNetwork(attribute.value) ? "is in the network, and is not loaded"
        : isOfMachine(attribute.value)                  ? "is a path of this machine"
                                                        : "lies outside the package";
    findings.add("VT411", file.path, attribute.position,
                 QString("\"%1\" of the tip \"%2\" %3: put the file into the package")
                     .arg(attribute.value, entry.attribute("key"), reason));
}

void FileCheck::reportMissing(const Content &content, const ControlFile &file, const XmlNode &entry,
                              const XmlAttribute &attribute, Findings &findings)
{
    const QStringList candidates = content.candidates(file, &entry, Content::resources, attribute.value);
    findings.add(codeFor(kindOf(attribute.value)), file.path, attribute.position,
                 QString("\"%1\" of the tip \"%2\" is missing: %3")
                     .arg(attribute.value, entry.attribute("key"), whyMissing(candidates)));
}

void FileCheck::checkPictures(Findings &findings) const
{
    for (const QString &path : sorted(m_pictures)) {
        QImageReader reader(path);
        const QSize size = reader.size();
        const bool isLarge = size.isValid() && qint64(size.width()) * size.height() > mostPixels;
        if (!reader.canRead() || (!isLarge && reader.read().isNull()))
            findings.add("VT407", path, {},
                         QString("the picture does not open: %1").arg(reader.errorString()));
        else if (size.width() > largestScreen.width() || size.height() > largestScreen.height())
            findings.add("VT409", path, {},
                         QString("the picture is %1 x %2 pixels, and screens have %3 x %4 at most")
                             .arg(size.width())
                             .arg(size.height())
                             .arg(largestScreen.width())
                             .arg(largestScreen.height()));
    }
}
