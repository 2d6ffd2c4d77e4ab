#pragma once

#include <QtCore/qglobal.h>

/** Since when the GUI thread has been at work, without looking for new events. */
namespace QDeclarativeWorkTime {

/** Called on the GUI thread when its work begins. */
using Begun = void (*)();

/** Begins to keep the time, and to call @p begun. GUI thread, where it must not be kept already. */
void follow(Begun begun);

/** Ends to keep the time. GUI thread. */
void leave();

/** Begins the time anew, as if @p elapsed milliseconds had gone by. GUI thread. */
void restart(qint64 elapsed = 0);

/** How long it has been, in milliseconds; -1 while the thread waits for events. Any thread. */
qint64 elapsed();

} // namespace QDeclarativeWorkTime
