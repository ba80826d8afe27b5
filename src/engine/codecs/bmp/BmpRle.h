// The run-length codes of bitmaps: RLE4 and RLE8 of Windows, RLE24 of OS/2, with deltas and end codes.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/SourceReader.h"

namespace quorvia::engine {

struct RleOutcome
{
    bool complete = false; ///< the codes reached their end mark or the last pixel
    bool drawn = false;    ///< at least one pixel was set
};

/// Unpacks `in` into `image`, which is blank and Indexed8 (or Grayscale8) for RLE4 and RLE8, RGB32 for RLE24.
/// Pixels that no code reaches stay as they are; what would lie outside the image is dropped. Stops early,
/// not complete, when `cancel` is set.
RleOutcome unpackRle(SourceReader& in, const BmpLayout& layout, QImage& image, const CancelFlag& cancel);

} // namespace quorvia::engine
