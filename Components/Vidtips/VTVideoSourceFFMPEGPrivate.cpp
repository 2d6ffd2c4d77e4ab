#include "VTVideoSourceFFMPEGPrivate_p.h"

#include "VTClipReports_p.h"
#include "VTCodecsModule_p.h"

#include <QtCore/QDebug>

namespace Vidtips {

namespace {

// With what the heap and the cache's list need for it.
constexpr quint64 frameBytes = 64;

int isInterrupted(void *source)
{
    return static_cast<VTVideoSourceFFMPEG *>(source)->shouldQuit();
}

} // namespace

VTVideoSourceFFMPEGPrivate::VTVideoSourceFFMPEGPrivate(VTVideoSourceFFMPEG *source)
    : owner(source)
{
}

VTVideoSourceFFMPEGPrivate::~VTVideoSourceFFMPEGPrivate() = default;

bool VTVideoSourceFFMPEGPrivate::open(const QUrl &url)
{
    clip = url;
    fileName = url.toLocalFile();
    isReportDue = true;
    // Loading the module takes as long as its libraries are many, and nobody is to wait for that.
    QString reason;
    VTCodecs *const codecs = VTCodecsModule::load(&reason);
    QMutexLocker locker(&lock);
    release();
    const QString problem = codecs
        ? openDecoder(codecs)
        : QStringLiteral("Could not load the codecs for %1: %2").arg(fileName, reason);
    if (problem.isEmpty()) {
        publish();
        return true;
    }
    release();
    locker.unlock();
    // An open that was given up because the thread ends says nothing about the clip.
    if (owner->shouldQuit())
        return false;
    qDebug().noquote() << problem;
    conclude(problem);
    return false;
}

// Returns what is wrong, nothing where the clip is open.
QString VTVideoSourceFFMPEGPrivate::openDecoder(VTCodecs *codecs)
{
    if (!decoder)
        decoder.reset(codecs->makeDecoder(&isInterrupted, owner));
    decoder->setRestricted(isRestricted);
    const char *const problem = decoder->open(fileName);
    return problem ? QString::fromLatin1(problem).arg(fileName) : QString();
}

void VTVideoSourceFFMPEGPrivate::publish()
{
    const VTClipFacts facts = decoder->facts();
    duration = facts.duration;
    timeBase = facts.timeBase;
    frameRate = facts.frameRate;
    width = facts.width;
    height = facts.height;
    pictures = 0;
    lastPicture = 0;
    isOpen = true;
}

void VTVideoSourceFFMPEGPrivate::release()
{
    const QMutexLocker locker(&lock);
    isOpen = false;
    if (decoder)
        decoder->close();
}

bool VTVideoSourceFFMPEGPrivate::decode()
{
    while (!owner->shouldQuit()) {
        const quint64 frames = owner->loadedFrameCount();
        QMutexLocker locker(&lock);
        if (!isOpen)
            break;
        VTVideoFrame frame;
        const auto outcome = isFull(frames) ? VTVideoDecoder::Outcome::End : nextFrame(&frame);
        if (outcome == VTVideoDecoder::Outcome::Picture) {
            locker.unlock();
            owner->pushFrame(frame);
            conclude(QString());
            return true;
        }
        if (outcome == VTVideoDecoder::Outcome::End) {
            release();
            locker.unlock();
            conclude(QStringLiteral("Could not decode any picture of %1").arg(fileName));
            owner->notifyStreamEnded();
        }
    }
    if (owner->action() != VTVideoSource::Idle)
        owner->setAction(VTVideoSource::Idle);
    return false;
}

// Tells whether one more frame could pass the limit, as a picture or, where nothing moves, by what a frame is
// itself.
bool VTVideoSourceFFMPEGPrivate::isFull(quint64 frames) const
{
    const quint64 pictureBytes = quint64(width) * quint64(height) * 4;
    return pictures >= memoryLimit / pictureBytes || frames >= memoryLimit / frameBytes;
}

VTVideoDecoder::Outcome VTVideoSourceFFMPEGPrivate::nextFrame(VTVideoFrame *frame)
{
    QImage picture;
    int repeats = 0;
    const VTVideoDecoder::Outcome outcome = decoder->nextPicture(&picture, &repeats);
    if (outcome != VTVideoDecoder::Outcome::Picture)
        return outcome;
    const double time = stepClock(repeats);
    const double length = duration;
    progress = length > 0.0 ? time / length : 0.0;
    if (picture.cacheKey() != lastPicture)
        ++pictures;
    lastPicture = picture.cacheKey();
    *frame = VTVideoFrame(picture, 0);
    frame->setPts(time);
    return outcome;
}

// Every picture is timed by the clock, which counts from the first one on; returns the time of this picture.
double VTVideoSourceFFMPEGPrivate::stepClock(int repeats)
{
    const double time = videoClock;
    const double rate = frameRate;
    const double frameDelay = rate > 0.0 ? 1.0 / rate : 0.0;
    videoClock = time + frameDelay + repeats * frameDelay * 0.5;
    return time;
}

// Reports once what becomes of the clip.
void VTVideoSourceFFMPEGPrivate::conclude(const QString &problem)
{
    if (isReportDue && reports)
        reports->add(clip, problem);
    isReportDue = false;
}

bool VTVideoSourceFFMPEGPrivate::seek()
{
    const QMutexLocker locker(&lock);
    if (!isOpen)
        return false;
    decoder->seekToStart();
    return true;
}

void VTVideoSourceFFMPEGPrivate::setPosition(quint64 frameIndex)
{
    const QMutexLocker locker(&lock);
    if (!isOpen) {
        videoClock = 0.0;
        progress = 0.0;
        return;
    }
    const double rate = frameRate;
    const double seconds = rate > 0.0 ? double(frameIndex) / rate : 0.0;
    const bool isBackward = videoClock > seconds;
    videoClock = seconds;
    decoder->seek(seconds, isBackward);
}

} // namespace Vidtips
