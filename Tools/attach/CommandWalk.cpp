#include "CommandWalk.h"

#include "CommandTexts.h"

#include <QtCore/QJsonObject>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QAction>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>

using Vidtips::VTCommandLocator;

namespace {

constexpr QSize iconSize(32, 32);
constexpr int deepestMenu = 20; // a menu may hold itself

QString titleOf(const QWidget *widget)
{
    const QString title = VTCommandLocator::plainText(widget->windowTitle());
    return title.isEmpty() ? VTCommandLocator::nameOf(widget) : title;
}

// The dock that a widget is in, or else its window.
QString placeOf(const QWidget *widget)
{
    const QWidget *place = widget->parentWidget();
    while (place && !place->isWindow() && !qobject_cast<const QDockWidget *>(place))
        place = place->parentWidget();
    // Titles of windows name documents.
    const bool isDock = qobject_cast<const QDockWidget *>(place);
    return isDock ? titleOf(place) : QString("Window");
}

bool isControl(const QWidget *widget)
{
    // What scrolls tabs and closes them is Qt's own.
    if (qobject_cast<const QTabBar *>(widget->parentWidget()))
        return false;
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QComboBox *>(widget)
        || qobject_cast<const QAbstractSpinBox *>(widget) || qobject_cast<const QLineEdit *>(widget)
        || qobject_cast<const QDockWidget *>(widget)
        || (qobject_cast<const QAbstractSlider *>(widget) && !qobject_cast<const QScrollBar *>(widget));
}

QString sourceOf(const QAction *action, const QString &key)
{
    if (!VTCommandLocator::nameOf(action).isEmpty() || !VTCommandLocator::nameOf(action->menu()).isEmpty())
        return "name";
    if (key.isEmpty())
        return "none";
    return key == action->icon().name() ? "icon" : "text";
}

QString sourceOf(const QWidget *widget, const QString &key)
{
    if (key.isEmpty())
        return "none";
    if (key == VTCommandLocator::nameOf(widget))
        return "name";
    return key.startsWith("QDialogButtonBox.") || key.startsWith("QWizard.") ? "button" : "text";
}

QImage scaled(const QIcon &icon, const QSize &size)
{
    const QImage image = icon.pixmap(size).toImage();
    return image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

CommandWalk::CommandWalk(const QString &folder)
    : m_folder(folder)
{
    m_locator.setFallbacks(CommandTexts::fallbacks);
}

QJsonArray CommandWalk::walk(const QWidgetList &windows)
{
    for (const QWidget *window : windows)
        walkMenus(window);
    for (const QWidget *window : windows)
        walkToolBars(window);
    for (const QWidget *window : windows)
        walkActions(window);
    for (const QWidget *window : windows)
        walkWidgets(window);
    return m_commands;
}

void CommandWalk::walkMenus(const QWidget *window)
{
    const auto bars = window->findChildren<QMenuBar *>();
    for (const QMenuBar *bar : bars) {
        for (QAction *action : bar->actions())
            walkMenu({action}, VTCommandLocator::plainText(action->text()), 0);
    }
}

void CommandWalk::walkMenu(const QList<QAction *> &actions, const QString &group, int depth)
{
    for (const QAction *action : actions) {
        add(action, group);
        if (action->menu() && depth < deepestMenu)
            walkMenu(action->menu()->actions(), group, depth + 1);
    }
}

void CommandWalk::walkToolBars(const QWidget *window)
{
    const auto bars = window->findChildren<QToolBar *>();
    for (const QToolBar *bar : bars) {
        const QString group = titleOf(bar);
        for (QAction *action : bar->actions()) {
            // What the program has put there itself is met among the widgets.
            const QWidget *const widget = bar->widgetForAction(action);
            const auto *const button = qobject_cast<const QToolButton *>(widget);
            if (button && button->defaultAction() == action)
                add(action, group);
            else if (widget && isControl(widget))
                add(widget, group);
        }
    }
}

void CommandWalk::walkActions(const QWidget *window)
{
    const auto actions = window->findChildren<QAction *>();
    for (const QAction *action : actions) {
        // Without a name, that is what is in pop-up menus and lists of documents.
        if (!VTCommandLocator::nameOf(action).isEmpty())
            add(action, "Other");
    }
}

void CommandWalk::walkWidgets(const QWidget *window)
{
    const auto widgets = window->findChildren<QWidget *>();
    for (const QWidget *widget : widgets) {
        const auto *const button = qobject_cast<const QToolButton *>(widget);
        const bool showsAction = button && button->defaultAction();
        const bool hasName = !VTCommandLocator::nameOf(widget).isEmpty();
        if (isControl(widget) && !showsAction && (hasName || !m_locator.keyForWidget(widget).isEmpty()))
            add(widget, placeOf(widget));
    }
}

void CommandWalk::add(const QAction *action, const QString &group)
{
    const QString key = m_locator.keyForAction(action);
    if (!action->isSeparator())
        add(action, key, sourceOf(action, key), group);
}

void CommandWalk::add(const QWidget *widget, const QString &group)
{
    const QString key = m_locator.keyForWidget(widget);
    add(widget, key, sourceOf(widget, key), group);
}

void CommandWalk::add(const QObject *command, const QString &key, const QString &source, const QString &group)
{
    if (m_seen.contains(command))
        return;
    m_seen.insert(command);
    const CommandTexts texts = CommandTexts::of(command);
    m_commands.append(QJsonObject{{"key", key},
                                  {"source", source},
                                  {"class", command->metaObject()->className()},
                                  {"title", texts.title},
                                  {"summary", texts.summary},
                                  {"shortcut", texts.shortcut.toString(QKeySequence::PortableText)},
                                  {"group", group},
                                  {"icon", writeIcon(texts.icon)}});
}

// Small pictures are not made larger than they are, but for a display with pixels half as large.
QString CommandWalk::writeIcon(const QIcon &icon)
{
    const QSize size = icon.isNull() ? QSize() : icon.actualSize(iconSize);
    if (size.isEmpty())
        return {};
    const QString name = QString::number(m_commands.size());
    const QString path = m_folder + '/' + name;
    const bool isWritten =
        scaled(icon, size).save(path + ".png") && scaled(icon, size * 2).save(path + "@2x.png");
    return isWritten ? name : QString();
}
