#pragma once

// Everything that differs between the FFmpeg generations the library builds with, 4.4 to 7.x.

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/time.h>
#include <libswscale/swscale.h>
}

namespace Vidtips::FFmpegCompat {

#if LIBAVFORMAT_VERSION_MAJOR >= 59
using Codec = const AVCodec;
#else
using Codec = AVCodec;
#endif

/** Returns how many ticks of its own time base the decoder @p context counts for a picture. */
inline int ticksPerFrame(const AVCodecContext *context)
{
#ifdef AV_CODEC_PROP_FIELDS
    return context->codec_descriptor && (context->codec_descriptor->props & AV_CODEC_PROP_FIELDS) ? 2 : 1;
#else
    return context->ticks_per_frame;
#endif
}

} // namespace Vidtips::FFmpegCompat
