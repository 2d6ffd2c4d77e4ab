#include "qdeclarativeitemanimation_p.h"

#include "qdeclarativeanchorchanges_p.h"
#include "qdeclarativeparentchange_p.h"

#include <QtCore/QtMath>

#include <private/qparallelanimationgroupjob_p.h>
#include <private/qsequentialanimationgroupjob_p.h>

#include <cmath>
#include <functional>

namespace {

/** Takes numbers from one value to another. */
class NumbersJob : public QAbstractAnimationJob
{
public:
    NumbersJob(const QQuickStateActions &actions, int duration, const QEasingCurve &easing)
        : m_actions(actions)
        , m_easing(easing)
        , m_duration(duration)
    {
    }

    int duration() const override { return m_duration; }

protected:
    void updateCurrentTime(int time) override
    {
        const qreal progress = m_duration ? m_easing.valueForProgress(qreal(time) / m_duration) : 1;
        for (const QQuickStateAction &action : qAsConst(m_actions)) {
            const qreal from = action.fromValue.toReal(), to = action.toValue.toReal();
            action.property.write(from + (to - from) * progress);
        }
    }

private:
    const QQuickStateActions m_actions;
    const QEasingCurve m_easing;
    const int m_duration;
};

/** Calls a function when its turn comes. */
class CallJob : public QAbstractAnimationJob
{
public:
    explicit CallJob(std::function<void()> function)
        : m_function(std::move(function))
    {
    }

protected:
    void updateState(State now, State before) override
    {
        QAbstractAnimationJob::updateState(now, before);
        if (now == Running)
            m_function();
    }

private:
    const std::function<void()> m_function;
};

} // namespace

QDeclarativeAnchorAnimation::QDeclarativeAnchorAnimation(QObject *parent)
    : QQuickAbstractAnimation(parent)
{
    connect(this, &QDeclarativeAnchorAnimation::stopped, this, &QDeclarativeAnchorAnimation::completed);
}

QQmlListProperty<QDeclarativeItem> QDeclarativeAnchorAnimation::targets()
{
    return {this, &m_targets};
}

void QDeclarativeAnchorAnimation::setDuration(int milliseconds)
{
    if (milliseconds < 0 || milliseconds == m_duration)
        return;
    m_duration = milliseconds;
    Q_EMIT durationChanged(milliseconds);
}

void QDeclarativeAnchorAnimation::setEasing(const QEasingCurve &easing)
{
    if (easing == m_easing)
        return;
    m_easing = easing;
    Q_EMIT easingChanged(easing);
}

QAbstractAnimationJob *QDeclarativeAnchorAnimation::transition(QQuickStateActions &actions, QQmlProperties &,
                                                               TransitionDirection, QObject *)
{
    QQuickStateActions moves;
    for (const QQuickStateAction &action : qAsConst(actions)) {
        if (!action.event || action.event->type() != QQuickStateActionEvent::AnchorChanges)
            continue;
        const auto *change = static_cast<QDeclarativeAnchorChanges *>(action.event);
        if (m_targets.isEmpty() || m_targets.contains(change->target()))
            moves << change->additionalActions();
    }
    return initInstance(new NumbersJob(moves, m_duration, m_easing));
}

QDeclarativeParentAnimation::QDeclarativeParentAnimation(QObject *parent)
    : QQuickAnimationGroup(parent)
{
    connect(this, &QDeclarativeParentAnimation::stopped, this, &QDeclarativeParentAnimation::completed);
}

void QDeclarativeParentAnimation::setTargetItem(QDeclarativeItem *target)
{
    if (target == m_target)
        return;
    m_target = target;
    Q_EMIT targetChanged();
}

void QDeclarativeParentAnimation::setNewParent(QDeclarativeItem *parent)
{
    if (parent == m_newParent)
        return;
    m_newParent = parent;
    Q_EMIT newParentChanged();
}

void QDeclarativeParentAnimation::setVia(QDeclarativeItem *via)
{
    if (via == m_via)
        return;
    m_via = via;
    Q_EMIT viaChanged();
}

