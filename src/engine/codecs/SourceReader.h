// Reads a byte source from front to back through a small buffer, byte by byte or in pieces.
#pragma once

#include "engine/ByteSource.h"

#include <algorithm>
#include <array>
#include <atomic>

namespace quorvia::engine {

class SourceReader
{
  public:
    /// Reads `source` from `offset` (bytes) for at most `length` bytes. Once `cancel` (null for none) is set,
    /// the reader comes to its end with the buffer.
    SourceReader(const ByteSource& source, qint64 offset, qint64 length,
                 const std::atomic<bool>* cancel = nullptr)
        : m_source(source), m_offset(offset), m_left(std::max<qint64>(length, 0)), m_cancel(cancel)
    {
    }

    /// The next byte, or -1 at the end and for ever after.
    int next()
    {
        if (m_at == m_filled && !fill())
            return -1;
        return m_buffer[m_at++];
    }

    /// The next `count` bytes into `out`; how many there were.
    qint64 read(uchar* out, qint64 count)
    {
        qint64 got = 0;
        while (got < count && (m_at < m_filled || fill())) {
            const qint64 step = std::min(count - got, qint64(m_filled - m_at));
            std::copy_n(m_buffer.data() + m_at, step, out + got);
            m_at += size_t(step);
            got += step;
        }
        return got;
    }

  private:
    bool fill()
    {
        const bool cancelled = m_cancel && *m_cancel;
        const qint64 wanted = cancelled ? 0 : std::min<qint64>(m_left, qint64(m_buffer.size()));
        const qint64 got = m_source.read(m_offset, m_buffer.data(), wanted);
        m_left = got > 0 ? m_left - got : 0;
        m_offset += got;
        m_at = 0;
        m_filled = size_t(std::max<qint64>(got, 0));
        return m_filled > 0;
    }

    const ByteSource& m_source;
    qint64 m_offset;
    qint64 m_left;
    const std::atomic<bool>* m_cancel;
    std::array<uchar, 16384> m_buffer;
    size_t m_at = 0;
    size_t m_filled = 0;
};

} // namespace quorvia::engine
