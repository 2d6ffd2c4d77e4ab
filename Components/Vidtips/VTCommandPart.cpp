#include "VTCommandPart_p.h"

#include <QtCore/QPointer>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>

namespace Vidtips {

namespace {

using Check = std::function<VTPartState()>;

VTPartState stateOf(bool isThere, bool isHere)
{
    if (!isThere)
        return VTPartState::Gone;
    return isHere ? VTPartState::There : VTPartState::Elsewhere;
}

/** Parts that have a number only: what they are called, to know them by when there are fewer. */
struct Numbered
{
    int index = -1;
    int count = 0;
    QVariantList names;

    bool isStill(int countNow, const QVariantList &namesNow) const
    {
        return countNow >= count || (index < countNow && names == namesNow);
    }
};

Check checkOfPage(QTabWidget *tabs, int index, const QPoint &position)
{
    const QPointer<QWidget> page = tabs->widget(index);
    return [tabs = QPointer<QTabWidget>(tabs), page, position] {
        const int now = tabs && page ? tabs->indexOf(page) : -1;
        return stateOf(now >= 0, now >= 0 && tabs->tabBar()->tabRect(now).contains(position));
    };
}

Check checkOfTab(QTabBar *bar, const QPoint &position)
{
    const int index = bar->tabAt(position);
    auto *const tabs = qobject_cast<QTabWidget *>(bar->parentWidget());
    if (index < 0)
        return nullptr;
    if (tabs)
        return checkOfPage(tabs, index, position);
    const Numbered tab{index, bar->count(), {bar->tabText(index), bar->tabData(index)}};
    return [bar = QPointer<QTabBar>(bar), tab, position] {
        const QVariantList names =
            bar ? QVariantList{bar->tabText(tab.index), bar->tabData(tab.index)} : QVariantList();
        const bool isThere = bar && tab.isStill(bar->count(), names);
        return stateOf(isThere, isThere && bar->tabRect(tab.index).contains(position));
    };
}

QVariantList nameOfSection(const QHeaderView *header, int section)
{
    const QAbstractItemModel *const model = header->model();
    return {model ? model->headerData(section, header->orientation()) : QVariant()};
}

Check checkOfSection(QHeaderView *header, const QPoint &position)
{
    const int index = header->logicalIndexAt(position);
    if (index < 0)
        return nullptr;
    const Numbered section{index, header->count(), nameOfSection(header, index)};
    return [header = QPointer<QHeaderView>(header), section, position] {
        const bool isThere = header && !header->isSectionHidden(section.index)
            && section.isStill(header->count(), nameOfSection(header, section.index));
        return stateOf(isThere, isThere && header->logicalIndexAt(position) == section.index);
    };
}

Check checkOfEntry(QMenu *menu, const QPoint &position)
{
    QAction *const entry = menu->actionAt(position);
    if (!entry)
        return nullptr;
    return [menu = QPointer<QMenu>(menu), entry = QPointer<QAction>(entry), position] {
        const bool isThere = menu && entry && entry->isVisible() && menu->actions().contains(entry);
        return stateOf(isThere, isThere && menu->actionGeometry(entry).contains(position));
    };
}

/** Returns the item at @p position that fills @p rect, or the topmost. */
QGraphicsItem *itemAt(const QGraphicsView *view, const QRect &rect, const QPoint &position)
{
    const QList<QGraphicsItem *> items = view->items(position);
    for (QGraphicsItem *const item : items) {
        if (view->mapFromScene(item->sceneBoundingRect()).boundingRect() == rect)
            return item;
    }
    return items.value(0);
}

Check checkOfItem(QGraphicsView *view, const QRect &rect, const QPoint &position)
{
    QGraphicsItem *const item = itemAt(view, rect, position);
    if (!item)
        return nullptr;
    // Nobody tells of an item that is deleted, so it is only looked for.
    return [view = QPointer<QGraphicsView>(view), item, position] {
        if (view && view->items(position).contains(item))
            return VTPartState::There;
        const bool isInScene = view && view->scene() && view->scene()->items().contains(item);
        return stateOf(isInScene && item->isVisible(), false);
    };
}

} // namespace

Check checkOfPart(QWidget *widget, const QRect &rect, const QPoint &position)
{
    if (auto *const bar = qobject_cast<QTabBar *>(widget))
        return checkOfTab(bar, position);
    if (auto *const menu = qobject_cast<QMenu *>(widget))
        return checkOfEntry(menu, position);
    if (auto *const header = qobject_cast<QHeaderView *>(widget->parentWidget()))
        return checkOfSection(header, position);
    auto *const view = qobject_cast<QGraphicsView *>(widget->parentWidget());
    return view && view->viewport() == widget ? checkOfItem(view, rect, position) : nullptr;
}

} // namespace Vidtips
