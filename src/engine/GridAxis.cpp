#include "engine/GridAxis.h"

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

GridAxis evenAxis(size_t nodes)
{
    GridAxis axis(nodes);
    for (size_t i = 0; i < nodes; ++i)
        axis[i] = float(i) / float(nodes - 1);
    return axis;
}

GridAxis axisByBend(const std::vector<float>& bend, size_t nodes)
{
    // A piece of length d is off by d * d * bend / 8: the root of the bend is how many nodes a place needs.
    const size_t gaps = bend.size() - 1;
    std::vector<double> needed(gaps);
    double sum = 0;
    for (size_t i = 0; i < gaps; ++i) {
        needed[i] = std::sqrt(double(std::max(bend[i], bend[i + 1])));
        sum += needed[i];
    }
    if (!(sum > 0))
        return evenAxis(nodes);
    constexpr double evenShare = 0.25; // other lines than those measured may bend elsewhere
    const double least = sum * evenShare / double(gaps);
    const double all = sum * (1 + evenShare);
    GridAxis axis = {0};
    double before = 0;
    for (size_t i = 0; i < gaps; ++i) {
        const double share = (needed[i] + least) / all;
        while (axis.size() + 1 < nodes) {
            const double wanted = double(axis.size()) / double(nodes - 1);
            if (wanted > before + share && i + 1 < gaps)
                break;
            axis.push_back(float((double(i) + (wanted - before) / share) / double(gaps)));
        }
        before += share;
    }
    axis.push_back(1);
    return axis;
}

} // namespace quorvia::engine
