#pragma once

#include "VTVersion.h"

#include <QtCore/QString>
#include <QtCore/QtPlugin>
#include <QtGui/QImage>

namespace Vidtips {

/** What a clip is, known when it is open. */
struct VTClipFacts
{
    /** The size of its pictures in pixels. */
    int width = 0;
    int height = 0;
    /** Its length in seconds, 0 where nothing says it. */
    double duration = 0.0;
    /** The time base of its decoder in seconds. */
    double timeBase = 0.0;
    /** Its pictures in a second, 0 where nothing says it. */
    double frameRate = 0.0;
};

/**
 * Opens one clip at a time and gives its pictures. It belongs to whoever made it, who has one thread at a
 * time call it.
 */
class VTVideoDecoder
{
public:
    enum class Outcome { Picture, Nothing, End };

    virtual ~VTVideoDecoder() = default;

    /**
     * Opens the clip of the file @p fileName in place of the one before. Returns null, or, where it cannot,
     * the message that says so, with %1 for the file.
     */
    virtual const char *open(const QString &fileName) = 0;

    /** Closes the clip and frees all that belongs to it. */
    virtual void close() = 0;

    /** Tells whether a clip is open. All that follows needs one. */
    virtual bool isOpen() const = 0;

    /** Returns what the clip is. */
    virtual VTClipFacts facts() const = 0;

    /**
     * Takes one step in decoding. Where that gives a picture, @p picture is it, of 32 bits a pixel and in the
     * size of the clip; it shares its pixels with the one before where it is equal to that. @p repeats is the
     * number of its fields that are to be shown again.
     */
    virtual Outcome nextPicture(QImage *picture, int *repeats) = 0;

    /** Repositions the demuxer to the start. */
    virtual void seekToStart() = 0;

    /** Repositions demuxer and decoder to a key picture at or after @p seconds, or before it if @p backward.
     */
    virtual void seek(double seconds, bool backward) = 0;

    /**
     * Has clips that are opened from now on be of the formats that content authors are told of, if @p
     * isRestricted; none of those names other files.
     */
    virtual void setRestricted(bool isRestricted) = 0;
};

/** What makes decoders: the root object of the module with the codecs. For any thread. */
class VTCodecs
{
public:
    /** Is asked in the middle of what takes long whether to give up. */
    using Interruption = int (*)(void *context);

    virtual ~VTCodecs() = default;

    /** Returns a new decoder, which asks @p interruption with @p context. The caller owns it. */
    virtual VTVideoDecoder *makeDecoder(Interruption interruption, void *context) = 0;
};

} // namespace Vidtips

// A module of another version may have another idea of these classes.
#define VTCodecs_iid "com.corvale.vidtips.codecs/" VIDTIPS_VERSION
Q_DECLARE_INTERFACE(Vidtips::VTCodecs, VTCodecs_iid)
