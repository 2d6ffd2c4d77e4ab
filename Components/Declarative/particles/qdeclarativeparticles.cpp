#include "qdeclarativeparticles_p.h"

#include "engine/qdeclarativepicturefile_p.h"

#include <QtCore/QAbstractAnimation>
#include <QtCore/QRandomGenerator>
#include <QtCore/QtMath>
#include <QtGui/QPainter>
#include <QtQml/QQmlEngine>
#include <QtQml/QQmlInfo>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>

#include <algorithm>

namespace {

const int mostAlive = 10000;
const qreal longestLife = 1e9; // ms
const qreal farthest = 1e6; // pixels, beyond which nobody will see it again
const int longestStep = 100; // ms, after which what was not seen is skipped

/** Returns a number from the range around @p middle that is @p width wide. */
qreal around(qreal middle, qreal width)
{
    return middle + (QRandomGenerator::global()->generateDouble() - 0.5) * width;
}

} // namespace

/** Ticks with the other animations of the process. */
class QDeclarativeParticles::Clock : public QAbstractAnimation
{
public:
    explicit Clock(QDeclarativeParticles *particles)
        : particles(particles)
    {
    }

    int duration() const override { return -1; }

protected:
    void updateCurrentTime(int time) override
    {
        const int elapsed = qBound(0, time - last, longestStep);
        last = time;
        if (elapsed)
            particles->tick(elapsed);
    }

    void updateState(State, State) override { last = 0; }

private:
    QDeclarativeParticles *const particles;
    int last = 0;
};

QDeclarativeParticles::QDeclarativeParticles(QDeclarativeItem *parent)
    : QDeclarativeItem(parent)
    , clock(std::make_unique<Clock>(this))
{
    setFlag(ItemHasNoContents, false);
}

QDeclarativeParticles::~QDeclarativeParticles()
{
    clock->stop();
}

template <typename T>
bool QDeclarativeParticles::change(T &member, T value)
{
    if (member == value)
        return false;
    member = value;
    wake();
    return true;
}

void QDeclarativeParticles::setSource(const QUrl &source)
{
    if (!change(address, source))
        return;
    loader.clear(this);
    picture = QPixmap();
    particles.clear();
    replacedCount = 0;
    updateBounds();
    if (!address.isEmpty() && !QDeclarativePictureFile::refuse(address, this)) {
        loader.load(qmlEngine(this), address, QQuickPixmap::Cache | QQuickPixmap::Asynchronous);
        if (loader.isLoading())
            loader.connectFinished(this, SLOT(adoptPicture()));
        else
            adoptPicture();
    }
    Q_EMIT sourceChanged();
}

void QDeclarativeParticles::adoptPicture()
{
    if (loader.isError())
        qmlWarning(this) << loader.error();
    picture = QPixmap::fromImage(loader.image());
    wake();
}

void QDeclarativeParticles::setCount(int count)
{
    if (change(wanted, qMax(0, count)))
        Q_EMIT countChanged();
}

void QDeclarativeParticles::setEmissionRate(int value)
{
    if (change(rate, value))
        Q_EMIT emissionRateChanged();
}

void QDeclarativeParticles::setEmissionVariance(qreal value)
{
    if (change(rateVariance, value))
        Q_EMIT emissionVarianceChanged();
}

void QDeclarativeParticles::setLifeSpan(int value)
{
    if (change(life, value))
        Q_EMIT lifeSpanChanged();
}

void QDeclarativeParticles::setLifeSpanDeviation(int value)
{
    if (change(lifeDeviation, value))
        Q_EMIT lifeSpanDeviationChanged();
}

void QDeclarativeParticles::setFadeInDuration(int value)
{
    if (change(fadeIn, qMax(0, value)))
        Q_EMIT fadeInDurationChanged();
}

void QDeclarativeParticles::setFadeOutDuration(int value)
{
    if (change(fadeOut, qMax(0, value)))
        Q_EMIT fadeOutDurationChanged();
}

void QDeclarativeParticles::setAngle(qreal value)
{
    if (change(direction, value))
        Q_EMIT angleChanged();
}

void QDeclarativeParticles::setAngleDeviation(qreal value)
{
    if (change(directionDeviation, value))
        Q_EMIT angleDeviationChanged();
}

void QDeclarativeParticles::setVelocity(qreal value)
{
    if (change(speed, value))
        Q_EMIT velocityChanged();
}

void QDeclarativeParticles::setVelocityDeviation(qreal value)
{
    if (change(speedDeviation, value))
        Q_EMIT velocityDeviationChanged();
}

void QDeclarativeParticles::setMotion(QDeclarativeParticleMotion *motion)
{
    if (motion == mover)
        return;
    mover = motion;
    Q_EMIT motionChanged();
}

void QDeclarativeParticles::componentComplete()
{
    QDeclarativeItem::componentComplete();
    wake();
}

QVariant QDeclarativeParticles::itemChange(GraphicsItemChange change, const QVariant &value)
{
    if (change == ItemVisibleHasChanged || change == ItemOpacityHasChanged || change == ItemSceneHasChanged)
        wake();
    return QDeclarativeItem::itemChange(change, value);
}

void QDeclarativeParticles::geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QDeclarativeItem::geometryChanged(newGeometry, oldGeometry);
    updateBounds();
}

