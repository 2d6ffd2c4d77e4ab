#include "qdeclarativekeys_p.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QScopedValueRollback>
#include <QtQml/qqmlinfo.h>
#include <QtWidgets/QGraphicsScene>

namespace {

struct KeySignal
{
    int key;
    void (QDeclarativeKeys::*signal)(QDeclarativeKeyEvent *);
};

const KeySignal keySignals[] = {
    {Qt::Key_0, &QDeclarativeKeys::digit0Pressed},
    {Qt::Key_1, &QDeclarativeKeys::digit1Pressed},
    {Qt::Key_2, &QDeclarativeKeys::digit2Pressed},
    {Qt::Key_3, &QDeclarativeKeys::digit3Pressed},
    {Qt::Key_4, &QDeclarativeKeys::digit4Pressed},
    {Qt::Key_5, &QDeclarativeKeys::digit5Pressed},
    {Qt::Key_6, &QDeclarativeKeys::digit6Pressed},
    {Qt::Key_7, &QDeclarativeKeys::digit7Pressed},
    {Qt::Key_8, &QDeclarativeKeys::digit8Pressed},
    {Qt::Key_9, &QDeclarativeKeys::digit9Pressed},
    {Qt::Key_Left, &QDeclarativeKeys::leftPressed},
    {Qt::Key_Right, &QDeclarativeKeys::rightPressed},
    {Qt::Key_Up, &QDeclarativeKeys::upPressed},
    {Qt::Key_Down, &QDeclarativeKeys::downPressed},
    {Qt::Key_Tab, &QDeclarativeKeys::tabPressed},
    {Qt::Key_Backtab, &QDeclarativeKeys::backtabPressed},
    {Qt::Key_Asterisk, &QDeclarativeKeys::asteriskPressed},
    {Qt::Key_NumberSign, &QDeclarativeKeys::numberSignPressed},
    {Qt::Key_Escape, &QDeclarativeKeys::escapePressed},
    {Qt::Key_Return, &QDeclarativeKeys::returnPressed},
    {Qt::Key_Enter, &QDeclarativeKeys::enterPressed},
    {Qt::Key_Delete, &QDeclarativeKeys::deletePressed},
    {Qt::Key_Space, &QDeclarativeKeys::spacePressed},
    {Qt::Key_Back, &QDeclarativeKeys::backPressed},
    {Qt::Key_Cancel, &QDeclarativeKeys::cancelPressed},
    {Qt::Key_Select, &QDeclarativeKeys::selectPressed},
    {Qt::Key_Yes, &QDeclarativeKeys::yesPressed},
    {Qt::Key_No, &QDeclarativeKeys::noPressed},
    {Qt::Key_Context1, &QDeclarativeKeys::context1Pressed},
    {Qt::Key_Context2, &QDeclarativeKeys::context2Pressed},
    {Qt::Key_Context3, &QDeclarativeKeys::context3Pressed},
    {Qt::Key_Context4, &QDeclarativeKeys::context4Pressed},
    {Qt::Key_Call, &QDeclarativeKeys::callPressed},
    {Qt::Key_Hangup, &QDeclarativeKeys::hangupPressed},
    {Qt::Key_Flip, &QDeclarativeKeys::flipPressed},
    {Qt::Key_Menu, &QDeclarativeKeys::menuPressed},
    {Qt::Key_VolumeUp, &QDeclarativeKeys::volumeUpPressed},
    {Qt::Key_VolumeDown, &QDeclarativeKeys::volumeDownPressed},
};

} // namespace

QDeclarativeKeys::QDeclarativeKeys(QObject *parent)
    : QObject(parent)
    , QDeclarativeKeyFilter(qobject_cast<QDeclarativeItem *>(parent))
    , m_item(qobject_cast<QDeclarativeItem *>(parent))
{
}

QDeclarativeKeys *QDeclarativeKeys::qmlAttachedProperties(QObject *object)
{
    if (!qobject_cast<QDeclarativeItem *>(object))
        qmlWarning(object) << tr("Keys attached property only works with Items");
    return new QDeclarativeKeys(object);
}

