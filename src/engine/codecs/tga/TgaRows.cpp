#include "engine/codecs/tga/TgaRows.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

QRgb fromSixteenBits(const uchar* at, bool hasAlpha)
{
    const int value = qFromLittleEndian<quint16>(at);
    const int alpha = hasAlpha && (value & 0x8000) == 0 ? 0 : 255;
    return qRgba(tgaFiveBits(value >> 10 & 31), tgaFiveBits(value >> 5 & 31), tgaFiveBits(value & 31), alpha);
}

void convertPaletteValues(const TgaLayout& layout, const uchar* stored, int count, QRgb* out)
{
    for (int x = 0; x < count; ++x) {
        const int value = qFromLittleEndian<quint16>(stored + 2 * qsizetype(x));
        out[x] = value < layout.palette.size() ? layout.palette[value] : qRgb(0, 0, 0);
    }
}

void convertTrueColor(int bytes, bool hasAlpha, const uchar* stored, int count, QRgb* out)
{
    for (int x = 0; x < count; ++x, stored += bytes) {
        if (bytes == 2)
            out[x] = fromSixteenBits(stored, hasAlpha);
        else
            out[x] = qRgba(stored[2], stored[1], stored[0], bytes == 4 && hasAlpha ? stored[3] : 255);
    }
}

} // namespace

TgaPixels::TgaPixels(const ByteSource& source, const TgaLayout& layout)
    : m_reader(source, layout.pixelOffset, source.size() - layout.pixelOffset), m_bytes(layout.bytesPerPixel),
      m_runs(layout.runs)
{
}

bool TgaPixels::nextPacket()
{
    const int head = m_reader.next();
    if (head < 0)
        return false;
    m_left = (head & 0x7F) + 1;
    m_repeats = (head & 0x80) != 0;
    return !m_repeats || m_reader.read(m_pixel.data(), m_bytes) == m_bytes;
}

int TgaPixels::read(uchar* out, int count)
{
    if (!m_runs)
        return int(m_reader.read(out, qint64(count) * m_bytes) / m_bytes);
    int done = 0;
    while (done < count) {
        if (m_left == 0 && !nextPacket()) {
            m_left = 0;
            break;
        }
        const int step = std::min(m_left, count - done);
        uchar* at = out + qsizetype(done) * m_bytes;
        int got = step;
        if (m_repeats) {
            for (int i = 0; i < step; ++i, at += m_bytes)
                std::memcpy(at, m_pixel.data(), size_t(m_bytes));
        } else {
            got = int(m_reader.read(at, qint64(step) * m_bytes) / m_bytes);
        }
        done += got;
        m_left -= step;
        if (got < step)
            break;
    }
    return done;
}

QImage::Format tgaImageFormat(const TgaLayout& layout)
{
    if (layout.bytesPerPixel == 1)
        return layout.kind == TgaKind::Palette ? QImage::Format_Indexed8 : QImage::Format_Grayscale8;
    const bool clearEntries = std::any_of(layout.palette.begin(), layout.palette.end(),
                                          [](QRgb color) { return qAlpha(color) != 255; });
    if (layout.alpha != TgaAlpha::None || clearEntries)
        return QImage::Format_ARGB32;
    return layout.kind == TgaKind::Gray ? QImage::Format_Grayscale8 : QImage::Format_RGB32;
}

void convertTgaRow(const TgaLayout& layout, const uchar* stored, int count, uchar* out)
{
    if (layout.bytesPerPixel == 1) {
        std::memcpy(out, stored, size_t(count));
        return;
    }
    const bool hasAlpha = layout.alpha != TgaAlpha::None;
    auto* pixels = reinterpret_cast<QRgb*>(out);
    if (layout.kind == TgaKind::Palette) {
        convertPaletteValues(layout, stored, count, pixels);
    } else if (layout.kind == TgaKind::TrueColor) {
        convertTrueColor(layout.bytesPerPixel, hasAlpha, stored, count, pixels);
    } else if (hasAlpha) {
        for (int x = 0; x < count; ++x, stored += 2)
            pixels[x] = qRgba(stored[0], stored[0], stored[0], stored[1]);
    } else {
        for (int x = 0; x < count; ++x, stored += 2)
            out[x] = stored[0];
    }
    if (layout.alpha == TgaAlpha::Premultiplied)
        std::transform(pixels, pixels + count, pixels, [](QRgb pixel) { return qUnpremultiply(pixel); });
}

TgaRowOrder::TgaRowOrder(const TgaLayout& layout)
    : m_height(layout.size.height()), m_step(layout.interleave), m_topDown(layout.topDown)
{
}

int TgaRowOrder::next()
{
    if (m_row >= m_height)
        m_row = ++m_pass;
    const int row = m_row;
    m_row += m_step;
    return m_topDown ? row : m_height - 1 - row;
}

} // namespace quorvia::engine
