// The inner loops of the resampler: weighted sums of pixels, down a few rows and along one. Written with the
// processor's vector instructions where there are any (x86: SSE2, and AVX2 when the machine has it).
#pragma once

#include <cstddef>
#include <cstdint>

namespace quorvia::engine {

/// Fixed point: a weight of 1 is 2^14, so that a weight fits 16 bits and its product with a channel 32.
/// Between the passes a channel carries 6 bits below the point.
inline constexpr int weightBits = 14;
inline constexpr int weightUnit = 1 << weightBits;
inline constexpr int betweenBits = 6;

/// Blue, green, red, alpha of a pixel between the passes.
using Channels = float __attribute__((vector_size(16)));

/// Which pixels make a result pixel along one axis.
struct Taps
{
    int first;   ///< source pixel
    int count;   ///< taps, from `first` on
    int weights; ///< where theirs begin in the axis' list of weights
};

/// Down: each of `bytes` channels of `out` is the sum of the channels at its place in `count` rows, each
/// times its weight, with betweenBits below the point. `weights` add up to weightUnit.
void sumDown(const std::uint8_t* const* rows, const std::int16_t* weights, int count, std::size_t bytes,
             float* out);

/// Along: each of `length` pixels of `out` is the sum of the pixels from sumDown() that its taps name,
/// counted from `pixels`, each times its weight (weightUnit is 1), rounded and bounded to 0 to 255. With
/// `alpha` no colour comes out above its alpha, else the alpha is 255. `pixels` begins with source pixel
/// `low`.
void sumAlong(const Taps* taps, std::size_t length, const Channels* pixels, int low, const float* weights,
              bool alpha, std::uint32_t* out);

} // namespace quorvia::engine
