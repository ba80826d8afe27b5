// Reads the bits of an entropy-coded JPEG segment: takes out the stuffed zero bytes and stops at a marker.
// Cheap: eight bytes at a time where none of them is FF.
#pragma once

#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"

#include <QtEndian>

namespace quorvia::engine {

class JpegBits
{
  public:
    /// Reads `bytes` from `offset` on.
    JpegBits(ByteSpan bytes, size_t offset)
        : m_begin(bytes.data()), m_at(m_begin + offset), m_end(m_begin + bytes.size())
    {
    }

    /// Makes at least 57 bits ready; behind the end or a marker they are zeros.
    [[gnu::always_inline]] void refill()
    {
        if (m_end - m_at >= 8) {
            const auto next = qFromBigEndian<quint64>(m_at);
            constexpr quint64 low = 0x0101010101010101;
            constexpr quint64 high = 0x8080808080808080;
            if (((~next - low) & next & high) == 0) { // none of the bytes is FF
                const int bytes = (64 - m_ready) >> 3;
                m_at += bytes;
                m_bits |= m_ready < 64 ? next >> m_ready : 0;
                m_ready += 8 * bytes;
                m_bits &= ~quint64(0) << (64 - m_ready);
                return;
            }
        }
        refillByteByByte();
    }

    int ready() const { return m_ready; }
    /// The next `count` bits (1 to 16) without taking them.
    unsigned peek(int count) const { return unsigned(m_bits >> (64 - count)); }
    void drop(int count)
    {
        m_bits <<= count;
        m_ready -= count;
    }
    unsigned take(int count)
    {
        const unsigned value = peek(count);
        drop(count);
        return value;
    }

    /// True once bits were taken that the segment does not have.
    bool overran() const { return m_ready < m_padding; }
    /// Where to look for the next marker: it lies here or further on.
    size_t offset() const { return size_t(m_at - m_begin); }

  private:
    [[gnu::noinline]] void refillByteByByte()
    {
        while (m_ready <= 56) {
            quint64 byte = 0;
            if (m_at < m_end && (*m_at != 0xff || (m_at + 1 < m_end && m_at[1] == 0))) {
                byte = *m_at;
                m_at += byte == 0xff ? 2 : 1;
            } else {
                m_padding += 8;
            }
            m_bits |= byte << (56 - m_ready);
            m_ready += 8;
        }
    }

    const uchar* m_begin;
    const uchar* m_at;
    const uchar* m_end;
    quint64 m_bits = 0; ///< the next bit is the highest; zeros behind the ready ones
    int m_ready = 0;
    int m_padding = 0; ///< bits that were made up
};

} // namespace quorvia::engine
