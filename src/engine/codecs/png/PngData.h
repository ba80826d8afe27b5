// Gathers what makes the pixels of a PNG out of its chunks: palette, transparency and the joined compressed
// data. One read a chunk; holds the compressed data in memory.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/png/PngChunks.h"

#include <QByteArray>

#include <cstdlib>
#include <memory>
#include <optional>

namespace quorvia::engine {

struct FreePngBytes
{
    void operator()(void* memory) const { std::free(memory); }
};
using PngBuffer = std::unique_ptr<uchar, FreePngBytes>;

struct PngData
{
    QByteArray palette;      ///< content of PLTE; empty unless the colour type is palette
    QByteArray transparency; ///< content of tRNS, where it counts for the colour type; empty without one
    PngBuffer stream;        ///< content of the data chunks, joined
    qint64 length = 0;       ///< of `stream`, bytes
};

/// How many bytes of compressed data are taken for sensible.
struct PngDataBounds
{
    qint64 least = 0;
    qint64 most = 0;
};

/// Reads the chunks of `source` up to its end chunk. Nothing when the file is not whole and in order: a check
/// sum is wrong, a chunk that counts stands twice, at a wrong place, has a wrong length or is cut off, the
/// compressed data are not within `bounds`; or when memory is short or `cancel` was set.
std::optional<PngData> readPngData(const ByteSource& source, const PngHeader& header,
                                   const PngDataBounds& bounds, const CancelFlag& cancel);

} // namespace quorvia::engine
