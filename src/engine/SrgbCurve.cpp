#include "engine/SrgbCurve.h"

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

uchar srgbByte(float light)
{
    const float inside = std::clamp(light, 0.0F, 1.0F);
    const float encoded =
        inside <= 0.0031308F ? 12.92F * inside : 1.055F * std::pow(inside, 1 / 2.4F) - 0.055F;
    return static_cast<uchar>(std::lround(encoded * 255));
}

const std::array<uchar, lightSteps>& srgbTable()
{
    static const auto table = [] {
        std::array<uchar, lightSteps> made;
        for (int i = 0; i < lightSteps; ++i)
            made[static_cast<size_t>(i)] = srgbByte(float(i) / (lightSteps - 1));
        return made;
    }();
    return table;
}

} // namespace quorvia::engine
