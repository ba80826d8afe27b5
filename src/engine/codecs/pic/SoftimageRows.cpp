#include "engine/codecs/pic/SoftimageRows.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr QRgb opaqueBlack = 0xFF000000;

/// Where a channel's bit of a packet stands in a QRgb; -1 for channels that are not shown.
int shiftOf(int channel)
{
    switch (channel) {
    case 0x80:
        return 16;
    case 0x40:
        return 8;
    case 0x20:
        return 0;
    case 0x10:
        return 24;
    default:
        return -1;
    }
}

/// Puts the channels of `count` stored pixels into their places in `row`.
void distribute(int channels, const uchar* stored, int count, QRgb* row)
{
    const int bytes = std::popcount(unsigned(channels));
    int index = 0;
    for (int channel = 0x80; channel != 0; channel >>= 1) {
        if ((channels & channel) == 0)
            continue;
        const int shift = shiftOf(channel);
        const uchar* from = stored + index++;
        if (shift < 0)
            continue;
        const QRgb keep = ~(QRgb(255) << shift);
        for (int x = 0; x < count; ++x, from += bytes)
            row[x] = (row[x] & keep) | QRgb(*from) << shift;
    }
}

} // namespace

SoftimageRows::SoftimageRows(const ByteSource& source, const SoftimageLayout& layout)
    : m_reader(source, layout.pixelOffset, source.size() - layout.pixelOffset), m_layout(layout)
{
    size_t widest = 0;
    for (const SoftimagePacket& packet : layout.packets)
        widest = std::max(widest, size_t(std::popcount(unsigned(packet.channels))));
    m_stored.resize(widest * size_t(layout.size.width()));
}

int SoftimageRows::readRaw(int bytes)
{
    return int(m_reader.read(m_stored.data(), qint64(m_layout.size.width()) * bytes) / bytes);
}

/// A run of `length` pixels, drawn from pixel `at` on; how many of them the row has room for, -1 at the end
/// of the file.
int SoftimageRows::readRun(int length, int bytes, int at)
{
    const int left = m_layout.size.width() - at;
    uchar* out = m_stored.data() + qsizetype(at) * bytes;
    uchar pixel[8];
    if (m_reader.read(pixel, bytes) < bytes)
        return -1;
    const int count = std::min(length, left); // a run longer than the row ends with it
    for (int i = 0; i < count; ++i, out += bytes)
        std::memcpy(out, pixel, size_t(bytes));
    return count;
}

int SoftimageRows::readRuns(int bytes, bool mixed)
{
    constexpr int longRun = 128;
    const int width = m_layout.size.width();
    int at = 0;
    while (at < width) {
        const int code = m_reader.next();
        if (code < 0)
            return at;
        if (mixed && code < longRun) {
            const int wanted = std::min(code + 1, width - at);
            const auto got =
                int(m_reader.read(m_stored.data() + qsizetype(at) * bytes, qint64(wanted) * bytes) / bytes);
            at += got;
            if (got < wanted)
                return at;
            continue;
        }
        int length = mixed ? code - longRun + 1 : code;
        if (mixed && code == longRun) {
            const int high = m_reader.next();
            const int low = m_reader.next();
            if (low < 0)
                return at;
            length = high << 8 | low;
        }
        const int count = readRun(length, bytes, at);
        if (count < 0)
            return at;
        at += count;
    }
    return at;
}

int SoftimageRows::readPacket(const SoftimagePacket& packet)
{
    const int bytes = std::popcount(unsigned(packet.channels));
    return packet.packing == SoftimagePacking::Raw
               ? readRaw(bytes)
               : readRuns(bytes, packet.packing == SoftimagePacking::Mixed);
}

int SoftimageRows::read(QRgb* row, bool& anything)
{
    const int width = m_layout.size.width();
    int reached = 0; // by some channel
    int complete = width;
    for (const SoftimagePacket& packet : m_layout.packets) {
        const int count = readPacket(packet);
        if (count > reached) {
            std::fill(row + reached, row + count, opaqueBlack);
            reached = count;
        }
        distribute(packet.channels, m_stored.data(), count, row);
        complete = std::min(complete, count);
        if (complete < width)
            break;
    }
    anything = reached > 0;
    return complete;
}

} // namespace quorvia::engine
