#pragma once

class QQmlEngine;

/** The worker scripts of an engine, which run on a thread of their own. */
namespace QDeclarativeWorkers {

/**
 * Interrupts those that there are, for good: the thread cannot end before they do, and whoever destroys the
 * engine waits for it. For when nothing is left that they could tell. GUI thread.
 */
void interrupt(const QQmlEngine *engine);

} // namespace QDeclarativeWorkers
