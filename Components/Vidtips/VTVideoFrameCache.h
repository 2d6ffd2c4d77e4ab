#pragma once

#include <Vidtips/VTVideoFrame.h>

#include <QtCore/QObject>

#include <memory>

namespace Vidtips {

/**
 * The decoded frames of one clip, in the order of decoding and addressed by index.
 *
 * Nothing is ever evicted, so a clip is decoded once and then replayed, scrubbed or rewound from memory. The
 * cache has no lock of its own: a VTVideoSource guards the caches it uses.
 */
class VIDTIPS_EXPORT VTVideoFrameCache : public QObject
{
    Q_OBJECT

public:
    /** Makes an empty cache without a parent. @p name is the URL of the clip as text. */
    explicit VTVideoFrameCache(const QString &name);
    ~VTVideoFrameCache() override;

    /** Appends a copy of @p frame, which shares the pixels. The cache owns the copy. */
    virtual void addFrame(const VTVideoFrame &frame);

    /**
     * Returns the frame at @p index, or a null frame past the last one. Calling this on an empty cache is a
     * programming error that ends the process with a message; test length() first.
     */
    virtual VTVideoFrame frame(quint64 index);

    /** Returns the number of frames. */
    virtual quint64 length();

private:
    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
