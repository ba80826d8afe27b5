// Asks lcms2 what colours a profile's device values are. Slow and exact: half a microsecond a colour, a
// millisecond to make. Hostile profiles cannot take more than a bounded share of memory and time.
#pragma once

#include "engine/ColorConversion.h"

#include <chrono>

namespace quorvia::engine {

/// A colour in light: R, G, B of sRGB's primaries before its curve, 0 to 1 inside its gamut.
struct LinearColor
{
    float red;
    float green;
    float blue;
};

class ProfileSampler
{
  public:
    /// Null when lcms2 cannot use `profile`, whose model colorModelOf() has told.
    static std::unique_ptr<ProfileSampler> open(const QByteArray& profile, ColorModel model);
    ~ProfileSampler();
    ProfileSampler(const ProfileSampler&) = delete;
    ProfileSampler& operator=(const ProfileSampler&) = delete;

    /// Converts `count` colours of 1, 3 or 4 numbers each, 0 to 1 (no ink to full ink). Values out of sRGB's
    /// gamut come out below 0 or above 1, bounded to [-1, 4]. False when the profile takes longer than any
    /// real one does: it is to be given up.
    bool sample(const float* device, LinearColor* out, size_t count);

  private:
    class Lcms;
    explicit ProfileSampler(std::unique_ptr<Lcms> lcms, ColorModel model);

    const std::unique_ptr<Lcms> m_lcms;
    const ColorModel m_model;
    const std::chrono::steady_clock::time_point m_deadline;
};

} // namespace quorvia::engine
