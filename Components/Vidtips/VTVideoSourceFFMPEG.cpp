#include "VTVideoSourceFFMPEG.h"

#include "VTQuitRequest_p.h"
#include "VTVideoSourceFFMPEGPrivate_p.h"

#include <chrono>

namespace Vidtips {

VTVideoSourceFFMPEG::VTVideoSourceFFMPEG(QObject *parent)
    : VTVideoSource(parent)
    , d(new VTVideoSourceFFMPEGPrivate(this))
{
    setObjectName(QStringLiteral("FFMPEG"));
}

VTVideoSourceFFMPEG::~VTVideoSourceFFMPEG()
{
    quit();
    wait();
}

void VTVideoSourceFFMPEG::close()
{
    d->release();
    VTVideoSource::close();
}

bool VTVideoSourceFFMPEG::isOpen()
{
    return d->isOpen;
}

double VTVideoSourceFFMPEG::getTime()
{
    using Microseconds = std::chrono::duration<qint64, std::micro>;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return double(std::chrono::duration_cast<Microseconds>(now).count()) / 1e6;
}

void VTVideoSourceFFMPEG::changeSetPosition(quint64 frameIndex)
{
    d->setPosition(frameIndex);
    Q_EMIT positionChanged();
}

double VTVideoSourceFFMPEG::duration()
{
    return d->duration;
}

double VTVideoSourceFFMPEG::timeBase()
{
    return d->timeBase;
}

double VTVideoSourceFFMPEG::frameRate()
{
    return d->frameRate;
}

double VTVideoSourceFFMPEG::frameWidth() const
{
    return d->width;
}

double VTVideoSourceFFMPEG::frameHeight() const
{
    return d->height;
}

quint64 VTVideoSourceFFMPEG::position()
{
    return 0;
}

double VTVideoSourceFFMPEG::progress()
{
    return d->progress;
}

void VTVideoSourceFFMPEG::setMemoryLimit(quint64 bytes)
{
    d->memoryLimit = bytes;
}

void VTVideoSourceFFMPEG::setRestricted(bool isRestricted)
{
    d->isRestricted = isRestricted;
}

void VTVideoSourceFFMPEG::setClipReports(VTClipReports *reports)
{
    d->reports = reports;
}

void VTVideoSourceFFMPEG::run()
{
    while (!shouldQuit()) {
        processActionQueue();
        switch (action()) {
        case Stop:
            return;
        case Load:
            loadSource();
            break;
        case Close:
            close();
            setAction(Idle);
            break;
        case Seek:
            if (!d->seek())
                setAction(Idle);
            idle(VTQuitRequest::idleInterval);
            break;
        case Decode:
            if (!d->decode())
                setAction(Idle);
            break;
        case Idle:
            idle(VTQuitRequest::idleInterval);
            break;
        }
    }
}

bool VTVideoSourceFFMPEG::loadSource()
{
    const QUrl url = source();
    if (url.isEmpty()) {
        setAction(Idle);
        close();
        return false;
    }
    setupSource();
    if (!d->open(url)) {
        setAction(Idle);
        return false;
    }
    VTVideoSource::loadSource();
    setAction(Decode);
    return true;
}

} // namespace Vidtips
