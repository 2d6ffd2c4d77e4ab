#include "VTTipWatch_p.h"

#include "VTPointer_p.h"
#include "VTShowLog_p.h"
#include "VTTipOwner_p.h"
#include "VTWidget.h"

#include <QtCore/QEvent>
#include <QtWidgets/QApplication>

namespace Vidtips {

VTTipWatch::VTTipWatch(QObject *parent)
    : QObject(parent)
{
    connect(&m_command, &VTCommandWatch::gone, this, &VTTipWatch::handleGone);
    connect(&m_command, &VTCommandWatch::passedOn, this, &VTTipWatch::handlePassedOn);
    connect(&m_command, &VTCommandWatch::stirred, &m_pointer, &VTPointerWatch::lookSoon);
    connect(&m_pointer, &VTPointerWatch::looked, this, &VTTipWatch::handleLook);
}

void VTTipWatch::begin(VTWidget *tip, QObject *object, const QRect &rect, const QPoint &position)
{
    end();
    m_tip = tip;
    m_hasPassedOn = false;
    tip->installEventFilter(this);
    m_command.begin(object, rect, position);
    if (m_command.widget())
        tip->refer(m_command.widget(), m_command.rect());
}

void VTTipWatch::end()
{
    if (m_tip)
        m_tip->removeEventFilter(this);
    m_tip = nullptr;
    m_command.end();
    m_pointer.rest();
}

bool VTTipWatch::isOfTip(const QObject *object) const
{
    const auto *const widget = qobject_cast<const QWidget *>(object);
    return object == m_tip || (widget && m_tip->isAncestorOf(widget));
}

bool VTTipWatch::filter(QObject *watched, QEvent *event)
{
    if (!watched)
        return false;
    const QPointer<QObject> guard(watched);
    VTWidget *const shown = m_tip && !m_tip->fadesOut() ? m_tip.data() : nullptr;
    if (m_keys.filter(shown, watched, event) || !guard)
        return true;
    if (!m_tip)
        return false;
    if (m_mouse.filter(m_tip, watched, event) || !guard)
        return true;
    if (m_tip && watched->isWidgetType() && !isOfTip(watched))
        handleApplicationEvent(qobject_cast<QWidget *>(watched), event);
    return !guard;
}

// Menus and other popups come with a command, or have words of their own with it.
bool VTTipWatch::isOfAnotherWindow(const QWidget *widget) const
{
    const QWidget *const command = m_command.widget();
    const QWidget *const window = widget ? widget->window() : nullptr;
    if (!command || !window || window->windowType() == Qt::Popup || window->windowType() == Qt::ToolTip)
        return false;
    return !m_command.isReachedThrough(window) && window != VTTipOwner::lastingWindow(command);
}

void VTTipWatch::handleApplicationEvent(const QWidget *widget, const QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        handleShown(widget);
        break;
    case QEvent::WindowActivate:
        if (isOfAnotherWindow(widget))
            endTip("another window is active");
        break;
    case QEvent::Hide:
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::ZOrderChange:
        m_pointer.lookSoon();
        break;
    default:
        break;
    }
}

// The submenu of an entry opens while that is pointed at, and is a part of it.
void VTTipWatch::handleShown(const QWidget *widget)
{
    const bool isPopup = widget->windowType() == Qt::Popup && !m_command.isReachedThrough(widget);
    if (!isPopup)
        m_pointer.lookSoon();
    else if (m_command.isOpening(widget))
        Q_EMIT popupJoined();
    else
        endTip("a popup opened");
}

bool VTTipWatch::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Hide:
        if (m_tip->isPlacedAnew())
            break;
        if (event->spontaneous())
            return handleTakenAway();
        end();
        break;
    case QEvent::Enter:
    case QEvent::Leave:
    case QEvent::Move:
    case QEvent::Resize:
        m_pointer.lookSoon();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

// What window managers hide with its window would come back with it. The tip is hidden, and tells so, in
// place of the event.
bool VTTipWatch::handleTakenAway()
{
    endTip("the window manager has taken it from the screen");
    return true;
}

void VTTipWatch::pointerMoved(const QWidget *widget, const QPoint &position)
{
    // Whatever was to be looked at can be seen from the event.
    m_pointer.rest();
    if (widget)
        handleLook(widget, position);
}

// What covers the command takes it from under the pointer.
void VTTipWatch::locateCommand(const QWidget *under, const QPoint &position)
{
    if (!m_command.widget())
        return;
    const QRect rect = m_command.rect();
    const bool isCovered = rect.contains(position) && !m_command.isReachedThrough(under);
    m_tip->refer(m_command.widget(), isCovered || m_hasPassedOn ? QRect() : rect);
}

void VTTipWatch::handleLook(const QWidget *under, const QPoint &position)
{
    if (!m_tip)
        return;
    if (!m_command.isInSight()) {
        endTip("its command is out of sight");
        return;
    }
    const bool isOverTip = isOfTip(under);
    if (!isOverTip && m_command.rect().contains(position) && isOfAnotherWindow(under)) {
        endTip("another window covers its command");
        return;
    }
    if (!isOverTip)
        locateCommand(under, position);
    // A tip that stays by itself is not worth another look.
    if (m_tip->idleInterval() < 0)
        m_pointer.rest();
    m_tip->checkMousePosition(position);
}

void VTTipWatch::handleGone()
{
    endTip("its command is gone or blocked");
}

void VTTipWatch::endTip(const char *reason)
{
    if (m_tip)
        qCDebug(showLog, "the tip goes, as %s", reason);
    const QPointer<VTWidget> tip = m_tip;
    end();
    if (tip)
        tip->hide();
}

void VTTipWatch::handlePassedOn()
{
    const QPointer<VTWidget> tip = m_tip;
    if (!tip)
        return;
    const QPoint position = VTPointer::now().position;
    m_hasPassedOn = true;
    tip->refer(m_command.widget(), QRect());
    tip->checkMousePosition(position);
    if (tip->isSafe(position))
        return;
    qCDebug(showLog, "the tip goes, as the pointer is on something else than its command");
    tip->hideAnimated();
}

} // namespace Vidtips
