#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/bmp/BmpProfile.h"
#include "engine/codecs/bmp/BmpRle.h"
#include "engine/codecs/bmp/BmpRows.h"
#include "engine/codecs/bmp/BmpWriter.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/OnePage.h"
#include "engine/ColorConversion.h"

#include <algorithm>
#include <vector>

namespace quorvia::engine {

namespace {

/// A bitmap whose pixels are stored as rows or runs.
class BmpDecoder final : public OnePageDecoder
{
  public:
    BmpDecoder(std::shared_ptr<ByteSource> source, BmpLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.bitsPerPixel}; }
    Result<Picture> decodePage(const PageHeader&, QSize, const CancelFlag& cancel) override
    {
        return m_layout.packing == BmpPacking::Rows ? decodeRows(cancel) : decodeRuns(cancel);
    }
    Result<Picture> decodeRows(const CancelFlag& cancel) const;
    Result<Picture> decodeRuns(const CancelFlag& cancel) const;
    Picture blankPicture(QImage::Format format) const;

    std::shared_ptr<ByteSource> m_source;
    BmpLayout m_layout;
};

Picture BmpDecoder::blankPicture(QImage::Format format) const
{
    QByteArray profile = readBmpProfile(*m_source, m_layout);
    // As a palette they could not take a grey profile along when they are saved.
    const bool greys = isGreyByProfile(profile, m_layout);
    Picture picture =
        blank({m_layout.size, m_layout.bitsPerPixel}, greys ? QImage::Format_Grayscale8 : format);
    if (!greys && !m_layout.palette.isEmpty() && !picture.image.isNull())
        picture.image.setColorTable(m_layout.palette);
    picture.profile = std::move(profile);
    return picture;
}

Result<Picture> BmpDecoder::decodeRows(const CancelFlag& cancel) const
{
    const BmpRows rows(m_layout);
    Picture picture = blankPicture(rows.format());
    if (picture.image.isNull())
        return noMemoryError();

    constexpr qint64 chunkBytes = 256 * 1024;
    const qint64 rowBytes = m_layout.rowBytes();
    const int height = m_layout.size.height();
    const int chunkRows = int(std::clamp<qint64>(chunkBytes / rowBytes, 1, height));
    std::vector<uchar> chunk(size_t(rowBytes * chunkRows));
    uchar* bits = picture.image.bits();
    const qint64 stride = picture.image.bytesPerLine();
    bool drawn = false;
    const bool hasAlpha = rows.format() == QImage::Format_ARGB32;
    AlphaWatch alpha;
    for (int first = 0; first < height && picture.complete; first += chunkRows) {
        if (cancel)
            return cancelledError();
        const int count = std::min(chunkRows, height - first);
        const qint64 got =
            m_source->read(m_layout.pixelOffset + first * rowBytes, chunk.data(), count * rowBytes);
        for (int i = 0; i < count; ++i) {
            const qint64 there = std::clamp<qint64>(got - i * rowBytes, 0, m_layout.usedRowBytes());
            const int pixels =
                int(std::min<qint64>(there * 8 / m_layout.bitsPerPixel, m_layout.size.width()));
            const int y = m_layout.topDown ? first + i : height - 1 - (first + i);
            if (pixels > 0)
                rows.convert(chunk.data() + i * rowBytes, pixels, bits + y * stride);
            if (hasAlpha)
                alpha.look(reinterpret_cast<const QRgb*>(bits + y * stride), pixels);
            drawn = drawn || pixels > 0;
            picture.complete = picture.complete && pixels == m_layout.size.width();
        }
    }
    if (!drawn)
        return nothingToShowError();
    if (picture.complete && alpha.isUnfilled()) {
        picture.image = std::move(picture.image).convertToFormat(QImage::Format_RGB32);
        if (picture.image.isNull())
            return noMemoryError();
    }
    return picture;
}

Result<Picture> BmpDecoder::decodeRuns(const CancelFlag& cancel) const
{
    const bool deep = m_layout.packing == BmpPacking::Rle24;
    Picture picture = blankPicture(deep ? QImage::Format_RGB32 : QImage::Format_Indexed8);
    if (picture.image.isNull())
        return noMemoryError();
    SourceReader in(*m_source, m_layout.pixelOffset, m_layout.pixelLength);
    const RleOutcome outcome = unpackRle(in, m_layout, picture.image, cancel);
    if (cancel)
        return cancelledError();
    if (!outcome.drawn && !outcome.complete)
        return nothingToShowError();
    picture.complete = outcome.complete;
    return picture;
}

/// Opens the JPEG or PNG inside a bitmap. Its mark is looked for first, so that a bitmap cannot nest itself.
Result<std::unique_ptr<Decoder>> openEmbedded(std::shared_ptr<ByteSource> source, const BmpLayout& layout)
{
    auto inner = ByteSource::window(std::move(source), layout.pixelOffset, layout.pixelLength);
    const bool jpeg = layout.packing == BmpPacking::Jpeg;
    const QByteArray mark = jpeg ? QByteArrayLiteral("\xFF\xD8\xFF") : QByteArrayLiteral("\x89PNG");
    if (inner->bytes(0, mark.size()) != mark)
        return Error{ErrorKind::Damaged, QStringLiteral("the embedded picture is missing")};
    return openDecoder(inner, jpeg ? QStringLiteral("jpg") : QStringLiteral("png"));
}

class BmpCodec final : public Codec
{
  public:
    BmpCodec()
        : Codec(QStringLiteral("BMP"), {QStringLiteral("bmp"), QStringLiteral("dib"), QStringLiteral("rle")},
                {QStringLiteral("bmp"), QStringLiteral("dib"), QStringLiteral("rle")})
    {
    }

    bool sniff(const QByteArray& head, const QString& extension) const override
    {
        return isBmpFile(head) || isBareDib(head, extensions().contains(extension));
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        const Result<BmpLayout> layout = readBmpLayout(source->bytes(0, bmpHeadLength), source->size());
        if (layout && (layout->packing == BmpPacking::Jpeg || layout->packing == BmpPacking::Png))
            return openEmbedded(std::move(source), *layout);
        return decoderOf<BmpDecoder>(source, layout);
    }

    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model != ColorModel::Cmyk;
    }

    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions& options) const override
    {
        return extension == QLatin1String("rle") ? writeRleBmp(image, options.profile)
                                                 : writeBmp(image, options.profile);
    }
};

} // namespace

const Codec& bmpCodec()
{
    static const BmpCodec codec;
    return codec;
}

} // namespace quorvia::engine
