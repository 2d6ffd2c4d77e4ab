#include "qdeclarativework_p.h"

#include <QtCore/QCoreApplication>
#include <QtQml/QQmlInfo>

#include <private/qqmlcontext_p.h>
#include <private/qqmldata_p.h>

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

static void tellOfNoEnd(const QObject *element)
{
    qmlWarning(element) << QCoreApplication::translate("QDeclarativeWork",
                                                       "Handlers keep changing what they are called for");
}

/** Whether the handlers of Component.onDestruction run in the document that the element stands in. */
bool QDeclarativeWork::isElementGoing() const
{
    const QQmlData *const data = m_element ? QQmlData::get(m_element) : nullptr;
    return data && data->outerContext && data->outerContext->hasEmittedDestruction;
}

void QDeclarativeWork::countItem()
{
    const bool isGoing = isElementGoing();
    if (m_isDoingTasks || isGoing)
        ++m_effort;
    // Each of its items has a handler that may ask for others, which nobody will see.
    if (!isGoing || m_effort < mostEffort || m_isClosed)
        return;
    tellOfNoEnd(m_element);
    close();
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
    if (!isElementGoing())
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
    tellOfNoEnd(m_element);
    m_isExhausted = true;
    QMetaObject::invokeMethod(
        m_element, [this] { m_isExhausted = false; }, Qt::QueuedConnection);
    m_tasks.clear();
    if (m_drop)
        m_drop();
    m_tasks.clear();
}
