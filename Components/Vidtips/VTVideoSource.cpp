#include "VTVideoSource.h"

#include "VTQuitRequest_p.h"
#include "VTVideoFrameCache.h"

#include <QtCore/QDebug>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QMutex>

#include <algorithm>

namespace Vidtips {

namespace {
constexpr auto noAction = VTVideoSource::Action(-1);
} // namespace

struct VIDTIPS_NO_EXPORT VTVideoSource::Private
{
    QUrl source;
    // What source will be once every change in the queue is applied.
    QUrl selected;
    bool shouldQuit = false;
    Action action = Idle;
    // The order of the locks, here and in the classes around: a controller's, then frameLock or stateLock,
    // never both. A decoder's own lock may be held when stateLock is taken, but never frameLock.
    QRecursiveMutex frameLock;
    QRecursiveMutex stateLock;
    // Taken last and only to append or take a record, so that posting never waits for anything else.
    QMutex changesLock;
    VTQuitRequest quitRequest;
    QList<VTVideoSourceChange *> changes;
    VTVideoFrameCache *cache = nullptr;
    // The source whose frames are in the cache, as text.
    QString cacheName;
    QMap<QString, VTVideoFrameCache *> caches;

    void post(VTVideoSourceChange *change);
    bool postSource(const QUrl &url, const QUrl &previous);
    VTVideoSourceChange *takeChange();
    bool isSourcePosted();
    bool selectCache(const QString &name);
    bool holds(const QString &name) const { return name.isEmpty() || name == cacheName; }
    void dropCache();
};

void VTVideoSource::Private::post(VTVideoSourceChange *change)
{
    const QMutexLocker locker(&changesLock);
    changes.append(change);
}

// With stateLock held.
bool VTVideoSource::Private::postSource(const QUrl &url, const QUrl &previous)
{
    if (!url.isValid() || url == previous)
        return false;
    selected = url;
    post(new VTVideoSourceSourceChange(url));
    return true;
}

VTVideoSourceChange *VTVideoSource::Private::takeChange()
{
    const QMutexLocker locker(&changesLock);
    return changes.isEmpty() ? nullptr : changes.takeFirst();
}

bool VTVideoSource::Private::isSourcePosted()
{
    const QMutexLocker locker(&changesLock);
    return std::any_of(changes.cbegin(), changes.cend(), [](const VTVideoSourceChange *change) {
        return dynamic_cast<const VTVideoSourceSourceChange *>(change);
    });
}

// Tells whether the cache was kept for the source; otherwise it is a new one.
bool VTVideoSource::Private::selectCache(const QString &name)
{
    const QMutexLocker locker(&frameLock);
    VTVideoFrameCache *const kept = caches.value(name);
    if (kept != cache)
        dropCache();
    cache = kept ? kept : new VTVideoFrameCache(name);
    cacheName = name;
    return kept;
}

void VTVideoSource::Private::dropCache()
{
    if (!caches.values().contains(cache))
        delete cache;
    cache = nullptr;
}

VTVideoSource::VTVideoSource(QObject *parent)
    : QThread(parent)
    , d(new Private)
{
}

VTVideoSource::~VTVideoSource()
{
    clearChanges();
    d->dropCache();
    qDeleteAll(d->caches);
}

void VTVideoSource::close()
{
    setSource(QUrl());
}

void VTVideoSource::changeSetAction(Action action)
{
    if (action == noAction)
        return;
    {
        const QMutexLocker locker(&d->stateLock);
        d->action = action;
    }
    Q_EMIT actionChanged();
}

void VTVideoSource::changeSetSource(const QUrl &url)
{
    const QMutexLocker locker(&d->stateLock);
    d->source = url;
    if (!d->isSourcePosted())
        d->selected = url;
}

bool VTVideoSource::loadSource()
{
    Q_EMIT sourceLoaded();
    return true;
}

VTVideoSource::Action VTVideoSource::action()
{
    const QMutexLocker locker(&d->stateLock);
    return d->action;
}

void VTVideoSource::setAction(Action action)
{
    d->post(new VTVideoSourceChange(action));
}

bool VTVideoSource::setSource(const QUrl &url)
{
    const QMutexLocker locker(&d->stateLock);
    return d->postSource(url, d->source);
}

bool VTVideoSource::selectSource(const QUrl &url)
{
    const QMutexLocker locker(&d->stateLock);
    return d->postSource(url, d->selected);
}

QUrl VTVideoSource::selectedSource()
{
    const QMutexLocker locker(&d->stateLock);
    return d->selected;
}

QUrl VTVideoSource::source()
{
    const QMutexLocker locker(&d->stateLock);
    return d->source;
}

void VTVideoSource::setShouldQuit()
{
    {
        const QMutexLocker locker(&d->stateLock);
        d->shouldQuit = true;
    }
    d->quitRequest.make();
}

bool VTVideoSource::shouldQuit()
{
    const QMutexLocker locker(&d->stateLock);
    return d->shouldQuit;
}

void VTVideoSource::idle(int milliseconds)
{
    d->quitRequest.idle(milliseconds);
}

void VTVideoSource::clearChanges()
{
    const QMutexLocker locker(&d->stateLock);
    while (VTVideoSourceChange *change = d->takeChange())
        delete change;
    d->selected = d->source;
}

void VTVideoSource::processActionQueue()
{
    const std::unique_ptr<VTVideoSourceChange> change(d->takeChange());
    if (change)
        change->apply(this);
}

void VTVideoSource::setupSource()
{
    const QString name = source().toString();
    if (!d->selectCache(name))
        setAction(source().isEmpty() ? Idle : Decode);
    Q_EMIT sourceChanged();
}

void VTVideoSource::insertCache(const QString &source, VTVideoFrameCache *cache)
{
    const QMutexLocker locker(&d->frameLock);
    VTVideoFrameCache *const previous = d->caches.value(source);
    d->caches.insert(source, cache);
    if (previous != d->cache && previous != cache)
        delete previous;
}

void VTVideoSource::pushFrame(const VTVideoFrame &frame)
{
    const QMutexLocker locker(&d->frameLock);
    if (d->cache)
        d->cache->addFrame(frame);
}

VTVideoFrame VTVideoSource::getFrame(uint index)
{
    const QMutexLocker locker(&d->frameLock);
    return isFrameAvailable(index) ? d->cache->frame(index) : VTVideoFrame();
}

bool VTVideoSource::isFrameAvailable(quint64 index)
{
    const QMutexLocker locker(&d->frameLock);
    return d->cache && d->cache->length() > index;
}

quint64 VTVideoSource::loadedFrameCount()
{
    const QMutexLocker locker(&d->frameLock);
    return d->cache ? d->cache->length() : 0;
}

quint64 VTVideoSource::totalFrameCount()
{
    return loadedFrameCount();
}

quint64 VTVideoSource::selectedFrameCount()
{
    const QString name = framesToShow();
    const QMutexLocker locker(&d->frameLock);
    return d->holds(name) ? loadedFrameCount() : 0;
}

VTVideoFrame VTVideoSource::selectedFrame(uint index)
{
    const QString name = framesToShow();
    const QMutexLocker locker(&d->frameLock);
    return d->holds(name) ? getFrame(index) : VTVideoFrame();
}

// The source whose frames are to be shown, as text; empty for whatever frames there are.
QString VTVideoSource::framesToShow()
{
    return isRunning() ? selectedSource().toString() : QString();
}

void VTVideoSource::notifyStreamEnded()
{
    Q_EMIT streamEnded();
}

void VTVideoSource::quit()
{
    setShouldQuit();
    if (wait(VTQuitRequest::timeout))
        return;
    qDebug("VTVideoSource did not quit in a timely fashion");
    terminate();
    if (!wait(VTQuitRequest::timeout))
        qDebug("VTVideoSource did not quit at all");
}

VTVideoSourceChange::VTVideoSourceChange(VTVideoSource::Action newAction)
    : action(newAction)
{
}

VTVideoSourceChange::~VTVideoSourceChange() = default;

int VTVideoSourceChange::type()
{
    return 1;
}

void VTVideoSourceChange::apply(VTVideoSource *source)
{
    if (source)
        source->changeSetAction(action);
}

} // namespace Vidtips

VTVideoSourceSourceChange::VTVideoSourceSourceChange(const QUrl &newUrl)
    : VTVideoSourceChange(Vidtips::VTVideoSource::Load)
    , url(newUrl)
{
}

VTVideoSourceSourceChange::~VTVideoSourceSourceChange() = default;

int VTVideoSourceSourceChange::type()
{
    return 3;
}

void VTVideoSourceSourceChange::apply(Vidtips::VTVideoSource *source)
{
    if (!source)
        return;
    source->changeSetSource(url);
    source->changeSetAction(Vidtips::VTVideoSource::Load);
}
