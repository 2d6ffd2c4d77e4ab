#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtXml/QXmlAttributes>

#include <memory>

namespace Vidtips {

/**
 * One element of a content file: its tag name, namespace, attributes and text, with the elements inside it as
 * child objects.
 *
 * The tag name is the object name, so QObject::findChild() finds elements by tag. Deleting an element deletes
 * everything inside it. VTXmlParser makes elements through the invokable constructors, and QML reads them
 * through the properties and invokable methods. An element is used on the thread that owns it.
 */
class VIDTIPS_EXPORT VTXmlElement : public QObject
{
    Q_OBJECT
    /** The tag name, prefix included. */
    Q_PROPERTY(QString tagName READ getTagName WRITE setTagName NOTIFY tagNameChanged)
    /** The URI of the tag's namespace. */
    Q_PROPERTY(QString tagNameSpace READ getTagNameSpace WRITE setTagNameSpace NOTIFY tagNameSpaceChanged)
    /** The text between the tags, white space included. */
    Q_PROPERTY(QString content READ content NOTIFY contentChanged)
    /** What to call the element: the attribute "title", unless something else is set. */
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY contentChanged)

public:
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    /**
     * Makes an element owned by @p parent, if there is one, with the attributes @p attrs under their
     * qualified names. Emits no signal.
     */
    Q_INVOKABLE explicit VTXmlElement(QObject *parent = nullptr,
                                      const QXmlAttributes &attrs = QXmlAttributes());
    QT_WARNING_POP
    ~VTXmlElement() override;

    /** Returns the tag name, prefix included. */
    QString getTagName() const;

    /** Sets the tag name. Emits tagNameChanged(), also when the name stays the same. */
    void setTagName(const QString &tagName);

    /** Returns the URI of the tag's namespace; empty unless set. */
    QString getTagNameSpace() const;

    /** Sets the URI of the tag's namespace. Emits tagNameSpaceChanged(), also when it stays the same. */
    void setTagNameSpace(const QString &tagNameSpace);

    /** Returns the text between the tags, as it stood in the file, white space included. */
    QString content() const;

    /** Replaces the text and emits contentChanged(). QML can only append. */
    void setContent(const QString &content);

    /**
     * Returns the title: what setTitle() set, else the value of the attribute "title". A kept tip that
     * becomes a window by itself has it in its title bar.
     */
    QString title() const;

    /**
     * Sets the title, for example to its translation; the attribute stays. A null string gives the
     * attribute's value back. Emits contentChanged().
     */
    void setTitle(const QString &title);

    /** Stores @p value under @p name, replacing a value that is there. Emits nothing. */
    void setAttribute(const QString &name, const QString &value);

    /** Returns the attributes' names in ascending order of their code units. */
    QStringList attributeNames() const;

    /**
     * Returns the first element inside this one whose tag name is @p name, or null. Direct children come
     * first, then what is inside each child in turn. A null @p name matches every element, an empty one those
     * without a tag name.
     */
    Q_INVOKABLE VTXmlElement *childElement(const QString &name) const;

    /**
     * Returns every object inside this one, at any depth and of any class, whose name is @p name, each
     * followed by the matches inside it. An empty @p name matches every object.
     */
    Q_INVOKABLE QList<QObject *> childElementList(const QString &name) const;

    /** Returns the value of the attribute @p name, or a null string when there is none. */
    Q_INVOKABLE QString attribute(const QString &name) const;

    /** Tells whether there is an attribute @p name; an empty value counts. */
    Q_INVOKABLE bool hasAttribute(const QString &name) const;

    /** Appends @p content to the text and emits contentChanged(). */
    Q_INVOKABLE void appendContent(const QString &content);

    /**
     * Renders the element and the elements inside it as indented lines of tags, for reading and logs: text
     * and namespaces are left out and values are not escaped. @p index is the indentation of this element's
     * own lines, in blanks, 4096 at most; each level adds two. The last line has no line break.
     *
     * Each line is filled in by one QString::arg() after the other, so marker-like text in a name or value
     * ("%3") takes part in the later substitutions.
     */
    Q_INVOKABLE QString toXml(int index = 0) const;

Q_SIGNALS:
    /** Emitted whenever the tag name is set. */
    void tagNameChanged();

    /** Emitted whenever the namespace is set. */
    void tagNameSpaceChanged();

    /** Emitted whenever text is set or appended, or the title is set. */
    void contentChanged();

private:
    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
