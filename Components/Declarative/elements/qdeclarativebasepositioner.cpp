#include "qdeclarativebasepositioner_p.h"

#include "item/qdeclarativeanchors_p.h"
#include "item/qdeclarativeitem_p.h"

#include <QtQml/QQmlInfo>
#include <QtWidgets/QGraphicsWidget>

#include <private/qquickstate_p.h>
#include <private/qquicktransition_p.h>
#include <private/qquicktransitionmanager_p_p.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

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
    void childChanged(QGraphicsObject *);
    bool isChanged(const QGraphicsObject *) const;
    void relayoutLater();
    void mirrorChange() override;
    void place();
    bool hasConflict() const;
    void warnOfConflict();
    void collectCells();
    void applyCells();
    void applyWithTransitions();
    Transitions &needTransitions();

    void itemGeometryChanged(QDeclarativeItem *, const QRectF &now, const QRectF &before) override
    {
        if (now.size() != before.size())
            q_func()->relayout();
    }
    void itemSiblingOrderChanged(QDeclarativeItem *) override;
    void itemVisibilityChanged(QDeclarativeItem *item) override { childChanged(item); }
    void itemOpacityChanged(QDeclarativeItem *item) override { childChanged(item); }

    std::unique_ptr<Transitions> transitions;
    std::vector<Child> watched;
    Cells cells;
    int spacing = 0;
    Qt::LayoutDirection layoutDirection = Qt::LeftToRight;
    int nesting = 0;
    bool isPlacing = false;
    bool placeAgain = false;
    bool isQueued = false;
    bool hasWarned = false;
};

void QDeclarativeBasePositionerPrivate::watch(QGraphicsObject *object)
{
    Q_Q(QDeclarativeBasePositioner);
    watched.push_back({object, QSizeF(), false});
    if (auto *item = qobject_cast<QDeclarativeItem *>(object)) {
        get(item)->addChangeListener(this, watchedChanges);
        return;
    }
    const auto changed = [this, object] { childChanged(object); };
    QObject::connect(object, &QGraphicsObject::visibleChanged, q, changed);
    QObject::connect(object, &QGraphicsObject::opacityChanged, q, changed);
    const auto resized = [this, object] {
        if (isChanged(object))
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
    watched.erase(std::remove_if(watched.begin(), watched.end(),
                                 [object](const Child &child) { return child.item == object; }),
                  watched.end());
    for (auto &cell : cells) {
        if (cell.item == object)
            cell.item = nullptr;
    }
}

void QDeclarativeBasePositionerPrivate::unwatchAll()
{
    while (!watched.empty())
        unwatch(watched.back().item);
}

bool QDeclarativeBasePositionerPrivate::isChanged(const QGraphicsObject *object) const
{
    const auto child = std::find_if(watched.cbegin(), watched.cend(),
                                    [object](const Child &other) { return other.item == object; });
    if (child == watched.cend())
        return false;
    const bool placed = hasPlace(object);
    return placed != child->placed || (placed && sizeOf(object) != child->size);
}

void QDeclarativeBasePositionerPrivate::childChanged(QGraphicsObject *object)
{
    if (isChanged(object))
        relayoutLater();
}

void QDeclarativeBasePositionerPrivate::itemSiblingOrderChanged(QDeclarativeItem *)
{
    if (!std::is_sorted(watched.cbegin(), watched.cend(), precedes))
        relayoutLater();
}

// Children are often shown, hidden and reordered by the dozen: they are placed once, when all is done. One
// that is hidden by then keeps the place that it had before.
void QDeclarativeBasePositionerPrivate::relayoutLater()
{
    Q_Q(QDeclarativeBasePositioner);
    if (!q->isComponentComplete() || std::exchange(isQueued, true))
        return;
    const auto layOut = [this, q] {
        if (isQueued)
            q->relayout();
    };
    QMetaObject::invokeMethod(q, layOut, Qt::QueuedConnection);
}

void QDeclarativeBasePositionerPrivate::collectCells()
{
    if (!std::is_sorted(watched.cbegin(), watched.cend(), precedes))
        std::sort(watched.begin(), watched.end(), precedes);
    cells.clear();
    cells.reserve(int(watched.size()));
    for (Child &child : watched) {
        const bool wasPlaced = child.placed;
        child.placed = hasPlace(child.item);
        child.size = sizeOf(child.item);
        if (child.placed)
            cells.append({child.item, child.size, child.item->pos(), !wasPlaced});
    }
}

void QDeclarativeBasePositionerPrivate::applyCells()
{
    // Moving one child may make another go: its cell is cleared then, so look at each anew.
    for (int i = 0; i < cells.count(); ++i) {
        if (cells.at(i).item)
            cells.at(i).item->setPos(cells.at(i).pos);
    }
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
    return std::any_of(watched.cbegin(), watched.cend(), [lines](const Child &child) {
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
        collectCells();
        size = q->arrange(cells);
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
    if (!isComponentComplete())
        return;
    d->isQueued = false;
    d->placeAgain = true;
    if (d->isPlacing)
        return;
    if (d->nesting == nestingLimit) {
        qmlWarning(this) << "Possible loop: children change size whenever the positioner does";
        return;
    }
    ++d->nesting;
    const QPointer<QObject> guard(this);
    d->place();
    if (guard)
        --d->nesting;
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
            relayout();
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
