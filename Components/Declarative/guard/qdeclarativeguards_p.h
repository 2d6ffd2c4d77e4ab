#pragma once

#include <QtCore/QUrl>

#include <memory>

class QDeclarativeGuard;
class QObject;
class QQmlEngine;

/** The guards of all engines that have one. Any thread. */
namespace QDeclarativeGuards {

/** Returns the guard of @p engine, which may be null; null where it has none. */
std::shared_ptr<QDeclarativeGuard> of(const QQmlEngine *engine);

/** Gives @p engine a guard, or takes it away. GUI thread. */
void set(QQmlEngine *engine, const std::shared_ptr<QDeclarativeGuard> &guard);

/** Shuts everything for what is left of @p engine, whose destructor runs, and then forgets it. */
void end(QQmlEngine *engine);

/** Tells whether the guard of @p element 's engine, if any, refuses @p url, and has the guard hear of it. */
bool refuses(const QUrl &url, const QObject *element);

/** Tells whether that engine has a guard, which then hears that @p what was refused. */
bool refuses(const QString &what, const QObject *element);

/** Tells whether it refuses the picture at @p url, which may show more than its own file. */
bool refusesPicture(const QUrl &url, const QObject *element);

/** What a guard is told of an address that it refuses. */
QString message(const QUrl &url);

} // namespace QDeclarativeGuards
