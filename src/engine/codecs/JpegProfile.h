// The ICC profile of a JPEG: in up to 255 APP2 segments, each marked with its number and the count of all.
// Costs nothing for a file without one.
#pragma once

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

    /// The profile when all of it stood in its order within maxProfileBytes, and its colours are of `model`;
    /// else empty. Ask after the header is read.
    QByteArray take(ColorModel model);

  private:
    static boolean takeSegment(j_decompress_ptr info);
    void begin(int number, int count);
    void add(const JOCTET* bytes, size_t length);

    QByteArray m_bytes;
    int m_taken = 0; ///< pieces so far
    int m_count = 0; ///< pieces that there should be
    bool m_broken = false;
};

} // namespace quorvia::engine
