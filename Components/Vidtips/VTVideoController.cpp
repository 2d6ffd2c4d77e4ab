#include "VTVideoController.h"

#include "VTQuitRequest_p.h"
#include "VTVideoSource.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QMutex>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>

namespace Vidtips {

namespace {
constexpr int lockTimeout = 100;
constexpr double millisecondsPerDay = 86400000.0;
constexpr double longestWait = 1e12;

// What is below zero or no number is as far past every end as what is too large.
quint64 truncatedToUnsigned(double value)
{
    constexpr double bound = 18446744073709551616.0;
    return value > -1.0 && value < bound ? quint64(value) : std::numeric_limits<quint64>::max();
}
} // namespace

struct VIDTIPS_NO_EXPORT VTVideoController::Private
{
    enum class Next { Present, Announce, Pause, Sleep };

    VTVideoSource *source = nullptr;
    quint64 displayedIndex = 0;
    // Written under the lock, read without it.
    std::atomic<quint64> position{0};
    // Taken before the source's locks, never after them: the source knows nothing of its controller.
    QRecursiveMutex lock;
    // Set without the lock, so that asking the thread to end never waits for it.
    std::atomic<bool> shouldQuit{false};
    VTQuitRequest quitRequest;
    bool needFrame = true;
    bool scrubbing = false;
    bool looping = false;
    QDateTime lastFrameDisplayTime;
    State state = Paused;

    // Of the clip that was named last. Until the source's thread has turned to it there are no frames, though
    // the source still holds those of the clip before.
    quint64 loadedCount() const { return source ? source->selectedFrameCount() : 0; }
    quint64 totalCount() const { return loadedCount(); }
    bool isAvailable() const { return position < loadedCount(); }
    VTVideoFrame frame(quint64 index) const
    {
        return source ? source->selectedFrame(uint(index)) : VTVideoFrame();
    }

