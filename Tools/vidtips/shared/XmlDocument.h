#pragma once

#include "Encoding.h"
#include "Position.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <memory>
#include <vector>

/** An attribute and where its name stands. */
struct XmlAttribute
{
    QString name;
    QString value;
    Position position;
};

/** A piece of text between two tags, and where its first character that is no blank stands. */
struct XmlText
{
    QString text;
    Position position;
    int offset = 0; ///< Where the piece begins in the text of the file.
    int end = 0; ///< Where it ends there.
};

/** An element and where its tag begins. */
struct XmlNode
{
    QString name; ///< The qualified name, as the library compares it.
    QString nameSpace;
    Position position;
    QVector<XmlAttribute> attributes;
    QString text; ///< The element's own text, without that of its children.
    QVector<XmlText> texts; ///< The same, piece by piece.
    std::vector<std::unique_ptr<XmlNode>> children;

    /** Returns the attribute @p name, or null. */
    const XmlAttribute *find(const QString &name) const;

    /** Returns the value of the attribute @p name; a null text without one. */
    QString attribute(const QString &name) const;

    /** Returns where the attribute @p name stands; where there is none, where the element does. */
    Position positionOf(const QString &name) const;
};

/**
 * An XML file with the place of everything in it.
 *
 * The text is decoded as the library does, and the file counts as well-formed where both the strict reader
 * used here and the library's own parser say so.
 */
class XmlDocument
{
public:
    /** Reads the file at @p path. */
    static XmlDocument read(const QString &path);

    bool isReadable() const { return m_readable; }

    /** The decoded text of the file. */
    const QString &text() const { return m_text; }

    /** The document element; null where the text has none. What comes before an error is kept. */
    const XmlNode *root() const { return m_root.get(); }

    /** What is wrong with the XML, and what to write instead where that is known; empty where nothing is. */
    const QString &error() const { return m_error; }
    Position errorPosition() const { return m_errorPosition; }

    /** Where the bytes are not in the encoding that they should be in; its message is empty where they are.
     */
    const Encoding::Problem &encodingProblem() const { return m_encodingProblem; }

    /** Tells whether the file is UTF-16, which the library does not take for a control file. */
    bool isUtf16() const { return m_isUtf16; }

    /** Returns the place of the character at @p offset. */
    Position positionAt(int offset) const;

private:
    void parse();
    void setError(const QString &words, int offset, const XmlNode *open);
    void askLibrary();
    int errorOffset(int readUpTo) const;
    XmlText textAt(int start, int end, const QString &text) const;
    std::unique_ptr<XmlNode> nodeAt(class QXmlStreamReader &reader) const;

    QString m_text;
    QVector<int> m_lineStarts;
    std::unique_ptr<XmlNode> m_root;
    QString m_error;
    Position m_errorPosition;
    Encoding::Problem m_encodingProblem;
    bool m_readable = false;
    bool m_isUtf16 = false;
};
