// The XML parser with a filter that decides anything. The first line says what the filter returns for the
// elements one after the other, a letter each, and its first letter which classes there are; the document
// follows.

#include "FuzzInput.h"
#include "FuzzTarget.h"

#include <Vidtips/VTXmlElement.h>
#include <Vidtips/VTXmlParser.h>

QT_WARNING_DISABLE_DEPRECATED

using namespace Vidtips;

namespace {

/** A class of a host: it takes its attributes as properties, and only some. */
class Typed : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER m_name)
    Q_PROPERTY(int number MEMBER m_number)

public:
    Q_INVOKABLE explicit Typed(QObject *parent = nullptr)
        : QObject(parent)
    {
    }
    Q_INVOKABLE void appendContent(const QString &text) { m_name += text; }

private:
    QString m_name;
    int m_number = 0;
};

struct Decisions
{
    QByteArray flags;
    int next = 0;
};

int decide(const QString &, const QXmlAttributes &, void *userData)
{
    auto *decisions = static_cast<Decisions *>(userData);
    if (decisions->flags.isEmpty())
        return VTXmlParser::GenerateElement;
    return decisions->flags.at(decisions->next++ % decisions->flags.size()) & 0xF;
}

void configure(VTXmlParser *parser, int choice)
{
    if (choice & 1)
        parser->registerElement(QStringLiteral("t"), &Typed::staticMetaObject);
    if (choice & 2)
        parser->registerElement(QStringLiteral("q"), &QObject::staticMetaObject);
    if (choice & 4)
        parser->setDefaultElement(nullptr);
    if (choice & 8)
        parser->setDefaultElement(&Typed::staticMetaObject);
}

} // namespace

void fuzz(const QByteArray &input)
{
    FuzzInput rest(input);
    Decisions decisions{rest.takeLine()};
    const int choice = decisions.flags.isEmpty() ? 0 : decisions.flags.at(0);
    decisions.flags.remove(0, 1);
    VTXmlParser parser(&decide, &decisions);
    configure(&parser, choice);
    QXmlInputSource source;
    source.setData(rest.rest());

    const QList<QObject *> objects = parser.read(source);
    for (const QObject *object : objects) {
        FUZZ_CHECK(object && !object->parent());
        if (const auto *element = qobject_cast<const VTXmlElement *>(object))
            element->toXml(0);
    }
    qDeleteAll(objects);
    const QList<QObject *> detached = parser.detachedObjects();
    for (const QObject *object : detached)
        FUZZ_CHECK(!object->parent());
    qDeleteAll(detached);
    FUZZ_CHECK(parser.detachedObjects().isEmpty());
}

#include "fuzz_xmlparser.moc"
