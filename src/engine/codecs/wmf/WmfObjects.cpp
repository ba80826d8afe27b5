#include "engine/codecs/wmf/WmfObjects.h"

#include <algorithm>
#include <cstdlib>

namespace quorvia::engine {

QRgb rgbOf(WmfColor color, const WmfPalette& palette)
{
    constexpr int paletteNumber = 1; // in the highest byte
    if (color >> 24 == paletteNumber)
        return palette.entries.value(qsizetype(color & 0xFFFF), qRgb(0, 0, 0));
    return qRgb(int(color & 0xFF), int(color >> 8 & 0xFF), int(color >> 16 & 0xFF));
}

namespace {

struct Holder
{
    std::shared_ptr<qint64> left;
    qint64 bytes;

    ~Holder() { *left += bytes; }
};

} // namespace

WmfHold WmfMemory::take(qint64 bytes)
{
    if (bytes > *m_left)
        return nullptr;
    *m_left -= bytes;
    return WmfHold(new Holder{m_left, bytes});
}

void WmfObjects::add(WmfObject object)
{
    while (m_lowestFree < m_slots.size() && !std::holds_alternative<std::monostate>(m_slots[m_lowestFree]))
        ++m_lowestFree;
    constexpr size_t mostObjects = 65536;
    if (m_lowestFree == mostObjects)
        return;
    if (m_lowestFree == m_slots.size())
        m_slots.emplace_back();
    m_slots[m_lowestFree++] = std::move(object);
}

void WmfObjects::remove(int number)
{
    if (number < 0 || size_t(number) >= m_slots.size())
        return;
    m_slots[size_t(number)] = std::monostate();
    m_lowestFree = std::min(m_lowestFree, size_t(number));
}

const WmfObject* WmfObjects::find(int number) const
{
    if (number < 0 || size_t(number) >= m_slots.size() ||
        std::holds_alternative<std::monostate>(m_slots[size_t(number)]))
        return nullptr;
    return &m_slots[size_t(number)];
}

WmfPen penOf(const WmfParams& params)
{
    const int style = params.unsignedWord(0);
    WmfPen pen;
    pen.line = WmfLine(std::min(style & 0xF, int(WmfLine::InsideFrame)));
    pen.width = std::abs(params.word(1));
    pen.color = params.doubleWord(3);
    pen.capsAndJoins = style & 0xFF00;
    return pen;
}

WmfBrush brushOf(const WmfParams& params)
{
    WmfBrush brush;
    brush.color = params.doubleWord(1);
    const int style = params.unsignedWord(0);
    if (style == 1) {
        brush.kind = WmfBrush::Kind::None;
    } else if (style == 2) {
        brush.kind = WmfBrush::Kind::Hatch;
        brush.hatch = params.unsignedWord(3);
    }
    return brush;
}

WmfFont fontOf(const WmfParams& params)
{
    WmfFont font;
    font.height = params.word(0);
    font.width = std::abs(params.word(1));
    font.escapement = params.word(2);
    font.weight = params.word(4);
    font.italic = (params.unsignedWord(5) & 0xFF) != 0;
    font.underline = params.unsignedWord(5) >> 8 != 0;
    font.strikeOut = (params.unsignedWord(6) & 0xFF) != 0;
    font.charset = params.unsignedWord(6) >> 8;
    font.pitchAndFamily = params.unsignedWord(8) >> 8;
    constexpr qsizetype faceOffset = 18;
    constexpr qsizetype faceLength = 32;
    font.face = params.bytes(faceOffset, faceLength);
    const qsizetype end = font.face.indexOf('\0');
    font.face.truncate(end < 0 ? font.face.size() : end);
    return font;
}

namespace {

QRgb paletteEntry(const WmfParams& params, qsizetype word)
{
    const quint32 stored = params.doubleWord(word);
    return qRgb(int(stored & 0xFF), int(stored >> 8 & 0xFF), int(stored >> 16 & 0xFF));
}

} // namespace

WmfPalette paletteOf(const WmfParams& params)
{
    const qsizetype told = params.unsignedWord(1);
    const qsizetype count = std::min(told, (params.words() - 2) / 2);
    WmfPalette palette;
    palette.entries.reserve(std::max<qsizetype>(count, 0));
    for (qsizetype i = 0; i < count; ++i)
        palette.entries.append(paletteEntry(params, 2 + 2 * i));
    return palette;
}

void setPaletteEntries(WmfPalette& palette, const WmfParams& params)
{
    const qsizetype first = params.unsignedWord(0);
    const qsizetype told = params.unsignedWord(1);
    const qsizetype count = std::min({told, (params.words() - 2) / 2, palette.entries.size() - first});
    for (qsizetype i = 0; i < count; ++i)
        palette.entries[first + i] = paletteEntry(params, 2 + 2 * i);
}

WmfRegion regionOf(const WmfParams& params)
{
    constexpr qsizetype scansAt = 11; // words; before them sizes and a bounding box
    constexpr qsizetype mostRects = 8192;
    const int scans = params.unsignedWord(5);
    WmfRegion region;
    qsizetype at = scansAt;
    for (int scan = 0; scan < scans && at + 3 < params.words(); ++scan) {
        const int ends = params.unsignedWord(at); // lefts and rights
        const int top = params.word(at + 1);
        const int bottom = params.word(at + 2);
        for (int i = 0; i + 1 < ends && at + 4 + i < params.words(); i += 2) {
            if (region.rects.size() >= mostRects)
                return region;
            const int left = params.word(at + 3 + i);
            const int right = params.word(at + 4 + i);
            region.rects.append(QRect(QPoint(std::min(left, right), std::min(top, bottom)),
                                      QSize(std::abs(right - left), std::abs(bottom - top))));
        }
        at += 4 + ends;
    }
    return region;
}

QImage hatchTile(int hatch, QRgb line, QRgb ground)
{
    constexpr int side = 8;
    constexpr int middle = 4;
    QImage tile(side, side, QImage::Format_ARGB32_Premultiplied);
    tile.fill(ground);
    for (int i = 0; i < side; ++i) {
        if (hatch == 0 || hatch == 4)
            tile.setPixel(i, middle, line);
        if (hatch == 1 || hatch == 4)
            tile.setPixel(middle, i, line);
        if (hatch == 2 || hatch == 5)
            tile.setPixel(i, i, line);
        if (hatch == 3 || hatch == 5)
            tile.setPixel(i, side - 1 - i, line);
    }
    return tile;
}

} // namespace quorvia::engine
