#include "engine/codecs/png/PngUnfilter.h"

#include <cstdlib>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quorvia::engine {

namespace {

void addAbove(uchar* row, const uchar* above, qsizetype length)
{
    for (qsizetype i = 0; i < length; ++i)
        row[i] = uchar(row[i] + above[i]);
}

void subByBytes(uchar* row, qsizetype length, int pixelBytes)
{
    for (qsizetype i = pixelBytes; i < length; ++i)
        row[i] = uchar(row[i] + row[i - pixelBytes]);
}

void averageByBytes(uchar* row, const uchar* above, qsizetype length, int pixelBytes)
{
    for (qsizetype i = 0; i < length; ++i) {
        const int left = i < pixelBytes ? 0 : row[i - pixelBytes];
        row[i] = uchar(row[i] + (left + above[i]) / 2);
    }
}

void paethByBytes(uchar* row, const uchar* above, qsizetype length, int pixelBytes)
{
    for (qsizetype i = 0; i < length; ++i) {
        const bool first = i < pixelBytes;
        const uchar left = first ? 0 : row[i - pixelBytes];
        const uchar aboveLeft = first ? 0 : above[i - pixelBytes];
        row[i] = uchar(row[i] + paethPredictor(left, above[i], aboveLeft));
    }
}

#ifdef __SSE2__

/// The `Bytes` bytes at `from`, the rest zero.
template <int Bytes>
__m128i load(const uchar* from)
{
    if constexpr (Bytes == 8) {
        return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
    } else if constexpr (Bytes == 4) {
        int value = 0;
        std::memcpy(&value, from, 4);
        return _mm_cvtsi32_si128(value);
    } else if constexpr (Bytes <= 3) {
        int value = from[0];
        if constexpr (Bytes >= 2)
            value |= from[1] << 8;
        if constexpr (Bytes == 3)
            value |= from[2] << 16;
        return _mm_cvtsi32_si128(value);
    } else {
        static_assert(Bytes == 6);
        int low = 0;
        quint16 high = 0;
        std::memcpy(&low, from, 4);
        std::memcpy(&high, from + 4, 2);
        return _mm_unpacklo_epi32(_mm_cvtsi32_si128(low), _mm_cvtsi32_si128(high));
    }
}

template <int Bytes>
void store(uchar* to, __m128i value)
{
    if constexpr (Bytes == 8) {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(to), value);
    } else {
        const int low = _mm_cvtsi128_si32(value);
        constexpr size_t whole = Bytes >= 4 ? 4 : Bytes == 1 ? 1 : 2;
        std::memcpy(to, &low, whole);
        if constexpr (Bytes == 3)
            to[2] = uchar(low >> 16);
        if constexpr (Bytes == 6) {
            const int high = _mm_cvtsi128_si32(_mm_srli_epi64(value, 32));
            std::memcpy(to + 4, &high, 2);
        }
    }
}

template <int Bytes>
void subByPixels(uchar* row, qsizetype length)
{
    __m128i left = _mm_setzero_si128();
    for (qsizetype i = 0; i < length; i += Bytes) {
        left = _mm_add_epi8(load<Bytes>(row + i), left);
        store<Bytes>(row + i, left);
    }
}

/// Each pixel waits for the one at its left, so what counts is the way from one to the next. The processor's
/// average rounds up where the filter rounds down: avg(~a, ~b) = ~((a + b) / 2), and with that, and n =
/// ~left, x + (left + above) / 2 becomes n' = avg(n, ~above) - x. Two steps a pixel.
template <int Bytes>
void averageByPixels(uchar* row, const uchar* above, qsizetype length)
{
    const __m128i ones = _mm_set1_epi8(-1);
    __m128i left = ones;
    for (qsizetype i = 0; i < length; i += Bytes) {
        const __m128i up = _mm_xor_si128(load<Bytes>(above + i), ones);
        left = _mm_sub_epi8(_mm_avg_epu8(left, up), load<Bytes>(row + i));
        store<Bytes>(row + i, _mm_xor_si128(left, ones));
    }
}

