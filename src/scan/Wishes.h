// What is asked of a scanner, brought to what it can do. Plain arithmetic.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvia::scan {

enum class Mode { Gray, Color };

/// The one of a device's `names` of modes that stands for `mode`; nothing when none does.
std::optional<std::string> modeNamed(std::span<const std::string> names, Mode mode);

/// The values that a device takes for a number.
struct Allowed
{
    std::vector<double> values; ///< just these; empty: all from `least` to `most`
    double least = 0;
    double most = 0; ///< below `least`: any number
    double step = 0; ///< between values from `least` on; 0: any of them
};

/// The value nearest to `wanted` that `allowed` has; of two the smaller.
double nearestAllowed(const Allowed& allowed, double wanted);

} // namespace quorvia::scan
