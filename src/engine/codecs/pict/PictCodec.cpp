#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/pict/PictRows.h"
#include "engine/codecs/pict/PictScan.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

/// Which row or column of `source` (from, length) is drawn at `at` of a target of `length` rows or columns.
qint64 sourceOf(qint64 at, qint64 targetLength, qint64 from, qint64 sourceLength)
{
    return from + at * sourceLength / targetLength;
}

/// Pixels of `canvas` that `bitmap` is drawn on.
qint64 shownPixels(const PictBitmap& bitmap, const QRect& canvas)
{
    const QRect visible = bitmap.target & canvas;
    return visible.isEmpty() ? 0 : qint64(visible.width()) * visible.height();
}

/// What unpacking `bitmap` makes: bytes, or the pixels of an embedded file.
qint64 unpackedBytes(const PictBitmap& bitmap)
{
    const bool embedded = bitmap.packing == PictPacking::Embedded;
    return qint64(embedded ? bitmap.size.width() : pictRowLength(bitmap)) * bitmap.size.height();
}

/// The most that unpacking may make of a file of `bytes`. Packed by words, three bytes stand for up to 256;
/// more is told only by rows that are not there.
qint64 mostUnpacked(qint64 bytes)
{
    constexpr qint64 always = qint64(1) << 26;
    constexpr qint64 perByte = 86;
    return std::max(always, perByte * bytes);
}

bool isAllClear(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
            return false;
    }
    return true;
}

class PictDecoder final : public OnePageDecoder
{
  public:
    PictDecoder(std::shared_ptr<ByteSource> source, PictScan scan)
        : m_source(std::move(source)), m_scan(std::move(scan))
    {
    }

  private:
    Result<PageHeader> facts() override;
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    bool isWhole(const PictBitmap& bitmap) const;
    Result<Picture> decodeIndexed(const PictBitmap& bitmap, const CancelFlag& cancel) const;
    Result<Picture> decodeEmbedded(const PictBitmap& bitmap, const CancelFlag& cancel) const;
    Result<Picture> compose(const CancelFlag& cancel) const;
    /// Draw one bitmap; false when something of it was missing.
    bool drawStored(const PictBitmap& bitmap, QImage& canvas, const CancelFlag& cancel) const;
    bool drawEmbedded(const PictBitmap& bitmap, QImage& canvas, const CancelFlag& cancel) const;
    Picture blankPicture(QImage::Format format) const
    {
        return blank({m_scan.size, m_scan.bitsPerPixel()}, format);
    }

    std::shared_ptr<ByteSource> m_source;
    PictScan m_scan;
};

Result<PageHeader> PictDecoder::facts()
{
    if (m_scan.bitmaps.empty() && !m_scan.unread.isEmpty())
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("a Macintosh picture compressed as \"%1\"").arg(m_scan.unread)};
    if (m_scan.bitmaps.empty() && m_scan.hasDrawings)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("a Macintosh picture of drawings, without a bitmap")};
    if (m_scan.bitmaps.empty())
        return Error{ErrorKind::Damaged, QStringLiteral("a Macintosh picture without a bitmap")};
    return PageHeader{m_scan.size, m_scan.bitsPerPixel()};
}

/// True when the bitmap is the picture: drawn over all of it, pixel by pixel.
bool PictDecoder::isWhole(const PictBitmap& bitmap) const
{
    const QRect all(QPoint(0, 0), m_scan.size);
    return m_scan.bitmaps.size() == 1 && bitmap.target == all && bitmap.source.size() == all.size() &&
           QRect(QPoint(0, 0), bitmap.size).contains(bitmap.source);
}