bool QDeclarativeParticles::isSeen() const
{
    if (!isVisible() || effectiveOpacity() <= 0 || !scene())
        return false;
    const auto views = scene()->views();
    return std::any_of(views.cbegin(), views.cend(), [](QGraphicsView *view) { return view->isVisible(); });
}

bool QDeclarativeParticles::hasWork() const
{
    const bool isEmitting = rate != 0 && replacedCount < wanted && life + qAbs(qreal(lifeDeviation)) / 2 > 0;
    return !particles.isEmpty() || burstLeft || isEmitting;
}

void QDeclarativeParticles::wake()
{
    if (clock->state() == QAbstractAnimation::Running || !isComponentComplete() || picture.isNull())
        return;
    // An area without size would never be painted, and so never hear of the view being shown.
    updateBounds();
    if (hasWork() && isSeen())
        clock->start();
}

void QDeclarativeParticles::burst(int number, int emissionRate)
{
    if (number <= 0 || !isComponentComplete())
        return;
    burstLeft = qMin(number, mostAlive);
    burstRate = emissionRate;
    burstDue = 0;
    wake();
}

void QDeclarativeParticles::tick(int elapsed)
{
    if (!isSeen() || picture.isNull()) {
        clock->stop();
        return;
    }
    for (QDeclarativeParticle &particle : particles) {
        particle.age += elapsed;
        if (mover)
            mover->advance(particle, elapsed / 1000.0);
    }
    const auto ended =
        std::remove_if(particles.begin(), particles.end(), [this](const QDeclarativeParticle &particle) {
            const QPointF place = particle.position;
            const bool isNear = qAbs(place.x()) < farthest && qAbs(place.y()) < farthest;
            const bool isOver = particle.age >= particle.lifeSpan || !isNear;
            replacedCount -= isOver && particle.isReplaced;
            return isOver;
        });
    particles.erase(ended, particles.end());
    emitDue(elapsed);
    updateBounds();
    update();
    if (!hasWork())
        clock->stop();
}

void QDeclarativeParticles::emitDue(int elapsed)
{
    const int missing = qMin(wanted - replacedCount, mostAlive - particles.count());
    // Being full does not save up for later.
    due = missing > 0 ? due + elapsed / 1000.0 * rate * qMax(0.0, around(1, 2 * rateVariance)) : 0;
    const int regular = rate < 0 ? missing : int(qMin<qreal>(missing, due));
    due = rate < 0 ? 0 : due - qMax(0, regular);
    for (int i = 0; i < regular; ++i)
        emitOne(true);
    burstDue += elapsed / 1000.0 * burstRate;
    const int extra = burstRate < 0 ? burstLeft : int(qMin<qreal>(burstLeft, burstDue));
    burstDue = burstRate < 0 ? 0 : burstDue - extra;
    burstLeft -= extra;
    for (int i = 0; i < extra; ++i)
        emitOne(false);
}

void QDeclarativeParticles::emitOne(bool isReplaced)
{
    if (particles.count() >= mostAlive)
        return;
    QDeclarativeParticle particle;
    QRandomGenerator *random = QRandomGenerator::global();
    particle.position = {random->generateDouble() * width(), random->generateDouble() * height()};
    const qreal radians = qDegreesToRadians(around(direction, directionDeviation));
    const qreal pace = around(speed, speedDeviation);
    particle.velocity = {pace * qCos(radians), pace * qSin(radians)};
    particle.lifeSpan = int(qBound(0.0, around(life, lifeDeviation), longestLife));
    particle.fadeOut = fadeOut;
    particle.isReplaced = isReplaced;
    if (particle.lifeSpan <= 0)
        return;
    particles.append(particle);
    replacedCount += isReplaced;
}

void QDeclarativeParticles::updateBounds()
{
    QRectF all(0, 0, qMax(1.0, width()), qMax(1.0, height()));
    const QSizeF size = picture.size();
    for (const QDeclarativeParticle &particle : qAsConst(particles))
        all |= QRectF(particle.position - QPointF(size.width(), size.height()) / 2, size);
    if (all == bounds)
        return;
    prepareGeometryChange();
    bounds = all;
}

QRectF QDeclarativeParticles::boundingRect() const
{
    return bounds;
}

qreal QDeclarativeParticles::opacityOf(const QDeclarativeParticle &particle) const
{
    const int left = particle.lifeSpan - particle.age;
    qreal opacity = 1;
    if (particle.age < fadeIn)
        opacity = qreal(particle.age) / fadeIn;
    if (left < particle.fadeOut)
        opacity = qMin(opacity, qreal(left) / particle.fadeOut);
    return opacity;
}

void QDeclarativeParticles::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    // Nothing else tells that the view is shown again.
    if (clock->state() != QAbstractAnimation::Running && hasWork())
        QMetaObject::invokeMethod(
            this, [this] { wake(); }, Qt::QueuedConnection);
    if (picture.isNull())
        return;
    const qreal full = painter->opacity();
    painter->setRenderHint(QPainter::SmoothPixmapTransform, smooth());
    const QPointF middle(picture.width() / 2.0, picture.height() / 2.0);
    for (const QDeclarativeParticle &particle : qAsConst(particles)) {
        painter->setOpacity(full * opacityOf(particle));
        painter->drawPixmap(particle.position - middle, picture);
    }
    painter->setOpacity(full);
}

#include "moc_qdeclarativeparticles_p.cpp"
