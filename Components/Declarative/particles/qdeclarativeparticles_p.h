#pragma once

#include "qdeclarativeparticlemotion_p.h"

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>
#include <QtGui/QPixmap>

#include <private/qquickpixmapcache_p.h>

#include <memory>

/**
 * Emits copies of a picture from its area, which move and fade, for "Qt.labs.particles 1.0".
 *
 * All are painted by this one item. Where nothing lives and nothing is to be emitted, and where it cannot be
 * seen, it does nothing.
 */
class QDeclarativeParticles : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(int count READ count WRITE setCount NOTIFY countChanged)
    Q_PROPERTY(int emissionRate READ emissionRate WRITE setEmissionRate NOTIFY emissionRateChanged)
    Q_PROPERTY(
        qreal emissionVariance READ emissionVariance WRITE setEmissionVariance NOTIFY emissionVarianceChanged)
    Q_PROPERTY(int lifeSpan READ lifeSpan WRITE setLifeSpan NOTIFY lifeSpanChanged)
    Q_PROPERTY(int lifeSpanDeviation READ lifeSpanDeviation WRITE setLifeSpanDeviation NOTIFY
                   lifeSpanDeviationChanged)
    Q_PROPERTY(int fadeInDuration READ fadeInDuration WRITE setFadeInDuration NOTIFY fadeInDurationChanged)
    Q_PROPERTY(
        int fadeOutDuration READ fadeOutDuration WRITE setFadeOutDuration NOTIFY fadeOutDurationChanged)
    Q_PROPERTY(qreal angle READ angle WRITE setAngle NOTIFY angleChanged)
    Q_PROPERTY(qreal angleDeviation READ angleDeviation WRITE setAngleDeviation NOTIFY angleDeviationChanged)
    Q_PROPERTY(qreal velocity READ velocity WRITE setVelocity NOTIFY velocityChanged)
    Q_PROPERTY(qreal velocityDeviation READ velocityDeviation WRITE setVelocityDeviation NOTIFY
                   velocityDeviationChanged)
    Q_PROPERTY(QDeclarativeParticleMotion *motion READ motion WRITE setMotion NOTIFY motionChanged)
    Q_CLASSINFO("DefaultProperty", "motion")

public:
    explicit QDeclarativeParticles(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeParticles() override;

    QUrl source() const { return address; }
    void setSource(const QUrl &);

    /** How many there shall be; each is replaced at its end. 10000 at most are alive at once. */
    int count() const { return wanted; }
    void setCount(int);

    /** How many are emitted in a second, -1 for as many as there shall be. */
    int emissionRate() const { return rate; }
    void setEmissionRate(int);

    /** How uneven that is, from 0. */
    qreal emissionVariance() const { return rateVariance; }
    void setEmissionVariance(qreal);

    /** In ms, with the deviation half above and half below; fading is in ms too. */
    int lifeSpan() const { return life; }
    void setLifeSpan(int);
    int lifeSpanDeviation() const { return lifeDeviation; }
    void setLifeSpanDeviation(int);
    int fadeInDuration() const { return fadeIn; }
    void setFadeInDuration(int);
    int fadeOutDuration() const { return fadeOut; }
    void setFadeOutDuration(int);

    /** In degrees, clockwise from the right. */
    qreal angle() const { return direction; }
    void setAngle(qreal);
    qreal angleDeviation() const { return directionDeviation; }
    void setAngleDeviation(qreal);

    /** In pixels per second. */
    qreal velocity() const { return speed; }
    void setVelocity(qreal);
    qreal velocityDeviation() const { return speedDeviation; }
    void setVelocityDeviation(qreal);
    QDeclarativeParticleMotion *motion() const { return mover; }
    void setMotion(QDeclarativeParticleMotion *);

    /** Emits @p number that are not replaced, at @p emissionRate in a second, -1 for all at once. */
    Q_INVOKABLE void burst(int number, int emissionRate = -1);

    QRectF boundingRect() const override;
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

Q_SIGNALS:
    void sourceChanged();
    void countChanged();
    void emissionRateChanged();
    void emissionVarianceChanged();
    void lifeSpanChanged();
    void lifeSpanDeviationChanged();
    void fadeInDurationChanged();
    void fadeOutDurationChanged();
    void angleChanged();
    void angleDeviationChanged();
    void velocityChanged();
    void velocityDeviationChanged();
    void motionChanged();

protected:
    void componentComplete() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QVariant itemChange(GraphicsItemChange, const QVariant &) override;

private Q_SLOTS:
    void adoptPicture();

private:
    class Clock;

    template <typename T>
    bool change(T &member, T value);
    bool isSeen() const;
    bool hasWork() const;
    void wake();
    void tick(int time);
    void emitDue(int elapsed);
    void emitOne(bool isReplaced);
    void updateBounds();
    qreal opacityOf(const QDeclarativeParticle &) const;

    QUrl address;
    QQuickPixmap loader;
    QPixmap picture;
    QPointer<QDeclarativeParticleMotion> mover;
    std::unique_ptr<Clock> clock;
    QVector<QDeclarativeParticle> particles;
    QRectF bounds;
    int replacedCount = 0; ///< of those alive, how many are no burst's
    int wanted = 1;
    int rate = -1;
    qreal rateVariance = 0.5;
    qreal due = 0; ///< how many are to be emitted, with the fraction that is left of one
    int burstLeft = 0;
    int burstRate = -1;
    qreal burstDue = 0;
    int life = 1000;
    int lifeDeviation = 1000;
    int fadeIn = 200;
    int fadeOut = 300;
    qreal direction = 0;
    qreal directionDeviation = 0;
    qreal speed = 0;
    qreal speedDeviation = 0;
};

QML_DECLARE_TYPE(QDeclarativeParticles)
