#include "engine/codecs/ico/IcoEntry.h"

#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/bmp/BmpRows.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"

#include <algorithm>
#include <vector>

namespace quorvia::engine {

namespace {

/// Calls `onRow(y, bytes, there)` for each row of `rowBytes` stored from `offset` on, the lowest first unless
/// `topDown`; `there` bytes of it are in the file. False once a row is not whole or `cancel` is set.
template <class OnRow>
bool readRows(const ByteSource& source, qint64 offset, qint64 rowBytes, int height, bool topDown,
              const CancelFlag& cancel, const OnRow& onRow)
{
    std::vector<uchar> row(static_cast<size_t>(rowBytes));
    for (int i = 0; i < height; ++i) {
        const qint64 there = cancel ? 0 : source.read(offset + i * rowBytes, row.data(), rowBytes);
        if (there > 0)
            onRow(topDown ? i : height - 1 - i, row.data(), there);
        if (there < rowBytes)
            return false;
    }
    return true;
}

bool isClearAllOver(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
            return false;
    }
    return true;
}

void makeOpaque(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::for_each(row, row + image.width(), [](QRgb& pixel) { pixel |= 0xFF000000; });
    }
}

/// A mask bit of 1 makes a pixel transparent. `image` becomes ARGB32 with the first such pixel.
class Mask
{
  public:
    explicit Mask(QImage& image) : m_image(image) {}

    void apply(int y, const uchar* bits, qint64 bytes)
    {
        const int pixels = int(std::min<qint64>(bytes * 8, m_image.width()));
        for (int x = 0; x < pixels; ++x) {
            if ((bits[x / 8] & 0x80 >> x % 8) == 0)
                continue;
            if (m_image.format() != QImage::Format_ARGB32)
                m_image.convertTo(QImage::Format_ARGB32);
            if (m_image.isNull())
                return;
            reinterpret_cast<QRgb*>(m_image.scanLine(y))[x] &= 0x00FFFFFF;
        }
    }

  private:
    QImage& m_image;
};

Result<Picture> decodeBitmap(const ByteSource& source, const IcoEntry& entry, const CancelFlag& cancel)
{
    const Result<BmpLayout> read = readBmpLayout(source.bytes(0, bmpHeadLength), source.size());
    if (!read)
        return read.error();
    BmpLayout layout = *read;
    layout.size = entry.size;
    if (layout.bitsPerPixel == 32 && layout.masks[3] == 0)
        layout.masks[3] = 0xFF000000;
    const BmpRows rows(layout);
    Picture picture;
    picture.image = allocateImage(entry.size, rows.format());
    if (picture.image.isNull())
        return noMemoryError();
    if (!layout.palette.isEmpty())
        picture.image.setColorTable(layout.palette);
    picture.fullSize = entry.size;
    picture.bitsPerPixel = layout.bitsPerPixel;

    const qint64 rowBytes = layout.rowBytes();
    uchar* bits = picture.image.bits();
    const qint64 stride = picture.image.bytesPerLine();
    picture.complete = readRows(source, layout.pixelOffset, rowBytes, entry.size.height(), layout.topDown,
                                cancel, [&](int y, const uchar* stored, qint64 there) {
                                    const qint64 pixels = there * 8 / layout.bitsPerPixel;
                                    rows.convert(stored, int(std::min<qint64>(pixels, entry.size.width())),
                                                 bits + y * stride);
                                });
    const bool ownAlpha = rows.format() == QImage::Format_ARGB32;
    if (ownAlpha && isClearAllOver(picture.image)) {
        picture.image.reinterpretAsFormat(QImage::Format_RGB32);
        makeOpaque(picture.image);
    }
    if (entry.masked && picture.image.format() != QImage::Format_ARGB32) {
        const qint64 maskBytes = (qint64(entry.size.width()) + 31) / 32 * 4;
        Mask mask(picture.image);
        const bool whole =
            readRows(source, layout.pixelOffset + rowBytes * entry.size.height(), maskBytes,
                     entry.size.height(), layout.topDown, cancel,
                     [&](int y, const uchar* stored, qint64 there) { mask.apply(y, stored, there); });
        picture.complete = picture.complete && whole;
    }
    if (cancel)
        return cancelledError();
    if (picture.image.isNull())
        return noMemoryError();
    return picture;
}

} // namespace

Result<Picture> decodeIcoEntry(const std::shared_ptr<ByteSource>& source, const IcoEntry& entry,
                               const CancelFlag& cancel)
{
    auto inner = ByteSource::window(source, entry.offset, source->size() - entry.offset);
    if (!entry.png)
        return decodeBitmap(*inner, entry, cancel);
    auto decoder = pngCodec().open(std::move(inner));
    if (!decoder)
        return decoder.error();
    return (*decoder)->decode(1, {}, cancel);
}

} // namespace quorvia::engine
