#pragma once

#include <QtCore/QString>

/** The names of locales that people write. */
namespace Locales {

/** Returns what is wrong with @p name, or nothing. "C", which Qt makes of a name unknown to it, is wrong. */
QString problemWith(const QString &name);

} // namespace Locales
