#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtXml/QXmlDefaultHandler>
#include <QtXml/QXmlSimpleReader>

#include <memory>

class QObject;

namespace Vidtips {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

/**
 * Turns an XML document into a tree of objects, one per element that the caller's filter lets through.
 *
 * The class of an element's object is the one registered for its local name, else the default class,
 * VTXmlElement at first. A class takes part by an invokable constructor: (QObject *, QXmlAttributes) receives
 * the attributes itself; with (QObject *) alone the attributes are written to the properties of their names.
 * The properties "tagName" and "tagNameSpace" and the method appendContent(QString) are used where a class
 * has them.
 *
 * Problems go to the Qt debug output. External entities are never fetched. A document that is nested deeper
 * than maximumDepth ends there, because the reader, and deleting or searching the tree, recurse into it. So
 * does one with an attribute that stands twice in an element, which is malformed but passes the reader, and
 * one with more than 1,000 declared entities, whose entities expand to more than a million characters, or
 * with more than 30 namespaces in scope. One thread at a time uses a parser.
 */
class VIDTIPS_EXPORT VTXmlParser : public QXmlSimpleReader, public QXmlDefaultHandler
{
public:
    /** What becomes of an element; a filter returns a combination. */
    enum GenerationFlag {
        GenerateElement = 1, ///< make its object, and ask the filter about each of its children.
        GenerateSubtree = 2, ///< make its object and those of everything inside it, without asking.
        SkipElement = 4, ///< make no object for it; its children are still examined.
        SkipSubtree = 8, ///< make nothing inside it, without asking.
    };

    /** The deepest level of elements, with or without objects, that is read; the document element is 1. */
    static constexpr int maximumDepth = 2000;

    /**
     * Decides about one element: returns GenerationFlag values for its qualified name and attributes.
     * @p userData is the pointer given to the parser.
     */
    using ShouldGenerateElementFunction = int (*)(const QString &qName, const QXmlAttributes &atts,
                                                  void *userData);

    /** Makes a parser that asks @p filter with @p userData; both may be null. No filter lets all through. */
    explicit VTXmlParser(ShouldGenerateElementFunction filter = nullptr, void *userData = nullptr);
    ~VTXmlParser() override;

    /** Makes @p metaObject the class of elements called @p name, in place of an earlier one. */
    void registerElement(const QString &name, const QMetaObject *metaObject);

    /** Makes elements called @p name use the default class again. */
    void unregisterElement(const QString &name);

    /** Returns the class registered for @p name, or null. Case matters. */
    const QMetaObject *metaObjectForElement(const QString &name);

    /** Sets the class of elements whose name is not registered. With null, such an element ends the parse. */
    void setDefaultElement(const QMetaObject *metaObject);

    /** Returns the class of elements whose name is not registered. */
    const QMetaObject *defaultElement() const;

    /**
     * Parses @p source and returns the objects of the top-level elements, without a parent; the caller owns
     * them. A document that breaks off gives what was made until then, a null source nothing.
     *
     * An element nested in one that got no object has no parent and is not returned: see detachedObjects().
     */
    QList<QObject *> read(const QXmlInputSource *source);

    /** Parses @p source; see the other form. */
    QList<QObject *> read(const QXmlInputSource &source);

    /**
     * Returns the objects of the last read() that had no parent once they were made, because the element
     * around them got no object or their class did not take it, and that still exist. The parser never
     * deletes them; whoever does not want them may.
     */
    QList<QObject *> detachedObjects() const;

    /** Makes the element's object where the filter says so. Returns false to stop the reader. */
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;

    /** Returns false to stop the reader where too many namespaces are in scope. */
    bool startPrefixMapping(const QString &prefix, const QString &uri) override;

    /** Notes that @p prefix is out of scope. Always returns true. */
    bool endPrefixMapping(const QString &prefix) override;

    /** Closes the element; its object stays alive. */
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;

    /** Appends @p text to the open element's object, if its class can take it. Always returns true. */
    bool characters(const QString &text) override;

    /** Does what characters() does. */
    bool ignorableWhitespace(const QString &text) override;

    /** Reports @p exception and returns false. */
    bool fatalError(const QXmlParseException &exception) override;

protected:
    /** Returns why the document breaks off where @p exception says. */
    QString reasonOf(const QXmlParseException &exception) const;

private:
    struct Private;
    std::unique_ptr<Private> const d;
};

QT_WARNING_POP

} // namespace Vidtips
