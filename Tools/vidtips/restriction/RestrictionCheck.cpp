#include "RestrictionCheck.h"

#include "CodeMentions.h"
#include "RestrictedReach.h"
#include "TextMentions.h"
#include "clips/ClipProbe.h"
#include "findings/Finding.h"
#include "shared/Content.h"

#include <Vidtips/VTCatalogue_p.h>
#include <Vidtips/VTContentGuard_p.h>

#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtGui/QImageReader>

using namespace Vidtips;

namespace {

const QString refused = QStringLiteral("restricted content is refused ");

QString textOf(const QString &path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                                                      : QString();
}

QStringList filesIn(const QString &folder)
{
    QStringList paths;
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths << files.next();
    paths.sort();
    return paths;
}

bool isClip(const QString &suffix)
{
    static const QSet<QString> suffixes{"mp4",  "webm", "avi", "mov",  "mkv", "ogv",      "m4v",    "mpg",
                                        "mpeg", "wmv",  "flv", "m3u8", "m3u", "ffconcat", "concat", "mpd"};
    return suffixes.contains(suffix);
}

bool isPicture(const QString &suffix)
{
    return QImageReader::supportedImageFormats().contains(suffix.toLatin1());
}

// Of an address whose end is not known, the folder is judged.
QUrl addressOf(const Mention &mention, const QString &file)
{
    const QUrl whole(mention.text);
    const bool isPath = whole.scheme().isEmpty() || whole.scheme() == "file";
    const bool isCut = mention.kind == Mention::Beginning && isPath;
    // What comes behind is a whole path, as that of a file that was found.
    static const QRegularExpression anyFile("^file:/*$");
    if (isCut && anyFile.match(mention.text).hasMatch())
        return {};
    const QString known = isCut ? mention.text.left(mention.text.lastIndexOf('/') + 1) : mention.text;
    return known.isEmpty() ? QUrl() : QUrl::fromLocalFile(file).resolved(QUrl(known));
}

bool admitsModule(const Mention &mention)
{
    return VTContentGuard({}).admitsModule(mention.text, mention.major, mention.minor);
}

QString versionOf(const Mention &mention)
{
    return mention.major < 0 ? QString() : QString(" %1.%2").arg(mention.major).arg(mention.minor);
}

} // namespace

RestrictionCheck::RestrictionCheck(const Content &content)
    : m_content(content)
    , m_reach(std::make_unique<RestrictedReach>(content))
{
}

RestrictionCheck::~RestrictionCheck() = default;

bool RestrictionCheck::isSupported()
{
    return VTContentGuard::isSupported();
}

void RestrictionCheck::run(const QStringList &keyData, Findings &findings)
{
    checkPackages(findings);
    for (const ControlFile &file : m_content.controlFiles()) {
        if (!file.isAdmitted)
            continue;
        for (const XmlNode *entry : file.entries())
            checkEntry(file, *entry, findings);
        checkCatalogues(file, findings);
    }
    for (const QString &path : keyData)
        checkKeyData(path, findings);
}

// A property that one file makes is set in others.
void RestrictionCheck::checkPackages(Findings &findings)
{
    QStringList paths;
    for (const Package &package : m_content.packages())
        paths += filesIn(package.path);
    for (const QString &path : qAsConst(paths)) {
        if (QFileInfo(path).suffix() == "qml")
            m_addressProperties += CodeMentions::addressPropertiesIn(textOf(path));
    }
    m_addressProperties.removeDuplicates();
    for (const QString &path : qAsConst(paths))
        checkFile(path, findings);
}

void RestrictionCheck::checkFile(const QString &path, Findings &findings)
{
    const QFileInfo file(path);
    const QString suffix = file.suffix().toLower();
    if (suffix == "qml")
        checkMentions(path, CodeMentions::inDocument(textOf(path), m_addressProperties), findings);
    else if (suffix == "js")
        checkMentions(path, CodeMentions::inScript(textOf(path), m_addressProperties), findings);
    else if (suffix == "sci")
        checkMentions(path, TextMentions::inBorders(textOf(path)), findings);
    else if (file.fileName() == "qmldir")
        checkMentions(path, TextMentions::inModule(textOf(path)), findings);
    else if (suffix == "qmlc" || suffix == "jsc")
        findings.add("VT610", path, {}, refused + "running compiled code");
    else if (suffix == "qm" && file.isFile() && VTCatalogue::namesOthers(path))
        findings.add("VT706", path, {}, refused + "this catalogue, which names others");
    else if (isClip(suffix) && file.isFile())
        checkClip(path, findings);
    else if (isPicture(suffix) && file.isFile() && !QDeclarativeGuard::problemOfPicture(path).isEmpty())
        findings.add("VT414", path, {}, refused + QDeclarativeGuard::problemOfPicture(path));
}

