// sRGB's curve: from light, 0 to 1, to bytes. The table is made once.
#pragma once

#include <QtGlobal>

#include <array>

namespace quorvia::engine {

/// The byte of one channel for `light`, clipped to 0 to 1 and rounded. Source: IEC 61966-2-1.
uchar srgbByte(float light);

/// Steps of light that the table tells apart: so many that the darkest are a fifth of a byte apart.
constexpr int lightSteps = 16384;

/// srgbByte() for light from 0 to 1 in lightSteps steps.
const std::array<uchar, lightSteps>& srgbTable();

// Four channels at a time: gcc and clang turn these into the machine's own vectors.
using Four = float __attribute__((vector_size(16)));
using FourInts = int __attribute__((vector_size(16)));

/// The places in srgbTable() of `steps`, light times lightSteps - 1 (plus a half to be rounded).
inline FourInts srgbPlaces(Four steps)
{
    constexpr float last = lightSteps - 1;
    const Four none = {};
    const Four low = steps > none ? steps : none;
    return __builtin_convertvector(low < last ? low : none + last, FourInts);
}

} // namespace quorvia::engine
