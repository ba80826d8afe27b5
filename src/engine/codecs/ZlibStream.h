// A zlib stream in memory (RFC 1950), inflated piece by piece by ISA-L: as fast as inflating it in one call,
// and between two pieces a decode can be broken off or the last piece be worked on.
#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>

struct inflate_state;

namespace quorvia::engine {

class ZlibStream
{
  public:
    /// Of the `length` bytes at `packed`, which stay there as long as the stream is read.
    ZlibStream(const uchar* packed, qint64 length);
    ~ZlibStream();
    ZlibStream(const ZlibStream&) = delete;
    ZlibStream& operator=(const ZlibStream&) = delete;

    /// Writes the next bytes of what the stream holds to `out`, at most `room` of them, and returns how many;
    /// fewer than `room` only at the end. What was written is the caller's to change: later pieces do not
    /// look back at it. Nothing when the stream is damaged or cut short.
    std::optional<qint64> read(uchar* out, qint64 room);
    /// True when all that the stream holds was read, its check sum is right and nothing stands behind it.
    bool isAtEnd();

  private:
    bool inflateNext(uchar* out, quint32 room);

    const std::unique_ptr<inflate_state> m_state; ///< large, so not here
    const uchar* m_next;
    qint64 m_left; ///< bytes at m_next that were not given to m_state yet
    bool m_isRefused = false;
};

} // namespace quorvia::engine
