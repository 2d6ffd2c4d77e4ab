#pragma once

#include <Vidtips/VTCommandLocator.h>

#include <QtCore/QJsonArray>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE
class QAction;
class QIcon;
class QMenu;
QT_END_NAMESPACE

/**
 * Goes through windows and lists their commands: first what is in menus, then what is in tool bars, then
 * other actions and the widgets that have names. Each command is listed once, and grouped by where it was met
 * first.
 */
class CommandWalk
{
public:
    /** Icons are written to @p folder. */
    explicit CommandWalk(const QString &folder);

    /**
     * Returns an object for each command of @p windows: key, source of the key ("name", "icon", "button",
     * "text", or "none"), class, title, summary, shortcut, group, and the icon's file without ".png".
     */
    QJsonArray walk(const QWidgetList &windows);

private:
    void walkMenu(const QList<QAction *> &actions, const QString &group, int depth);
    void walkMenus(const QWidget *window);
    void walkToolBars(const QWidget *window);
    void walkActions(const QWidget *window);
    void walkWidgets(const QWidget *window);
    void add(const QAction *action, const QString &group);
    void add(const QWidget *widget, const QString &group);
    void add(const QObject *command, const QString &key, const QString &source, const QString &group);
    QString writeIcon(const QIcon &icon);

    const QString m_folder;
    Vidtips::VTCommandLocator m_locator;
    QSet<const QObject *> m_seen;
    QJsonArray m_commands;
};
