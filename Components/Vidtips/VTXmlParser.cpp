#include "VTXmlParser.h"

#include "VTXmlBounds_p.h"
#include "VTXmlElement.h"

#include <QtCore/QDebug>
#include <QtCore/QMap>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <algorithm>

QT_WARNING_DISABLE_DEPRECATED

namespace Vidtips {

namespace {

// A logger made in the reporting handler keeps that handler as the context of what its helpers report.
void report(const QMessageLogger &logger, const QString &message)
{
    logger.debug().noquote() << message;
}

int flagsForChildren(int flags)
{
    if (flags & VTXmlParser::SkipSubtree)
        return VTXmlParser::SkipSubtree;
    if (flags & VTXmlParser::GenerateSubtree)
        return VTXmlParser::GenerateSubtree;
    return VTXmlParser::GenerateElement;
}

// Tells it of few attributes only, where comparing each with each takes less time than sorting them.
bool areFewAndDifferent(const QXmlAttributes &atts)
{
    constexpr int few = 8;
    if (atts.length() > few)
        return false;
    for (int i = 1; i < atts.length(); ++i) {
        if (atts.index(atts.qName(i)) != i)
            return false;
    }
    return true;
}

// Returns the name that two of the attributes have, or a null string. The reader lets such an element pass,
// and whoever asks it for the attribute may get either value.
QString repeatedName(const QXmlAttributes &atts)
{
    if (areFewAndDifferent(atts))
        return {};
    QStringList names;
    names.reserve(atts.length());
    for (int i = 0; i < atts.length(); ++i)
        names.append(atts.qName(i));
    std::sort(names.begin(), names.end());
    const auto repeated = std::adjacent_find(names.cbegin(), names.cend());
    return repeated == names.cend() ? QString() : *repeated;
}

bool writeAttributes(QObject *object, const QXmlAttributes &atts, const QMessageLogger &logger)
{
    const QMetaObject *meta = object->metaObject();
    const QString className = QString::fromLatin1(meta->className());
    for (int i = 0; i < atts.length(); ++i) {
        const QString name = atts.localName(i);
        const int property = meta->indexOfProperty(name.toLatin1().constData());
        if (property < 0) {
            report(logger, QStringLiteral("No Property named %1 on %2").arg(name, className));
            return false;
        }
        if (!meta->property(property).write(object, atts.value(i))) {
            report(logger,
                   QStringLiteral("Could not write \"%1\" to property %2 of %3")
                       .arg(atts.value(i), name, className));
        }
    }
    return true;
}

// Nearly every object is of the default class itself; going through its meta-object for each of them costs
// about as much as reading the file.
VTXmlElement *asPlainElement(QObject *object)
{
    const bool isPlain = object->metaObject() == &VTXmlElement::staticMetaObject;
    return isPlain ? static_cast<VTXmlElement *>(object) : nullptr;
}

void writeIfPresent(QObject *object, const char *name, const QString &value)
{
    const int property = object->metaObject()->indexOfProperty(name);
    if (property >= 0)
        object->metaObject()->property(property).write(object, value);
}

void nameObject(QObject *object, const QString &nameSpace, const QString &name)
{
    if (VTXmlElement *element = asPlainElement(object)) {
        element->setTagNameSpace(nameSpace);
        element->setTagName(name);
        return;
    }
    writeIfPresent(object, "tagNameSpace", nameSpace);
    writeIfPresent(object, "tagName", name);
}

} // namespace

struct VIDTIPS_NO_EXPORT VTXmlParser::Private
{
    struct OpenElement
    {
        QPointer<QObject> object;
        int flags;
    };

    QObject *create(const QMetaObject *meta, const QString &localName, const QXmlAttributes &atts,
                    const QMessageLogger &logger);

