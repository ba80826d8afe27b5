// The ICC profile of a JPEG: in up to 255 APP2 segments, each marked with its number and the count of all.
// Costs nothing for a file without one.
#pragma once

#include "engine/codecs/IccPieces.h"
#include "engine/ColorConversion.h"

#include <jpeglib.h>

#include <cstdio>

namespace quorvia::engine {

/// Takes in the profile's pieces while libjpeg reads the header.
class JpegProfile
{
  public:
    /// Sets itself before the APP2 segments of `info`, which must be created and not yet read. It must
    /// outlive the reading; `info` must be no other's client.
    void attach(j_decompress_ptr info);

    /// The profile when all its pieces came, in any order, within maxProfileBytes, and its colours are of
    /// `model`; else empty. Ask after the header is read.
    QByteArray take(ColorModel model);

  private:
    static boolean takeSegment(j_decompress_ptr info);

    IccPieces m_pieces;
};

} // namespace quorvia::engine
