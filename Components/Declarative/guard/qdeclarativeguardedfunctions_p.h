#pragma once

#include <QtCore/QString>
#include <QtCore/QUrl>

class QQmlEngine;

/** The functions by which scripts reach further than their content. */
namespace QDeclarativeGuardedFunctions {

/** A line of a script; line 0 of no file where no script runs. */
struct Place
{
    QUrl file;
    int line = 0;
};

/** Returns the line that @p engine runs; none on another thread than the engine's. */
Place placeOf(const QQmlEngine *engine);

/** Has those of @p engine ask its guard, while it has one. A second time changes nothing. */
void install(QQmlEngine *engine);

/** Lets go of what is kept of @p engine, which is about to go. */
void forget(QQmlEngine *engine);

/**
 * Tells whether @p engine has a guard, which then hears that @p what was refused, and where. The script that
 * runs, if any, is given an error.
 */
bool refuses(QQmlEngine *engine, const QString &what);

} // namespace QDeclarativeGuardedFunctions
