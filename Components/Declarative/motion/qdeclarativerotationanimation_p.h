#pragma once

#include <private/qquickanimation_p.h>

/**
 * The engine's RotationAnimation, with which the way to an angle of any size is found at once.
 *
 * The engine looks for the way to a side by full turns, one after the other: that takes minutes where they
 * are many, and never ends where a turn is too small to change the number. Only angles that are few turns
 * apart are left to it. To or from what is infinite or no number it goes as without a direction.
 */
class QDeclarativeRotationAnimation : public QQuickRotationAnimation
{
public:
    /** Makes one in @p memory, which has room for an element of the engine's class, as an element. */
    static void create(void *memory);

protected:
    QAbstractAnimationJob *transition(QQuickStateActions &actions, QQmlProperties &modified,
                                      TransitionDirection direction, QObject *defaultTarget) override;
};
