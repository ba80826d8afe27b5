// Reads the big-endian numbers and rectangles of a Macintosh picture by offset, through a small window.
#pragma once

#include "engine/ByteSource.h"

#include <QRect>

#include <algorithm>
#include <array>

namespace quorvia::engine {

class PictReader
{
  public:
    /// Reads `source` from `offset` (bytes) on; opcodes of version 2 are aligned to it.
    PictReader(const ByteSource& source, qint64 offset)
        : m_source(source), m_start(offset), m_at(offset), m_size(source.size())
    {
    }

    /// The next byte; 0 at the end, which isPast() tells.
    int byte()
    {
        if (m_at < m_first || m_at >= m_first + m_filled) {
            m_first = m_at;
            m_filled = m_source.read(m_at, m_window.data(), qint64(m_window.size()));
        }
        const int value = m_filled > 0 ? m_window[size_t(m_at - m_first)] : 0;
        m_past = m_past || m_filled <= 0;
        ++m_at;
        return value;
    }

    int word()
    {
        const int high = byte();
        return high << 8 | byte();
    }
    int signedWord() { return qint16(word()); }

    qint64 longWord()
    {
        const qint64 high = word();
        return high << 16 | word();
    }

    /// Top, left, bottom, right; empty or not as it stands.
    QRect rectangle()
    {
        const int top = signedWord();
        const int left = signedWord();
        const int bottom = signedWord();
        const int right = signedWord();
        return QRect(QPoint(left, top), QSize(right - left, bottom - top));
    }

    void skip(qint64 count)
    {
        m_at += std::max<qint64>(count, 0);
        m_past = m_past || m_at > m_size;
    }
    void align() { m_at += (m_at - m_start) % 2; }

    qint64 position() const { return m_at; }
    void moveTo(qint64 offset) { m_at = offset; }
    /// True once something was asked for that lies behind the end of the file.
    bool isPast() const { return m_past; }

  private:
    const ByteSource& m_source;
    qint64 m_start;
    qint64 m_at;
    qint64 m_size;
    std::array<uchar, 4096> m_window;
    qint64 m_first = 0;
    qint64 m_filled = 0;
    bool m_past = false;
};

} // namespace quorvia::engine
