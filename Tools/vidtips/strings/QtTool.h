#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/** Qt's own command-line tools. */
namespace QtTool {

/** Returns the path of the tool @p name, beside the Qt that this program uses or on the search path; or
 * nothing. */
QString find(const QString &name);

/**
 * Runs @p program; returns what it said where it failed, and nothing where it worked. What it said then is
 * appended to @p warnings, line by line, where that is given.
 */
QString run(const QString &program, const QStringList &arguments, QStringList *warnings = nullptr);

} // namespace QtTool
