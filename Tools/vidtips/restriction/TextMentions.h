#pragma once

#include "Mention.h"

#include <QtCore/QStringList>

/** What other files and texts ask for. */
namespace TextMentions {

/** Returns the addresses of pictures in the styled text @p text, and of documents in a query. */
QStringList addressesInMarkup(const QString &text);

/** Returns what the file "qmldir" with the content @p text asks for. */
Mentions inModule(const QString &text);

/** Returns what a description of borders with the content @p text asks for. */
Mentions inBorders(const QString &text);

} // namespace TextMentions
