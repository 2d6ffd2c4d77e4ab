#pragma once

#include <QtCore/QString>

class QObject;
class QQmlAbstractUrlInterceptor;
class QUrl;

namespace QDeclarativeLocalFile {

/**
 * Tells whether an address names something local that exists and is not a regular file.
 *
 * A folder cannot be read, and a named pipe or a device may keep its reader waiting, or reading, for ever.
 */
bool isRefused(const QUrl &);

/** What to report of an address that is refused. */
QString message(const QUrl &);

/** Tells the same, and whether the guard of the engine that made @p element refuses the address. */
bool isRefused(const QUrl &, const QObject *element);

/** Tells the same of the address of a picture, and whether the guard refuses what is in that. */
bool isPictureRefused(const QUrl &, const QObject *element);

/** Reports an address that is refused to @p element as a warning of that, and returns whether it is. */
bool refuse(const QUrl &, const QObject *element);

/**
 * Where an engine is to look for the code that is at an address: there, or where there is nothing if that is
 * a named pipe or a device. Any thread.
 */
QUrl codeAt(const QUrl &);

/** Has engines look there. It is none's own, and lives on. */
QQmlAbstractUrlInterceptor *interceptor();

} // namespace QDeclarativeLocalFile
