#include "qdeclarativebasepositioner_p_p.h"

#include <QtWidgets/QGraphicsWidget>

#include <algorithm>
#include <utility>

namespace {

using Child = QDeclarativeBasePositionerPrivate::Child;

const QDeclarativeItemChanges watchedChanges =
    GeometryChange | SiblingOrderChange | VisibilityChange | OpacityChange;

QSizeF sizeOf(const QGraphicsObject *object)
{
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(object);
    return QSizeF(d->width(), d->height());
}

bool hasPlace(const QGraphicsObject *object)
{
    const QGraphicsItemPrivate *d = QGraphicsItemPrivate::get(object);
    // An item that only its parent hides keeps its place.
    return !d->explicitlyHidden && d->opacity > 0 && d->width() != 0 && d->height() != 0;
}

bool precedes(const Child &first, const Child &second)
{
    return QGraphicsItemPrivate::get(first.item)->siblingIndex
        < QGraphicsItemPrivate::get(second.item)->siblingIndex;
}

} // namespace

void QDeclarativeBasePositionerPrivate::watch(QGraphicsObject *object)
{
    Q_Q(QDeclarativeBasePositioner);
    watched.push_back({object, QSizeF(), std::nullopt, false});
    noteChange(watched.size() - 1);
    sortIn(watched.size() - 1);
    if (auto *item = qobject_cast<QDeclarativeItem *>(object)) {
        get(item)->addChangeListener(this, watchedChanges);
        return;
    }
    isForeign = true;
    const auto changed = [this, object] { childChanged(object); };
    QObject::connect(object, &QGraphicsObject::visibleChanged, q, changed);
    QObject::connect(object, &QGraphicsObject::opacityChanged, q, changed);
    const auto resized = [this, object] {
        if (isChanged(indexOf(object)))
            q_func()->relayout();
    };
    QObject::connect(object, &QGraphicsObject::widthChanged, q, resized);
    QObject::connect(object, &QGraphicsObject::heightChanged, q, resized);
    if (auto *widget = qobject_cast<QGraphicsWidget *>(object))
        QObject::connect(widget, &QGraphicsWidget::geometryChanged, q, resized);
}

void QDeclarativeBasePositionerPrivate::unwatch(QGraphicsObject *object)
{
    if (auto *item = qobject_cast<QDeclarativeItem *>(object))
        get(item)->removeChangeListener(this, watchedChanges);
    else
        QObject::disconnect(object, nullptr, q_func(), nullptr);
    const std::size_t index = indexOf(object);
    if (index < watched.size()) {
        watched.erase(watched.begin() + std::ptrdiff_t(index));
        noteChange(index);
    }
    for (auto &cell : cells) {
        if (cell.item == object)
            cell.item = nullptr;
    }
}

void QDeclarativeBasePositionerPrivate::unwatchAll()
{
    cells.clear();
    while (!watched.empty())
        unwatch(watched.back().item);
}

/** Where @p object is among the watched, behind them where it is not; children at either end are found at
 * once. */
std::size_t QDeclarativeBasePositionerPrivate::indexOf(const QGraphicsObject *object) const
{
    std::size_t begin = 0, end = watched.size();
    while (begin < end) {
        if (watched[--end].item == object)
            return end;
        if (watched[begin].item == object)
            return begin;
        ++begin;
    }
    return watched.size();
}

void QDeclarativeBasePositionerPrivate::noteChange(std::size_t index)
{
    firstChanged = qMin(firstChanged, index);
}

bool QDeclarativeBasePositionerPrivate::isChanged(std::size_t index) const
{
    if (index == watched.size())
        return false;
    const Child &child = watched[index];
    const bool placed = hasPlace(child.item);
    return placed != child.placed || (placed && sizeOf(child.item) != child.size);
}

void QDeclarativeBasePositionerPrivate::childChanged(QGraphicsObject *object)
{
    const std::size_t index = indexOf(object);
    if (!isChanged(index))
        return;
    noteChange(index);
    relayoutLater();
}

void QDeclarativeBasePositionerPrivate::itemGeometryChanged(QDeclarativeItem *item, const QRectF &now,
                                                            const QRectF &before)
{
    const bool isResized = now.size() != before.size();
    if (isResized || item != moving)
        noteChange(indexOf(item));
    if (isResized)
        relayoutChanged();
}

/** Moves the child at @p index to where it is stacked among the others; whether that is elsewhere. */
bool QDeclarativeBasePositionerPrivate::sortIn(std::size_t index)
{
    const std::size_t from = index;
    for (; index > 0 && precedes(watched[index], watched[index - 1]); --index)
        std::swap(watched[index], watched[index - 1]);
    for (; index + 1 < watched.size() && precedes(watched[index + 1], watched[index]); ++index)
        std::swap(watched[index], watched[index + 1]);
    if (index != from)
        noteChange(qMin(index, from));
    return index != from;
}

void QDeclarativeBasePositionerPrivate::itemSiblingOrderChanged(QDeclarativeItem *item)
{
    const std::size_t index = indexOf(item);
    if (index < watched.size() && sortIn(index))
        relayoutLater();
}

void QDeclarativeBasePositionerPrivate::findFirstChanged()
{
    if (isForeign || transitions || !q_func()->goesOn())
        firstChanged = 0;
    if (firstChanged == 0 && !std::is_sorted(watched.cbegin(), watched.cend(), precedes))
        std::sort(watched.begin(), watched.end(), precedes);
}

/** Makes a cell of each child that is to be placed; returns what those before them take up, if any has a
 * place. */
std::optional<QSizeF> QDeclarativeBasePositionerPrivate::collectCells()
{
    findFirstChanged();
    cells.clear();
    cells.reserve(int(watched.size() - firstChanged));
    for (std::size_t i = firstChanged; i < watched.size(); ++i) {
        Child &child = watched[i];
        const bool wasPlaced = child.placed;
        child.placed = hasPlace(child.item);
        child.size = sizeOf(child.item);
        if (child.placed)
            cells.append({child.item, child.size, child.item->pos(), QSizeF(), !wasPlaced});
    }
    return firstChanged > 0 ? watched[firstChanged - 1].content : std::nullopt;
}

/** Takes note of what the children take up as far as each of those that were placed just now. */
void QDeclarativeBasePositionerPrivate::noteContents(std::optional<QSizeF> content)
{
    auto cell = cells.cbegin();
    for (; firstChanged < watched.size(); ++firstChanged) {
        Child &child = watched[firstChanged];
        if (child.placed)
            content = (cell++)->content;
        child.content = content;
    }
}
