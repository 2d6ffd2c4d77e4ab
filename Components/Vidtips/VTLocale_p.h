#pragma once

#include <QtCore/QLocale>

namespace Vidtips {

/**
 * Returns the locale called @p name, as QLocale does, from those that were asked for before in this thread:
 * Qt goes through its tables each time, which takes a tenth of what showing a tip takes.
 */
QLocale localeNamed(const QString &name);

} // namespace Vidtips
