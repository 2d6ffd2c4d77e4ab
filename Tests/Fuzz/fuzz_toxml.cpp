// Writing a tree as XML. Each byte of the input says what to do next; a tree of plain names and values has to
// come back from the parser as it was.

#include "FuzzInput.h"
#include "FuzzTarget.h"

#include <Vidtips/VTXmlElement.h>
#include <Vidtips/VTXmlParser.h>

#include <memory>

QT_WARNING_DISABLE_DEPRECATED

using namespace Vidtips;

namespace {

enum Step { AddChild, LeaveChild, SetAttribute, SetTagName, AddOther, SetContent, stepCount };

/** A text of letters alone, as any XML name may be. */
QString plainText(FuzzInput *input)
{
    QString text(QLatin1Char('n'));
    const int length = input->takeByte() % 8;
    for (int i = 0; i < length; ++i)
        text += QChar('a' + input->takeByte() % 26);
    return text;
}

QString takeName(FuzzInput *input, bool isPlain)
{
    return isPlain ? plainText(input) : input->takeText();
}

void build(VTXmlElement *root, FuzzInput *input, bool isPlain)
{
    VTXmlElement *element = root;
    while (!input->isEmpty()) {
        switch (input->takeByte() % stepCount) {
        case AddChild:
            element = new VTXmlElement(element);
            element->setTagName(takeName(input, isPlain));
            break;
        case LeaveChild:
            element = element == root ? root : static_cast<VTXmlElement *>(element->parent());
            break;
        case SetAttribute: {
            const QString name = takeName(input, isPlain);
            element->setAttribute(name, takeName(input, isPlain));
            break;
        }
        case SetTagName:
            element->setTagName(takeName(input, isPlain));
            break;
        case AddOther:
            new QObject(element);
            break;
        case SetContent:
            element->setContent(input->takeText());
            break;
        }
    }
}

void checkSame(const VTXmlElement *one, const VTXmlElement *other)
{
    FUZZ_CHECK(one->getTagName() == other->getTagName());
    const QStringList names = one->attributeNames();
    FUZZ_CHECK(names == other->attributeNames());
    for (const QString &name : names)
        FUZZ_CHECK(one->attribute(name) == other->attribute(name));
    const auto children = one->findChildren<VTXmlElement *>(QString(), Qt::FindDirectChildrenOnly);
    const auto others = other->findChildren<VTXmlElement *>(QString(), Qt::FindDirectChildrenOnly);
    FUZZ_CHECK(children.size() == others.size());
    for (int i = 0; i < children.size(); ++i)
        checkSame(children.at(i), others.at(i));
}

void checkRoundTrip(const VTXmlElement &root)
{
    QXmlInputSource source;
    source.setData(root.toXml(0));
    VTXmlParser parser(nullptr, nullptr);
    const QList<QObject *> objects = parser.read(source);
    FUZZ_CHECK(objects.size() == 1);
    const std::unique_ptr<QObject> owner(objects.constFirst());
    checkSame(&root, qobject_cast<VTXmlElement *>(objects.constFirst()));
}

} // namespace

void fuzz(const QByteArray &input)
{
    FuzzInput rest(input);
    const bool isPlain = rest.takeByte() % 2;
    const int index = rest.takeInteger();
    VTXmlElement root;
    root.setTagName("root");
    build(&root, &rest, isPlain);
    root.toXml(index);
    if (isPlain)
        checkRoundTrip(root);
}
