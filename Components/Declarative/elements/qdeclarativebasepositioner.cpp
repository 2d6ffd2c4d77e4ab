#include "qdeclarativebasepositioner_p.h"

#include "item/qdeclarativeanchors_p.h"
#include "qdeclarativebasepositioner_p_p.h"

#include <QtQml/QQmlInfo>

#include <private/qquickstate_p.h>

#include <algorithm>
#include <utility>

namespace {

/** How often children may change size in answer to being placed before that counts as endless. */
constexpr int passLimit = 4;

/** How often they may do so in answer to the positioner's size. */
constexpr int nestingLimit = 16;

} // namespace

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
