#include "VocabularyCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Nearest.h"

#include <QtCore/QRegularExpression>

#include <algorithm>

namespace {

// What has a prefix, as a declaration of a namespace has, is for another reader.
bool isForOthers(const QString &name)
{
    return name.contains(':') || name == "xmlns";
}

QString listed(const QStringList &names)
{
    QStringList quoted;
    for (const QString &name : names)
        quoted << '"' + name + '"';
    const QString last = quoted.isEmpty() ? QString() : quoted.takeLast();
    return quoted.isEmpty() ? last : quoted.join(", ") + " and " + last;
}

// What was meant, or else what there is.
QString hint(const QString &name, const QStringList &known, const QString &kind)
{
    const QString nearest = Nearest::to(name, known);
    if (!nearest.isEmpty())
        return QString("did you mean \"%1\"?").arg(nearest);
    return known.isEmpty() ? "no " + kind + " is" : listed(known) + (known.size() == 1 ? " is" : " are");
}

} // namespace

void VocabularyCheck::run(const Content &content, Findings &findings)
{
    m_findings = &findings;
    for (const ControlFile &file : content.controlFiles()) {
        // Where the XML ends too soon, elements are cut off that are whole to their author.
        if (file.isAdmitted && file.document.root() && file.document.error().isEmpty())
            checkFile(content, file, findings);
    }
}

void VocabularyCheck::checkFile(const Content &content, const ControlFile &file, Findings &findings)
{
    m_file = file.path;
    if (vocabularyFor(content, file, nullptr, findings))
        checkAttributes(*file.document.root(), {}, Vocabulary::fileAttributes);
    for (const XmlNode *entry : file.entries()) {
        const Vocabulary *const vocabulary = vocabularyFor(content, file, entry, findings);
        if (vocabulary)
            checkNode(*entry, vocabulary->tip(), Vocabulary::entryAttributes);
    }
}

const Vocabulary *VocabularyCheck::vocabularyFor(const Content &content, const ControlFile &file,
                                                 const XmlNode *entry, Findings &findings)
{
    const XmlNode *const holder = entry ? entry : file.document.root();
    const QString path = Vocabulary::pathFor(content, file, entry);
    if (path.isEmpty()) {
        if (holder->find("schema"))
            findings.add("VT410", file.path, holder->positionOf("schema"),
                         QString("there is no schema \"%1\"").arg(holder->attribute("schema")));
        // Entries that share the user interface of the file have its schema, too.
        if (!entry || entry->find(Content::fullUserInterface.attribute))
            reportMisnamed(Vocabulary::misnamedFor(content, file, entry), findings);
        return nullptr;
    }
    const Vocabulary &vocabulary = m_vocabularies.at(path);
    if (vocabulary.isUsable())
        return &vocabulary;
    if (!m_refused.contains(path))
        findings.add("VT115", path, vocabulary.problemPosition(), vocabulary.problem());
    m_refused << path;
    return nullptr;
}

void VocabularyCheck::reportMisnamed(const QString &path, Findings &findings)
{
    if (path.isEmpty() || m_refused.contains(path))
        return;
    m_refused << path;
    findings.add("VT118", path, {},
                 "the file is not read: the schema beside a user interface has the name \"schema.xml\"");
}

void VocabularyCheck::checkNode(const XmlNode &node, const VocabularyElement &element,
                                const QStringList &others)
{
    checkAttributes(node, element, others);
    checkRequired(node, element);
    checkText(node, element);
    checkChildren(node, element);
    checkAlternatives(node, element);
}

void VocabularyCheck::checkAttributes(const XmlNode &node, const VocabularyElement &element,
                                      const QStringList &others)
{
    QStringList known = element.attributeNames() + others;
    known.removeDuplicates();
    for (const XmlAttribute &attribute : node.attributes) {
        // What the library sets has a finding of its own.
        const bool isSet = attribute.name == "VTLocation" || attribute.name == "VTPackagName";
        if (known.contains(attribute.name) || isForOthers(attribute.name) || isSet)
            continue;
        add("VT108", attribute.position,
            QString("the attribute \"%1\" of \"%2\" is not read: %3")
                .arg(attribute.name, node.name, hint(attribute.name, known, "attribute")));
    }
}

