#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/** The ffmpeg command, which does what is done to recordings. */
namespace Ffmpeg {

/** Returns why there is no such command; empty where there is one. */
QString missing();

/**
 * Runs the command with @p arguments, however long that takes; returns why it failed, in one line, and
 * nothing where it worked.
 */
QString run(const QStringList &arguments);

/** Returns what is to be told of @p said, which the command wrote before it failed. */
QString reasonFrom(const QString &said);

} // namespace Ffmpeg
