// The short way through a PNG whose file is whole and not interlaced: one core inflates the joined data
// chunks while another unfilters and converts the rows that are there. Takes little more memory than the
// compressed data and the picture, or its filtered rows where these are larger (16 bits). Whatever is out of
// the ordinary is left to libpng.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/png/PngChunks.h"

#include <optional>

namespace quorvia::engine {

/// Decodes the PNG in `source`, whose header is `header` and within the limits. Nothing when the file is
/// interlaced, damaged in any way, unusually put together or very large, when memory is short, or when
/// `cancel` was set: the pixels are then to be had from libpng, or not at all. The same pixels as libpng's.
std::optional<Picture> decodePngFast(const ByteSource& source, const PngHeader& header,
                                     const CancelFlag& cancel);

} // namespace quorvia::engine
