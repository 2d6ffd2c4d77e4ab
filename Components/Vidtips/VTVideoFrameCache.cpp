#include "VTVideoFrameCache.h"

#include <QtCore/QList>

namespace Vidtips {

struct VIDTIPS_NO_EXPORT VTVideoFrameCache::Private
{
    QString name;
    qint64 lastIndex = -1;
    QList<VTVideoFrame *> frames;
};

VTVideoFrameCache::VTVideoFrameCache(const QString &name)
    : d(new Private)
{
    d->name = name;
}

VTVideoFrameCache::~VTVideoFrameCache()
{
    qDeleteAll(d->frames);
}

void VTVideoFrameCache::addFrame(const VTVideoFrame &frame)
{
    d->frames.append(new VTVideoFrame(frame));
    ++d->lastIndex;
}

VTVideoFrame VTVideoFrameCache::frame(quint64 index)
{
    // The last index of an empty cache is the largest unsigned number, so every index would pass the bound
    // below.
    if (d->frames.isEmpty())
        qFatal("VTVideoFrameCache: no frame to return, the cache of \"%s\" is empty",
               qUtf8Printable(d->name));
    if (index > quint64(d->lastIndex))
        return VTVideoFrame();
    return *d->frames.at(int(index));
}

quint64 VTVideoFrameCache::length()
{
    return quint64(d->lastIndex + 1);
}

} // namespace Vidtips
