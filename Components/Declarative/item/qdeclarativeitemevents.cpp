#include "qdeclarativeitem.h"

#include "qdeclarativeitem_p.h"
#include "qdeclarativekeyfilter_p.h"

bool QDeclarativeItem::keepMouseGrab() const
{
    return d_func()->keepMouse;
}

void QDeclarativeItem::setKeepMouseGrab(bool keep)
{
    Q_D(QDeclarativeItem);
    d->keepMouse = keep;
}

static bool isTabulator(const QKeyEvent *event)
{
    return event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab;
}

/** Lets the key handlers that come before the item have the event; tells whether one of them took it. */
static bool filterEvent(QDeclarativeKeyFilter *filter, QEvent *event)
{
    event->ignore();
    switch (event->type()) {
    case QEvent::KeyPress:
        filter->keyPressed(static_cast<QKeyEvent *>(event), false);
        break;
    case QEvent::KeyRelease:
        filter->keyReleased(static_cast<QKeyEvent *>(event), false);
        break;
    default:
        filter->inputMethodEvent(static_cast<QInputMethodEvent *>(event), false);
        break;
    }
    const bool isTaken = event->isAccepted();
    event->accept();
    return isTaken;
}

bool QDeclarativeItem::sceneEvent(QEvent *event)
{
    Q_D(QDeclarativeItem);
    const QEvent::Type type = event->type();
    if (type == QEvent::FocusIn)
        d->takeSceneFocus();
    else if (type == QEvent::FocusOut)
        d->leaveSceneFocus();
    const bool isInput =
        type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::InputMethod;
    if (isInput && d->keyFilter() && filterEvent(d->keyFilter(), event))
        return true;
    // Graphics View keeps the tabulator keys from keyPressEvent(), for its own chain of widgets.
    if (type == QEvent::KeyPress && isTabulator(static_cast<QKeyEvent *>(event))) {
        keyPressEvent(static_cast<QKeyEvent *>(event));
        if (event->isAccepted())
            return true;
    }
    return QGraphicsObject::sceneEvent(event);
}

void QDeclarativeItem::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
    if (QDeclarativeKeyFilter *filter = d_func()->keyFilter())
        filter->keyPressed(event, true);
}

void QDeclarativeItem::keyReleaseEvent(QKeyEvent *event)
{
    event->ignore();
    if (QDeclarativeKeyFilter *filter = d_func()->keyFilter())
        filter->keyReleased(event, true);
}

void QDeclarativeItem::inputMethodEvent(QInputMethodEvent *event)
{
    event->ignore();
    if (QDeclarativeKeyFilter *filter = d_func()->keyFilter())
        filter->inputMethodEvent(event, true);
}

QVariant QDeclarativeItem::inputMethodQuery(Qt::InputMethodQuery query) const
{
    const QDeclarativeKeyFilter *filter = d_func()->keyFilter();
    const QVariant answer = filter ? filter->inputMethodQuery(query) : QVariant();
    return answer.isValid() ? answer : QGraphicsObject::inputMethodQuery(query);
}
