#include "qdeclarativeparticlemotion_p.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QtMath>

namespace {

/** Moves @p value towards @p target by at most @p step; at the target it turns to another within @p limit. */
qreal sway(qreal value, qreal &target, qreal limit, qreal step)
{
    if (qAbs(target - value) > step)
        return value + (target > value ? step : -step);
    const qreal reached = target;
    const qreal strength = QRandomGenerator::global()->generateDouble() * qAbs(limit);
    target = reached > 0 ? -strength : strength;
    return reached;
}

} // namespace

void QDeclarativeParticleMotion::advance(QDeclarativeParticle &, qreal) const { }

void QDeclarativeParticleMotionLinear::advance(QDeclarativeParticle &particle, qreal seconds) const
{
    particle.position += particle.velocity * seconds;
}

void QDeclarativeParticleMotionGravity::setXAttractor(qreal x)
{
    if (x == attractor.x())
        return;
    attractor.setX(x);
    Q_EMIT xattractorChanged();
}

void QDeclarativeParticleMotionGravity::setYAttractor(qreal y)
{
    if (y == attractor.y())
        return;
    attractor.setY(y);
    Q_EMIT yattractorChanged();
}

void QDeclarativeParticleMotionGravity::setAcceleration(qreal acceleration)
{
    if (acceleration == pull)
        return;
    pull = acceleration;
    Q_EMIT accelerationChanged();
}

void QDeclarativeParticleMotionGravity::advance(QDeclarativeParticle &particle, qreal seconds) const
{
    const QPointF way = attractor - particle.position;
    const qreal distance = qSqrt(QPointF::dotProduct(way, way));
    if (distance > 0)
        particle.velocity += way / distance * pull * seconds;
    particle.position += particle.velocity * seconds;
}

void QDeclarativeParticleMotionWander::setXVariance(qreal x)
{
    if (x == variance.x())
        return;
    variance.setX(x);
    Q_EMIT xvarianceChanged();
}

void QDeclarativeParticleMotionWander::setYVariance(qreal y)
{
    if (y == variance.y())
        return;
    variance.setY(y);
    Q_EMIT yvarianceChanged();
}

void QDeclarativeParticleMotionWander::setPace(qreal pace)
{
    if (pace == change)
        return;
    change = pace;
    Q_EMIT paceChanged();
}

void QDeclarativeParticleMotionWander::advance(QDeclarativeParticle &particle, qreal seconds) const
{
    const qreal step = qAbs(change) * seconds;
    particle.drift = {sway(particle.drift.x(), particle.driftTarget.rx(), variance.x(), step),
                      sway(particle.drift.y(), particle.driftTarget.ry(), variance.y(), step)};
    particle.position += (particle.velocity + particle.drift) * seconds;
}

#include "moc_qdeclarativeparticlemotion_p.cpp"
