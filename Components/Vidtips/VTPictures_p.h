#pragma once

#include "VTFFmpegCompat_p.h"

#include <cstring>

namespace Vidtips {

namespace Pictures {

/** Tells whether @p rows rows of @p bytes bytes are the same in plane @p plane of two pictures. */
inline bool isSamePlane(const AVFrame &first, const AVFrame &second, int plane, int bytes, int rows)
{
    const uint8_t *row = first.data[plane];
    const uint8_t *other = second.data[plane];
    for (int y = 0; y < rows; ++y, row += first.linesize[plane], other += second.linesize[plane]) {
        if (std::memcmp(row, other, size_t(bytes)) != 0)
            return false;
    }
    return true;
}

} // namespace Pictures

/**
 * Tells whether two decoded pictures look the same: the bytes of their pixels are, and stand for the same
 * colours. Pictures that are not in memory are never the same.
 */
inline bool isSamePicture(const AVFrame &first, const AVFrame &second)
{
    const auto format = AVPixelFormat(first.format);
    const AVPixFmtDescriptor *const kind = av_pix_fmt_desc_get(format);
    using FFmpegCompat::numberIn;
    const bool isAlike = first.format == second.format && first.width == second.width
        && first.height == second.height && numberIn(first.colorspace) == numberIn(second.colorspace)
        && numberIn(first.color_range) == numberIn(second.color_range)
        // What they say of their colours themselves, and what was made up for them.
        && first.opaque == second.opaque;
    if (!isAlike || !kind || (kind->flags & AV_PIX_FMT_FLAG_HWACCEL))
        return false;
    for (int plane = 0; plane < 4 && first.data[plane]; ++plane) {
        const bool isPalette = plane == 1 && (kind->flags & AV_PIX_FMT_FLAG_PAL);
        const bool isSubsampled = plane == 1 || plane == 2;
        const int bytes = isPalette ? AVPALETTE_SIZE : av_image_get_linesize(format, first.width, plane);
        const int rows = isPalette ? 1
            : isSubsampled         ? AV_CEIL_RSHIFT(first.height, kind->log2_chroma_h)
                                   : first.height;
        if (bytes < 0 || !second.data[plane] || !Pictures::isSamePlane(first, second, plane, bytes, rows))
            return false;
    }
    return true;
}

} // namespace Vidtips
