#include "engine/codecs/ZlibStream.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 mostAtOnce = 1 << 30; // ISA-L counts in 32 bits

} // namespace

ZlibStream::ZlibStream(const uchar* packed, qint64 length)
    : m_state(std::make_unique<inflate_state>()), m_next(packed), m_left(length)
{
    isal_inflate_init(m_state.get());
    m_state->crc_flag = ISAL_ZLIB;
    constexpr int largestWindow = 7; // 32 KiB; ISA-L takes what is told for more
    m_isRefused = length > 0 && packed[0] >> 4 > largestWindow;
}

ZlibStream::~ZlibStream() = default;

/// One call of the library with room for `room` bytes at `out`; false when the stream is damaged.
bool ZlibStream::inflateNext(uchar* out, quint32 room)
{
    if (m_state->avail_in == 0) {
        const qint64 count = std::min(m_left, mostAtOnce);
        m_state->next_in = const_cast<uchar*>(m_next); // it is only read
        m_state->avail_in = quint32(count);
        m_next += count;
        m_left -= count;
    }
    m_state->next_out = out;
    m_state->avail_out = room;
    return isal_inflate(m_state.get()) == ISAL_DECOMP_OK;
}

std::optional<qint64> ZlibStream::read(uchar* out, qint64 room)
{
    if (m_isRefused)
        return {};
    qint64 done = 0;
    while (done < room && m_state->block_state != ISAL_BLOCK_FINISH) {
        const auto count = quint32(std::min(room - done, mostAtOnce));
        const qint64 packedLeft = m_left + m_state->avail_in;
        if (!inflateNext(out + done, count))
            return {};
        const qint64 written = count - m_state->avail_out;
        const bool stands = written == 0 && m_left + m_state->avail_in == packedLeft;
        if (stands && m_state->block_state != ISAL_BLOCK_FINISH)
            return {}; // cut short
        done += written;
    }
    return done;
}

bool ZlibStream::isAtEnd()
{
    uchar more = 0; // the check sum is read with the byte that does not come
    const std::optional<qint64> count = read(&more, 1);
    constexpr int byte = 8;
    const bool nothingBehind = m_left == 0 && m_state->avail_in == 0 && m_state->read_in_length < byte;
    return count && *count == 0 && m_state->block_state == ISAL_BLOCK_FINISH && nothingBehind;
}

} // namespace quorvia::engine
