#include "qdeclarativework_p.h"

#include <QtCore/QCoreApplication>
#include <QtQml/QQmlInfo>

#include <algorithm>
#include <utility>

static const int mostRounds = 250;
// From a round on in which a model of any size is filled and told of.
static const int mostEffort = 20000;
static const int freeRounds = 4;

bool QDeclarativeWork::postpone(Task task)
{
    if (refuses())
        return true;
    if (m_depth == 0)
        return false;
    m_tasks.push_back({std::move(task), nullptr});
    return true;
}

bool QDeclarativeWork::postponeSetting(const char *property, Task task)
{
    const auto same = std::find_if(m_tasks.begin(), m_tasks.end(), [property](const Kept &kept) {
        return qstrcmp(kept.property, property) == 0;
    });
    if (same != m_tasks.end()) {
        same->task = std::move(task);
        return true;
    }
    if (!postpone(std::move(task)))
        return false;
    if (!m_tasks.empty())
        m_tasks.back().property = property;
    return true;
}

bool QDeclarativeWork::postponeFirst(Task task)
{
    if (refuses())
        return true;
    if (m_depth == 0)
        return false;
    m_tasks.push_front({std::move(task), nullptr});
    return true;
}

void QDeclarativeWork::countItem()
{
    if (m_isDoingTasks)
        ++m_effort;
}

void QDeclarativeWork::close()
{
    m_isClosed = true;
    m_tasks.clear();
}

void QDeclarativeWork::end()
{
    if (--m_depth == 0 && !m_isDoingTasks && !m_tasks.empty())
        doTasks();
}

/** Does what is kept, by rounds: what the tasks of one round bring up makes the next. */
void QDeclarativeWork::doTasks()
{
    m_isDoingTasks = true;
    m_effort = 0;
    size_t left = m_tasks.size();
    for (int round = 0; !m_tasks.empty() && !isTooMuch(round); --left, ++m_effort) {
        if (left == 0) {
            left = m_tasks.size();
            ++round;
        }
        const Task task = std::move(m_tasks.front().task);
        m_tasks.pop_front();
        task();
    }
    if (!m_tasks.empty())
        dropTasks();
    m_isDoingTasks = false;
}

bool QDeclarativeWork::isTooMuch(int round) const
{
    return round >= mostRounds || (round >= freeRounds && m_effort >= mostEffort);
}

void QDeclarativeWork::dropTasks()
{
    qmlWarning(m_element) << QCoreApplication::translate("QDeclarativeWork",
                                                         "Handlers keep changing what they are called for");
    m_isExhausted = true;
    QMetaObject::invokeMethod(
        m_element, [this] { m_isExhausted = false; }, Qt::QueuedConnection);
    m_tasks.clear();
    if (m_drop)
        m_drop();
    m_tasks.clear();
}
