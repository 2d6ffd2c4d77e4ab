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

// Models, graphics items and whoever overrides a function of a view or of the locator are called here, and
// may delete any of what is looked at, the locator among it.
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
    const QWidget *const visible = !part || whole->window() == part->window() ? whole : part->window();
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
    const QPointer<QAction> action(entryAt(menu, position));
    if (!action)
        return {};
    const QRect rect = globalRect(menu, menu->actionGeometry(action));
    const QString key = locator.keyForAction(action);
    return action ? Command{key, rect, action.data()} : Command();
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
    rect = globalRect(viewport, rect & viewport->rect());
    const QPointer<QHeaderView> guard(header);
    const QVariant data = header->model()->headerData(section, header->orientation(), role);
    return guard ? Command{textIn(data), rect, header} : Command();
}

Command itemOf(QAbstractItemView *view, const QPoint &position, int role)
{
    const QWidget *const viewport = view->viewport();
    QPersistentModelIndex index = view->indexAt(viewport->mapFromGlobal(position));
    if (!index.isValid())
        return {};
    const QPointer<QAbstractItemView> guard(view);
    QRect rect = view->visualRect(index);
    QString key = textIn(index.data(role));
    // The first column of a tree stands for its row, and begins with branches that belong to no cell.
    const bool isTree = guard && qobject_cast<QTreeView *>(view);
    if (isTree && key.isEmpty()) {
        index = index.sibling(index.row(), 0);
        key = textIn(index.data(role));
    }
    if (!guard)
        return {};
    if (isTree && index.column() == 0)
        rect = QRect(0, rect.y(), viewport->width(), rect.height());
    return {key, globalRect(viewport, rect & viewport->rect()), view};
}

Command graphicsOf(QGraphicsView *view, const QPoint &position, int dataKey)
{
    const QWidget *const viewport = view->viewport();
    const QPointer<QGraphicsView> guard(view);
    const QList<QGraphicsItem *> items = view->items(viewport->mapFromGlobal(position));
    for (QGraphicsItem *item : items) {
        while (item && textIn(item->data(dataKey)).isEmpty())
            item = item->parentItem();
        if (!item)
            continue;
        const QString key = textIn(item->data(dataKey));
        QObject *const graphicsObject = item->toGraphicsObject();
        const QPointer<QObject> object(graphicsObject ? graphicsObject : view);
        const QRectF bounds = item->sceneBoundingRect() | item->mapRectToScene(item->childrenBoundingRect());
        if (!guard || !object)
            return {};
        const QRect rect = view->mapFromScene(bounds).boundingRect() & viewport->rect();
        return {key, globalRect(viewport, rect), object};
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
    const std::shared_ptr<char> life = std::make_shared<char>();
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
    const std::weak_ptr<char> life(d->life);
    const QPointer<QWidget> part(qobject_cast<QWidget *>(object));
    QPointer<QObject> candidate(object);
    while (candidate) {
        const Command command = partAt(candidate, position);
        if (!command.key.isEmpty() || !candidate || life.expired())
            return command;
        const auto *const widget = qobject_cast<QWidget *>(candidate);
        const QString key = widget ? keyForWidget(widget) : nameOf(candidate);
        if (!candidate || life.expired())
            return {};
        if (!key.isEmpty())
            return {key, candidate == object ? QRect() : rectOfWhole(widget, part), candidate};
        candidate = wholeOf(candidate);
    }
    return part && d->fallbacks.testFlag(Container) ? enclosing(part) : Command();
}

Command VTCommandLocator::enclosing(const QWidget *part) const
{
    const std::weak_ptr<char> life(d->life);
    const QPointer<const QWidget> guard(part);
    const QPointer<QWidget> container(FallbackKeys::container(part));
    QPointer<QWidget> widget(container ? part->parentWidget() : nullptr);
    while (widget && container && !life.expired()) {
        const QString key = keyForWidget(widget);
        if (widget && !key.isEmpty())
            return {key, rectOfWhole(widget, guard), widget.data()};
        widget = widget && widget != container ? widget->parentWidget() : nullptr;
    }
    return {};
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
    const QString text = d->fallbacks.testFlag(Text) ? plainText(bar->tabText(tab)) : QString();
    QWidget *const page = pageOf(bar, tab);
    const QPointer<QObject> object(page ? page : bar);
    const QString key = page ? keyForWidget(page) : QString();
    return object ? Command{key.isEmpty() ? text : key, rect, object} : Command();
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
    const Fallbacks fallbacks = d->fallbacks;
    const QPointer<const QAction> guard(action);
    QString key = nameOf(action);
    if (key.isEmpty() && action)
        key = nameOf(action->menu());
    if (key.isEmpty() && fallbacks.testFlag(IconName))
        key = FallbackKeys::iconName(action);
    if (key.isEmpty() && guard && fallbacks.testFlag(Text))
        key = plainText(action->text());
    return key;
}

QString VTCommandLocator::keyForWidget(const QWidget *widget) const
{
    const Fallbacks fallbacks = d->fallbacks;
    const QPointer<const QWidget> guard(widget);
    const QAction *const action = widget ? actionShownBy(widget) : nullptr;
    QString key = action ? keyForAction(action) : QString();
    if (!guard)
        return key;
    if (key.isEmpty())
        key = nameOf(widget);
    if (key.isEmpty() && fallbacks.testFlag(StandardButton))
        key = FallbackKeys::standardButton(widget);
    if (key.isEmpty() && fallbacks.testFlag(Text))
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
