#include "engine/codecs/ImageRows.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr QRgb opaqueBlack = 0xff000000U;

int overWhite(int channel, int alpha)
{
    return (channel * alpha + 255 * (255 - alpha) + 127) / 255;
}

int largestEntry(const QImage& image)
{
    uchar largest = 0;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x)
            largest = std::max(largest, row[x]);
        if (largest == 255)
            break;
    }
    return largest;
}

} // namespace

QImage rowsAs(const QImage& image, int first, int count, QImage::Format format)
{
    QImage rows(image.constBits() + qsizetype(first) * image.bytesPerLine(), image.width(), count,
                image.bytesPerLine(), image.format());
    if (image.colorCount() > 0)
        rows.setColorTable(image.colorTable());
    return rows.format() == format ? rows : rows.convertToFormat(format);
}

QImage inFormat(const QImage& image, QImage::Format format)
{
    if (image.isNull() || image.format() == format)
        return image;
    QImage result(image.size(), format);
    result.setDotsPerMeterX(image.dotsPerMeterX());
    result.setDotsPerMeterY(image.dotsPerMeterY());
    const auto bytes = std::size_t(result.width()) * std::size_t(result.depth() / 8);
    for (int first = 0; first < result.height(); first += stripRows) {
        const QImage rows = rowsAs(image, first, std::min(stripRows, image.height() - first), format);
        if (rows.isNull())
            return {};
        for (int y = 0; y < rows.height(); ++y)
            std::memcpy(result.scanLine(first + y), rows.constScanLine(y), bytes);
    }
    return result;
}

void rgbToRgb32(const uchar* in, QRgb* out, int count)
{
    // Four bytes at once while a fourth stands behind the three.
    const int last = count - 1;
    for (int x = 0; x < last; ++x)
        out[x] = qFromBigEndian<quint32>(in + 3 * qsizetype(x)) >> 8 | opaqueBlack;
    const uchar* pixel = in + 3 * qsizetype(last);
    out[last] = qRgb(pixel[0], pixel[1], pixel[2]);
}

QImage overWhite(QImage rows)
{
    for (int y = 0; y < rows.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(rows.scanLine(y));
        if (!row)
            return {}; // the pixels were shared, and there is no memory for a copy
        for (int x = 0; x < rows.width(); ++x) {
            const QRgb pixel = row[x];
            const int alpha = qAlpha(pixel);
            if (alpha != 255)
                row[x] = qRgb(overWhite(qRed(pixel), alpha), overWhite(qGreen(pixel), alpha),
                              overWhite(qBlue(pixel), alpha));
        }
    }
    rows.reinterpretAsFormat(QImage::Format_RGB32);
    return rows;
}

void AlphaWatch::look(const QRgb* pixels, int count)
{
    if (!m_clear)
        return;
    QRgb seen = 0;
    for (int x = 0; x < count; ++x)
        seen |= pixels[x];
    m_clear = qAlpha(seen) == 0;
    m_colored = m_colored || (seen & ~opaqueBlack) != 0;
}

QImage blankIfClear(QImage image)
{
    if (image.format() != QImage::Format_ARGB32)
        return image;
    AlphaWatch watch;
    for (int y = 0; y < image.height(); ++y)
        watch.look(reinterpret_cast<const QRgb*>(image.constScanLine(y)), image.width());
    if (watch.isUnfilled())
        image.fill(0U);
    return image;
}

void coverUsedEntries(QList<QRgb>& table, const QImage& image)
{
    const bool mono = image.depth() == 1;
    if (table.size() >= (mono ? 2 : 256))
        return;
    const int needed = mono ? 2 : largestEntry(image) + 1;
    while (table.size() < needed)
        table.append(opaqueBlack);
}

} // namespace quorvia::engine