    bool select(const QUrl &url);
    void moveTo(quint64 index);
    quint64 indexAt(double progress) const;
    bool startPlaying();
    bool isLooped() const;
    void advance();
    Next next();
    Next nextWhilePlaying();
    Next nextWhilePaused();
    void sleep(double seconds);
    bool isPlaying();
};

// In one step, before anything is announced: whoever hears of it may select another clip. One that is refused
// changes nothing about the position.
bool VTVideoController::Private::select(const QUrl &url)
{
    const QMutexLocker locker(&lock);
    const bool isAccepted = source && source->selectSource(url);
    if (isAccepted)
        position = 0;
    displayedIndex = position - 1;
    needFrame = true;
    state = Paused;
    return isAccepted;
}

void VTVideoController::Private::moveTo(quint64 index)
{
    const quint64 count = loadedCount();
    position = index < count ? index : count - 1;
    displayedIndex = position - 1;
    needFrame = true;
}

quint64 VTVideoController::Private::indexAt(double progress) const
{
    return truncatedToUnsigned(double(totalCount()) * progress);
}

// Tells whether the position was rewound. In one step, as the thread pauses a clip that plays past its last
// frame.
bool VTVideoController::Private::startPlaying()
{
    const QMutexLocker locker(&lock);
    state = Playing;
    const bool isPastEnd = source && position >= totalCount();
    if (isPastEnd)
        moveTo(indexAt(0.0));
    return isPastEnd;
}

VTVideoController::Private::Next VTVideoController::Private::next()
{
    return state == Playing ? nextWhilePlaying() : nextWhilePaused();
}

VTVideoController::Private::Next VTVideoController::Private::nextWhilePlaying()
{
    if (isAvailable()) {
        needFrame = false;
        return Next::Present;
    }
    const quint64 count = totalCount();
    if (count < position)
        return Next::Sleep;
    if (looping && source && source->isOpen())
        return Next::Sleep;
    if (isLooped()) {
        position = count - 1;
        return Next::Present;
    }
    state = Paused;
    return Next::Pause;
}

// Tells whether the last frame is followed by the first: all are decoded, and there is more than one.
bool VTVideoController::Private::isLooped() const
{
    return looping && loadedCount() > 1 && !source->isOpen();
}

// In one step, as it is read without the lock: a loop has no position past its last frame.
void VTVideoController::Private::advance()
{
    const quint64 next = position + 1;
    position = next == loadedCount() && isLooped() ? 0 : next;
}

VTVideoController::Private::Next VTVideoController::Private::nextWhilePaused()
{
    if (!needFrame || !isAvailable())
        return Next::Sleep;
    if (!frame(0).isNull())
        needFrame = false;
    return Next::Announce;
}

// Long waits end early when the thread is to end or playback was paused meanwhile.
void VTVideoController::Private::sleep(double seconds)
{
    const double milliseconds =
        std::isfinite(seconds) ? std::min(seconds * 1000.0, longestWait) : VTQuitRequest::idleInterval;
    const QDeadlineTimer deadline(qint64(milliseconds), Qt::PreciseTimer);
    do {
        quitRequest.idle(int(std::min(deadline.remainingTime(), qint64(VTQuitRequest::idleInterval))));
    } while (!deadline.hasExpired() && isPlaying());
}

bool VTVideoController::Private::isPlaying()
{
    const QMutexLocker locker(&lock);
    return state == Playing && !shouldQuit;
}

VTVideoController::VTVideoController(VTVideoSource *source, QObject *parent)
    : QThread(parent)
    , d(new Private)
{
    setObjectName(QStringLiteral("Controller"));
    d->source = source;
    connect(this, &QThread::finished, this, &QObject::deleteLater);
    if (!source)
        return;
    connect(source, &VTVideoSource::streamEnded, this, &VTVideoController::streamEnded);
    connect(source, &VTVideoSource::sourceLoaded, this, &VTVideoController::sourceLoaded);
    connect(source, &VTVideoSource::loadProgressChanged, this, &VTVideoController::loadProgressChanged);
}

VTVideoController::~VTVideoController()
{
    quit();
    wait();
}

bool VTVideoController::setSource(const QUrl &url)
{
    const bool isAccepted = d->select(url);
    streamEnded();
    Q_EMIT positionChanged();
    setState(Paused);
    if (isAccepted)
        setNeedFrame(true);
    return isAccepted;
}

QUrl VTVideoController::source()
{
    return d->source ? d->source->source() : QUrl();
}

void VTVideoController::play()
{
    if (d->startPlaying())
        Q_EMIT positionChanged();
    Q_EMIT stateChanged();
}

void VTVideoController::pause()
{
    setState(Paused);
}

void VTVideoController::setState(State state)
{
    {
        const QMutexLocker locker(&d->lock);
        d->state = state;
    }
    Q_EMIT stateChanged();
}

VTVideoController::State VTVideoController::state()
{
    const QMutexLocker locker(&d->lock);
    return d->state;
}

void VTVideoController::setPosition(quint64 position)
{
    {
        const QMutexLocker locker(&d->lock);
        d->moveTo(position);
    }
    Q_EMIT positionChanged();
}

quint64 VTVideoController::position()
{
    return d->position;
}

void VTVideoController::setProgress(double progress)
{
    setPosition(d->indexAt(progress));
}

double VTVideoController::progress()
{
    const quint64 total = d->totalCount();
    return total ? double(d->position) / double(total) : 0.0;
}

double VTVideoController::loadProgress() const
{
    return d->source ? double(d->loadedCount()) / double(d->totalCount()) : 0.0;
}

void VTVideoController::setScrubbing(bool scrubbing)
{
    const QMutexLocker locker(&d->lock);
    d->scrubbing = scrubbing;
}

bool VTVideoController::isScrubbing()
{
    const QMutexLocker locker(&d->lock);
    return d->scrubbing;
}

void VTVideoController::setLooping(bool looping)
{
    const QMutexLocker locker(&d->lock);
    d->looping = looping;
}

bool VTVideoController::isLooping()
{
    const QMutexLocker locker(&d->lock);
    return d->looping;
}

void VTVideoController::setNeedFrame(bool needFrame)
{
    const QMutexLocker locker(&d->lock);
    d->needFrame = needFrame;
}

void VTVideoController::setLastFrameDisplayTime(const QDateTime &time)
{
    const QMutexLocker locker(&d->lock);
    d->lastFrameDisplayTime = time;
}

QDateTime VTVideoController::lastFrameDisplayTime()
{
    const QMutexLocker locker(&d->lock);
    return d->lastFrameDisplayTime;
}

VTVideoFrame VTVideoController::currentFrame()
{
    const QMutexLocker locker(&d->lock);
    d->displayedIndex = d->position;
    return getFrame(d->displayedIndex);
}

VTVideoFrame VTVideoController::getFrame(quint64 index)
{
    const QMutexLocker locker(&d->lock);
    return d->frame(index);
}

quint64 VTVideoController::frameCount()
{
    return d->totalCount();
}

double VTVideoController::frameWidth() const
{
    return d->source ? d->source->frameWidth() : 0.0;
}

double VTVideoController::frameHeight() const
{
    return d->source ? d->source->frameHeight() : 0.0;
}

void VTVideoController::close()
{
    if (d->source)
        d->source->close();
}

void VTVideoController::streamEnded()
{
    if (!isScrubbing() && !isLooping())
        setState(Paused);
    Q_EMIT loadProgressChanged();
    setNeedFrame(true);
}

void VTVideoController::sourceLoaded()
{
    setNeedFrame(true);
    Q_EMIT widthChanged();
    Q_EMIT heightChanged();
    Q_EMIT loadProgressChanged();
}

void VTVideoController::setShouldQuit()
{
    d->shouldQuit = true;
    d->quitRequest.make();
}

bool VTVideoController::shouldQuit()
{
    if (!d->lock.tryLock(lockTimeout))
        return false;
    const bool result = d->shouldQuit;
    d->lock.unlock();
    return result;
}

void VTVideoController::quit()
{
    setShouldQuit();
    if (wait(VTQuitRequest::timeout))
        return;
    qDebug("VTVideoController did not quit in a timely fashion");
    terminate();
    if (!wait(VTQuitRequest::timeout))
        qDebug("VTVideoController did not quit at all");
}

void VTVideoController::run()
{
    while (!shouldQuit()) {
        if (!d->lock.tryLock(lockTimeout))
            continue;
        const Private::Next next = d->next();
        d->lock.unlock();
        if (next == Private::Next::Present) {
            presentFrame();
            continue;
        }
        if (next == Private::Next::Announce)
            Q_EMIT displayFrame();
        if (next == Private::Next::Pause)
            Q_EMIT stateChanged();
        d->quitRequest.idle(VTQuitRequest::idleInterval);
    }
}

void VTVideoController::presentFrame()
{
    QMutexLocker locker(&d->lock);
    if (d->state != Playing) {
        locker.unlock();
        Q_EMIT displayFrame();
        return;
    }
    const bool isLoaded = d->position < d->loadedCount();
    if (d->displayedIndex == d->position && !isLoaded)
        return;
    const double wait = presentationWait(d->position - d->displayedIndex, d->source->frameRate(),
                                         d->lastFrameDisplayTime, QDateTime::currentDateTime());
    if (isLoaded)
        d->advance();
    locker.unlock();
    if (isLoaded) {
        Q_EMIT displayFrame();
        Q_EMIT positionChanged();
        setLastFrameDisplayTime(QDateTime::currentDateTime());
    }
    // A wait that is no number, for lack of a frame rate, is no reason to spin.
    if (!(wait <= 0.0))
        d->sleep(wait);
}

double VTVideoController::presentationWait(quint64 dueFrames, double frameRate, const QDateTime &last,
                                           const QDateTime &now)
{
    const double frameDuration = 1.0 / frameRate;
    const double expected = double(dueFrames) * frameDuration;
    // A thousand times the milliseconds, compared with seconds: a wait is one frame long as soon as a
    // millisecond has passed, however far the display lags behind.
    const double elapsed =
        (double(last.daysTo(now)) * millisecondsPerDay + double(last.time().msecsTo(now.time()))) * 1000.0;
    const double remainder = expected - std::min(expected, elapsed);
    return std::max(remainder, frameDuration);
}

} // namespace Vidtips
