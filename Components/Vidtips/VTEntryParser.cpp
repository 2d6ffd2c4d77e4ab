#include "VTEntryParser_p.h"

#include <QtCore/QIODevice>
#include <QtXml/QXmlInputSource>

QT_WARNING_DISABLE_DEPRECATED

namespace Vidtips {

namespace {

constexpr int generateTree = VTXmlParser::GenerateElement | VTXmlParser::GenerateSubtree;
constexpr int skipTree = VTXmlParser::SkipElement | VTXmlParser::SkipSubtree;

/** A parser that knows what kept it from the end of the file, and which keys it came across. */
class Parser : public VTXmlParser
{
public:
    Parser(ShouldGenerateElementFunction filter, VTEntryParser *entryParser,
           const VTEntryParser::Format &format)
        : VTXmlParser(filter, entryParser)
        , m_format(format)
    {
    }

    bool startElement(const QString &nameSpace, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override
    {
        if (!VTXmlParser::startElement(nameSpace, localName, qName, atts))
            return false;
        if (m_depth == 0)
            m_isDocument = isDocument(qName);
        else if (m_depth == 1 && m_isDocument)
            noteKey(qName, atts);
        ++m_depth;
        return true;
    }

    bool endElement(const QString &nameSpace, const QString &localName, const QString &qName) override
    {
        --m_depth;
        return VTXmlParser::endElement(nameSpace, localName, qName);
    }

    bool fatalError(const QXmlParseException &exception) override
    {
        error = QStringLiteral("%1:%2: %3")
                    .arg(exception.lineNumber())
                    .arg(exception.columnNumber())
                    .arg(reasonOf(exception));
        return VTXmlParser::fatalError(exception);
    }

    QStringList keys;
    QString error;

private:
    bool isDocument(const QString &qName) const { return qName == QLatin1String(m_format.documentElement); }

    // A document element within the document element has an object, too.
    void noteKey(const QString &qName, const QXmlAttributes &atts)
    {
        const int key = atts.index(QLatin1String(m_format.keyAttribute));
        if (key >= 0 && (qName == QLatin1String(m_format.entry) || isDocument(qName)))
            keys.append(atts.value(key));
    }

    const VTEntryParser::Format &m_format;
    int m_depth = 0;
    bool m_isDocument = false;
};

/** A source that has all of its text: the reader asks for each character by itself. */
class TextSource : public QXmlInputSource
{
public:
    explicit TextSource(const QByteArray &bytes)
    {
        setData(bytes);
        m_text = QXmlInputSource::data();
    }

    QChar next() override
    {
        if (m_position == m_text.size())
            return EndOfDocument;
        const QChar character = m_text.at(m_position++);
        // The reader would take it for the end of what is there so far.
        return character == QChar(EndOfData) ? QChar(EndOfDocument) : character;
    }
    void fetchData() override { }
    QString data() const override { return m_text; }
    void reset() override { m_position = 0; }

private:
    QString m_text;
    int m_position = 0;
};

} // namespace

VTEntryParser::VTEntryParser(const Format &format, const QString &key)
    : m_format(format)
    , m_key(key)
{
}

int VTEntryParser::filterByKey(const QString &qName, const QXmlAttributes &atts, void *parser)
{
    const auto *const self = static_cast<const VTEntryParser *>(parser);
    if (qName == QLatin1String(self->m_format.entry)) {
        const QString key = atts.value(QLatin1String(self->m_format.keyAttribute));
        return key == self->m_key ? generateTree : skipTree;
    }
    return qName == QLatin1String(self->m_format.documentElement) ? VTXmlParser::GenerateElement : skipTree;
}

VTEntryParser::Result VTEntryParser::read(QIODevice &file)
{
    return read(QXmlInputSource(&file));
}

VTEntryParser::Result VTEntryParser::read(const QByteArray &bytes)
{
    return read(TextSource(bytes));
}

VTEntryParser::Result VTEntryParser::read(const QXmlInputSource &source)
{
    Parser parser(&filterByKey, this, m_format);
    const QList<QObject *> results = parser.read(source);
    // An entry inside an element without an object belongs to nobody.
    qDeleteAll(parser.detachedObjects());
    Result result;
    result.root.reset(results.isEmpty() ? nullptr : qobject_cast<VTXmlElement *>(results.constFirst()));
    // An entry may be the document element itself, and have another entry's object inside.
    if (result.root && result.root->getTagName() != QLatin1String(m_format.documentElement))
        result.root.reset();
    result.keys = parser.keys;
    result.error = parser.error;
    return result;
}

// A document element within the document element has an object too, and is no entry.
VTXmlElement *VTEntryParser::firstEntry(const VTXmlElement *root) const
{
    auto *const element = root ? qobject_cast<VTXmlElement *>(root->children().value(0)) : nullptr;
    return element && element->getTagName() == QLatin1String(m_format.entry) ? element : nullptr;
}

} // namespace Vidtips
