#include "engine/RowSums.h"

#include <algorithm>

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace quorvia::engine {

namespace {

constexpr int cutBits = weightBits - betweenBits;
constexpr int half = 1 << (cutBits - 1); // of what is cut off
constexpr float scale = 1.0F / (1 << (weightBits + betweenBits));

/// The channels [from, bytes), one by one.
void sumDownPlainly(const std::uint8_t* const* rows, const std::int16_t* weights, int count, std::size_t from,
                    std::size_t bytes, float* out)
{
    for (std::size_t c = from; c < bytes; ++c) {
        int sum = half;
        for (int i = 0; i < count; ++i)
            sum += rows[i][c] * weights[i];
        out[c] = static_cast<float>(sum >> cutBits);
    }
}

#ifdef __SSE2__

/// The weights of rows `i` and `i` + 1 as the multiplication takes them; a row beyond the last weighs
/// nothing.
int weightPair(const std::int16_t* weights, int i, int count)
{
    const int second = i + 1 < count ? weights[i + 1] : 0;
    return static_cast<int>(static_cast<unsigned>(second) << 16) | (weights[i] & 0xffff);
}

const __m128i* at(const std::uint8_t* row, std::size_t c)
{
    return reinterpret_cast<const __m128i*>(row + c);
}

// Two rows at a time: their channels side by side as pairs of 16 bits, multiplied and added by one
// instruction.

std::size_t sumDownBy16(const std::uint8_t* const* rows, const std::int16_t* weights, int count,
                        std::size_t from, std::size_t bytes, float* out)
{
    const __m128i zero = _mm_setzero_si128();
    std::size_t c = from;
    for (; c + 16 <= bytes; c += 16) {
        __m128i sums[4];
        std::fill_n(sums, 4, _mm_set1_epi32(half));
        for (int i = 0; i < count; i += 2) {
            const __m128i pair = _mm_set1_epi32(weightPair(weights, i, count));
            const __m128i a = _mm_loadu_si128(at(rows[i], c));
            const __m128i b = _mm_loadu_si128(at(rows[std::min(i + 1, count - 1)], c));
            const __m128i low = _mm_unpacklo_epi8(a, b);
            const __m128i high = _mm_unpackhi_epi8(a, b);
            sums[0] = _mm_add_epi32(sums[0], _mm_madd_epi16(_mm_unpacklo_epi8(low, zero), pair));
            sums[1] = _mm_add_epi32(sums[1], _mm_madd_epi16(_mm_unpackhi_epi8(low, zero), pair));
            sums[2] = _mm_add_epi32(sums[2], _mm_madd_epi16(_mm_unpacklo_epi8(high, zero), pair));
            sums[3] = _mm_add_epi32(sums[3], _mm_madd_epi16(_mm_unpackhi_epi8(high, zero), pair));
        }
        for (int k = 0; k < 4; ++k)
            _mm_storeu_ps(out + c + 4 * k, _mm_cvtepi32_ps(_mm_srai_epi32(sums[k], cutBits)));
    }
    return c;
}

__attribute__((target("avx2"))) std::size_t sumDownBy32(const std::uint8_t* const* rows,
                                                        const std::int16_t* weights, int count,
                                                        std::size_t bytes, float* out)
{
    const __m256i zero = _mm256_setzero_si256();
    std::size_t c = 0;
    for (; c + 32 <= bytes; c += 32) {
        __m256i sum0 = _mm256_set1_epi32(half);
        __m256i sum1 = sum0;
        __m256i sum2 = sum0;
        __m256i sum3 = sum0;
        for (int i = 0; i < count; i += 2) {
            const __m256i pair = _mm256_set1_epi32(weightPair(weights, i, count));
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(rows[i] + c));
            const __m256i b =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(rows[std::min(i + 1, count - 1)] + c));
            const __m256i low = _mm256_unpacklo_epi8(a, b);
            const __m256i high = _mm256_unpackhi_epi8(a, b);
            sum0 = _mm256_add_epi32(sum0, _mm256_madd_epi16(_mm256_unpacklo_epi8(low, zero), pair));
            sum1 = _mm256_add_epi32(sum1, _mm256_madd_epi16(_mm256_unpackhi_epi8(low, zero), pair));
            sum2 = _mm256_add_epi32(sum2, _mm256_madd_epi16(_mm256_unpacklo_epi8(high, zero), pair));
            sum3 = _mm256_add_epi32(sum3, _mm256_madd_epi16(_mm256_unpackhi_epi8(high, zero), pair));
        }
        // Unpacking works in halves: the first ones hold channels 0 to 15, the second ones 16 to 31.
        const auto store = [ out, c ](std::size_t place, __m256i sums) __attribute__((target("avx2")))
        {
            const __m256 values = _mm256_cvtepi32_ps(_mm256_srai_epi32(sums, cutBits));
            _mm_storeu_ps(out + c + place, _mm256_castps256_ps128(values));
            _mm_storeu_ps(out + c + place + 16, _mm256_extractf128_ps(values, 1));
        };
        store(0, sum0);
        store(4, sum1);
        store(8, sum2);
        store(12, sum3);
    }
    return c;
}

std::size_t sumDownByVectors(const std::uint8_t* const* rows, const std::int16_t* weights, int count,
                             std::size_t bytes, float* out)
{
    static const bool wide = __builtin_cpu_supports("avx2");
    return sumDownBy16(rows, weights, count, wide ? sumDownBy32(rows, weights, count, bytes, out) : 0, bytes,
                       out);
}

/// A pixel of `sum`, whose channels are `scale` times too large, rounded and bounded.
std::uint32_t packed(Channels sum, bool alpha)
{
    const __m128i whole = _mm_cvttps_epi32(sum * scale + 0.5F);
    const __m128i words = _mm_packs_epi32(whole, whole);
    const __m128i bytes = _mm_packus_epi16(words, words);
    const auto pixel = static_cast<std::uint32_t>(_mm_cvtsi128_si32(bytes));
    if (!alpha)
        return pixel | 0xff000000U;
    const __m128i top = _mm_set1_epi8(static_cast<char>(pixel >> 24)); // premultiplied: no colour above it
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(_mm_min_epu8(bytes, top)));
}

#else

std::size_t sumDownByVectors(const std::uint8_t* const*, const std::int16_t*, int, std::size_t, float*)
{
    return 0;
}

std::uint32_t packed(Channels sum, bool alpha)
{
    sum = sum * scale + 0.5F;
    const float top = alpha ? std::clamp(sum[3], 0.0F, 255.0F) : 255.0F;
    const auto channel = [&sum, top](int c) { // premultiplied: no colour above its alpha
        return static_cast<std::uint32_t>(std::clamp(sum[c], 0.0F, top));
    };
    return static_cast<std::uint32_t>(top) << 24 | channel(2) << 16 | channel(1) << 8 | channel(0);
}

#endif

} // namespace

void sumDown(const std::uint8_t* const* rows, const std::int16_t* weights, int count, std::size_t bytes,
             float* out)
{
    sumDownPlainly(rows, weights, count, sumDownByVectors(rows, weights, count, bytes, out), bytes, out);
}

void sumAlong(const Taps* taps, std::size_t length, const Channels* pixels, int low, const float* weights,
              bool alpha, std::uint32_t* out)
{
    for (const Taps* tap = taps; tap != taps + length; ++tap) {
        const Channels* pixel = pixels + (tap->first - low);
        const float* weight = weights + tap->weights;
        Channels sum = {};
        for (int i = 0; i < tap->count; ++i)
            sum += pixel[i] * weight[i];
        *out++ = packed(sum, alpha);
    }
}

} // namespace quorvia::engine
