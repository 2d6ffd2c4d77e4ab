#pragma once

#include <QtCore/QtGlobal>

#include <deque>
#include <functional>

class QObject;

/**
 * The work of an element that must not be disturbed by what it calls into QML on its way.
 *
 * Making an item, moving it, telling of a change: each runs handlers and bindings, and these may ask anything
 * of the very element that is at work. What they ask is postponed, and done in its order when the outermost
 * work in hand is over. What then asks for more is heard, too, but not for ever: after a number of rounds
 * that nothing sensible needs, the rest is dropped with a message, and so is what follows until the event
 * loop is reached again.
 */
class QDeclarativeWork
{
public:
    using Task = std::function<void()>;

    /** @p drop is called when tasks were dropped because they had no end. */
    explicit QDeclarativeWork(Task drop = {})
        : m_drop(std::move(drop))
    {
    }
    Q_DISABLE_COPY(QDeclarativeWork)

    /** The element that works; messages name it. */
    void setElement(QObject *element) { m_element = element; }

    bool isInHand() const { return m_depth > 0 || m_isClosed; }

    /** Whether tasks were dropped because they had no end, and the element had better do nothing more. */
    bool isExhausted() const { return m_isExhausted; }

    /** Keeps @p task for when the work is over; false, and nothing, where none is in hand. */
    bool postpone(Task task);

    /** The same for a @p property that is set: of several values the last one counts. */
    bool postponeSetting(const char *property, Task task);

    /** The same, but before everything that is kept already. */
    bool postponeFirst(Task task);

    /**
     * Tells of an item that was made: tasks that make too many have no end, either. Nor has what handlers of
     * Component.onDestruction ask for, however often: all of that counts together, and closes the work.
     */
    void countItem();

    /** From now on whatever is postponed is dropped: the element is about to go. */
    void close();

    /** Stands for work in hand while it lives. */
    class Scope
    {
    public:
        explicit Scope(QDeclarativeWork *work)
            : m_work(work)
        {
            ++m_work->m_depth;
        }
        ~Scope() { m_work->end(); }
        Q_DISABLE_COPY(Scope)

    private:
        QDeclarativeWork *const m_work;
    };

private:
    struct Kept
    {
        Task task;
        const char *property = nullptr;
    };

    bool isElementGoing() const;
    bool refuses() const { return m_isClosed || (m_isExhausted && m_depth > 0); }
    void end();
    void doTasks();
    bool isTooMuch(int round) const;
    void dropTasks();

    QObject *m_element = nullptr;
    const Task m_drop;
    std::deque<Kept> m_tasks;
    int m_depth = 0;
    int m_effort = 0; ///< tasks done, and items made by them or while the element goes
    bool m_isDoingTasks = false;
    bool m_isExhausted = false;
    bool m_isClosed = false;
};
