#include "VTCommandLocator.h"

#include "VTFallbackKeys_p.h"

#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QCalendarWidget>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>
#include <QtWidgets/QWidgetAction>

#include <algorithm>

namespace Vidtips {

namespace {

using Command = VTCommandLocator::Command;

QRect globalRect(const QWidget *widget, const QRect &rect)
{
    return QRect(widget->mapToGlobal(rect.topLeft()), rect.size());
}

// Applications store numbers and pointers under such roles, too.
QString textIn(const QVariant &value)
{
    const bool isText = value.userType() == QMetaType::QString || value.userType() == QMetaType::QByteArray;
    return isText ? value.toString() : QString();
}

/** Returns the larger widget that Qt made @p part for; null for what the application made itself. */
QWidget *wholeOf(const QObject *part)
{
    const auto *const widget = qobject_cast<const QWidget *>(part);
    QWidget *const parent = widget ? widget->parentWidget() : nullptr;
    if (!parent || !VTCommandLocator::nameOf(widget).isEmpty())
        return nullptr;
    if (!widget->objectName().isEmpty())
        return parent;
    const bool isCompound = qobject_cast<QAbstractSpinBox *>(parent) || qobject_cast<QComboBox *>(parent)
        || qobject_cast<QAbstractScrollArea *>(parent) || qobject_cast<QLineEdit *>(parent)
        || qobject_cast<QCalendarWidget *>(parent) || qobject_cast<QTabBar *>(parent)
        || qobject_cast<QTabWidget *>(parent) || parent->inherits("QComboBoxPrivateContainer");
    return isCompound ? parent : nullptr;
}

/** Returns where @p whole is for someone who points at its part @p part; a list is in a window of its own. */
QRect rectOfWhole(const QWidget *whole, const QWidget *part)
{
    const QWidget *const visible = whole->window() == part->window() ? whole : part->window();
    return globalRect(visible, visible->rect());
}

template <typename Menu>
QAction *entryAt(const Menu *menu, const QPoint &position)
{
    const QPoint place = menu->mapFromGlobal(position);
    return menu->rect().contains(place) ? menu->actionAt(place) : menu->activeAction();
}

template <typename Menu>
Command entryOf(const VTCommandLocator &locator, const Menu *menu, const QPoint &position)
{
    QAction *const action = entryAt(menu, position);
    if (!action)
        return {};
    return {locator.keyForAction(action), globalRect(menu, menu->actionGeometry(action)), action};
}

QWidget *dockTitled(const QMainWindow *window, const QString &title)
{
    const auto docks = window->findChildren<QDockWidget *>(QString(), Qt::FindDirectChildrenOnly);
    const auto hasTitle = [&title](const QDockWidget *dock) { return dock->windowTitle() == title; };
    const auto found = std::find_if(docks.begin(), docks.end(), hasTitle);
    return found == docks.end() ? nullptr : *found;
}

QWidget *pageOf(const QTabBar *bar, int tab)
{
    QWidget *const owner = bar->parentWidget();
    if (const auto *const pages = qobject_cast<QTabWidget *>(owner))
        return pages->widget(tab);
    if (const auto *const window = qobject_cast<QMainWindow *>(owner))
        return dockTitled(window, bar->tabText(tab));
    if (const auto *const area = qobject_cast<QMdiArea *>(owner)) {
        QMdiSubWindow *const window = area->subWindowList().value(tab);
        return window && VTCommandLocator::nameOf(window).isEmpty() ? window->widget() : window;
    }
    return nullptr;
}

Command sectionOf(QHeaderView *header, const QPoint &position, int role)
{
    const QWidget *const viewport = header->viewport();
    const int section = header->logicalIndexAt(viewport->mapFromGlobal(position));
    if (section < 0 || !header->model())
        return {};
    QRect rect = viewport->rect();
    if (header->orientation() == Qt::Horizontal) {
        rect.setLeft(header->sectionViewportPosition(section));
        rect.setWidth(header->sectionSize(section));
    } else {
        rect.setTop(header->sectionViewportPosition(section));
        rect.setHeight(header->sectionSize(section));
    }
    const QVariant data = header->model()->headerData(section, header->orientation(), role);
    return {textIn(data), globalRect(viewport, rect & viewport->rect()), header};
}

Command itemOf(QAbstractItemView *view, const QPoint &position, int role)
{
    const QWidget *const viewport = view->viewport();
    QModelIndex index = view->indexAt(viewport->mapFromGlobal(position));
    if (!index.isValid())
        return {};
    QRect rect = view->visualRect(index);
    // The first column of a tree stands for its row, and begins with branches that belong to no cell.
    const bool isTree = qobject_cast<QTreeView *>(view);
    if (isTree && textIn(index.data(role)).isEmpty())
        index = index.siblingAtColumn(0);
    if (isTree && index.column() == 0)
        rect = QRect(0, rect.y(), viewport->width(), rect.height());
    return {textIn(index.data(role)), globalRect(viewport, rect & viewport->rect()), view};
}

Command graphicsOf(QGraphicsView *view, const QPoint &position, int dataKey)
{
    const QWidget *const viewport = view->viewport();
    const QList<QGraphicsItem *> items = view->items(viewport->mapFromGlobal(position));
    for (QGraphicsItem *item : items) {
        while (item && textIn(item->data(dataKey)).isEmpty())
            item = item->parentItem();
        if (!item)
            continue;
        const QRectF bounds = item->sceneBoundingRect() | item->mapRectToScene(item->childrenBoundingRect());
        const QRect rect = view->mapFromScene(bounds).boundingRect() & viewport->rect();
        QObject *const object = item->toGraphicsObject();
        return {textIn(item->data(dataKey)), globalRect(viewport, rect), object ? object : view};
    }
    return {};
}

bool shows(const QWidget *widget, QAction *action)
{
    if (const auto *const bar = qobject_cast<QToolBar *>(widget->parentWidget()))
        return bar->widgetForAction(action) == widget;
    const auto *const ownAction = qobject_cast<QWidgetAction *>(action);
    return ownAction && ownAction->defaultWidget() == widget;
}

QAction *actionShownBy(const QWidget *widget)
{
    const auto *const button = qobject_cast<const QToolButton *>(widget);
    if (button && button->defaultAction())
        return button->defaultAction();
    if (button && button->menu() && VTCommandLocator::nameOf(button).isEmpty())
        return button->menu()->menuAction();
    if (!widget->parentWidget())
        return nullptr;
    const QList<QAction *> actions = widget->parentWidget()->actions();
    const auto isShown = [widget](QAction *action) { return shows(widget, action); };
    const auto found = std::find_if(actions.begin(), actions.end(), isShown);
    return found == actions.end() ? nullptr : *found;
}

} // namespace

struct VIDTIPS_NO_EXPORT VTCommandLocator::Private
{
    int itemRole = -1;
    int graphicsDataKey = -1;
    Fallbacks fallbacks = NoFallback;
};

VTCommandLocator::VTCommandLocator()
    : d(new Private)
{
}

VTCommandLocator::~VTCommandLocator() = default;

int VTCommandLocator::itemRole() const
{
    return d->itemRole;
}

void VTCommandLocator::setItemRole(int role)
{
    d->itemRole = role;
}

int VTCommandLocator::graphicsDataKey() const
{
    return d->graphicsDataKey;
}

void VTCommandLocator::setGraphicsDataKey(int key)
{
    d->graphicsDataKey = key;
}

VTCommandLocator::Fallbacks VTCommandLocator::fallbacks() const
{
    return d->fallbacks;
}

void VTCommandLocator::setFallbacks(Fallbacks fallbacks)
{
    d->fallbacks = fallbacks;
}

Command VTCommandLocator::commandAt(QObject *object, const QPoint &position) const
{
    if (const auto *const menu = qobject_cast<QMenu *>(object))
        return entryOf(*this, menu, position);
    if (const auto *const bar = qobject_cast<QMenuBar *>(object))
        return entryOf(*this, bar, position);
    const auto *const part = qobject_cast<QWidget *>(object);
    for (QObject *candidate = object; candidate; candidate = wholeOf(candidate)) {
        const Command command = partAt(candidate, position);
        if (!command.key.isEmpty())
            return command;
        const auto *const widget = qobject_cast<QWidget *>(candidate);
        const QString key = widget ? keyForWidget(widget) : nameOf(candidate);
        if (!key.isEmpty())
            return {key, candidate == object ? QRect() : rectOfWhole(widget, part), candidate};
    }
    return d->fallbacks.testFlag(Container) ? enclosing(part) : Command();
}

Command VTCommandLocator::enclosing(const QWidget *part) const
{
    QWidget *const container = FallbackKeys::container(part);
    QWidget *widget = container ? part->parentWidget() : nullptr;
    while (widget && widget != container && keyForWidget(widget).isEmpty())
        widget = widget->parentWidget();
    const QString key = widget ? keyForWidget(widget) : QString();
    return key.isEmpty() ? Command() : Command{key, rectOfWhole(widget, part), widget};
}

Command VTCommandLocator::tabAt(QTabBar *bar, const QPoint &position) const
{
    const int tab = bar->tabAt(bar->mapFromGlobal(position));
    if (tab < 0)
        return {};
    const QRect rect = globalRect(bar, bar->tabRect(tab));
    const QString data = textIn(bar->tabData(tab));
    if (!data.isEmpty())
        return {data, rect, bar};
    QWidget *const page = pageOf(bar, tab);
    QString key = page ? keyForWidget(page) : QString();
    if (key.isEmpty() && d->fallbacks.testFlag(Text))
        key = plainText(bar->tabText(tab));
    return {key, rect, page ? page : bar};
}

Command VTCommandLocator::partAt(QObject *object, const QPoint &position) const
{
    if (auto *const bar = qobject_cast<QTabBar *>(object))
        return tabAt(bar, position);
    auto *const header = qobject_cast<QHeaderView *>(object);
    if (header)
        return d->itemRole < 0 ? Command() : sectionOf(header, position, d->itemRole);
    auto *const items = qobject_cast<QAbstractItemView *>(object);
    if (items && d->itemRole >= 0)
        return itemOf(items, position, d->itemRole);
    auto *const scene = qobject_cast<QGraphicsView *>(object);
    if (scene && d->graphicsDataKey >= 0)
        return graphicsOf(scene, position, d->graphicsDataKey);
    return {};
}

QString VTCommandLocator::keyAt(QObject *object, const QPoint &position, QRect &rect) const
{
    const Command command = commandAt(object, position);
    rect = command.rect;
    return command.key;
}

QString VTCommandLocator::keyForAction(const QAction *action) const
{
    QString key = nameOf(action);
    if (key.isEmpty() && action)
        key = nameOf(action->menu());
    if (key.isEmpty() && d->fallbacks.testFlag(IconName))
        key = FallbackKeys::iconName(action);
    if (key.isEmpty() && action && d->fallbacks.testFlag(Text))
        key = plainText(action->text());
    return key;
}

QString VTCommandLocator::keyForWidget(const QWidget *widget) const
{
    const QAction *const action = widget ? actionShownBy(widget) : nullptr;
    QString key = action ? keyForAction(action) : QString();
    if (key.isEmpty())
        key = nameOf(widget);
    if (key.isEmpty() && d->fallbacks.testFlag(StandardButton))
        key = FallbackKeys::standardButton(widget);
    if (key.isEmpty() && d->fallbacks.testFlag(Text))
        key = FallbackKeys::label(widget);
    return key;
}

QString VTCommandLocator::plainText(const QString &text)
{
    return FallbackKeys::plainText(text);
}

QString VTCommandLocator::nameOf(const QObject *object)
{
    const QString name = object ? object->objectName() : QString();
    const bool isFromQt = name.startsWith(QLatin1String("qt_")) || name.startsWith(QLatin1String("_q_"))
        || name.startsWith(QLatin1String("__qt_"));
    return isFromQt ? QString() : name;
}

} // namespace Vidtips
