// The chunks of a PNG file, walked without reading what they hold: a few bytes a chunk.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QSize>

#include <optional>

namespace quorvia::engine {

/// What the first chunk tells (ISO/IEC 15948, 11.2.2).
struct PngHeader
{
    QSize size;     ///< pixels
    int depth = 0;  ///< bits a sample: 1, 2, 4, 8 or 16
    int colors = 0; ///< colour type: 0 grey, 2 RGB, 3 palette, 4 grey with alpha, 6 RGB with alpha
    bool interlaced = false;

    /// Samples a pixel, as stored.
    int channels() const;
};

/// Bytes of the signature and the whole first chunk.
constexpr qint64 pngHeaderLength = 33;

/// The header of the PNG in `source`; Damaged when it breaks the rules. The size is not judged.
Result<PngHeader> readPngHeader(const ByteSource& source);

struct PngChunk
{
    enum Type : quint32 {
        palette = 0x504c5445,
        transparency = 0x74524e53,
        data = 0x49444154,
        end = 0x49454e44,
        profile = 0x69434350,
        srgb = 0x73524742
    };
    quint32 type = 0;  ///< a Type, or any other
    qint64 offset = 0; ///< of the chunk's length field
    qint64 length = 0; ///< of the content
    /// Offset behind the check sum; past the end of a file that was cut short.
    qint64 behind() const { return offset + 12 + length; }
};

/// Walks the chunks behind the header.
class PngChunks
{
  public:
    explicit PngChunks(const ByteSource& source) : m_source(source) {}
    /// The next chunk; nothing where the file ends or what follows is no chunk. Its content may be cut short.
    std::optional<PngChunk> next();

  private:
    const ByteSource& m_source;
    qint64 m_offset = pngHeaderLength;
};

} // namespace quorvia::engine
