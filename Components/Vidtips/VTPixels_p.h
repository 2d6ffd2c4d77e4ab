#pragma once

#include <QtCore/QtEndian>
#include <QtCore/QtGlobal>

#if defined(__GNUC__) && defined(Q_PROCESSOR_X86_64)
#include <tmmintrin.h>
#define VIDTIPS_HAS_BYTE_SHUFFLE
#endif

namespace Vidtips {

namespace Pixels {

constexpr quint32 opaque = 0xFF000000u;

#ifdef VIDTIPS_HAS_BYTE_SHUFFLE
/** Widens whole blocks of 16 pixels with the processor's byte shuffle, and returns how many pixels that were.
 */
__attribute__((target("ssse3"))) inline int widenBlocks(const uchar *source, quint32 *target, int count)
{
    const __m128i alpha = _mm_set1_epi32(int(opaque));
    const __m128i order = _mm_setr_epi8(2, 1, 0, -1, 5, 4, 3, -1, 8, 7, 6, -1, 11, 10, 9, -1);
    const auto store = [&](quint32 * to, __m128i bytes) __attribute__((target("ssse3")))
    {
        _mm_storeu_si128(reinterpret_cast<__m128i *>(to),
                         _mm_or_si128(_mm_shuffle_epi8(bytes, order), alpha));
    };
    int i = 0;
    for (; i + 16 <= count; i += 16, source += 48, target += 16) {
        const auto *const from = reinterpret_cast<const __m128i *>(source);
        const __m128i low = _mm_loadu_si128(from);
        const __m128i middle = _mm_loadu_si128(from + 1);
        const __m128i high = _mm_loadu_si128(from + 2);
        store(target, low);
        store(target + 4, _mm_alignr_epi8(middle, low, 12));
        store(target + 8, _mm_alignr_epi8(high, middle, 8));
        store(target + 12, _mm_srli_si128(high, 4));
    }
    return i;
}
#endif

} // namespace Pixels

/**
 * Widens @p count pixels of packed 24-bit RGB at @p source to opaque 32-bit pixels at @p target.
 *
 * The two must not overlap. Only the 3 * @p count bytes of the source are read.
 */
inline void widenPixels(const uchar *source, quint32 *target, int count)
{
    int i = 0;
#ifdef VIDTIPS_HAS_BYTE_SHUFFLE
    if (__builtin_cpu_supports("ssse3"))
        i = Pixels::widenBlocks(source, target, count);
#endif
    // A pixel is taken in one four-byte load, of which the last byte belongs to the next pixel; the last
    // pixel of a row has no next one.
    for (; i + 1 < count; ++i)
        target[i] = Pixels::opaque | (qFromBigEndian<quint32>(source + 3 * i) >> 8);
    for (; i < count; ++i) {
        const uchar *const last = source + 3 * i;
        target[i] = Pixels::opaque | quint32(last[0]) << 16 | quint32(last[1]) << 8 | last[2];
    }
}

} // namespace Vidtips
