#pragma once

#include <QtCore/QtGlobal>

#include <functional>

class QObject;

/**
 * How deep changes are nested that bring each other about.
 *
 * A property that is bound to another one, which is bound to a third, makes a chain; each link of it runs in
 * the call of the one before, until a few thousand of them have used up the stack. Beyond a depth that little
 * reaches, what follows waits until the calls before it have returned. A chain without end is broken off with
 * a message.
 */
class QDeclarativeDepth
{
public:
    QDeclarativeDepth();
    ~QDeclarativeDepth();
    Q_DISABLE_COPY(QDeclarativeDepth)

    /** Whether what comes next had better wait. */
    bool isTooDeep() const;

    /** Has @p task done once the calls around have returned; a message that there is no end names @p object.
     */
    static void later(const QObject *object, std::function<void()> task);

    /** Has signals that QML hears followed no deeper than that from now on. To be called often: it is cheap.
     */
    static void watchSignals();
};
