#pragma once

#include "Position.h"

#include <QtCore/QString>

/** How paths and places are shown to people. */
namespace Places {

/** Returns @p path relative to the current folder where it lies in it. */
QString shown(const QString &path);

/** Returns "path:line:column", as far as the place is known. */
QString shown(const QString &path, Position position);

} // namespace Places
