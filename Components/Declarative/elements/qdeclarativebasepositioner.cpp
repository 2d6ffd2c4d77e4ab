#include "qdeclarativebasepositioner_p.h"

#include "item/qdeclarativeanchors_p.h"
#include "item/qdeclarativeitem_p.h"

#include <QtQml/QQmlInfo>
#include <QtWidgets/QGraphicsWidget>

#include <private/qquickstate_p.h>
#include <private/qquicktransition_p.h>
#include <private/qquicktransitionmanager_p_p.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

namespace {

/** How often children may change size in answer to being placed before that counts as endless. */
constexpr int passLimit = 4;

/** How often they may do so in answer to the positioner's size. */
constexpr int nestingLimit = 16;

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

struct Child
{
    QGraphicsObject *item;
    QSizeF size;
    std::optional<QSizeF> content; ///< what the children take up as far as this one, if they have a place
    bool placed;
};

bool precedes(const Child &first, const Child &second)
{
    return QGraphicsItemPrivate::get(first.item)->siblingIndex
        < QGraphicsItemPrivate::get(second.item)->siblingIndex;
}

} // namespace

class QDeclarativeBasePositionerPrivate : public QDeclarativeItemPrivate,
                                          public QDeclarativeItemChangeListener
{
    Q_DECLARE_PUBLIC(QDeclarativeBasePositioner)

public:
    using Cells = QDeclarativeBasePositioner::Cells;

    /** Only there when a transition is. */
    struct Transitions
    {
        QPointer<QQuickTransition> add;
        QPointer<QQuickTransition> move;
        QQuickTransitionManager addManager;
        QQuickTransitionManager moveManager;
    };

    void watch(QGraphicsObject *);
    void unwatch(QGraphicsObject *);
    void unwatchAll();
    std::size_t indexOf(const QGraphicsObject *) const;
    void noteChange(std::size_t index);
    void childChanged(QGraphicsObject *);
    bool isChanged(std::size_t index) const;
    bool sortIn(std::size_t index);
    void relayoutChanged();
    void relayoutLater();
    void mirrorChange() override;
    void place();
    bool hasConflict() const;
    void warnOfConflict();
    void findFirstChanged();
    std::optional<QSizeF> collectCells();
    void noteContents(std::optional<QSizeF> content);
    void applyCells();
    void applyWithTransitions();
    Transitions &needTransitions();

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override;
    void itemSiblingOrderChanged(QDeclarativeItem *) override;
    void itemVisibilityChanged(QDeclarativeItem *item) override { childChanged(item); }
    void itemOpacityChanged(QDeclarativeItem *item) override { childChanged(item); }

    std::unique_ptr<Transitions> transitions;
    std::deque<Child> watched;
    std::size_t firstChanged = 0; ///< of the watched: those before it stand where they belong
    bool isForeign = false; ///< some children are no items of this module, which do not tell of every change
    Cells cells;
    int spacing = 0;
    Qt::LayoutDirection layoutDirection = Qt::LeftToRight;
    int nesting = 0;
    QGraphicsObject *moving = nullptr; ///< the child that is being put into its place
    bool isPlacing = false;
    bool placeAgain = false;
    bool isQueued = false;
    bool hasWarned = false;
};

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

