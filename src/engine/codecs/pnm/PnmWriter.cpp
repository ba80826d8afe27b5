#include "engine/codecs/pnm/PnmWriter.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/ImageRows.h"

#include <algorithm>
#include <new>
#include <vector>

namespace quorvia::engine {

namespace {

int greyOf(QRgb color)
{
    return (299 * qRed(color) + 587 * qGreen(color) + 114 * qBlue(color) + 500) / 1000;
}

/// Calls `take(row, y)` with each row of `image` as opaque RGB; false when there is no memory for them.
template <class Take>
bool forEachRgbRow(const QImage& image, const Take& take)
{
    for (int first = 0; first < image.height(); first += stripRows) {
        const int count = std::min(stripRows, image.height() - first);
        const bool alpha = image.hasAlphaChannel();
        QImage rows = rowsAs(image, first, count, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        if (alpha)
            rows = overWhite(std::move(rows));
        if (rows.isNull())
            return false;
        for (int y = 0; y < count; ++y)
            take(reinterpret_cast<const QRgb*>(rows.constScanLine(y)), first + y);
    }
    return true;
}

QByteArray headerOf(const QImage& image, char kind)
{
    QByteArray header = QByteArray("P") + kind + '\n' + QByteArray::number(image.width()) + ' ' +
                        QByteArray::number(image.height()) + '\n';
    if (kind != '4')
        header += "255\n";
    return header;
}

/// The header of `kind` with room for rows of `rowBytes` behind it; fills them by `pack(row, out)`.
template <class Pack>
Result<QByteArray> written(const QImage& image, char kind, qint64 rowBytes, const Pack& pack)
{
    if (image.isNull())
        return noImageError();
    try {
        QByteArray out = headerOf(image, kind);
        const qsizetype offset = out.size();
        out.resize(offset + rowBytes * image.height(), '\0');
        char* pixels = out.data() + offset;
        if (!forEachRgbRow(image, [&](const QRgb* row, int y) { pack(row, pixels + y * rowBytes); }))
            return noMemoryError();
        return out;
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
}

void setBlack(char* out, int x)
{
    out[x / 8] = char(out[x / 8] | 0x80 >> x % 8);
}

/// The grey below which a pixel of `image` (1 bit) is black: half intensity, or the lighter of two colours
/// that lie on the same side of it, so that both stay apart.
int darkLimit(const QImage& image)
{
    constexpr int half = 128;
    const auto greyOfEntry = [&](int index) {
        QImage dot(1, 1, QImage::Format_ARGB32);
        dot.setPixel(0, 0, image.colorCount() > index ? image.color(index) : 0xFF000000);
        const QImage seen = overWhite(std::move(dot));
        return seen.isNull() ? 0 : greyOf(seen.pixel(0, 0));
    };
    const auto [darker, lighter] = std::minmax({greyOfEntry(0), greyOfEntry(1)});
    const bool apart = darker < half && lighter >= half;
    return apart || darker == lighter ? half : lighter;
}

/// Grey to black and white, row after row, the error spread to the right and to the next row.
class Diffusion
{
  public:
    explicit Diffusion(int width) : m_current(size_t(width) + 2), m_below(size_t(width) + 2) {}

    void pack(const QRgb* row, int width, char* out)
    {
        for (int x = 0; x < width; ++x) {
            const int wanted = greyOf(row[x]) * 16 + m_current[size_t(x) + 1]; // errors count in sixteenths
            const bool black = wanted < 128 * 16;
            if (black)
                setBlack(out, x);
            const int error = (wanted - (black ? 0 : 255 * 16)) / 16;
            m_current[size_t(x) + 2] += error * 7;
            m_below[size_t(x)] += error * 3;
            m_below[size_t(x) + 1] += error * 5;
            m_below[size_t(x) + 2] += error;
        }
        m_current.swap(m_below);
        std::fill(m_below.begin(), m_below.end(), 0);
    }

  private:
    std::vector<int> m_current; ///< entry x + 1 belongs to pixel x
    std::vector<int> m_below;
};

} // namespace

Result<QByteArray> writePbm(const QImage& image)
{
    const int width = image.width();
    const qint64 rowBytes = (qint64(width) + 7) / 8;
    if (image.depth() == 1) {
        const int limit = darkLimit(image);
        return written(image, '4', rowBytes, [width, limit](const QRgb* row, char* out) {
            for (int x = 0; x < width; ++x) {
                if (greyOf(row[x]) < limit)
                    setBlack(out, x);
            }
        });
    }
    Diffusion diffusion(width);
    return written(image, '4', rowBytes,
                   [&](const QRgb* row, char* out) { diffusion.pack(row, width, out); });
}

Result<QByteArray> writePgm(const QImage& image)
{
    const int width = image.width();
    return written(image, '5', width, [width](const QRgb* row, char* out) {
        for (int x = 0; x < width; ++x)
            out[x] = char(greyOf(row[x]));
    });
}

Result<QByteArray> writePpm(const QImage& image)
{
    const int width = image.width();
    return written(image, '6', qint64(width) * 3, [width](const QRgb* row, char* out) {
        for (int x = 0; x < width; ++x, out += 3) {
            out[0] = char(qRed(row[x]));
            out[1] = char(qGreen(row[x]));
            out[2] = char(qBlue(row[x]));
        }
    });
}

} // namespace quorvia::engine