void QDeclarativeKeys::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    Q_EMIT enabledChanged();
}

void QDeclarativeKeys::setPriority(Priority priority)
{
    if (priority == this->priority())
        return;
    m_afterItem = priority == AfterItem;
    Q_EMIT priorityChanged();
}

QQmlListProperty<QDeclarativeItem> QDeclarativeKeys::forwardTo()
{
    using List = QQmlListProperty<QDeclarativeItem>;
    using Targets = QVector<QPointer<QDeclarativeItem>>;
    return {this,
            &m_targets,
            [](List *list, QDeclarativeItem *item) { static_cast<Targets *>(list->data)->append(item); },
            [](List *list) { return static_cast<Targets *>(list->data)->count(); },
            [](List *list, int index) { return static_cast<Targets *>(list->data)->value(index).data(); },
            [](List *list) { static_cast<Targets *>(list->data)->clear(); }};
}

/** Sends @p event to the items that keys are forwarded to, and tells whether one accepted it. */
bool QDeclarativeKeys::forward(QEvent *event)
{
    const QVector<QPointer<QDeclarativeItem>> targets = m_targets;
    for (const QPointer<QDeclarativeItem> &target : targets) {
        if (!target || !target->isVisible() || !m_item || !m_item->scene())
            continue;
        event->accept();
        m_item->scene()->sendEvent(target, event);
        if (event->isAccepted())
            return true;
    }
    return false;
}

bool QDeclarativeKeys::emitSpecific(QDeclarativeKeyEvent *event)
{
    for (const KeySignal &entry : keySignals) {
        if (entry.key != event->key())
            continue;
        if (!isSignalConnected(QMetaMethod::fromSignal(entry.signal)))
            return false;
        // A handler for one key takes it unless it says otherwise.
        event->setAccepted(true);
        Q_EMIT(this->*entry.signal)(event);
        return event->isAccepted();
    }
    return false;
}

void QDeclarativeKeys::keyPressed(QKeyEvent *event, bool post)
{
    if (isFor(post) && m_enabled && !m_pressing) {
        const QScopedValueRollback<bool> pressing(m_pressing, true);
        if (forward(event))
            return;
        QDeclarativeKeyEvent keyEvent(*event);
        if (!emitSpecific(&keyEvent))
            Q_EMIT pressed(&keyEvent);
        event->setAccepted(keyEvent.isAccepted());
        if (event->isAccepted())
            return;
    }
    QDeclarativeKeyFilter::keyPressed(event, post);
}

void QDeclarativeKeys::keyReleased(QKeyEvent *event, bool post)
{
    if (isFor(post) && m_enabled && !m_releasing) {
        const QScopedValueRollback<bool> releasing(m_releasing, true);
        if (forward(event))
            return;
        QDeclarativeKeyEvent keyEvent(*event);
        Q_EMIT released(&keyEvent);
        event->setAccepted(keyEvent.isAccepted());
        if (event->isAccepted())
            return;
    }
    QDeclarativeKeyFilter::keyReleased(event, post);
}

void QDeclarativeKeys::inputMethodEvent(QInputMethodEvent *event, bool post)
{
    if (isFor(post) && m_enabled && !m_pressing) {
        const QScopedValueRollback<bool> pressing(m_pressing, true);
        if (forward(event))
            return;
    }
    QDeclarativeKeyFilter::inputMethodEvent(event, post);
}

QVariant QDeclarativeKeys::inputMethodQuery(Qt::InputMethodQuery query) const
{
    for (const QPointer<QDeclarativeItem> &target : m_targets) {
        if (target && target->isVisible() && (target->flags() & QGraphicsItem::ItemAcceptsInputMethod))
            return QDeclarativeItemPrivate::get(target.data())->queryInputMethod(query);
    }
    return QDeclarativeKeyFilter::inputMethodQuery(query);
}
