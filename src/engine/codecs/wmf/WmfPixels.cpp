#include "engine/codecs/wmf/WmfPixels.h"

#include "engine/codecs/Codecs.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr int coreHeaderBytes = 12;
constexpr int longHeaderBytes = 40;

/// The DIB in `bytes` with the colours that its palette's numbers name; empty when the header is broken.
QByteArray withColors(const QByteArray& bytes, const WmfPalette& palette)
{
    if (bytes.size() < longHeaderBytes)
        return {};
    const char* data = bytes.constData();
    const qsizetype header = qFromLittleEndian<quint32>(data);
    const bool core = header == coreHeaderBytes;
    const int bits = qFromLittleEndian<quint16>(data + (core ? 10 : 14));
    if ((!core && header < longHeaderBytes) || header > bytes.size())
        return {};
    if (bits < 1 || bits > 8)
        return bytes;
    const qsizetype all = qsizetype(1) << bits;
    const qsizetype told = core ? 0 : qFromLittleEndian<quint32>(data + 32);
    const qsizetype count = told > 0 ? std::min(told, all) : all;
    if (header + 2 * count > bytes.size())
        return {};
    QByteArray out = bytes.left(header);
    for (qsizetype i = 0; i < count; ++i) {
        const int number = qFromLittleEndian<quint16>(data + header + 2 * i);
        const QRgb color = palette.entries.value(number, qRgb(0, 0, 0));
        out.append(char(qBlue(color)));
        out.append(char(qGreen(color)));
        out.append(char(qRed(color)));
        if (!core)
            out.append('\0');
    }
    return out + bytes.mid(header + 2 * count);
}

} // namespace

Result<std::unique_ptr<Decoder>> openDib(std::shared_ptr<ByteSource> source, bool numbered,
                                         const WmfPalette& palette)
{
    if (!numbered || palette.entries.isEmpty())
        return bmpCodec().open(std::move(source));
    const QByteArray dib = withColors(source->bytes(0, source->size()), palette);
    if (dib.isEmpty())
        return Error{ErrorKind::Damaged, QStringLiteral("the bitmap in a record is cut short")};
    return bmpCodec().open(ByteSource::fromBytes(dib));
}

namespace {

QRgb devicePixel(const uchar* row, int x, int bits, QRgb zero, QRgb one)
{
    switch (bits) {
    case 1:
        return (row[x / 8] >> (7 - x % 8) & 1) != 0 ? one : zero;
    case 16: { // five bits a channel
        const int value = qFromLittleEndian<quint16>(row + 2 * x);
        const auto widened = [value](int shift) {
            const int five = value >> shift & 31;
            return five << 3 | five >> 2;
        };
        return qRgb(widened(10), widened(5), widened(0));
    }
    case 24:
        return qRgb(row[3 * x + 2], row[3 * x + 1], row[3 * x]);
    default:
        return qRgb(row[4 * x + 2], row[4 * x + 1], row[4 * x]);
    }
}

/// The header of a bitmap of the device kind.
struct DeviceHeader
{
    QSize size;
    qsizetype rowBytes = 0;
    int bits = 0;
};

std::optional<DeviceHeader> deviceHeader(const QByteArray& bytes)
{
    constexpr qsizetype headerBytes = 10;
    if (bytes.size() < headerBytes)
        return std::nullopt;
    const char* data = bytes.constData();
    DeviceHeader header;
    header.size = QSize(qFromLittleEndian<qint16>(data + 2), qFromLittleEndian<qint16>(data + 4));
    header.rowBytes = qFromLittleEndian<quint16>(data + 6);
    header.bits = uchar(data[9]);
    const bool known = header.bits == 1 || header.bits == 16 || header.bits == 24 || header.bits == 32;
    if (!known || header.size.isEmpty() ||
        header.rowBytes < (qsizetype(header.size.width()) * header.bits + 7) / 8)
        return std::nullopt;
    return header;
}

} // namespace

