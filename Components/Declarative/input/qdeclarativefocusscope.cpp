#include "qdeclarativefocusscope_p.h"

#include <QtCore/QEvent>

QDeclarativeFocusScope::QDeclarativeFocusScope(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
{
    setFlag(ItemIsFocusScope);
}

QDeclarativeFocusPanel::QDeclarativeFocusPanel(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
{
    setFlag(ItemIsPanel);
}

bool QDeclarativeFocusPanel::sceneEvent(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate)
        Q_EMIT activeChanged();
    return QDeclarativeItem::sceneEvent(event);
}
