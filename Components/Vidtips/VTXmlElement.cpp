#include "VTXmlElement.h"

#include <QtCore/QMap>
#include <QtCore/QMetaType>

namespace Vidtips {

namespace {

// The meta-object names the pointer type without its namespace, and QML resolves it by that name.
void registerResultTypes()
{
    qRegisterMetaType<VTXmlElement *>("VTXmlElement*");
    qRegisterMetaType<QList<QObject *>>();
}
Q_CONSTRUCTOR_FUNCTION(registerResultTypes)

// More than the deepest document that is read needs; a caller may pass any number.
constexpr int maximumIndentation = 4096;

QString attributeBlock(const QMap<QString, QString> &attributes)
{
    QStringList texts;
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
        texts << QStringLiteral("%1=\"%2\"").arg(it.key()).arg(it.value());
    return texts.isEmpty() ? QString() : QLatin1Char(' ') + texts.join(QLatin1Char(' '));
}

} // namespace

struct VIDTIPS_NO_EXPORT VTXmlElement::Private
{
    static void appendLines(const VTXmlElement *element, int index, QStringList *lines);

    QMap<QString, QString> attributes;
    QString tagNameSpace;
    QString content;
    QString title;
};

// All levels write to one list: joining each level's text anew would copy a deep tree over and over.
void VTXmlElement::Private::appendLines(const VTXmlElement *element, int index, QStringList *lines)
{
    const QString indentation(qMax(index, 0), QLatin1Char(' '));
    const QString tagName = element->getTagName();
    const int first = lines->size();
    lines->append(QString());
    for (const QObject *child : element->children()) {
        if (const auto *childElement = qobject_cast<const VTXmlElement *>(child))
            appendLines(childElement, index + 2, lines);
    }
    const bool isEmpty = lines->size() == first + 1;
    (*lines)[first] = QStringLiteral("%1<%2%3%4>")
                          .arg(indentation)
                          .arg(tagName)
                          .arg(attributeBlock(element->d->attributes))
                          .arg(isEmpty ? QStringLiteral("/") : QString());
    if (!isEmpty)
        lines->append(QStringLiteral("%1</%2>").arg(indentation).arg(tagName));
}

VTXmlElement::VTXmlElement(QObject *parent, const QXmlAttributes &attrs)
    : QObject(parent)
    , d(new Private)
{
    for (int i = 0; i < attrs.length(); ++i)
        setAttribute(attrs.qName(i), attrs.value(i));
}

VTXmlElement::~VTXmlElement() = default;

QString VTXmlElement::getTagName() const
{
    return objectName();
}

void VTXmlElement::setTagName(const QString &tagName)
{
    setObjectName(tagName);
    Q_EMIT tagNameChanged();
}

QString VTXmlElement::getTagNameSpace() const
{
    return d->tagNameSpace;
}

void VTXmlElement::setTagNameSpace(const QString &tagNameSpace)
{
    d->tagNameSpace = tagNameSpace;
    Q_EMIT tagNameSpaceChanged();
}

QString VTXmlElement::content() const
{
    return d->content;
}

void VTXmlElement::setContent(const QString &content)
{
    d->content = content;
    Q_EMIT contentChanged();
}

QString VTXmlElement::title() const
{
    return d->title.isNull() ? attribute(QStringLiteral("title")) : d->title;
}

void VTXmlElement::setTitle(const QString &title)
{
    d->title = title;
    Q_EMIT contentChanged();
}

void VTXmlElement::setAttribute(const QString &name, const QString &value)
{
    d->attributes.insert(name, value);
}

QStringList VTXmlElement::attributeNames() const
{
    return d->attributes.keys();
}

VTXmlElement *VTXmlElement::childElement(const QString &name) const
{
    return findChild<VTXmlElement *>(name);
}

QList<QObject *> VTXmlElement::childElementList(const QString &name) const
{
    // Only a null name stands for any name.
    return findChildren<QObject *>(name.isEmpty() ? QString() : name);
}

QString VTXmlElement::attribute(const QString &name) const
{
    return d->attributes.value(name);
}

bool VTXmlElement::hasAttribute(const QString &name) const
{
    return d->attributes.contains(name);
}

void VTXmlElement::appendContent(const QString &content)
{
    d->content += content;
    Q_EMIT contentChanged();
}

QString VTXmlElement::toXml(int index) const
{
    QStringList lines;
    Private::appendLines(this, qMin(index, maximumIndentation), &lines);
    return lines.join(QLatin1Char('\n'));
}

} // namespace Vidtips
