#pragma once

#include "shared/Position.h"

#include <QtCore/QString>

class Content;
class Findings;
class XmlDocument;
struct ControlFile;
struct XmlNode;

/** Checks the texts of entries for placeholders that are not written as the library fills them in. */
class TextCheck
{
public:
    void run(const Content &content, Findings &findings);

    /** Returns what is wrong with the placeholder of @p text at @p offset, where "%(" stands; empty if
     * nothing is. */
    static QString problemWith(const QString &text, int offset);

private:
    void checkNode(const ControlFile &file, const XmlNode &node, Findings &findings);
};
