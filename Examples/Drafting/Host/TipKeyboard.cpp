#include "TipKeyboard.h"

#include "TipHost.h"

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QWidget>

TipKeyboard::TipKeyboard(TipHost *host, QObject *parent)
    : QObject(parent)
    , m_host(host)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool TipKeyboard::handles(const QKeyEvent *event) const
{
    return event->key() == Qt::Key_Escape && !m_host->shownKey().isEmpty();
}

bool TipKeyboard::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWidgetType())
        return false;
    if (event->type() == QEvent::ShortcutOverride && handles(static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    callTip(key);
    if (!handles(key))
        return false;
    m_host->hide();
    return true;
}

// Where tips appear only with a key held, pressing it over a command is enough: nobody has to move the
// pointer.
void TipKeyboard::callTip(const QKeyEvent *event)
{
    const int required = m_host->context().get(Vidtips::RequiredModifiers, 0).toInt();
    if (required == Qt::ControlModifier && event->key() == Qt::Key_Control && !event->isAutoRepeat())
        m_host->showUnderPointer();
}
