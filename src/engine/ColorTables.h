// The tables that a conversion to sRGB works with, made once from a profile. Each turns 8-bit values into
// pixels in a few nanoseconds; none changes after it is made.
#pragma once

#include "engine/ProfileSampler.h"

namespace quorvia::engine {

/// Makes the tables that suit what `sampler` gives: for grey a table of 256; for RGB whose channels act apart
/// (a curve each and a matrix) a sum of three table entries, as exact as the sampler; else a grid with
/// interpolation. Null when the profile is to be given up.
std::shared_ptr<const ColorConversion> makeConversion(ProfileSampler& sampler, ColorModel model);

} // namespace quorvia::engine
