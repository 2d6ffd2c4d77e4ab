#pragma once

#include "Position.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class Content;
class XmlDocument;
struct ControlFile;
struct XmlNode;

/** An attribute that a user interface reads. */
struct VocabularyAttribute
{
    QString name;
    QString about; ///< A sentence for authors.
    bool isRequired = false;
};

/** An element that a user interface reads, and what it reads inside. */
struct VocabularyElement
{
    QString name;
    QString about; ///< A sentence for authors.
    bool hasText = false; ///< Its text is shown.
    bool isRich = false; ///< Its text may hold tags of HTML, written as text.
    int most = 0; ///< How many of them are shown; 0 for any number.
    QString unless; ///< The element in whose place it is shown.
    QVector<VocabularyAttribute> attributes;
    QVector<VocabularyElement> elements;

    const VocabularyAttribute *attribute(const QString &name) const;
    const VocabularyElement *element(const QString &name) const;
    QStringList attributeNames() const;
    QStringList elementNames() const;
};

/**
 * What a user interface reads of a tip, as the file "schema.xml" beside it describes:
 *
 * @code
 * <schema>
 *   <element name="vidtip">
 *     <attribute name="title" about="What the command is called."/>
 *     <element name="summary" text="yes" most="1" about="What it does."/>
 *     <element name="picture" most="1">
 *       <attribute name="source" required="yes" about="A file in the resource folder."/>
 *     </element>
 *   </element>
 * </schema>
 * @endcode
 */
class Vocabulary
{
public:
    /** Attributes that the library itself reads, of "vidtips" and of "vidtip". */
    static const QStringList fileAttributes;
    static const QStringList entryAttributes;

    /** Reads the schema at @p path. */
    static Vocabulary read(const QString &path);

    /**
     * Returns the path of the schema for @p entry, or with a null one for what @p file says itself: that
     * which the attribute "schema" names, or else the file beside the user interface. Empty where there is
     * none.
     */
    static QString pathFor(const Content &content, const ControlFile &file, const XmlNode *entry);

    /**
     * Returns the path of a file that is likely meant as the schema for @p entry, or with a null one for @p
     * file, and has not its name. Empty where there is a schema, or no such file.
     */
    static QString misnamedFor(const Content &content, const ControlFile &file, const XmlNode *entry);

    /** Tells whether it can be judged by. */
    bool isUsable() const { return m_problem.isEmpty(); }

    /** Why not. */
    const QString &problem() const { return m_problem; }
    Position problemPosition() const { return m_position; }

    /** What is read of a tip. */
    const VocabularyElement &tip() const { return m_tip; }

private:
    void readTip(const XmlNode *root);
    VocabularyElement elementFrom(const XmlNode &node);
    VocabularyAttribute attributeFrom(const XmlNode &node);
    QString nameOf(const XmlNode &node);
    bool flagOf(const XmlNode &node, const QString &name);
    int mostOf(const XmlNode &node);
    void refuseRepetitions(const XmlNode &node);
    void refuseOthers(const XmlNode &node, const QStringList &attributes);
    void refuse(Position position, const QString &problem);

    VocabularyElement m_tip;
    QString m_problem;
    Position m_position;
};

/** The schemas that have been read, by their paths. */
class Vocabularies
{
public:
    const Vocabulary &at(const QString &path);

private:
    QMap<QString, Vocabulary> m_read;
};
