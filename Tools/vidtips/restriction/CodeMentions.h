#pragma once

#include "Mention.h"

#include <QtCore/QStringList>

/** What QML and scripts ask for: imports, addresses that are written out, functions that reach further. */
namespace CodeMentions {

/** Returns the properties in the QML document @p source that are made to hold addresses. */
QStringList addressPropertiesIn(const QString &source);

/** Returns what the QML document @p source asks for; @p addressProperties are those of other files. */
Mentions inDocument(const QString &source, const QStringList &addressProperties);

/** Returns what the script @p source asks for. */
Mentions inScript(const QString &source, const QStringList &addressProperties);

} // namespace CodeMentions