/// With lo and hi the lesser and the greater of left a and above b, and c above left, a + b - c lies nearest
/// to lo when 3c - a - b >= hi, to hi when 3c - a - b <= lo, else to c. Ties between the three fall as the
/// predictor's order wants. In lanes of 16 bits whose upper half stays zero.
template <int Bytes>
void paethByPixels(uchar* row, const uchar* above, qsizetype length)
{
    const __m128i zero = _mm_setzero_si128();
    __m128i a = zero;
    __m128i c = zero;
    for (qsizetype i = 0; i < length; i += Bytes) {
        const __m128i b = _mm_unpacklo_epi8(load<Bytes>(above + i), zero);
        const __m128i x = _mm_unpacklo_epi8(load<Bytes>(row + i), zero);
        const __m128i offset = _mm_sub_epi16(_mm_add_epi16(c, _mm_add_epi16(c, c)), b);
        const __m128i lo = _mm_min_epi16(a, b);
        const __m128i hi = _mm_max_epi16(a, b);
        const __m128i pull = _mm_sub_epi16(offset, a);
        const __m128i notLo = _mm_cmpgt_epi16(hi, pull);
        const __m128i notHi = _mm_cmpgt_epi16(pull, lo);
        const __m128i ends = _mm_or_si128(_mm_andnot_si128(notLo, lo), _mm_andnot_si128(notHi, hi));
        const __m128i nearest = _mm_or_si128(ends, _mm_and_si128(c, _mm_and_si128(notLo, notHi)));
        a = _mm_add_epi8(x, nearest);
        c = b;
        store<Bytes>(row + i, _mm_packus_epi16(a, a));
    }
}

template <int Bytes>
void unfilterByPixels(int filter, uchar* row, const uchar* above, qsizetype length)
{
    if (filter == 1)
        subByPixels<Bytes>(row, length);
    else if (filter == 3)
        averageByPixels<Bytes>(row, above, length);
    else
        paethByPixels<Bytes>(row, above, length);
}

#endif

void unfilterByBytes(int filter, uchar* row, const uchar* above, qsizetype length, int pixelBytes)
{
    if (filter == 1)
        subByBytes(row, length, pixelBytes);
    else if (filter == 3)
        averageByBytes(row, above, length, pixelBytes);
    else
        paethByBytes(row, above, length, pixelBytes);
}

} // namespace

uchar paethPredictor(uchar left, uchar above, uchar aboveLeft)
{
    const int fromLeft = std::abs(above - aboveLeft);
    const int fromAbove = std::abs(left - aboveLeft);
    const int fromAboveLeft = std::abs(left + above - 2 * aboveLeft);
    if (fromLeft <= fromAbove && fromLeft <= fromAboveLeft)
        return left;
    return fromAbove <= fromAboveLeft ? above : aboveLeft;
}

bool unfilterPngRow(int filter, uchar* row, const uchar* above, qsizetype length, int pixelBytes)
{
    constexpr int paeth = 4;
    if (filter < 0 || filter > paeth)
        return false;
    if (filter == 0)
        return true;
    if (filter == 2) {
        addAbove(row, above, length);
        return true;
    }
    switch (pixelBytes) {
#ifdef __SSE2__
    case 1:
        unfilterByPixels<1>(filter, row, above, length);
        break;
    case 2:
        unfilterByPixels<2>(filter, row, above, length);
        break;
    case 3:
        unfilterByPixels<3>(filter, row, above, length);
        break;
    case 4:
        unfilterByPixels<4>(filter, row, above, length);
        break;
    case 6:
        unfilterByPixels<6>(filter, row, above, length);
        break;
    case 8:
        unfilterByPixels<8>(filter, row, above, length);
        break;
#endif
    default:
        unfilterByBytes(filter, row, above, length, pixelBytes);
        break;
    }
    return true;
}

} // namespace quorvia::engine
