#include "VocabularySchema.h"

#include "shared/Vocabulary.h"

#include <QtCore/QFile>

#include <algorithm>

namespace {

const char entryBegin[] = "  <xs:complexType name=\"entry\"";
const char typeEnd[] = "  </xs:complexType>\n";
const char anyAttribute[] = "<xs:anyAttribute namespace=\"##any\"";
const char otherAttribute[] = "<xs:anyAttribute namespace=\"##other\"";

// Writes the parts of a schema, indented.
class Writer
{
public:
    QString text;

    void line(const QString &content) { text += QString(2 * m_depth, ' ') + content + '\n'; }

    void open(const QString &tag)
    {
        line('<' + tag + '>');
        ++m_depth;
    }

    void close(const QString &name)
    {
        --m_depth;
        line("</" + name + '>');
    }

    void about(const QString &sentence)
    {
        if (sentence.isEmpty())
            return;
        line("<xs:annotation><xs:documentation>" + sentence.toHtmlEscaped()
             + "</xs:documentation></xs:annotation>");
    }

    void setDepth(int depth) { m_depth = depth; }

private:
    int m_depth = 0;
};

void writeAttribute(Writer &writer, const VocabularyAttribute &attribute)
{
    const QString use = attribute.isRequired ? " use=\"required\"" : "";
    writer.open(QString("xs:attribute name=\"%1\" type=\"%2\"%3")
                    .arg(attribute.name, attribute.isRequired ? "text" : "xs:string", use));
    writer.about(attribute.about);
    writer.close("xs:attribute");
}

void writeAttributes(Writer &writer, const VocabularyElement &element, const QStringList &others)
{
    for (const VocabularyAttribute &attribute : element.attributes)
        writeAttribute(writer, attribute);
    for (const QString &name : others) {
        if (!element.attribute(name) && name != "key")
            writer.line(QString("<xs:attribute name=\"%1\" type=\"xs:string\"/>").arg(name));
    }
    writer.line(QString(otherAttribute) + " processContents=\"skip\"/>");
}

void writeElement(Writer &writer, const VocabularyElement &element);

void writeElements(Writer &writer, const VocabularyElement &element)
{
    writer.open("xs:choice minOccurs=\"0\" maxOccurs=\"unbounded\"");
    for (const VocabularyElement &child : element.elements)
        writeElement(writer, child);
    writer.line("<xs:any namespace=\"##other\" processContents=\"skip\"/>");
    writer.close("xs:choice");
}

// Only a type without elements can say that its text is not empty.
void writePlainText(Writer &writer, const VocabularyElement &element)
{
    writer.open("xs:simpleContent");
    writer.open("xs:extension base=\"text\"");
    writeAttributes(writer, element, {});
    writer.close("xs:extension");
    writer.close("xs:simpleContent");
}

void writeElement(Writer &writer, const VocabularyElement &element)
{
    const bool isPlain = element.hasText && element.elements.isEmpty();
    writer.open(QString("xs:element name=\"%1\"").arg(element.name));
    writer.about(element.about);
    writer.open(element.hasText && !isPlain ? "xs:complexType mixed=\"true\"" : "xs:complexType");
    if (isPlain) {
        writePlainText(writer, element);
    } else {
        writeElements(writer, element);
        writeAttributes(writer, element, {});
    }
    writer.close("xs:complexType");
    writer.close("xs:element");
}

// The key is the library's, whatever a user interface reads of it.
void writeKey(Writer &writer, const VocabularyElement &tip)
{
    const VocabularyAttribute *const key = tip.attribute("key");
    writer.open("xs:attribute name=\"key\" type=\"keyName\" use=\"required\"");
    writer.about(key ? key->about : QString());
    writer.close("xs:attribute");
}

VocabularyElement withoutKey(VocabularyElement tip)
{
    const auto isKey = [](const VocabularyAttribute &attribute) { return attribute.name == "key"; };
    const auto end = std::remove_if(tip.attributes.begin(), tip.attributes.end(), isKey);
    tip.attributes.erase(end, tip.attributes.end());
    return tip;
}

QString entryOf(const VocabularyElement &tip)
{
    Writer writer;
    writer.setDepth(1);
    writer.open(QString("xs:complexType name=\"entry\"%1").arg(tip.hasText ? " mixed=\"true\"" : ""));
    writeElements(writer, tip);
    writeKey(writer, tip);
    writeAttributes(writer, withoutKey(tip), Vocabulary::entryAttributes);
    writer.close("xs:complexType");
    writer.line("");
    writer.line("<!-- What is shown is not empty. -->");
    writer.open("xs:simpleType name=\"text\"");
    writer.open("xs:restriction base=\"xs:token\"");
    writer.line("<xs:minLength value=\"1\"/>");
    writer.close("xs:restriction");
    writer.close("xs:simpleType");
    return writer.text;
}

} // namespace

QByteArray VocabularySchema::ofAny()
{
    QFile file(":/vidtips/vidtips.xsd");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the schema of control files is missing from the program");
    return file.readAll();
}

QByteArray VocabularySchema::of(const Vocabulary &vocabulary)
{
    QString schema = QString::fromUtf8(ofAny());
    const int begin = schema.indexOf(entryBegin);
    const int end = schema.indexOf(typeEnd, begin) + int(qstrlen(typeEnd));
    if (begin < 0 || end < begin)
        qFatal("the schema of control files has no type of entries");
    schema.replace(begin, end - begin, entryOf(vocabulary.tip()));
    schema.replace(anyAttribute, otherAttribute);
    const int aboutBegin = schema.indexOf("<!--");
    const int aboutEnd = schema.indexOf("-->\n", aboutBegin) + 4;
    schema.replace(aboutBegin, aboutEnd - aboutBegin,
                   "<!-- Control files and what their user interface reads of a tip; \"vidtips schema\" made "
                   "this. -->\n");
    return schema.replace("  \n", "\n").toUtf8();
}
