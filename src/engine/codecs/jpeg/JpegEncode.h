// Writes a JPEG: baseline, optimised Huffman tables. Costs about a decode; holds the coefficients of the
// picture (two bytes a sample) while it runs.
#pragma once

#include "engine/Codec.h"

#include <array>

namespace quorvia::engine {

/// 64 quantisation steps in rows of 8.
using QuantTable = std::array<unsigned, 64>;

/// The table for quantisation strength `strength` (0 to 255, clamped). The strength is the percentage of the
/// example table of ITU-T T.81, Annex K: K.1 for luminance, K.2 for chrominance; steps are rounded and kept
/// in 1 to 255. So 0 gives steps of 1 throughout, 100 the tables themselves (quality 50 of the usual scale),
/// 24 and 20 qualities 88 and 90, and 255 the strongest, quality 20.
QuantTable quantTable(bool chrominance, int strength);

/// The JPEG file of `image` (any QImage format; alpha is laid over white). Grey when asked for and for images
/// whose pixels or palette entries are all grey by their format. `profile` is that of the image's colours; it
/// is embedded, but for a grey file of an RGB profile: its pixels are brought to sRGB before they turn grey.
/// A profile that is neither grey nor RGB is left out. Unsupported for a null image and for sides over 65500.
Result<QByteArray> encodeJpeg(const QImage& image, const JpegOptions& options,
                              const QByteArray& profile = {});

} // namespace quorvia::engine
