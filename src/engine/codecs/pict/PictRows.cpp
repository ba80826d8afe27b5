#include "engine/codecs/pict/PictRows.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int noPacking = 8; ///< rows with fewer bytes are stored as they are

bool isPacked(const PictBitmap& bitmap)
{
    return bitmap.packing != PictPacking::Plain && bitmap.packing != PictPacking::NoPad &&
           bitmap.rowBytes >= noPacking;
}

int unitOf(PictPacking packing)
{
    return packing == PictPacking::PackWords ? 2 : 1;
}

/// True when a packed row of `packed` bytes at `reader` unpacks to `length` bytes.
bool unpacksTo(PictReader reader, int packed, int length, int unit)
{
    int made = 0;
    int used = 0;
    while (used < packed && made < length) {
        const int code = reader.byte();
        const int step = (code < 128 ? code + 1 : (code > 128 ? 1 : 0)) * unit;
        made += (code < 128 ? code + 1 : (code > 128 ? 257 - code : 0)) * unit;
        used += 1 + step;
        reader.skip(step);
    }
    return used == packed && made == length && !reader.isPast();
}

/// 5 bits as 8, rounded.
int fromFive(int value)
{
    return ((value & 31) * 255 + 15) / 31;
}

} // namespace

int pictRowLength(const PictBitmap& bitmap)
{
    switch (bitmap.packing) {
    case PictPacking::Planes:
        return bitmap.size.width() * bitmap.components;
    case PictPacking::NoPad:
        return bitmap.size.width() * 3;
    default:
        return bitmap.rowBytes;
    }
}

bool hasWideCounts(const ByteSource& source, const PictBitmap& bitmap)
{
    constexpr int surelyNarrow = 200;
    constexpr int surelyWide = 250;
    const int length = pictRowLength(bitmap);
    const int told = std::max(bitmap.rowBytes, length);
    if (told <= surelyNarrow || told > surelyWide)
        return told > surelyWide;
    const int unit = unitOf(bitmap.packing);
    PictReader narrow(source, bitmap.offset);
    PictReader wide(source, bitmap.offset);
    const int narrowCount = narrow.byte();
    const int wideCount = wide.word();
    return !unpacksTo(narrow, narrowCount, length, unit) && unpacksTo(wide, wideCount, length, unit);
}

void skipPictRows(PictReader& reader, const PictBitmap& bitmap)
{
    if (!isPacked(bitmap)) {
        reader.skip(qint64(pictRowLength(bitmap)) * bitmap.size.height());
        return;
    }
    for (int y = 0; y < bitmap.size.height() && !reader.isPast(); ++y)
        reader.skip(bitmap.wideCounts ? reader.word() : reader.byte());
}

PictRows::PictRows(const ByteSource& source, const PictBitmap& bitmap)
    : m_reader(source, bitmap.offset), m_bitmap(bitmap),
      m_row(size_t(std::max(pictRowLength(bitmap), bitmap.rowBytes)))
{
}

bool PictRows::next()
{
    std::fill(m_row.begin(), m_row.end(), 0);
    if (isPacked(m_bitmap))
        return unpack(unitOf(m_bitmap.packing));
    const int length = pictRowLength(m_bitmap);
    for (int i = 0; i < length && !m_reader.isPast(); ++i)
        m_row[size_t(i)] = uchar(m_reader.byte());
    return !m_reader.isPast();
}

bool PictRows::unpack(int unit)
{
    const qint64 count = m_bitmap.wideCounts ? m_reader.word() : m_reader.byte();
    const qint64 end = m_reader.position() + count;
    const size_t length = size_t(pictRowLength(m_bitmap));
    size_t made = 0;
    while (m_reader.position() < end && made < length && !m_reader.isPast()) {
        const int code = m_reader.byte();
        if (code == 128) // says nothing
            continue;
        const bool run = code > 128;
        const int units = run ? 257 - code : code + 1;
        uchar value[2] = {};
        for (int i = 0; i < units; ++i) {
            for (int part = 0; part < unit; ++part) {
                if (!run || i == 0)
                    value[part] = uchar(m_reader.byte());
                if (made < length && !m_reader.isPast())
                    m_row[made++] = value[part];
            }
        }
    }
    const bool there = !m_reader.isPast();
    m_reader.moveTo(end);
    return there && made == length;
}

int PictRows::index(int x) const
{
    const int bits = m_bitmap.bitsPerPixel;
    const qint64 at = qint64(x) * bits;
    return m_row[size_t(at / 8)] >> (8 - bits - at % 8) & ((1 << bits) - 1);
}

QRgb PictRows::color(int x) const
{
    const auto at = [this](qint64 offset) { return m_row[size_t(offset)]; };
    const qint64 width = m_bitmap.size.width();
    if (m_bitmap.bitsPerPixel <= 8)
        return m_bitmap.palette.value(index(x), qRgb(0, 0, 0));
    if (m_bitmap.bitsPerPixel == 16) {
        const int value = at(2 * qint64(x)) << 8 | at(2 * qint64(x) + 1);
        return qRgb(fromFive(value >> 10), fromFive(value >> 5), fromFive(value));
    }
    switch (m_bitmap.packing) {
    case PictPacking::NoPad:
        return qRgb(at(3 * qint64(x)), at(3 * qint64(x) + 1), at(3 * qint64(x) + 2));
    case PictPacking::Planes:
        if (m_bitmap.components == 4)
            return qRgba(at(x + width), at(x + 2 * width), at(x + 3 * width), at(x));
        return qRgb(at(x), at(x + width), at(x + 2 * width));
    default:
        return qRgb(at(4 * qint64(x) + 1), at(4 * qint64(x) + 2), at(4 * qint64(x) + 3));
    }
}

} // namespace quorvia::engine
