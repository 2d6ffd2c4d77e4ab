#pragma once

#include <QtCore/QString>

/** Translations that are none, but show what is not translated and where there is no room for what is longer.
 */
namespace PseudoText {

/** Returns @p text with accents, a third longer, in brackets; placeholders and tags stay as they are. */
QString of(const QString &text);

} // namespace PseudoText
