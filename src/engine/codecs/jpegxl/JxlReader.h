// Runs libjxl over a byte source, piece by piece, up to one of its events. Cheap to make once the library is
// loaded.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Codec.h"
#include "engine/codecs/jpegxl/JxlLibrary.h"

#include <QByteArray>
#include <QImage>

#include <memory>
#include <optional>
#include <vector>

namespace quorvia::engine {

/// Where a run of the library ended.
enum class JxlEnd {
    Event,     ///< at an event that was asked for
    Done,      ///< behind the last of them
    Cut,       ///< the file is at its end, the picture is not
    Broken,    ///< the library gave up, or takes no byte of very many
    Cancelled, ///< the asker did
};

/// A part of a file, up to the next one, and how many pixels are decoded for it at most.
struct JxlStretch
{
    qint64 begin = 0;
    qint64 pixels = 0;
};

class JxlReader
{
  public:
    /// Reads `source`, stopping at `events` (JXL_DEC_BASIC_INFO and others).
    JxlReader(const JxlLibrary& library, const ByteSource& source, int events);
    JxlReader(const JxlReader&) = delete;
    JxlReader& operator=(const JxlReader&) = delete;

    /// Reads on; `event` is told when the end is Event.
    JxlEnd run(const CancelFlag& cancel, JxlDecoderStatus& event);

    /// Null without memory.
    JxlDecoder* get() const { return m_decoder.get(); }

    /// From the first byte on: each layer is a frame of its own, of its own size.
    void tellLayers();
    /// The frame that begins, once JXL_DEC_FRAME has come.
    JxlFrameHeader frame() const;
    /// The offset in the source behind what the library has taken.
    qint64 position();
    /// From here on feeds so few bytes at a time that the picture can be given up in between: a small part of
    /// one of `stretches`, never bytes of two. They are in order, the first begins at 0.
    void feedFor(std::vector<JxlStretch> stretches);

    /// The facts, once JXL_DEC_BASIC_INFO has come; as the picture is turned upright.
    JxlBasicInfo info() const;
    /// True when the picture has a plane of black ink.
    bool hasInk(const JxlBasicInfo& info) const;
    /// Once JXL_DEC_COLOR_ENCODING has come: asks for sRGB where the library can choose, and gives the ICC
    /// profile of the pixels that are to come; empty for sRGB, and where there is none.
    QByteArray settleColors(const JxlBasicInfo& info);

  private:
    /// Takes back what the library has not taken; how many bytes that is.
    size_t takeBack();
    /// How many bytes to feed next; at least 1.
    qint64 nextPiece() const;
    /// Gives the library the next bytes behind those that it left; the end when there are none, or no room.
    std::optional<JxlEnd> feed();

    const JxlLibrary& m_library;
    const ByteSource& m_source;
    std::unique_ptr<JxlDecoder, decltype(&::JxlDecoderDestroy)> m_decoder;
    std::vector<uchar> m_bytes; ///< the library looks at them until they are released
    qint64 m_offset = 0;        ///< of the source, behind m_bytes
    std::vector<JxlStretch> m_stretches;
};

} // namespace quorvia::engine
