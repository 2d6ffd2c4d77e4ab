#include "KeyDataCheck.h"

#include "StructureCheck.h"
#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Nearest.h"
#include "shared/Vocabulary.h"
#include "vocabulary/SchemaCheck.h"
#include "vocabulary/ShortcutName.h"

#include <QtCore/QMap>

#include <algorithm>

namespace {

const QString rootName = QStringLiteral("vidtipkeys");

// What cannot be read, or holds nothing, was meant as something; and there is nothing else to be beside
// packages.
bool isMeantAsKeyData(const XmlDocument &document)
{
    return !document.root() || !Nearest::to(document.root()->name, {rootName}).isEmpty();
}

QString rootProblem(const XmlNode *root)
{
    if (!root)
        return "the file holds no element";
    const QString meant = Nearest::to(root->name, {rootName});
    return QString("the document element is \"%1\"").arg(root->name)
        + (meant.isEmpty() ? QString() : QString(": did you mean \"%1\"?").arg(meant));
}

} // namespace

KeyDataCheck::KeyDataCheck() = default;
KeyDataCheck::~KeyDataCheck() = default;

void KeyDataCheck::run(const Content &content, const QStringList &named, Findings &findings)
{
    collect(content);
    for (const QString &path : named)
        checkFile(path, XmlDocument::read(path), findings);
    for (const QString &path : content.filesBesidePackages()) {
        const XmlDocument document = XmlDocument::read(path);
        if (!named.contains(path) && isMeantAsKeyData(document))
            checkFile(path, document, findings);
    }
}

void KeyDataCheck::collect(const Content &content)
{
    Vocabularies vocabularies;
    m_attributes = Vocabulary::entryAttributes;
    m_attributes << "shortcut-linux"
                 << "shortcut-mac"
                 << "shortcut-windows";
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted)
            continue;
        for (const XmlNode *entry : file.entries()) {
            m_keys << entry->attribute("key");
            const QString schema = Vocabulary::pathFor(content, file, entry);
            if (!schema.isEmpty())
                m_attributes << vocabularies.at(schema).tip().attributeNames();
        }
        m_attributes.removeDuplicates();
    }
    m_keys.sort();
}

void KeyDataCheck::checkFile(const QString &path, const XmlDocument &document, Findings &findings)
{
    const bool isWellFormed = StructureCheck::checkXml(path, document, findings);
    if (!document.isReadable())
        return;
    const XmlNode *const root = document.root();
    if (!root || root->name != rootName) {
        findings.add("VT804", path, root ? root->position : Position(), rootProblem(root));
        return;
    }
    checkNames(path, document, findings);
    checkSpelling(path, document, findings);
    if (!isWellFormed || !root->nameSpace.isEmpty() || findings.contains(path, {"VT802", "VT805"}))
        return;
    if (!m_schema)
        m_schema = std::make_unique<SchemaCheck>(":/vidtips/vidtipkeys.xsd");
    m_schema->check(path, findings);
}

void KeyDataCheck::checkNames(const QString &path, const XmlDocument &document, Findings &findings)
{
    QMap<QString, Position> named;
    for (const auto &child : document.root()->children) {
        if (child->name != "key")
            continue;
        const QString name = child->attribute("name");
        const Position place = child->positionOf("name");
        if (name.isEmpty())
            findings.add("VT802", path, place, "this key data has no name");
        else if (named.contains(name))
            findings.add("VT803", path, place,
                         QString("\"%1\" is named in line %2 already").arg(name).arg(named.value(name).line));
        else if (!std::binary_search(m_keys.cbegin(), m_keys.cend(), name))
            findings.add("VT801", path, place, QString("no entry has the key \"%1\"").arg(name));
        named.insert(name, named.value(name, place));
    }
}

// Any attribute may be there, for a user interface of the host's own; one that is almost another is not
// meant.
void KeyDataCheck::checkSpelling(const QString &path, const XmlDocument &document, Findings &findings) const
{
    for (const auto &child : document.root()->children) {
        if (child->nameSpace != document.root()->nameSpace)
            continue;
        if (child->name != "key") {
            findings.add("VT805", path, child->position,
                         QString("\"%1\" is not read here: only \"key\" is").arg(child->name));
            continue;
        }
        for (const XmlAttribute &attribute : child->attributes) {
            const QString misspelt = attribute.name.startsWith("shortcut")
                ? ShortcutName::problemWith(attribute.value)
                : QString();
            if (!misspelt.isEmpty())
                findings.add("VT121", path, attribute.position, misspelt);
            const QString meant = Nearest::to(attribute.name, m_attributes);
            if (attribute.name != "name" && !meant.isEmpty() && meant != attribute.name)
                findings.add("VT805", path, attribute.position,
                             QString("the attribute \"%1\" is not read: did you mean \"%2\"?")
                                 .arg(attribute.name, meant));
        }
    }
}
