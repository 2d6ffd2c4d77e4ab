#include "VTTipKeys_p.h"

#include "VTShowLog_p.h"
#include "VTView.h"
#include "VTWidget.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QCursor>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QGraphicsScene>

#include <initializer_list>
#include <utility>

namespace Vidtips {

namespace {

bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_unknown:
        return true;
    default:
        return false;
    }
}

bool writesText(const QWidget *widget)
{
    return widget->testAttribute(Qt::WA_InputMethodEnabled);
}

// A blank belongs to the text that is being written, unless the user points into the tip.
bool isForTip(const VTWidget *tip, const QWidget *typedInto, const QKeyEvent *event)
{
    // A kept tip that has the focus has keys of its own.
    if (event->modifiers() != Qt::NoModifier || qobject_cast<const VTView *>(typedInto))
        return false;
    if (event->key() == Qt::Key_F1)
        return true;
    return event->key() == Qt::Key_Space
        && (!writesText(typedInto) || tip->geometry().contains(QCursor::pos()));
}

// A scene has a focused item only while it believes that its window is active and has the focus.
bool send(VTView *view, QKeyEvent *key)
{
    const QPointer<QGraphicsScene> scene(view->scene());
    QEvent activation(QEvent::WindowActivate);
    QFocusEvent focusIn(QEvent::FocusIn, Qt::OtherFocusReason);
    QFocusEvent focusOut(QEvent::FocusOut, Qt::OtherFocusReason);
    QEvent deactivation(QEvent::WindowDeactivate);
    key->ignore();
    for (QEvent *const event :
         std::initializer_list<QEvent *>{&activation, &focusIn, key, &focusOut, &deactivation}) {
        if (scene)
            QCoreApplication::sendEvent(scene, event);
    }
    return key->isAccepted();
}

} // namespace

bool VTTipKeys::filter(VTWidget *tip, QObject *watched, QEvent *event)
{
    auto *const typedInto = qobject_cast<QWidget *>(watched);
    if (!typedInto || (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress))
        return false;
    auto *const key = static_cast<QKeyEvent *>(event);
    // By then the tip may have gone, and the key must not close what is behind it as well.
    if (event->type() == QEvent::KeyPress && key->key() == std::exchange(m_taken, 0))
        return true;
    if (!tip || typedInto->window() == tip)
        return false;
    return type(tip, typedInto, key);
}

// A key that is a shortcut, or begins one, is offered and not pressed: the offer is what tells of every key.
bool VTTipKeys::type(VTWidget *tip, QWidget *typedInto, QKeyEvent *event)
{
    const QPointer<VTWidget> shown(tip);
    const QPointer<QWidget> writer(typedInto);
    const int key = event->key();
    const bool isOffer = event->type() == QEvent::ShortcutOverride;
    if (take(tip, typedInto, event)) {
        if (isOffer)
            m_taken = key;
        event->accept();
        return true;
    }
    const bool stays = !shown || !shown->view() || shown->view()->stayOpen();
    if (stays || isModifier(key))
        return false;
    qCDebug(showLog, "the tip goes, as there was typing in %s", qUtf8Printable(describe(writer)));
    shown->hide();
    return false;
}

bool VTTipKeys::take(VTWidget *tip, const QWidget *typedInto, QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        qCDebug(showLog, "the tip goes, as Escape was pressed");
        tip->hide();
        return true;
    }
    if (!tip->view() || !isForTip(tip, typedInto, event))
        return false;
    QKeyEvent press(QEvent::KeyPress, event->key(), event->modifiers(), event->text(), event->isAutoRepeat());
    return send(tip->view(), &press);
}

} // namespace Vidtips