Result<Picture> PictDecoder::decodePage(const PageHeader&, QSize, const CancelFlag& cancel)
{
    const PictBitmap& first = m_scan.bitmaps.front();
    const bool embedded = first.packing == PictPacking::Embedded;
    Result<Picture> picture = isWhole(first) && embedded                   ? decodeEmbedded(first, cancel)
                              : isWhole(first) && !first.palette.isEmpty() ? decodeIndexed(first, cancel)
                                                                           : compose(cancel);
    if (cancel)
        return cancelledError();
    if (picture)
        picture->complete = picture->complete && !m_scan.isTruncated;
    return picture;
}

Result<Picture> PictDecoder::decodeIndexed(const PictBitmap& bitmap, const CancelFlag& cancel) const
{
    const bool mono = bitmap.bitsPerPixel == 1;
    Picture picture = blankPicture(mono ? QImage::Format_Mono : QImage::Format_Indexed8);
    if (picture.image.isNull())
        return noMemoryError();
    QList<QRgb> palette = bitmap.palette;
    while (palette.size() < 1 << bitmap.bitsPerPixel)
        palette.append(qRgb(0, 0, 0));
    palette.resize(1 << bitmap.bitsPerPixel);
    picture.image.setColorTable(palette);

    PictRows rows(*m_source, bitmap);
    for (int y = 0; y < bitmap.source.top(); ++y)
        rows.next();
    uchar* bits = picture.image.bits();
    const qint64 stride = picture.image.bytesPerLine();
    for (int y = 0; y < m_scan.size.height() && picture.complete && !cancel; ++y) {
        picture.complete = rows.next();
        uchar* row = bits + y * stride;
        for (int x = 0; x < m_scan.size.width(); ++x) {
            const int index = rows.index(bitmap.source.left() + x);
            if (!mono)
                row[x] = uchar(index);
            else if (index != 0)
                row[x / 8] = uchar(row[x / 8] | 0x80 >> x % 8);
        }
    }
    return picture;
}

Result<std::unique_ptr<Decoder>> openEmbedded(const std::shared_ptr<ByteSource>& source,
                                              const PictBitmap& bitmap)
{
    auto inner = ByteSource::window(source, bitmap.offset, bitmap.length);
    // The mark is looked for first, so that a picture cannot nest itself.
    const QByteArray mark = inner->bytes(0, 4);
    if (mark.startsWith("\xFF\xD8\xFF"))
        return jpegCodec().open(std::move(inner));
    if (mark == "\x89PNG")
        return pngCodec().open(std::move(inner));
    return Error{ErrorKind::Damaged, QStringLiteral("the compressed picture is missing")};
}

Result<Picture> PictDecoder::decodeEmbedded(const PictBitmap& bitmap, const CancelFlag& cancel) const
{
    const auto decoder = openEmbedded(m_source, bitmap);
    if (!decoder)
        return decoder.error();
    const Result<PageHeader> facts = (*decoder)->header(1);
    if (!facts)
        return facts.error();
    if (facts->size != m_scan.size) // it is drawn in another size than it has
        return compose(cancel);
    Result<Picture> picture = (*decoder)->decode(1, QSize(), cancel);
    if (picture)
        picture->bitsPerPixel = m_scan.bitsPerPixel();
    return picture;
}

