#include "qdeclarativerotationanimation_p.h"

#include <QtQml/qqmlprivate.h>

#include <private/qquickanimation_p_p.h>

#include <cmath>
#include <new>

namespace {

using Interpolator = QVariantAnimation::Interpolator;

constexpr qreal turn = 360; // degrees
constexpr qreal farApart = 1000 * turn;

constexpr int directionCount = QQuickRotationAnimation::Counterclockwise + 1;
Interpolator byTurns[directionCount]; ///< those of the engine

template <int direction>
QVariant interpolate(const void *from, const void *to, qreal progress)
{
    const qreal begin = *static_cast<const qreal *>(from);
    const qreal end = *static_cast<const qreal *>(to);
    if (!std::isfinite(begin) || !std::isfinite(end))
        return begin + (end - begin) * progress;
    if (qAbs(end - begin) <= farApart)
        return byTurns[direction](from, to, progress);
    // Each by itself: their difference may be more than a number holds.
    const qreal near = begin + (std::fmod(end, turn) - std::fmod(begin, turn));
    return byTurns[direction](from, &near, progress);
}

template <int direction>
void replace(Interpolator *interpolator)
{
    if (*interpolator == &interpolate<direction>)
        return;
    byTurns[direction] = *interpolator;
    *interpolator = &interpolate<direction>;
}

void replace(QQuickRotationAnimation::RotationDirection direction, Interpolator *interpolator)
{
    if (direction == QQuickRotationAnimation::Shortest)
        replace<QQuickRotationAnimation::Shortest>(interpolator);
    else if (direction == QQuickRotationAnimation::Clockwise)
        replace<QQuickRotationAnimation::Clockwise>(interpolator);
    else if (direction == QQuickRotationAnimation::Counterclockwise)
        replace<QQuickRotationAnimation::Counterclockwise>(interpolator);
}

} // namespace

void QDeclarativeRotationAnimation::create(void *memory)
{
    using Element = QQmlPrivate::QQmlElement<QDeclarativeRotationAnimation>;
    static_assert(sizeof(Element) == sizeof(QQmlPrivate::QQmlElement<QQuickRotationAnimation>),
                  "the engine gives as much memory as its own class takes");
    new (memory) Element;
}

// The engine takes the interpolator along when an animation starts, wherever that is done.
QAbstractAnimationJob *QDeclarativeRotationAnimation::transition(QQuickStateActions &actions,
                                                                 QQmlProperties &modified,
                                                                 TransitionDirection direction,
                                                                 QObject *defaultTarget)
{
    auto *const d = static_cast<QQuickPropertyAnimationPrivate *>(QObjectPrivate::get(this));
    replace(this->direction(), &d->interpolator);
    return QQuickRotationAnimation::transition(actions, modified, direction, defaultTarget);
}
