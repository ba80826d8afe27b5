// A conversion by interpolation in a grid of colours, for profiles that are no curves and a matrix. Its nodes
// are not clipped to the gamut of sRGB, so that colours near its edge come out right; the result is clipped.
#pragma once

#include "engine/ProfileSampler.h"

namespace quorvia::engine {

/// The grid of an Rgb or Cmyk profile, of several kinds the one that fits it best; costs up to a tenth of a
/// second, and a megabyte and a half. Null when the profile is to be given up.
std::shared_ptr<const ColorConversion> makeGrid(ProfileSampler& sampler, ColorModel model);

/// What a colour of CIE Lab, seen under D50, is in sRGB; `lightness` 0 to 100.
QRgb labInSrgb(float lightness, float a, float b);

} // namespace quorvia::engine