Result<Picture> PictDecoder::compose(const CancelFlag& cancel) const
{
    const bool alpha = std::any_of(m_scan.bitmaps.begin(), m_scan.bitmaps.end(), [](const PictBitmap& b) {
        return b.packing == PictPacking::Planes && b.components == 4;
    });
    Picture picture = blankPicture(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (picture.image.isNull())
        return noMemoryError();
    const QRect all = picture.image.rect();
    const bool covered = std::any_of(m_scan.bitmaps.begin(), m_scan.bitmaps.end(),
                                     [&](const PictBitmap& b) { return b.target.contains(all); });
    if (!covered) // the paper
        picture.image.fill(Qt::white);

    constexpr qint64 timesOver = 16; // more layers than that are no picture
    qint64 toShow = timesOver * all.width() * all.height();
    qint64 toUnpack = mostUnpacked(m_source->size());
    for (const PictBitmap& bitmap : m_scan.bitmaps) {
        if (cancel || toShow < 0 || toUnpack < 0) {
            picture.complete = false;
            break;
        }
        const qint64 shown = shownPixels(bitmap, all);
        toShow -= shown;
        toUnpack -= shown > 0 ? unpackedBytes(bitmap) : 0;
        const bool drawn = bitmap.packing == PictPacking::Embedded
                               ? drawEmbedded(bitmap, picture.image, cancel)
                               : drawStored(bitmap, picture.image, cancel);
        picture.complete = picture.complete && drawn;
    }
    if (alpha && isAllClear(picture.image)) // the fourth byte was none
        picture.image.reinterpretAsFormat(QImage::Format_RGB32);
    return picture;
}

/// Draws `row` of a bitmap into row `y` of `canvas`; `color` gives the pixel of a column.
template <class Color>
void drawRow(const PictBitmap& bitmap, QImage& canvas, int y, const Color& color)
{
    const QRect visible = bitmap.target & canvas.rect();
    auto* out = reinterpret_cast<QRgb*>(canvas.scanLine(y));
    for (int x = visible.left(); x <= visible.right(); ++x) {
        const qint64 from = sourceOf(x - bitmap.target.left(), bitmap.target.width(), bitmap.source.left(),
                                     bitmap.source.width());
        if (from >= 0 && from < bitmap.size.width())
            out[x] = color(int(from));
    }
}

bool PictDecoder::drawStored(const PictBitmap& bitmap, QImage& canvas, const CancelFlag& cancel) const
{
    const QRect visible = bitmap.target & canvas.rect();
    if (visible.isEmpty() || bitmap.source.isEmpty())
        return true;
    PictRows rows(*m_source, bitmap);
    bool whole = true;
    qint64 unpacked = 0;
    for (int y = visible.top(); y <= visible.bottom() && whole && !cancel; ++y) {
        const qint64 from = sourceOf(y - bitmap.target.top(), bitmap.target.height(), bitmap.source.top(),
                                     bitmap.source.height());
        if (from < 0 || from >= bitmap.size.height())
            continue;
        for (; unpacked <= from && whole; ++unpacked)
            whole = rows.next();
        if (unpacked == from + 1)
            drawRow(bitmap, canvas, y, [&rows](int x) { return rows.color(x); });
    }
    return whole;
}

bool PictDecoder::drawEmbedded(const PictBitmap& bitmap, QImage& canvas, const CancelFlag& cancel) const
{
    const QRect visible = bitmap.target & canvas.rect();
    const auto decoder = openEmbedded(m_source, bitmap);
    if (!decoder || visible.isEmpty() || bitmap.source.isEmpty())
        return bool(decoder);
    const Result<PageHeader> facts = (*decoder)->header(1);
    if (!facts || facts->size != bitmap.size) // its description tells its size
        return false;
    const Result<Picture> picture = (*decoder)->decode(1, QSize(), cancel);
    if (!picture)
        return false;
    const QImage image = picture->image.convertToFormat(QImage::Format_RGB32);
    if (image.isNull())
        return false;
    for (int y = visible.top(); y <= visible.bottom() && !cancel; ++y) {
        const qint64 from = sourceOf(y - bitmap.target.top(), bitmap.target.height(), 0, image.height());
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(int(from)));
        drawRow(bitmap, canvas, y, [row](int x) { return row[x]; });
    }
    return picture->complete;
}

class PictCodec final : public Codec
{
  public:
    PictCodec()
        : Codec(QStringLiteral("PICT"),
                {QStringLiteral("pict"), QStringLiteral("pct"), QStringLiteral("pic")})
    {
    }

    bool sniff(const QByteArray& head, const QString&) const override { return isPict(head); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<PictDecoder>(source, scanPict(*source));
    }
};

} // namespace

const Codec& pictCodec()
{
    static const PictCodec codec;
    return codec;
}

} // namespace quorvia::engine
