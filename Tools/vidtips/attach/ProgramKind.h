#pragma once

#include <QtCore/QString>

/** What kind of program a file is, as far as that can be known before it is started. */
namespace ProgramKind {

/** Returns the path of the program that a shell would start for @p command; empty where there is none. */
QString find(const QString &command);

/**
 * Returns why no tips can be attached to the program that @p command names and that is at @p path, or
 * nothing. A script, and a program that may load Qt later, has to be tried.
 */
QString problemWith(const QString &command, const QString &path);

} // namespace ProgramKind