void RestrictionCheck::checkMentions(const QString &path, const Mentions &mentions, Findings &findings) const
{
    for (const Mention &mention : mentions) {
        const QUrl url = addressOf(mention, path);
        const bool isAddress = mention.kind == Mention::Address || mention.kind == Mention::Beginning;
        if (mention.kind == Mention::Module && !admitsModule(mention))
            findings.add("VT609", path, mention.position,
                         refused + "importing " + mention.text + versionOf(mention));
        else if (mention.kind == Mention::Plugin)
            findings.add("VT610", path, mention.position, refused + "loading a plugin");
        else if (mention.kind == Mention::Door)
            findings.add("VT612", path, mention.position, refused + mention.text);
        else if (mention.kind == Mention::Opening)
            findings.add("VT613", path, mention.position,
                         QString("Qt.openUrlExternally(\"%1\") goes to the host, which may refuse it")
                             .arg(mention.text));
        else if (isAddress && !m_reach->admitsForCode(path, url))
            findings.add("VT611", path, mention.position, refused + "reading " + url.toString());
    }
}

void RestrictionCheck::checkClip(const QString &path, Findings &findings)
{
    const QString clip = QFileInfo(path).canonicalFilePath();
    if (m_clips.contains(clip))
        return;
    m_clips << clip;
    if (ClipProbe(0).isRefusedWhenRestricted(clip))
        findings.add("VT511", clip, {}, refused + "the format of this clip");
}

void RestrictionCheck::checkEntry(const ControlFile &file, const XmlNode &entry, Findings &findings)
{
    for (const FileCategory &category : {Content::fullUserInterface, Content::simpleUserInterface}) {
        const QString found = m_content.find(file, &entry, category);
        const XmlNode &holder = entry.find(category.attribute) ? entry : *file.document.root();
        const Position place = holder.positionOf(category.attribute);
        // Entries that share that of the file are told once.
        if (!found.isEmpty() && !m_reach->admits(file, found)
            && !findings.containsAt(file.path, place.line, "VT413"))
            findings.add("VT413", file.path, place, refused + "reading " + found);
    }
    checkNode(file, entry, entry, findings);
}

void RestrictionCheck::checkNode(const ControlFile &file, const XmlNode &entry, const XmlNode &node,
                                 Findings &findings)
{
    for (const XmlAttribute &attribute : node.attributes)
        checkNamed(file, entry, file.path, attribute, findings);
    for (const auto &child : node.children)
        checkNode(file, entry, *child, findings);
}

// What names a file that there is.
void RestrictionCheck::checkNamed(const ControlFile &file, const XmlNode &entry, const QString &path,
                                  const XmlAttribute &attribute, Findings &findings)
{
    const bool isFound = !attribute.value.isEmpty() && attribute.name != "key" && attribute.name != "title";
    const QString found =
        isFound ? m_content.find(file, &entry, Content::resources, attribute.value) : QString();
    if (!QFileInfo(found).isFile())
        return;
    if (!m_reach->admits(file, found))
        findings.add("VT413", path, attribute.position, refused + "reading " + found);
    else if (attribute.name == "source" && !isPicture(QFileInfo(found).suffix().toLower()))
        checkClip(found, findings);
}

void RestrictionCheck::checkCatalogues(const ControlFile &file, Findings &findings) const
{
    const QStringList folders = m_content.candidates(file, nullptr, Content::catalogues);
    for (const QString &folder : folders) {
        for (const QFileInfo &catalogue : QDir(folder).entryInfoList({"*.qm"}, QDir::Files)) {
            const QString path = QDir::cleanPath(catalogue.absoluteFilePath());
            const Position place = file.document.root()->positionOf(Content::catalogues.attribute);
            if (!m_reach->admits(file, path))
                findings.add("VT413", file.path, place, refused + "reading " + path);
        }
    }
}

// A key's data takes the place of what its tip says.
void RestrictionCheck::checkKeyData(const QString &path, Findings &findings)
{
    const XmlDocument document = XmlDocument::read(path);
    if (!document.root())
        return;
    for (const auto &key : document.root()->children)
        checkKey(path, *key, findings);
}

void RestrictionCheck::checkKey(const QString &path, const XmlNode &key, Findings &findings)
{
    for (const ControlFile &file : m_content.controlFiles()) {
        for (const XmlNode *entry : file.entries()) {
            if (!file.isAdmitted || entry->attribute("key") != key.attribute("name"))
                continue;
            for (const XmlAttribute &attribute : key.attributes)
                checkNamed(file, *entry, path, attribute, findings);
        }
    }
}
