#include "KeyDataCheck.h"

#include "SchemaCheck.h"
#include "StructureCheck.h"
#include "findings/Finding.h"
#include "shared/Content.h"

#include <QtCore/QMap>

#include <algorithm>

KeyDataCheck::KeyDataCheck() = default;
KeyDataCheck::~KeyDataCheck() = default;

void KeyDataCheck::run(const Content &content, const QStringList &files, Findings &findings)
{
    QStringList keys;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted)
            continue;
        for (const XmlNode *entry : file.entries())
            keys << entry->attribute("key");
    }
    keys.sort();
    for (const QString &file : files)
        checkFile(file, keys, findings);
}

void KeyDataCheck::checkFile(const QString &path, const QStringList &keys, Findings &findings)
{
    const XmlDocument document = XmlDocument::read(path);
    const bool isWellFormed = StructureCheck::checkXml(path, document, findings);
    const XmlNode *const root = document.root();
    if (!root || root->name != "vidtipkeys") {
        findings.add("VT804", path, root ? root->position : Position(),
                     root ? QString("the document element is \"%1\"").arg(root->name)
                          : QString("the file holds no element"));
        return;
    }
    checkNames(path, document, keys, findings);
    if (!isWellFormed || !root->nameSpace.isEmpty() || findings.contains(path, {"VT802"}))
        return;
    if (!m_schema)
        m_schema = std::make_unique<SchemaCheck>(":/vidtips/vidtipkeys.xsd");
    m_schema->check(path, findings);
}

void KeyDataCheck::checkNames(const QString &path, const XmlDocument &document, const QStringList &keys,
                              Findings &findings)
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
        else if (!std::binary_search(keys.cbegin(), keys.cend(), name))
            findings.add("VT801", path, place, QString("no entry has the key \"%1\"").arg(name));
        named.insert(name, named.value(name, place));
    }
}
