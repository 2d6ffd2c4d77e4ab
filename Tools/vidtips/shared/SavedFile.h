#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/** Files that are written as a whole or not at all. */
namespace SavedFile {

/**
 * Writes @p content to the file at @p path, which is replaced once everything is written; its folder is
 * there. Returns what is wrong, or nothing.
 */
QString write(const QString &path, const QByteArray &content);

} // namespace SavedFile
