#include "VTPopupMouse_p.h"

#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace Vidtips {

namespace {

bool isOfMouse(const QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return true;
    default:
        return false;
    }
}

} // namespace

bool VTPopupMouse::filter(QWidget *tip, QObject *watched, QEvent *event)
{
    const QWidget *const popup = QApplication::activePopupWidget();
    const auto *const receiver = qobject_cast<QWidget *>(watched);
    if (!popup || !receiver || receiver->window() != popup || !isOfMouse(event))
        return false;
    const auto *const mouse = static_cast<QMouseEvent *>(event);
    const bool isInTip =
        tip->geometry().contains(mouse->globalPos()) && !popup->geometry().contains(mouse->globalPos());
    if (!isInTip && !m_isPressed)
        return false;
    m_isPressed = mouse->buttons() != Qt::NoButton;
    const QPoint inTip = tip->mapFromGlobal(mouse->globalPos());
    QWidget *const child = tip->childAt(inTip);
    QWidget *const target = child ? child : tip;
    QMouseEvent passed(mouse->type(), target->mapFrom(tip, inTip), inTip, mouse->screenPos(), mouse->button(),
                       mouse->buttons(), mouse->modifiers());
    QCoreApplication::sendEvent(target, &passed);
    return true;
}

} // namespace Vidtips
