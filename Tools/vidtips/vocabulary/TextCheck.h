#pragma once

#include "shared/Position.h"

#include <QtCore/QString>
#include <QtCore/QVector>

class Content;
class Findings;
class XmlDocument;
struct ControlFile;
struct XmlNode;

/** Something that is wrong in a text. */
struct TextMistake
{
    QString code; ///< Of the finding.
    int offset = 0;
    QString message;
};

/** Checks the texts of entries: placeholders, letters, shortcuts, and whether they are translated. */
class TextCheck
{
public:
    void run(const Content &content, Findings &findings);

    /** Returns what is wrong with the placeholder of @p text at @p offset, where "%(" stands; empty if
     * nothing is. */
    static QString problemWith(const QString &text, int offset);

    /** Returns what is wrong in @p text, but for what an element or an attribute is for. */
    static QVector<TextMistake> mistakesIn(const QString &text);

private:
    static void checkContexts(const ControlFile &file, Findings &findings);
    void checkNode(const ControlFile &file, const XmlNode &node, Findings &findings);
};
