#pragma once

class QObject;
class QQmlEngine;

/** The worker scripts of an engine, which run on a thread of their own. */
namespace QDeclarativeWorkers {

/**
 * Has the worker scripts of @p engine find no more of the program than others of its scripts. GUI thread,
 * before it runs any.
 */
void adopt(const QQmlEngine *engine);

using MakeObject = QObject *(*)();

/** Has worker scripts of all adopted engines find what @p make makes, for each thread, as Qt.application. */
void setApplication(MakeObject make);

/** Lets go of @p engine, whose threads have ended. */
void forget(const QQmlEngine *engine);

/**
 * Returns the adopted engine whose worker scripts the current thread runs; null on any other thread. What it
 * points to may be about to go.
 */
const QQmlEngine *engine();

/**
 * Interrupts those that there are, for good: the thread cannot end before they do, and whoever destroys the
 * engine waits for it. For when nothing is left that they could tell. GUI thread.
 */
void interrupt(const QQmlEngine *engine);

} // namespace QDeclarativeWorkers
