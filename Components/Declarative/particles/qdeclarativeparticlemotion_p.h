#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtQml/qqml.h>

/** One particle: where it is, how fast it goes in pixels per second, and how long it lives in ms. */
struct QDeclarativeParticle
{
    QPointF position;
    QPointF velocity;
    QPointF drift; ///< on top of the velocity, for what wanders
    QPointF driftTarget;
    int age = 0;
    int lifeSpan = 0;
    int fadeOut = 0; ///< how long before its end it starts to fade
    bool isReplaced = false; ///< when it ends, as those of a burst are not
};

/** How particles move; this one leaves them where they are. */
class QDeclarativeParticleMotion : public QObject
{
    Q_OBJECT

public:
    explicit QDeclarativeParticleMotion(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    /** Moves @p particle on by @p seconds. */
    virtual void advance(QDeclarativeParticle &particle, qreal seconds) const;
};

/** Particles keep their velocity. */
class QDeclarativeParticleMotionLinear : public QDeclarativeParticleMotion
{
    Q_OBJECT

public:
    using QDeclarativeParticleMotion::QDeclarativeParticleMotion;

    void advance(QDeclarativeParticle &, qreal seconds) const override;
};

/** Particles accelerate towards a point, by pixels per second squared. */
class QDeclarativeParticleMotionGravity : public QDeclarativeParticleMotion
{
    Q_OBJECT
    Q_PROPERTY(qreal xattractor READ xAttractor WRITE setXAttractor NOTIFY xattractorChanged)
    Q_PROPERTY(qreal yattractor READ yAttractor WRITE setYAttractor NOTIFY yattractorChanged)
    Q_PROPERTY(qreal acceleration READ acceleration WRITE setAcceleration NOTIFY accelerationChanged)

public:
    using QDeclarativeParticleMotion::QDeclarativeParticleMotion;

    qreal xAttractor() const { return attractor.x(); }
    void setXAttractor(qreal);
    qreal yAttractor() const { return attractor.y(); }
    void setYAttractor(qreal);
    qreal acceleration() const { return pull; }
    void setAcceleration(qreal);

    void advance(QDeclarativeParticle &, qreal seconds) const override;

Q_SIGNALS:
    void xattractorChanged();
    void yattractorChanged();
    void accelerationChanged();

private:
    QPointF attractor;
    qreal pull = 50;
};

/** Particles sway from their way, by up to so many pixels per second each way. */
class QDeclarativeParticleMotionWander : public QDeclarativeParticleMotion
{
    Q_OBJECT
    Q_PROPERTY(qreal xvariance READ xVariance WRITE setXVariance NOTIFY xvarianceChanged)
    Q_PROPERTY(qreal yvariance READ yVariance WRITE setYVariance NOTIFY yvarianceChanged)
    Q_PROPERTY(qreal pace READ pace WRITE setPace NOTIFY paceChanged)

public:
    using QDeclarativeParticleMotion::QDeclarativeParticleMotion;

    qreal xVariance() const { return variance.x(); }
    void setXVariance(qreal);
    qreal yVariance() const { return variance.y(); }
    void setYVariance(qreal);

    /** How fast the swaying changes, in pixels per second squared. */
    qreal pace() const { return change; }
    void setPace(qreal);

    void advance(QDeclarativeParticle &, qreal seconds) const override;

Q_SIGNALS:
    void xvarianceChanged();
    void yvarianceChanged();
    void paceChanged();

private:
    QPointF variance;
    qreal change = 100;
};

QML_DECLARE_TYPE(QDeclarativeParticleMotion)
QML_DECLARE_TYPE(QDeclarativeParticleMotionLinear)
QML_DECLARE_TYPE(QDeclarativeParticleMotionGravity)
QML_DECLARE_TYPE(QDeclarativeParticleMotionWander)
