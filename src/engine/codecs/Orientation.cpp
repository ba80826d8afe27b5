#include "engine/codecs/Orientation.h"

#include "engine/Codec.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

/// Swaps rows and columns in blocks, so that both images stay in the cache.
template <class Pixel>
void transposePixels(const QImage& from, QImage& to)
{
    constexpr int block = 64;
    uchar* out = to.bits();
    const qint64 outStride = to.bytesPerLine();
    for (int top = 0; top < from.height(); top += block) {
        for (int left = 0; left < from.width(); left += block) {
            const int bottom = std::min(top + block, from.height());
            const int right = std::min(left + block, from.width());
            for (int y = top; y < bottom; ++y) {
                const auto* row = reinterpret_cast<const Pixel*>(from.constScanLine(y));
                for (int x = left; x < right; ++x)
                    reinterpret_cast<Pixel*>(out + x * outStride)[y] = row[x];
            }
        }
    }
}

void transposeBits(const QImage& from, QImage& to)
{
    uchar* out = to.bits();
    const qint64 outStride = to.bytesPerLine();
    for (int y = 0; y < from.height(); ++y) {
        const uchar* row = from.constScanLine(y);
        for (int x = 0; x < from.width(); ++x) {
            if (row[x / 8] & (0x80 >> x % 8))
                out[x * outStride + y / 8] |= uchar(0x80 >> y % 8);
        }
    }
}

QImage transposed(const QImage& from)
{
    QImage to = allocateImage(from.size().transposed(), from.format());
    if (to.isNull())
        return to;
    if (from.depth() == 1)
        transposeBits(from, to);
    else if (from.depth() == 8)
        transposePixels<uchar>(from, to);
    else
        transposePixels<QRgb>(from, to);
    to.setColorTable(from.colorTable());
    return to;
}

} // namespace

QImage upright(QImage stored, int orientation)
{
    switch (orientation) {
    case 2:
        return std::move(stored).mirrored(true, false);
    case 3:
        return std::move(stored).mirrored(true, true);
    case 4:
        return std::move(stored).mirrored(false, true);
    case 5:
        return transposed(stored);
    case 6:
        return transposed(stored).mirrored(true, false);
    case 7:
        return transposed(stored).mirrored(true, true);
    case 8:
        return transposed(stored).mirrored(false, true);
    default:
        return stored;
    }
}

} // namespace quorvia::engine
