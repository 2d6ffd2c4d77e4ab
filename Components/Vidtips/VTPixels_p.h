#pragma once

#include <QtCore/QtEndian>
#include <QtCore/QtGlobal>

namespace Vidtips {

/**
 * Widens @p count pixels of packed 24-bit RGB at @p source to opaque 32-bit pixels at @p target.
 *
 * The two must not overlap. Only the 3 * @p count bytes of the source are read.
 */
inline void widenPixels(const uchar *source, quint32 *target, int count)
{
    constexpr quint32 opaque = 0xFF000000u;
    // A pixel is taken in one four-byte load, of which the last byte belongs to the next pixel; the last
    // pixel of a row has no next one.
    int i = 0;
    for (; i + 1 < count; ++i)
        target[i] = opaque | (qFromBigEndian<quint32>(source + 3 * i) >> 8);
    for (; i < count; ++i)
        target[i] =
            opaque | quint32(source[3 * i]) << 16 | quint32(source[3 * i + 1]) << 8 | source[3 * i + 2];
}

} // namespace Vidtips
