#pragma once

// Everything that differs between the FFmpeg versions that the codecs build with, 5.1 to 7.1, decided by what
// a header has.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/avstring.h>
#include <libavutil/imgutils.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <QtCore/QtGlobal>

#include <cstring>
#include <type_traits>

namespace Vidtips::FFmpegCompat {

using Codec = std::remove_pointer_t<decltype(AVFormatContext::video_codec)>;

/** Returns how many ticks of its own time base the decoder @p context counts for a picture. */
inline int ticksPerFrame(const AVCodecContext *context)
{
#ifdef AV_CODEC_PROP_FIELDS
    return context->codec_descriptor && (context->codec_descriptor->props & AV_CODEC_PROP_FIELDS) ? 2 : 1;
#else
    return context->ticks_per_frame;
#endif
}

/**
 * Returns the number in the enumeration @p field. Some decoders pass on what stands in the stream, which need
 * not be one of the enumeration.
 */
template <typename Enumeration>
int numberIn(const Enumeration &field)
{
    std::underlying_type_t<Enumeration> number;
    static_assert(sizeof number == sizeof field);
    std::memcpy(&number, &field, sizeof number);
    return int(number);
}

/** What a picture says of its colours. */
struct Colours
{
    int space = AVCOL_SPC_UNSPECIFIED;
    int range = AVCOL_RANGE_UNSPECIFIED;
};

// Lately a picture that says nothing of its colours is given those of the decoder when it is handed out, and
// by then the decoder may have come to another part of the stream. What the picture itself says is known when
// its buffers are made, and noted in a field that belongs to whoever makes them. Decoders that make their own
// leave it empty.
constexpr quintptr noColourSpace = 1;
constexpr quintptr noColourRange = 2;

inline int makeBuffers(AVCodecContext *context, AVFrame *picture, int flags)
{
    const bool hasSpace = numberIn(picture->colorspace) != AVCOL_SPC_UNSPECIFIED;
    const bool hasRange = numberIn(picture->color_range) != AVCOL_RANGE_UNSPECIFIED;
    picture->opaque =
        reinterpret_cast<void *>((hasSpace ? 0 : noColourSpace) | (hasRange ? 0 : noColourRange));
    return avcodec_default_get_buffer2(context, picture, flags);
}

/** Has the decoder @p context keep what its pictures themselves say of their colours; before it is opened. */
inline void keepColours(AVCodecContext *context)
{
#if !FF_API_THREAD_SAFE_CALLBACKS
    // Before, decoding threads would wait for each other to call this, and nothing was made up.
    context->get_buffer2 = &makeBuffers;
#else
    Q_UNUSED(context)
#endif
}

/** Returns what @p picture, which comes from the decoder @p context, itself says of its colours. */
inline Colours coloursOf(const AVFrame *picture, const AVCodecContext *context)
{
    const auto missing = reinterpret_cast<quintptr>(picture->opaque);
    Colours colours{numberIn(picture->colorspace), numberIn(picture->color_range)};
    if ((missing & noColourSpace) && colours.space == numberIn(context->colorspace))
        colours.space = AVCOL_SPC_UNSPECIFIED;
    if ((missing & noColourRange) && colours.range == numberIn(context->color_range))
        colours.range = AVCOL_RANGE_UNSPECIFIED;
    return colours;
}

} // namespace Vidtips::FFmpegCompat
