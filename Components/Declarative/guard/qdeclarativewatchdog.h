#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtCore/QObject>

#include <memory>

class QQmlEngine;
struct QDeclarativeWatched;

/**
 * Interrupts what scripts of an engine do when they hold the GUI thread for too long: one that does not
 * return, and any number of them that keep the thread from looking for events; and when they have made more
 * items than any content needs, of which no delegates are made any more.
 *
 * A thread of its own looks at the engine, at most once in a timeout while the GUI thread is at work and not
 * at all while that waits. What no script does, such as a long layout, is not interrupted, nor is a native
 * function that a script calls. GUI thread only.
 */
class VIDTIPS_DECLARATIVE_EXPORT QDeclarativeWatchdog : public QObject
{
    Q_OBJECT

public:
    /** Why scripts were interrupted. */
    enum Reason {
        LongWork, ///< they held the GUI thread for longer than the timeout
        ManyItems ///< there were more than mostItems()
    };

    /** Makes one that lets scripts of @p engine, which outlives it, run for ever. */
    explicit QDeclarativeWatchdog(QQmlEngine *engine, QObject *parent = nullptr);
    ~QDeclarativeWatchdog() override;

    /** Returns after how many milliseconds scripts are interrupted; 0 or less: never. */
    int timeout() const;

    /** Sets after how many milliseconds scripts are interrupted. */
    void setTimeout(int timeout);

    /** Returns how many items the engine may have; above that, scripts are interrupted in any case. */
    static int mostItems();

    /** Returns why scripts were interrupted for the last time. */
    Reason reason() const;

    /** Begins the time anew; for who is about to run scripts. */
    void restart();

    /** What happens between these takes none of the time, and scripts are not interrupted; they nest. */
    void beginPause();
    void endPause();

    /** Lets scripts run that are interrupted, without the signal, and tells whether they were. */
    bool resume();

Q_SIGNALS:
    /** Emitted by the event loop after scripts were interrupted; they may run again by then. */
    void interrupted();

private:
    VIDTIPS_DECLARATIVE_NO_EXPORT Q_INVOKABLE void announce();

    const std::unique_ptr<QDeclarativeWatched> d;
};
