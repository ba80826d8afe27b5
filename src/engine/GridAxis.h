// Where the nodes of a grid lie on one of its axes.
#pragma once

#include <cstddef>
#include <vector>

namespace quorvia::engine {

/// Places from 0 to 1, both among them, each greater than the one before.
using GridAxis = std::vector<float>;

/// `nodes` of equal distance, at least 2.
GridAxis evenAxis(size_t nodes);

/// `nodes` places, close where a curve bends: linear pieces between them are off by about the same
/// everywhere. `bend` holds the second differences of the curve, without sign, at equal steps from 0 to 1.
GridAxis axisByBend(const std::vector<float>& bend, size_t nodes);

} // namespace quorvia::engine