// Children are often shown, hidden and reordered by the dozen: they are placed once, when all is done. One
// that is hidden by then keeps the place that it had before.
void QDeclarativeBasePositionerPrivate::relayoutLater()
{
    Q_Q(QDeclarativeBasePositioner);
    if (!q->isComponentComplete() || std::exchange(isQueued, true))
        return;
    const auto layOut = [this] {
        if (isQueued)
            relayoutChanged();
    };
    QMetaObject::invokeMethod(q, layOut, Qt::QueuedConnection);
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

void QDeclarativeBasePositionerPrivate::applyCells()
{
    // Moving one child may make another go: its cell is cleared then, so look at each anew.
    for (int i = 0; i < cells.count(); ++i) {
        moving = cells.at(i).item;
        if (moving)
            moving->setPos(cells.at(i).pos);
        if (cells.at(i).item && cells.at(i).item->pos() != cells.at(i).pos)
            noteChange(indexOf(cells.at(i).item));
    }
    moving = nullptr;
}

void QDeclarativeBasePositionerPrivate::applyWithTransitions()
{
    QList<QQuickStateAction> added;
    QList<QQuickStateAction> moved;
    for (const auto &cell : qAsConst(cells)) {
        QList<QQuickStateAction> &actions = cell.isNew ? added : moved;
        if (cell.item->x() != cell.pos.x())
            actions.append(QQuickStateAction(cell.item, QStringLiteral("x"), cell.pos.x()));
        if (cell.item->y() != cell.pos.y())
            actions.append(QQuickStateAction(cell.item, QStringLiteral("y"), cell.pos.y()));
    }
    transitions->addManager.transition(added, transitions->add);
    // A transition runs once at a time: what one shares with the other begins anew, and the first part stays.
    if (transitions->add == transitions->move)
        transitions->addManager.cancel();
    transitions->moveManager.transition(moved, transitions->move);
}

bool QDeclarativeBasePositionerPrivate::hasConflict() const
{
    const int lines = q_func()->placedLines();
    // The last of those that stay may have got its anchors after its size.
    const auto first = watched.cbegin() + std::ptrdiff_t(firstChanged > 0 ? firstChanged - 1 : 0);
    return std::any_of(first, watched.cend(), [lines](const Child &child) {
        auto *item = qobject_cast<QDeclarativeItem *>(child.item);
        const QDeclarativeAnchors *anchors = item ? get(item)->existingAnchors() : nullptr;
        return anchors && ((anchors->usedLines() & lines) || anchors->fill() || anchors->centerIn());
    });
}

void QDeclarativeBasePositionerPrivate::warnOfConflict()
{
    if (hasWarned || !hasConflict())
        return;
    hasWarned = true;
    qmlWarning(q_func()) << q_func()->conflictMessage();
}

void QDeclarativeBasePositionerPrivate::mirrorChange()
{
    QDeclarativeItemPrivate::mirrorChange();
    q_func()->relayout();
}

void QDeclarativeBasePositionerPrivate::place()
{
    Q_Q(QDeclarativeBasePositioner);
    QSizeF size;
    isPlacing = true;
    for (int pass = 0; placeAgain && pass < passLimit; ++pass) {
        placeAgain = false;
        warnOfConflict();
        const std::optional<QSizeF> before = collectCells();
        size = q->arrange(cells, before);
        noteContents(before);
        if (transitions)
            applyWithTransitions();
        else
            applyCells();
    }
    isPlacing = false;
    const QPointer<QObject> guard(q);
    q->setImplicitHeight(size.height());
    if (guard)
        q->setImplicitWidth(size.width());
}

QDeclarativeBasePositionerPrivate::Transitions &QDeclarativeBasePositionerPrivate::needTransitions()
{
    if (!transitions)
        transitions = std::make_unique<Transitions>();
    return *transitions;
}

QDeclarativeBasePositioner::QDeclarativeBasePositioner(QDeclarativeItem *parent)
    : QDeclarativeItem(*new QDeclarativeBasePositionerPrivate, parent)
{
}

QDeclarativeBasePositioner::~QDeclarativeBasePositioner()
{
    d_func()->unwatchAll();
}

int QDeclarativeBasePositioner::spacing() const
{
    return d_func()->spacing;
}

void QDeclarativeBasePositioner::setSpacing(int spacing)
{
    Q_D(QDeclarativeBasePositioner);
    if (spacing == d->spacing)
        return;
    d->spacing = spacing;
    relayout();
    Q_EMIT spacingChanged();
}

QQuickTransition *QDeclarativeBasePositioner::move() const
{
    Q_D(const QDeclarativeBasePositioner);
    return d->transitions ? d->transitions->move : nullptr;
}

void QDeclarativeBasePositioner::setMove(QQuickTransition *transition)
{
    if (transition == move())
        return;
    d_func()->needTransitions().move = transition;
    Q_EMIT moveChanged();
}

QQuickTransition *QDeclarativeBasePositioner::add() const
{
    Q_D(const QDeclarativeBasePositioner);
    return d->transitions ? d->transitions->add : nullptr;
}

void QDeclarativeBasePositioner::setAdd(QQuickTransition *transition)
{
    if (transition == add())
        return;
    d_func()->needTransitions().add = transition;
    Q_EMIT addChanged();
}

void QDeclarativeBasePositioner::relayout()
{
    Q_D(QDeclarativeBasePositioner);
    d->noteChange(0);
    d->relayoutChanged();
}

/** Places the children from the first one on that may stand elsewhere than it belongs. */
void QDeclarativeBasePositionerPrivate::relayoutChanged()
{
    Q_Q(QDeclarativeBasePositioner);
    if (!q->isComponentComplete())
        return;
    isQueued = false;
    placeAgain = true;
    if (isPlacing)
        return;
    if (nesting == nestingLimit) {
        qmlWarning(q) << "Possible loop: children change size whenever the positioner does";
        return;
    }
    ++nesting;
    const QPointer<QObject> guard(q);
    place();
    if (guard)
        --nesting;
}

bool QDeclarativeBasePositioner::isRightToLeft() const
{
    Q_D(const QDeclarativeBasePositioner);
    return (d->layoutDirection == Qt::RightToLeft) != d->isMirrored();
}

void QDeclarativeBasePositioner::mirror(Cells &cells, qreal contentWidth) const
{
    const qreal width = whole(widthValid() ? this->width() : contentWidth);
    for (Cell &cell : cells)
        cell.pos.setX(whole(width - cell.pos.x() - cell.size.width()));
}

Qt::LayoutDirection QDeclarativeBasePositioner::layoutDirection() const
{
    return d_func()->layoutDirection;
}

void QDeclarativeBasePositioner::setLayoutDirection(Qt::LayoutDirection direction)
{
    Q_D(QDeclarativeBasePositioner);
    if (direction == d->layoutDirection)
        return;
    d->layoutDirection = direction;
    relayout();
    Q_EMIT layoutDirectionChanged();
}

QVariant QDeclarativeBasePositioner::itemChange(GraphicsItemChange change, const QVariant &value)
{
    Q_D(QDeclarativeBasePositioner);
    if (change == ItemChildAddedChange || change == ItemChildRemovedChange) {
        if (QGraphicsObject *child = value.value<QGraphicsItem *>()->toGraphicsObject()) {
            if (change == ItemChildAddedChange)
                d->watch(child);
            else
                d->unwatch(child);
            d->relayoutChanged();
        }
    }
    return QDeclarativeItem::itemChange(change, value);
}

void QDeclarativeBasePositioner::componentComplete()
{
    QDeclarativeItem::componentComplete();
    relayout();
}

void QDeclarativeBasePositioner::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    if (newGeometry.size() != oldGeometry.size() && dependsOnSize())
        relayout();
    QDeclarativeItem::geometryChanged(newGeometry, oldGeometry);
}

#include "moc_qdeclarativebasepositioner_p.cpp"
