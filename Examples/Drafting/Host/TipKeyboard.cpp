#include "TipKeyboard.h"

#include "TipHost.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>

TipKeyboard::TipKeyboard(TipHost *host, QObject *parent)
    : QObject(parent)
    , m_host(host)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool TipKeyboard::eventFilter(QObject *watched, QEvent *event)
{
    if (watched->isWidgetType() && event->type() == QEvent::KeyPress)
        callTip(static_cast<QKeyEvent *>(event));
    return false;
}

void TipKeyboard::callTip(const QKeyEvent *event)
{
    const int required = m_host->context().get(Vidtips::RequiredModifiers, 0).toInt();
    if (required == Qt::ControlModifier && event->key() == Qt::Key_Control && !event->isAutoRepeat())
        m_host->showUnderPointer();
}
