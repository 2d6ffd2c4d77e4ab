#include "XmlDocument.h"

#include "XmlHints.h"

#include <Vidtips/VTXmlParser.h>

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QXmlStreamReader>
#include <QtXml/QXmlInputSource>
#include <QtXml/QXmlParseException>

#include <algorithm>

QT_WARNING_DISABLE_DEPRECATED

using namespace Vidtips;

namespace {

int skipEverything(const QString &, const QXmlAttributes &, void *)
{
    return VTXmlParser::SkipElement;
}

// The library's parser with its complaint kept instead of printed.
class Arbiter : public VTXmlParser
{
public:
    Arbiter()
        : VTXmlParser(&skipEverything)
    {
    }

    bool fatalError(const QXmlParseException &exception) override
    {
        if (message.isEmpty()) {
            message = reasonOf(exception);
            position = {exception.lineNumber(), exception.columnNumber()};
        }
        return false;
    }

    QString message;
    Position position;
};

bool isNameEnd(QChar character)
{
    return character.isSpace() || character == '=';
}

// Returns where in the tag the attribute begins: the tag's attributes come in the order in which they were
// read.
int attributeOffset(const QString &text, int from, int end, const QString &name)
{
    QChar quote;
    for (int i = from; i < end; ++i) {
        const QChar c = text.at(i);
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            continue;
        }
        if (c == '"' || c == '\'')
            quote = c;
        else if (text.at(i - 1).isSpace() && text.midRef(i, name.size()) == name && i + name.size() < end
                 && isNameEnd(text.at(i + name.size())))
            return i;
    }
    return from;
}

} // namespace

const XmlAttribute *XmlNode::find(const QString &attribute) const
{
    for (const XmlAttribute &candidate : attributes) {
        if (candidate.name == attribute)
            return &candidate;
    }
    return nullptr;
}

QString XmlNode::attribute(const QString &attribute) const
{
    const XmlAttribute *const found = find(attribute);
    return found ? found->value : QString();
}

Position XmlNode::positionOf(const QString &attribute) const
{
    const XmlAttribute *const found = find(attribute);
    return found ? found->position : position;
}

XmlDocument XmlDocument::read(const QString &path)
{
    XmlDocument document;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return document;
    document.m_readable = true;
    QXmlInputSource source;
    const QByteArray bytes = file.readAll();
    document.m_isUtf16 = Encoding::isUtf16(bytes);
    document.m_encodingProblem = Encoding::problemWith(bytes);
    source.setData(bytes);
    document.m_text = source.data();
    document.m_lineStarts << 0;
    for (int at = document.m_text.indexOf('\n'); at >= 0; at = document.m_text.indexOf('\n', at + 1))
        document.m_lineStarts << at + 1;
    document.parse();
    if (document.m_error.isEmpty())
        document.askLibrary();
    return document;
}

Position XmlDocument::positionAt(int offset) const
{
    const auto next = std::upper_bound(m_lineStarts.cbegin(), m_lineStarts.cend(), offset);
    const int line = int(next - m_lineStarts.cbegin());
    return {line, offset - m_lineStarts.at(line - 1) + 1};
}

std::unique_ptr<XmlNode> XmlDocument::nodeAt(QXmlStreamReader &reader) const
{
    auto node = std::make_unique<XmlNode>();
    node->name = reader.qualifiedName().toString();
    node->nameSpace = reader.namespaceUri().toString();
    const int end = std::min(int(reader.characterOffset()), m_text.size());
    const int start = std::max(0, m_text.lastIndexOf('<', end - 1));
    node->position = positionAt(start);
    const QXmlStreamAttributes attributes = reader.attributes();
    for (const QXmlStreamAttribute &attribute : attributes) {
        const QString name = attribute.qualifiedName().toString();
        const int offset = attributeOffset(m_text, start + 1, end, name);
        node->attributes.append({name, attribute.value().toString(), positionAt(offset)});
    }
    return node;
}

// A tag that is wrong as a whole is noticed at its end.
int XmlDocument::errorOffset(int readUpTo) const
{
    const int offset = std::min(readUpTo, m_text.size());
    const bool isTag = offset > 0 && m_text.at(offset - 1) == '>';
    return isTag ? std::max(0, m_text.lastIndexOf('<', offset - 1)) : offset;
}

XmlText XmlDocument::textAt(int start, int end, const QString &text) const
{
    int first = start;
    while (first < end && first < m_text.size() && m_text.at(first).isSpace())
        ++first;
    return {text, positionAt(first), start, end};
}

void XmlDocument::parse()
{
    QXmlStreamReader reader(m_text);
    std::vector<XmlNode *> open;
    while (!reader.atEnd() && m_error.isEmpty()) {
        const int start = int(reader.characterOffset());
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            auto node = nodeAt(reader);
            XmlNode *const added = node.get();
            if (int(open.size()) >= VTXmlParser::maximumDepth) {
                m_error = QString("Elements are nested more than %1 deep.").arg(VTXmlParser::maximumDepth);
                m_errorPosition = added->position;
            }
            if (open.empty())
                m_root = std::move(node);
            else
                open.back()->children.push_back(std::move(node));
            open.push_back(added);
            break;
        }
        case QXmlStreamReader::EndElement:
            open.pop_back();
            break;
        case QXmlStreamReader::Characters:
            if (!open.empty()) {
                open.back()->text += reader.text();
                open.back()->texts << textAt(start, int(reader.characterOffset()), reader.text().toString());
            }
            break;
        default:
            break;
        }
    }
    if (reader.hasError() && m_error.isEmpty())
        setError(reader.errorString(), int(reader.characterOffset()), open.empty() ? nullptr : open.back());
}

void XmlDocument::setError(const QString &words, int offset, const XmlNode *open)
{
    QString said = words.trimmed();
    while (said.endsWith('.'))
        said.chop(1);
    const QString hint = XmlHints::hintFor(said, m_text, offset, open);
    m_error = hint.isEmpty() ? said : said + ": " + hint;
    // What cannot be seen is told by its number.
    m_error.remove(QRegularExpression("[\\x00-\\x1F]"));
    m_errorPosition = positionAt(errorOffset(offset));
}

// Where only the library's parser gives up, content is lost all the same.
void XmlDocument::askLibrary()
{
    Arbiter arbiter;
    QXmlInputSource source;
    source.setData(m_text);
    qDeleteAll(arbiter.read(source));
    qDeleteAll(arbiter.detachedObjects());
    m_error = arbiter.message;
    m_errorPosition = arbiter.position;
}
