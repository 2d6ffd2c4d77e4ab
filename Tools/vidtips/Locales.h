#pragma once

#include <QtCore/QString>

/** The names of locales that people write. */
namespace Locales {

/** Returns what is wrong with @p name, or nothing. Qt makes "C" of what it does not know, so that is wrong
 * too. */
QString problemWith(const QString &name);

} // namespace Locales
