#pragma once

#include <functional>

class QQmlComponent;
class QQmlEngine;

/**
 * How many items the content of an engine has made and not destroyed. It lives until it has ended and its
 * last item is gone. GUI thread only.
 */
class QDeclarativeItemCount
{
public:
    /** More than any tip needs; what makes more goes on making them. */
    static constexpr int most = 100000;

    /** Begins to count items of @p engine, and to call @p exceeded for each that is made above the most. */
    static QDeclarativeItemCount *begin(const QQmlEngine *engine, const std::function<void()> &exceeded);

    /** Counts no new items from now on. */
    void end();

    /** Returns the count of @p engine, which may be null; null where its items are not counted. */
    static QDeclarativeItemCount *of(const QQmlEngine *engine);

    /** Tells whether @p engine has more items than it may have. */
    static bool isExceeded(const QQmlEngine *engine);

    /**
     * Tells whether @p component makes few enough objects, in all of its files, and has room for them; if
     * not, that is told of as if they had been made. For who is about to have it make them.
     */
    static bool admits(QQmlComponent *component);

    /** One item more. */
    void add()
    {
        if (++m_items > most)
            m_exceeded();
    }

    /** One item less. */
    void drop()
    {
        if (--m_items == 0 && !m_engine)
            delete this;
    }

private:
    QDeclarativeItemCount(const QQmlEngine *engine, const std::function<void()> &exceeded);

    const QQmlEngine *m_engine; ///< null when it has ended
    std::function<void()> m_exceeded;
    int m_items = 0;
};
