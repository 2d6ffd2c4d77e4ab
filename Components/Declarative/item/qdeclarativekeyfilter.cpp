#include "qdeclarativekeyfilter_p.h"

QDeclarativeKeyFilter::QDeclarativeKeyFilter(QDeclarativeItem *item)
    : m_next(item ? QDeclarativeItemPrivate::get(item)->keyFilter() : nullptr)
{
    if (item)
        QDeclarativeItemPrivate::get(item)->setKeyFilter(this);
}

void QDeclarativeKeyFilter::keyPressed(QKeyEvent *event, bool post)
{
    if (m_next)
        m_next->keyPressed(event, post);
}

void QDeclarativeKeyFilter::keyReleased(QKeyEvent *event, bool post)
{
    if (m_next)
        m_next->keyReleased(event, post);
}

void QDeclarativeKeyFilter::inputMethodEvent(QInputMethodEvent *event, bool post)
{
    if (m_next)
        m_next->inputMethodEvent(event, post);
    else
        event->ignore();
}

QVariant QDeclarativeKeyFilter::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return m_next ? m_next->inputMethodQuery(query) : QVariant();
}

void QDeclarativeKeyFilter::componentComplete()
{
    if (m_next)
        m_next->componentComplete();
}
