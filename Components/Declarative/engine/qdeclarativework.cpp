#include "qdeclarativework_p.h"

#include <QtCore/QCoreApplication>
#include <QtQml/QQmlInfo>

#include <utility>

static const int mostRounds = 250;

bool QDeclarativeWork::postpone(Task task)
{
    if (m_isClosed || (m_isExhausted && m_depth > 0))
        return true;
    if (m_depth == 0)
        return false;
    m_tasks.push_back(std::move(task));
    return true;
}

bool QDeclarativeWork::postponeFirst(Task task)
{
    if (m_isClosed || (m_isExhausted && m_depth > 0))
        return true;
    if (m_depth == 0)
        return false;
    m_tasks.push_front(std::move(task));
    return true;
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
    size_t left = m_tasks.size();
    for (int round = 0; !m_tasks.empty() && round < mostRounds; --left) {
        if (left == 0) {
            left = m_tasks.size();
            ++round;
        }
        const Task task = std::move(m_tasks.front());
        m_tasks.pop_front();
        task();
    }
    if (!m_tasks.empty())
        dropTasks();
    m_isDoingTasks = false;
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
