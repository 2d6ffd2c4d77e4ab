#pragma once

#include "item/qdeclarativekeyfilter_p.h"

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>

/** The `event` of Keys handlers: a key that was pressed or released. */
class QDeclarativeKeyEvent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int key READ key)
    Q_PROPERTY(QString text READ text)
    Q_PROPERTY(int modifiers READ modifiers)
    Q_PROPERTY(bool isAutoRepeat READ isAutoRepeat)
    Q_PROPERTY(int count READ count)
    Q_PROPERTY(bool accepted READ isAccepted WRITE setAccepted)

public:
    explicit QDeclarativeKeyEvent(const QKeyEvent &event)
        : m_event(event)
    {
        m_event.setAccepted(false);
    }

    int key() const { return m_event.key(); }
    QString text() const { return m_event.text(); }
    int modifiers() const { return int(m_event.modifiers()); }
    bool isAutoRepeat() const { return m_event.isAutoRepeat(); }
    int count() const { return m_event.count(); }
    bool isAccepted() const { return m_event.isAccepted(); }
    void setAccepted(bool accepted) { m_event.setAccepted(accepted); }

private:
    QKeyEvent m_event;
};

/** The attached object `Keys`: handlers for single keys, for any key, and items that keys are forwarded to.
 */
class QDeclarativeKeys : public QObject, public QDeclarativeKeyFilter
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY enabledChanged)
    Q_PROPERTY(QQmlListProperty<QDeclarativeItem> forwardTo READ forwardTo)
    Q_PROPERTY(Priority priority READ priority WRITE setPriority NOTIFY priorityChanged)

public:
    enum Priority { BeforeItem, AfterItem };
    Q_ENUM(Priority)

    explicit QDeclarativeKeys(QObject *parent = nullptr);

    static QDeclarativeKeys *qmlAttachedProperties(QObject *);

    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool);
    Priority priority() const { return m_afterItem ? AfterItem : BeforeItem; }
    void setPriority(Priority);
    QQmlListProperty<QDeclarativeItem> forwardTo();

Q_SIGNALS:
    void enabledChanged();
    void priorityChanged();
    void pressed(QDeclarativeKeyEvent *event);
    void released(QDeclarativeKeyEvent *event);
    void digit0Pressed(QDeclarativeKeyEvent *event);
    void digit1Pressed(QDeclarativeKeyEvent *event);
    void digit2Pressed(QDeclarativeKeyEvent *event);
    void digit3Pressed(QDeclarativeKeyEvent *event);
    void digit4Pressed(QDeclarativeKeyEvent *event);
    void digit5Pressed(QDeclarativeKeyEvent *event);
    void digit6Pressed(QDeclarativeKeyEvent *event);
    void digit7Pressed(QDeclarativeKeyEvent *event);
    void digit8Pressed(QDeclarativeKeyEvent *event);
    void digit9Pressed(QDeclarativeKeyEvent *event);
    void leftPressed(QDeclarativeKeyEvent *event);
    void rightPressed(QDeclarativeKeyEvent *event);
    void upPressed(QDeclarativeKeyEvent *event);
    void downPressed(QDeclarativeKeyEvent *event);
    void tabPressed(QDeclarativeKeyEvent *event);
    void backtabPressed(QDeclarativeKeyEvent *event);
    void asteriskPressed(QDeclarativeKeyEvent *event);
    void numberSignPressed(QDeclarativeKeyEvent *event);
    void escapePressed(QDeclarativeKeyEvent *event);
    void returnPressed(QDeclarativeKeyEvent *event);
    void enterPressed(QDeclarativeKeyEvent *event);
    void deletePressed(QDeclarativeKeyEvent *event);
    void spacePressed(QDeclarativeKeyEvent *event);
    void backPressed(QDeclarativeKeyEvent *event);
    void cancelPressed(QDeclarativeKeyEvent *event);
    void selectPressed(QDeclarativeKeyEvent *event);
    void yesPressed(QDeclarativeKeyEvent *event);
    void noPressed(QDeclarativeKeyEvent *event);
    void context1Pressed(QDeclarativeKeyEvent *event);
    void context2Pressed(QDeclarativeKeyEvent *event);
    void context3Pressed(QDeclarativeKeyEvent *event);
    void context4Pressed(QDeclarativeKeyEvent *event);
    void callPressed(QDeclarativeKeyEvent *event);
    void hangupPressed(QDeclarativeKeyEvent *event);
    void flipPressed(QDeclarativeKeyEvent *event);
    void menuPressed(QDeclarativeKeyEvent *event);
    void volumeUpPressed(QDeclarativeKeyEvent *event);
    void volumeDownPressed(QDeclarativeKeyEvent *event);

private:
    void keyPressed(QKeyEvent *, bool post) override;
    void keyReleased(QKeyEvent *, bool post) override;
    void inputMethodEvent(QInputMethodEvent *, bool post) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery) const override;
    bool forward(QEvent *);
    bool emitSpecific(QDeclarativeKeyEvent *);

    QDeclarativeItem *const m_item;
    QVector<QPointer<QDeclarativeItem>> m_targets;
    bool m_enabled = true;
    bool m_pressing = false;
    bool m_releasing = false;
};

QML_DECLARE_TYPEINFO(QDeclarativeKeys, QML_HAS_ATTACHED_PROPERTIES)
