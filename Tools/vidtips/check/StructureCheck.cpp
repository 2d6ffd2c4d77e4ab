#include "StructureCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Locales.h"
#include "vocabulary/SchemaCheck.h"

#include <QtCore/QRegularExpression>

namespace {

// Where one of these was found, the schema has nothing new to say.
const QVector<QString> structureCodes{"VT101", "VT103", "VT104", "VT106", "VT117", "VT303"};

} // namespace

StructureCheck::StructureCheck()
    : m_schema(std::make_unique<SchemaCheck>(":/vidtips/vidtips.xsd"))
{
}

StructureCheck::~StructureCheck() = default;

void StructureCheck::run(const Content &content, Findings &findings)
{
    for (const ControlFile &file : content.controlFiles())
        checkFile(file, findings);
}

bool StructureCheck::checkXml(const QString &path, const XmlDocument &document, Findings &findings)
{
    if (!document.isReadable()) {
        findings.add("VT100", path, {}, "the file cannot be read");
        return false;
    }
    const Encoding::Problem &encoding = document.encodingProblem();
    if (!encoding.message.isEmpty()) {
        findings.add("VT117", path, encoding.position, encoding.message);
        return false;
    }
    // That a control file is not admitted for it is a finding of its own.
    if (document.isUtf16() && !document.root())
        return false;
    if (document.text().trimmed().isEmpty() || document.error().isEmpty())
        return !document.text().trimmed().isEmpty();
    QString reason = document.error().trimmed();
    while (reason.endsWith('.'))
        reason.chop(1);
    findings.add("VT101", path, document.errorPosition(), reason);
    return false;
}

void StructureCheck::checkFile(const ControlFile &file, Findings &findings)
{
    const bool isWellFormed = checkXml(file.path, file.document, findings);
    if (!file.document.root() || file.document.root()->name != "vidtips")
        return;
    checkDocumentElement(file, findings);
    for (const auto &child : file.document.root()->children) {
        if (child->name == "vidtip")
            checkEntry(file, *child, findings);
        else
            checkNested(file, *child, findings);
    }
    const bool isCovered = !file.document.root()->nameSpace.isEmpty();
    if (isWellFormed && !isCovered && !findings.contains(file.path, structureCodes))
        m_schema->check(file.path, findings);
}

void StructureCheck::checkDocumentElement(const ControlFile &file, Findings &findings)
{
    const XmlNode &root = *file.document.root();
    const QString locale = file.locale();
    const bool isNamed = !locale.isEmpty() && locale != "C";
    QString problem = isNamed ? Locales::problemWith(locale) : QString();
    // Qt overlooks what systems append to the names of their locales.
    const QString plain = locale.section(QRegularExpression("[.@]"), 0, 0);
    if (problem.isEmpty() && plain != locale)
        problem = QString("\"%1\" is the name of a system's locale: write \"%2\"").arg(locale, plain);
    if (!problem.isEmpty())
        findings.add("VT106", file.path, root.positionOf("locale"), problem);
    for (const auto &child : root.children) {
        if (child->name != "vidtip" && child->nameSpace == root.nameSpace)
            findings.add("VT104", file.path, child->position,
                         QString("\"%1\" is not read here: only \"vidtip\" is").arg(child->name));
    }
}

void StructureCheck::checkEntry(const ControlFile &file, const XmlNode &entry, Findings &findings)
{
    if (entry.attribute("key").isEmpty())
        findings.add("VT103", file.path, entry.positionOf("key"),
                     entry.find("key") ? "the key of this entry is empty" : "this entry has no key");
    for (const char *reserved : {"VTLocation", "VTPackagName"}) {
        if (entry.find(reserved))
            findings.add("VT107", file.path, entry.positionOf(reserved),
                         QString("the library sets \"%1\" itself").arg(reserved));
    }
    checkNested(file, entry, findings);
}

void StructureCheck::checkNested(const ControlFile &file, const XmlNode &parent, Findings &findings)
{
    for (const auto &child : parent.children) {
        if (child->name == "vidtip" && child->find("key"))
            findings.add("VT105", file.path, child->position,
                         QString("the entry \"%1\" stands inside \"%2\" and is never found")
                             .arg(child->attribute("key"), parent.name));
        checkNested(file, *child, findings);
    }
}