    QMap<QString, const QMetaObject *> registry;
    const QMetaObject *defaultElement = &VTXmlElement::staticMetaObject;
    QVector<OpenElement> openElements;
    QVector<QPointer<QObject>> detached;
    ShouldGenerateElementFunction filter = nullptr;
    void *userData = nullptr;
    QString error; // why a handler ended the parse, where nothing else was reported
    int flags = GenerateElement;
    VTXmlBounds *bounds = nullptr; // while a document is read
};

QObject *VTXmlParser::Private::create(const QMetaObject *meta, const QString &localName,
                                      const QXmlAttributes &atts, const QMessageLogger &logger)
{
    QObject *parent = openElements.isEmpty() ? nullptr : openElements.constLast().object.data();
    QObject *object = nullptr;
    if (meta == &VTXmlElement::staticMetaObject)
        object = new VTXmlElement(parent, atts);
    else if (meta)
        object = meta->newInstance(Q_ARG(QObject *, parent), Q_ARG(QXmlAttributes, atts));
    if (meta && !object) {
        object = meta->newInstance(Q_ARG(QObject *, parent));
        if (object && !writeAttributes(object, atts, logger)) {
            delete object;
            return nullptr;
        }
    }
    if (!object)
        report(logger, QStringLiteral("Could not find object for element: %1").arg(localName));
    else if (!object->parent())
        detached.append(object);
    return object;
}

VTXmlParser::VTXmlParser(ShouldGenerateElementFunction filter, void *userData)
    : d(new Private)
{
    d->filter = filter;
    d->userData = userData;
}

VTXmlParser::~VTXmlParser() = default;

void VTXmlParser::registerElement(const QString &name, const QMetaObject *metaObject)
{
    d->registry.insert(name, metaObject);
}

void VTXmlParser::unregisterElement(const QString &name)
{
    d->registry.remove(name);
}

const QMetaObject *VTXmlParser::metaObjectForElement(const QString &name)
{
    return d->registry.value(name);
}

void VTXmlParser::setDefaultElement(const QMetaObject *metaObject)
{
    d->defaultElement = metaObject;
}

const QMetaObject *VTXmlParser::defaultElement() const
{
    return d->defaultElement;
}

QList<QObject *> VTXmlParser::read(const QXmlInputSource *source)
{
    d->flags = GenerateElement;
    d->openElements.clear();
    d->detached.clear();
    d->error.clear();
    if (!source)
        return {};

    // Guarded, because an object that is made inside may delete its parent.
    const QPointer<VTXmlElement> container = new VTXmlElement;
    d->openElements.append({container.data(), GenerateElement});
    setContentHandler(this);
    setErrorHandler(this);
    VTXmlBounds bounds(source);
    d->bounds = &bounds;
    setDeclHandler(&bounds);
    parse(&bounds);
    setDeclHandler(nullptr);
    d->bounds = nullptr;
    if (!container)
        return {};

    const QList<QObject *> objects = container->children();
    for (QObject *object : objects)
        object->setParent(nullptr);
    delete container;
    return objects;
}

QList<QObject *> VTXmlParser::read(const QXmlInputSource &source)
{
    return read(&source);
}

QList<QObject *> VTXmlParser::detachedObjects() const
{
    QList<QObject *> objects;
    for (const QPointer<QObject> &object : qAsConst(d->detached)) {
        if (object)
            objects.append(object);
    }
    return objects;
}

bool VTXmlParser::startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                               const QXmlAttributes &atts)
{
    const QMessageLogger logger(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC);
    if (d->bounds)
        d->bounds->leaveProlog();
    if (d->openElements.size() > maximumDepth) {
        d->error = QStringLiteral("elements are nested too deep");
        return false;
    }
    const QString repeated = repeatedName(atts);
    if (!repeated.isNull()) {
        d->error = QStringLiteral("attribute '%1' redefined").arg(repeated);
        return false;
    }
    if (d->flags & SkipSubtree) {
        d->openElements.append({nullptr, SkipSubtree});
        return true;
    }
    int flags = d->flags;
    if ((flags & GenerateElement) && d->filter)
        flags = d->filter(qName, atts, d->userData);
    d->flags = flagsForChildren(flags);
    if (flags & SkipElement) {
        d->openElements.append({nullptr, d->flags});
        return true;
    }

    const QMetaObject *registered = metaObjectForElement(localName);
    QObject *object = d->create(registered ? registered : d->defaultElement, localName, atts, logger);
    if (!object)
        return false;
    nameObject(object, namespaceURI.trimmed(), qName.trimmed());
    d->openElements.append({object, d->flags});
    return true;
}

bool VTXmlParser::startPrefixMapping(const QString &prefix, const QString &)
{
    return !d->bounds || d->bounds->enterNamespace(prefix);
}

bool VTXmlParser::endPrefixMapping(const QString &prefix)
{
    if (d->bounds)
        d->bounds->leaveNamespace(prefix);
    return true;
}

bool VTXmlParser::endElement(const QString &, const QString &, const QString &)
{
    if (!d->openElements.isEmpty())
        d->openElements.removeLast();
    if (!d->openElements.isEmpty())
        d->flags = d->openElements.constLast().flags;
    return true;
}

bool VTXmlParser::characters(const QString &text)
{
    QObject *object = d->openElements.isEmpty() ? nullptr : d->openElements.constLast().object.data();
    if (!object)
        return true;
    if (VTXmlElement *element = asPlainElement(object)) {
        element->appendContent(text);
        return true;
    }
    const int method = object->metaObject()->indexOfMethod("appendContent(QString)");
    if (method >= 0)
        object->metaObject()->method(method).invoke(object, Q_ARG(QString, text));
    return true;
}

bool VTXmlParser::ignorableWhitespace(const QString &text)
{
    return characters(text);
}

bool VTXmlParser::fatalError(const QXmlParseException &exception)
{
    qDebug().noquote() << QStringLiteral("Fatal error at %1,%2 : %3")
                              .arg(exception.lineNumber())
                              .arg(exception.columnNumber())
                              .arg(reasonOf(exception));
    return false;
}

// The reader only knows that a handler, or the document, ended the parse.
QString VTXmlParser::reasonOf(const QXmlParseException &exception) const
{
    const QString bound = d->bounds ? d->bounds->errorString() : QString();
    for (const QString &reason : {d->error, bound}) {
        if (!reason.isEmpty())
            return reason;
    }
    return exception.message();
}

} // namespace Vidtips
