#pragma once

#include "qdeclarativeitem_p.h"

#include <QtGui/QKeyEvent>

/**
 * Sees the keys of an item before or after the item itself; each item has a chain of them.
 *
 * Every function hands the event to the next filter when it does not accept it.
 */
class QDeclarativeKeyFilter
{
public:
    explicit QDeclarativeKeyFilter(QDeclarativeItem *item);
    virtual ~QDeclarativeKeyFilter() = default;

    /** @p post is true when the item itself did not accept the event. */
    virtual void keyPressed(QKeyEvent *, bool post);
    virtual void keyReleased(QKeyEvent *, bool post);
    virtual void inputMethodEvent(QInputMethodEvent *, bool post);
    virtual QVariant inputMethodQuery(Qt::InputMethodQuery) const;
    virtual void componentComplete();

protected:
    bool isFor(bool post) const { return post == m_afterItem; }

    bool m_afterItem = false;

private:
    Q_DISABLE_COPY(QDeclarativeKeyFilter)
    QDeclarativeKeyFilter *const m_next;
};
