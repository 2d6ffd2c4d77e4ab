#pragma once

#include <QtCore/QString>

struct XmlNode;

/** What to write instead of what an XML parser does not take. */
namespace XmlHints {

/**
 * Returns a hint, or nothing, for the error that a parser told in @p words after it had read @p text up to @p
 * offset;
 * @p open is the element that is open there, or null.
 */
QString hintFor(const QString &words, const QString &text, int offset, const XmlNode *open);

} // namespace XmlHints
