#pragma once

#include <QtCore/QString>

/** How shortcuts are written for people. */
namespace ShortcutName {

/** Returns what is misspelt in @p shortcut, and what was meant; nothing where nothing is known to be. */
QString problemWith(const QString &shortcut);

} // namespace ShortcutName