/** Finds the change of parent among @p actions, and keeps the transition from making it at once. */
bool QDeclarativeParentAnimation::takeMove(QQuickStateActions *actions, Move *move) const
{
    for (QQuickStateAction &action : *actions) {
        if (!action.event || action.event->type() != QQuickStateActionEvent::ParentChange
            || action.actionDone)
            continue;
        auto *change = static_cast<QDeclarativeParentChange *>(action.event);
        QDeclarativeItem *parent = action.reverseEvent ? change->originalParent() : change->parent();
        if ((m_target && change->target() != m_target) || (m_newParent && parent != m_newParent))
            continue;
        action.actionDone = true;
        *move = {change->target(), parent, change, bool(action.reverseEvent)};
        return true;
    }
    if (!m_target || !m_newParent)
        return false;
    *move = {m_target, m_newParent, nullptr, false};
    return true;
}

/** Expresses where the item goes in its new parent by the coordinates of the item that it goes through. */
void QDeclarativeParentAnimation::mapToVia(QQuickStateActions *actions, const Move &move) const
{
    const auto find = [&](const char *name) -> QQuickStateAction * {
        for (QQuickStateAction &action : *actions) {
            if (action.property.object() == move.item && action.property.name() == QLatin1String(name))
                return &action;
        }
        return nullptr;
    };
    bool ok = false;
    const QGraphicsItem *via = m_via.data();
    const QTransform across = move.parent->itemTransform(via, &ok);
    QQuickStateAction *const x = find("x"), *const y = find("y");
    const QPointF origin = QDeclarativeItemPrivate::get(move.item.data())->computeTransformOrigin();
    const QPointF place(x ? x->toValue.toReal() : move.item->x(), y ? y->toValue.toReal() : move.item->y());
    const QPointF mapped = across.map(place + origin) - origin;
    if (x)
        x->toValue = mapped.x();
    if (y)
        y->toValue = mapped.y();
    if (QQuickStateAction *rotation = find("rotation")) {
        const qreal turn = qRadiansToDegrees(std::atan2(across.m12(), across.m11()));
        rotation->toValue = rotation->toValue.toReal() + turn;
    }
    if (QQuickStateAction *scale = find("scale"))
        scale->toValue = scale->toValue.toReal() * std::hypot(across.m11(), across.m12());
}

QAbstractAnimationJob *QDeclarativeParentAnimation::firstStep(const Move &move)
{
    const QPointer<QDeclarativeItem> via = m_via;
    return new CallJob([=] {
        if (!move.item)
            return;
        if (via)
            QDeclarativeParentChange::reparent(move.item, via, move.change);
        else if (move.change && move.reverse)
            move.change->reverse();
        else if (move.change)
            move.change->execute();
        else
            QDeclarativeParentChange::reparent(move.item, move.parent, move.item);
    });
}

QAbstractAnimationJob *QDeclarativeParentAnimation::lastStep(const Move &move)
{
    return new CallJob([=] {
        if (!move.item)
            return;
        if (move.change && move.reverse)
            move.change->reverse();
        else if (move.change)
            move.change->execute();
        else
            QDeclarativeParentChange::reparent(move.item, move.parent, move.item);
    });
}

QAbstractAnimationJob *QDeclarativeParentAnimation::transition(QQuickStateActions &actions,
                                                               QQmlProperties &modified,
                                                               TransitionDirection direction,
                                                               QObject *defaultTarget)
{
    Move move;
    const bool moves = takeMove(&actions, &move);
    auto *steps = new QSequentialAnimationGroupJob;
    auto *together = new QParallelAnimationGroupJob;
    if (moves && m_via && move.parent)
        mapToVia(&actions, move);
    auto children = animations();
    for (int i = 0; i < children.count(&children); ++i) {
        if (QAbstractAnimationJob *job =
                children.at(&children, i)->transition(actions, modified, direction, defaultTarget))
            together->appendAnimation(job);
    }
    if (moves)
        steps->appendAnimation(firstStep(move));
    steps->appendAnimation(together);
    if (moves && m_via)
        steps->appendAnimation(lastStep(move));
    return initInstance(steps);
}
