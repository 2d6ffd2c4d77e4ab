#pragma once

#include <QtCore/QString>

/**
 * Where a test finds files of the project.
 *
 * The folders are known to one object file only: nothing else needs compiling anew for a tree that stands
 * elsewhere.
 */
namespace TestPaths {

/** Returns the path of the file that is @p path in the sources. */
QString source(const QString &path);

/** Returns the path of the file that is @p path where everything is built. */
QString built(const QString &path);

} // namespace TestPaths