void VocabularyCheck::checkRequired(const XmlNode &node, const VocabularyElement &element)
{
    for (const VocabularyAttribute &attribute : element.attributes) {
        if (attribute.isRequired && node.attribute(attribute.name).trimmed().isEmpty())
            add("VT113", node.positionOf(attribute.name),
                node.find(attribute.name)
                    ? QString("\"%1\" of this \"%2\" is empty").arg(attribute.name, node.name)
                    : QString("this \"%1\" has no \"%2\"").arg(node.name, attribute.name));
    }
}

void VocabularyCheck::checkText(const XmlNode &node, const VocabularyElement &element)
{
    const bool hasText = !node.text.trimmed().isEmpty();
    if (element.hasText && !hasText && node.children.empty())
        add("VT112", node.position, QString("this \"%1\" is empty").arg(node.name));
    if (element.hasText && !element.isRich)
        checkMarkup(node);
    if (element.hasText || !hasText)
        return;
    for (const XmlText &text : node.texts) {
        if (text.text.trimmed().isEmpty())
            continue;
        add("VT114", text.position, QString("text in \"%1\" is not shown").arg(node.name));
        return;
    }
}

// Written so that XML takes it for text, as in a section of CDATA.
void VocabularyCheck::checkMarkup(const XmlNode &node)
{
    static const QRegularExpression tag(
        "</?(?:b|i|u|em|strong|br|p|a|span|font|code|tt|kbd|sub|sup|ul|ol|li)(?:\\s[^<>]*)?/?>",
        QRegularExpression::CaseInsensitiveOption);
    for (const XmlText &text : node.texts) {
        const QRegularExpressionMatch match = tag.match(text.text);
        if (!match.hasMatch())
            continue;
        add("VT119", text.position,
            QString("\"%1\" is shown as it is written: \"%2\" is plain text")
                .arg(match.captured(), node.name));
        return;
    }
}

void VocabularyCheck::checkAlternatives(const XmlNode &node, const VocabularyElement &element)
{
    for (const auto &child : node.children) {
        const VocabularyElement *const known = element.element(child->name);
        const auto isOther = [&](const std::unique_ptr<XmlNode> &other) {
            return other->name == known->unless;
        };
        if (known && !known->unless.isEmpty()
            && std::any_of(node.children.cbegin(), node.children.cend(), isOther))
            add("VT122", child->position,
                QString("this \"%1\" is not shown: there is a \"%2\"").arg(child->name, known->unless));
    }
}

void VocabularyCheck::checkChildren(const XmlNode &node, const VocabularyElement &element)
{
    QMap<QString, QVector<int>> lines;
    for (const auto &child : node.children) {
        if (isForOthers(child->name) || child->nameSpace != node.nameSpace)
            continue;
        const VocabularyElement *const known = element.element(child->name);
        if (!known && element.hasText && element.elements.isEmpty()) {
            add("VT110", child->position,
                QString("\"%1\" and what it holds is not shown: \"%2\" is plain text")
                    .arg(child->name, node.name));
        } else if (!known) {
            add("VT109", child->position,
                QString("\"%1\" is not read in \"%2\": %3")
                    .arg(child->name, node.name, hint(child->name, element.elementNames(), "element")));
        } else {
            QVector<int> &before = lines[child->name];
            if (known->most > 0 && before.size() >= known->most)
                add("VT111", child->position,
                    QString("this \"%1\" is not shown: there is one in line %2 already")
                        .arg(child->name)
                        .arg(before.constLast()));
            else
                before << child->position.line;
            checkNode(*child, *known, {});
        }
    }
}

void VocabularyCheck::add(const QString &code, Position position, const QString &message)
{
    m_findings->add(code, m_file, position, message);
}
