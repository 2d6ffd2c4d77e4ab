#include "Vocabulary.h"

#include "Content.h"
#include "Nearest.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace {

template <typename T>
const T *find(const QVector<T> &list, const QString &name)
{
    const auto found =
        std::find_if(list.cbegin(), list.cend(), [&](const T &candidate) { return candidate.name == name; });
    return found == list.cend() ? nullptr : &*found;
}

template <typename T>
QStringList names(const QVector<T> &list)
{
    QStringList names;
    for (const T &item : list)
        names << item.name;
    return names;
}

const QString fileName = QStringLiteral("schema.xml");

bool isNamed(const ControlFile &file, const XmlNode *entry)
{
    const XmlNode *const root = file.document.root();
    return (entry && entry->find("schema")) || (root && root->find("schema"));
}

} // namespace

const QStringList Vocabulary::fileAttributes{"locale",    "search",   "ui",        "simple",
                                             "resources", "resource", "l10n_name", "schema"};
const QStringList Vocabulary::entryAttributes{"key",       "title",    "shortcut",  "ui",    "simple",
                                              "resources", "resource", "l10n_name", "schema"};

const VocabularyAttribute *VocabularyElement::attribute(const QString &attribute) const
{
    return find(attributes, attribute);
}

const VocabularyElement *VocabularyElement::element(const QString &element) const
{
    return find(elements, element);
}

QStringList VocabularyElement::attributeNames() const
{
    return names(attributes);
}

QStringList VocabularyElement::elementNames() const
{
    return names(elements);
}

QString Vocabulary::pathFor(const Content &content, const ControlFile &file, const XmlNode *entry)
{
    static const FileCategory named{"schema", QString()};
    if (isNamed(file, entry)) {
        const QString path = content.find(file, entry, named);
        return QFileInfo(path).isFile() ? path : QString();
    }
    const QString userInterface = content.find(file, entry, Content::fullUserInterface);
    const QFileInfo beside(QFileInfo(userInterface).path() + '/' + fileName);
    return !userInterface.isEmpty() && beside.isFile() ? beside.canonicalFilePath() : QString();
}

QString Vocabulary::misnamedFor(const Content &content, const ControlFile &file, const XmlNode *entry)
{
    const QString userInterface = content.find(file, entry, Content::fullUserInterface);
    if (userInterface.isEmpty() || isNamed(file, entry) || !pathFor(content, file, entry).isEmpty())
        return {};
    const QDir folder(QFileInfo(userInterface).canonicalPath());
    const QString name = Nearest::to(fileName, folder.entryList(QDir::Files));
    return name.isEmpty() ? QString() : folder.filePath(name);
}

Vocabulary Vocabulary::read(const QString &path)
{
    Vocabulary vocabulary;
    const XmlDocument document = XmlDocument::read(path);
    if (!document.isReadable())
        vocabulary.refuse({}, "the schema cannot be read");
    else if (!document.error().isEmpty())
        vocabulary.refuse(document.errorPosition(), document.error().trimmed());
    else
        vocabulary.readTip(document.root());
    return vocabulary;
}

void Vocabulary::refuse(Position position, const QString &problem)
{
    if (!m_problem.isEmpty())
        return;
    m_problem = problem;
    m_position = position;
}

void Vocabulary::readTip(const XmlNode *root)
{
    if (!root || root->name != "schema") {
        refuse(root ? root->position : Position(), "the document element of a schema is \"schema\"");
        return;
    }
    if (root->children.size() != 1 || root->children.front()->attribute("name") != "vidtip") {
        refuse(root->position, "a schema holds one element, that with the name \"vidtip\"");
        return;
    }
    m_tip = elementFrom(*root->children.front());
}

VocabularyElement Vocabulary::elementFrom(const XmlNode &node)
{
    VocabularyElement element;
    if (node.name != "element")
        refuse(node.position,
               QString("a schema is made of \"element\" and \"attribute\", not \"%1\"").arg(node.name));
    refuseOthers(node, {"name", "about", "text", "most", "unless"});
    element.name = nameOf(node);
    element.about = node.attribute("about").simplified();
    element.isRich = node.attribute("text") == "rich";
    element.hasText = element.isRich || flagOf(node, "text");
    element.unless = node.attribute("unless");
    element.most = mostOf(node);
    for (const auto &child : node.children) {
        if (child->name == "attribute")
            element.attributes << attributeFrom(*child);
        else
            element.elements << elementFrom(*child);
    }
    refuseRepetitions(node);
    return element;
}

VocabularyAttribute Vocabulary::attributeFrom(const XmlNode &node)
{
    refuseOthers(node, {"name", "about", "required"});
    return {nameOf(node), node.attribute("about").simplified(), flagOf(node, "required")};
}

QString Vocabulary::nameOf(const XmlNode &node)
{
    const QString name = node.attribute("name");
    if (name.isEmpty())
        refuse(node.positionOf("name"), QString("this \"%1\" has no name").arg(node.name));
    return name;
}

bool Vocabulary::flagOf(const XmlNode &node, const QString &name)
{
    const QString value = node.attribute(name);
    if (!value.isNull() && value != "yes" && value != "no")
        refuse(node.positionOf(name), QString("\"%1\" is \"yes\" or \"no\", not \"%2\"").arg(name, value));
    return value == "yes";
}

int Vocabulary::mostOf(const XmlNode &node)
{
    if (!node.find("most"))
        return 0;
    bool isNumber = false;
    const int most = node.attribute("most").toInt(&isNumber);
    if (!isNumber || most < 1)
        refuse(node.positionOf("most"),
               QString("\"most\" is a number from 1, not \"%1\"").arg(node.attribute("most")));
    return most;
}

// Only one of two descriptions could be right.
void Vocabulary::refuseRepetitions(const XmlNode &node)
{
    QMap<QString, int> lines;
    for (const auto &child : node.children) {
        const QString described = QString("the %1 \"%2\"").arg(child->name, child->attribute("name"));
        if (lines.contains(described))
            refuse(child->position,
                   QString("%1 of \"%2\" is described twice: see line %3")
                       .arg(described, node.attribute("name"))
                       .arg(lines.value(described)));
        lines.insert(described, child->position.line);
    }
}

void Vocabulary::refuseOthers(const XmlNode &node, const QStringList &attributes)
{
    for (const XmlAttribute &attribute : node.attributes) {
        if (!attributes.contains(attribute.name))
            refuse(attribute.position,
                   QString("\"%1\" has no attribute \"%2\"").arg(node.name, attribute.name));
    }
}

const Vocabulary &Vocabularies::at(const QString &path)
{
    auto found = m_read.find(path);
    if (found == m_read.end())
        found = m_read.insert(path, Vocabulary::read(path));
    return *found;
}
