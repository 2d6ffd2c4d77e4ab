#include "qdeclarativedepth_p.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtQml/QQmlInfo>

#include <private/qmetaobject_p.h>
#include <private/qobject_p.h>

#include <deque>
#include <utility>

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
const int mostLevels = 60; // whose frames are many times as large
#else
const int mostLevels = 300;
#endif
const int mostGenerations = 1000; // of tasks that come of each other, each of which may go half as deep again
const int mostTasks = 1000000; // of all generations together

thread_local int levels = 0;
thread_local int generation = 0; ///< of the task that is being done
thread_local int given = 0; ///< tasks since there was none
thread_local bool isDoingTasks = false;
thread_local bool isBrokenOff = false; ///< what is under way has no end, and nothing more comes of it
thread_local bool isExhausted =
    false; ///< until the event loop is reached little is allowed, and nothing waits

struct Task
{
    std::function<void()> work;
    int generation; ///< one more than that of the task it comes of
};
thread_local std::deque<Task> tasks;

using SignalHook = void (*)(QAbstractDeclarativeData *, QObject *, int, void **);
SignalHook engineHook = nullptr;

void emitLater(QObject *sender, int signal)
{
    const QPointer<QObject> guard(sender);
    QDeclarativeDepth::later(sender, [guard, signal] {
        QAbstractDeclarativeData *data = guard ? QObjectPrivate::get(guard)->declarativeData : nullptr;
        void *arguments[] = {nullptr};
        if (data)
            QAbstractDeclarativeData::signalEmitted(data, guard, signal, arguments);
    });
}

void signalEmitted(QAbstractDeclarativeData *data, QObject *sender, int signal, void **arguments)
{
    const QDeclarativeDepth depth;
    if (isBrokenOff)
        return;
    // What a signal passes along is gone later.
    if (depth.isTooDeep() && QMetaObjectPrivate::signal(sender->metaObject(), signal).parameterCount() == 0)
        emitLater(sender, signal);
    else
        engineHook(data, sender, signal, arguments);
}

/** Lets nothing more come of what is under way, since each of the calls around could begin anew. */
void breakOff(const QObject *object)
{
    tasks.clear();
    given = 0;
    isBrokenOff = true;
    if (std::exchange(isExhausted, true))
        return;
    qmlWarning(object) << QCoreApplication::translate("QDeclarativeDepth",
                                                      "Changes bring each other about without end");
    auto *dispatcher = QAbstractEventDispatcher::instance();
    QMetaObject::invokeMethod(
        dispatcher, [] { isBrokenOff = isExhausted = false; }, Qt::QueuedConnection);
}

void doTasks()
{
    isDoingTasks = true;
    while (!tasks.empty()) {
        const Task task = std::move(tasks.front());
        tasks.pop_front();
        generation = task.generation;
        task.work();
    }
    generation = given = 0;
    isDoingTasks = false;
}

} // namespace

QDeclarativeDepth::QDeclarativeDepth()
{
    ++levels;
}

QDeclarativeDepth::~QDeclarativeDepth()
{
    // Half way up there is room for as much again.
    --levels;
    if (levels == 0)
        isBrokenOff = false;
    if (levels == mostLevels / 2 && !tasks.empty() && !isDoingTasks)
        doTasks();
}

bool QDeclarativeDepth::isTooDeep() const
{
    return levels > (isExhausted ? mostLevels / 10 : mostLevels);
}

void QDeclarativeDepth::later(const QObject *object, std::function<void()> task)
{
    if (generation < mostGenerations && given < mostTasks && !isExhausted) {
        tasks.push_back({std::move(task), generation + 1});
        ++given;
    } else {
        breakOff(object);
    }
}

void QDeclarativeDepth::watchSignals()
{
    // Set by the first engine, whose first object comes later than the types.
    if (!QAbstractDeclarativeData::signalEmitted || QAbstractDeclarativeData::signalEmitted == &signalEmitted)
        return;
    engineHook = QAbstractDeclarativeData::signalEmitted;
    QAbstractDeclarativeData::signalEmitted = &signalEmitted;
}
