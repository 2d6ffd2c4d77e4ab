#include "VTEntryParser_p.h"

#include <QtCore/QIODevice>
#include <QtXml/QXmlInputSource>

QT_WARNING_DISABLE_DEPRECATED

namespace Vidtips {

namespace {

constexpr int generateTree = VTXmlParser::GenerateElement | VTXmlParser::GenerateSubtree;
constexpr int skipTree = VTXmlParser::SkipElement | VTXmlParser::SkipSubtree;

/** A parser that knows whether it came to an end without an error. */
class Parser : public VTXmlParser
{
public:
    using VTXmlParser::VTXmlParser;

    bool fatalError(const QXmlParseException &exception) override
    {
        hasFailed = true;
        return VTXmlParser::fatalError(exception);
    }

    bool hasFailed = false;
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

VTEntryParser::Result VTEntryParser::read(QIODevice &file, VTXmlParser::ShouldGenerateElementFunction filter)
{
    Parser parser(filter ? filter : &filterByKey, this);
    const QList<QObject *> results = parser.read(QXmlInputSource(&file));
    // An entry inside an element without an object belongs to nobody.
    qDeleteAll(parser.detachedObjects());
    Result result;
    result.root.reset(results.isEmpty() ? nullptr : qobject_cast<VTXmlElement *>(results.constFirst()));
    // An entry may be the document element itself, and have another entry's object inside.
    if (result.root && result.root->getTagName() != QLatin1String(m_format.documentElement))
        result.root.reset();
    result.isComplete = !parser.hasFailed;
    return result;
}

// A document element within the document element has an object too, and is no entry.
VTXmlElement *VTEntryParser::firstEntry(const VTXmlElement *root) const
{
    auto *const element = root ? qobject_cast<VTXmlElement *>(root->children().value(0)) : nullptr;
    return element && element->getTagName() == QLatin1String(m_format.entry) ? element : nullptr;
}

} // namespace Vidtips