QSize deviceBitmapSize(const QByteArray& bytes, qsizetype pixelOffset)
{
    const auto header = deviceHeader(bytes);
    if (!header)
        return {};
    const qsizetype there = std::max<qsizetype>(bytes.size() - pixelOffset, 0) / header->rowBytes;
    return QSize(header->size.width(), int(std::min<qsizetype>(header->size.height(), there)));
}

QImage deviceBitmap(const QByteArray& bytes, qsizetype pixelOffset, QSize size, QRgb zero, QRgb one)
{
    const auto header = deviceHeader(bytes);
    const QSize shown = size.boundedTo(deviceBitmapSize(bytes, pixelOffset));
    if (!header || shown.isEmpty())
        return {};
    QImage image = allocateImage(shown, QImage::Format_RGB32);
    if (image.isNull())
        return {};
    for (int y = 0; y < shown.height(); ++y) {
        const auto* row =
            reinterpret_cast<const uchar*>(bytes.constData()) + pixelOffset + y * header->rowBytes;
        auto* out = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < shown.width(); ++x)
            out[x] = devicePixel(row, x, header->bits, zero, one);
    }
    return image;
}

namespace {

/// For each of `count` pixels from `first` on of a row of `shown` pixels: which of `stored` pixels it shows.
std::vector<int> pickedPixels(int stored, int shown, bool mirror, int first, int count)
{
    std::vector<int> picked(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int at = mirror ? shown - 1 - (first + i) : first + i;
        picked[size_t(i)] = int((qint64(at) * 2 + 1) * stored / (qint64(shown) * 2));
    }
    return picked;
}

QImage picked(const QImage& bitmap, const WmfStretch& stretch, QRect visible)
{
    const QPoint first = visible.topLeft() - stretch.to.topLeft();
    const std::vector<int> columns =
        pickedPixels(stretch.from.width(), stretch.to.width(), stretch.mirrorX, first.x(), visible.width());
    const std::vector<int> rows = pickedPixels(stretch.from.height(), stretch.to.height(), stretch.mirrorY,
                                               first.y(), visible.height());
    QImage out = allocateImage(visible.size(), QImage::Format_RGB32);
    if (out.isNull())
        return {};
    for (int y = 0; y < out.height(); ++y) {
        const int row = stretch.from.top() + rows[size_t(y)];
        const auto* in = reinterpret_cast<const QRgb*>(bitmap.constScanLine(row)) + stretch.from.left();
        auto* to = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < out.width(); ++x)
            to[x] = in[columns[size_t(x)]];
    }
    return out;
}

/// Averages the whole bitmap down and takes the visible part of it.
QImage averaged(const QImage& bitmap, const WmfStretch& stretch, QRect visible)
{
    const QImage part = bitmap.copy(stretch.from).mirrored(stretch.mirrorX, stretch.mirrorY);
    return part.scaled(stretch.to.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32)
        .copy(visible.translated(-stretch.to.topLeft()));
}

} // namespace

QImage stretched(const QImage& bitmap, const WmfStretch& stretch, QRect visible)
{
    const qint64 stored = qint64(stretch.from.width()) * stretch.from.height();
    const qint64 shown = qint64(stretch.to.width()) * stretch.to.height();
    const bool shrinks =
        stretch.from.width() > stretch.to.width() || stretch.from.height() > stretch.to.height();
    return stretch.smooth && shrinks && shown <= stored ? averaged(bitmap, stretch, visible)
                                                        : picked(bitmap, stretch, visible);
}

bool ropNeedsSource(int rop)
{
    return ((rop >> 2 ^ rop) & 0x33) != 0;
}

QRgb combined(int rop, QRgb pattern, QRgb source, QRgb target)
{
    quint32 out = 0;
    for (int term = 0; term < 8; ++term) {
        if ((rop >> term & 1) == 0)
            continue;
        const quint32 p = (term & 4) != 0 ? pattern : ~pattern;
        const quint32 s = (term & 2) != 0 ? source : ~source;
        const quint32 t = (term & 1) != 0 ? target : ~target;
        out |= p & s & t;
    }
    return out | 0xFF000000;
}

} // namespace quorvia::engine
