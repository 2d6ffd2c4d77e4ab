#pragma once

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtWidgets/QAction>

class QActionGroup;

/**
 * The commands of the application. The object name of an action is the key of its tip, its icon's name and
 * what the rest of the application finds it by.
 */
class Commands : public QObject
{
    Q_OBJECT

public:
    explicit Commands(QObject *parent);

    /** The action named @p key; null for an unknown key. */
    QAction *action(const QString &key) const { return m_actions.value(key); }

    /** Shortcut for connecting to triggered() of the action named @p key. */
    template <typename Receiver, typename Slot>
    void onTriggered(const QString &key, Receiver *receiver, Slot slot)
    {
        connect(action(key), &QAction::triggered, receiver, slot);
    }

    /** The group of the commands that stay active until another one of them is chosen. */
    QActionGroup *tools() const { return m_tools; }

    /** Gives every action its text in the current language. */
    void retranslate();

    /** Draws the icons anew, after a change of colours. */
    void refreshIcons();

private:
    QAction *add(const QString &key, const QKeySequence &shortcut, bool checkable = false);

    QHash<QString, QAction *> m_actions;
    QActionGroup *m_tools;
};
