#include "engine/codecs/Codecs.h"
#include "engine/codecs/PageNumber.h"
#include "engine/codecs/tiff/TiffHandle.h"
#include "engine/codecs/tiff/TiffLayout.h"
#include "engine/codecs/tiff/TiffPages.h"
#include "engine/codecs/tiff/TiffPicture.h"
#include "engine/codecs/tiff/TiffWriter.h"
#include "engine/ColorConversion.h"

namespace quorvia::engine {

namespace {

class TiffDecoder final : public Decoder
{
  public:
    TiffDecoder(std::shared_ptr<ByteSource> source, std::vector<quint64> pages)
        : m_source(std::move(source)), m_pages(std::move(pages))
    {
    }

    int pageCount() override { return int(m_pages.size()); }

    Result<PageHeader> header(int page) override
    {
        const Result<Page> found = openPage(page);
        if (!found)
            return found.error();
        return PageHeader{found->layout.size, found->layout.bits * found->layout.samples};
    }

    Result<Picture> decode(int page, QSize, const CancelFlag& cancel) override
    {
        const Result<Page> found = openPage(page);
        if (!found)
            return found.error();
        return decodeTiffPage(*found->handle, m_source, found->layout, cancel);
    }

    /// libtiff takes a compressed strile to its end.
    bool canBreakOff(int page) const override
    {
        constexpr qint64 most = 1'000'000; // pixels, about a tenth of a second
        const Result<Page> found = openPage(page);
        if (!found || !found->layout.compressed)
            return true;
        const QSize strile = found->layout.strile;
        return qint64(strile.width()) * strile.height() <= most;
    }

  private:
    /// A page ready to be decoded. Each use has a handle of its own: what one decode sets is gone with it.
    struct Page
    {
        std::shared_ptr<TiffHandle> handle;
        TiffLayout layout;
    };
    Result<Page> openPage(int page) const;

    std::shared_ptr<ByteSource> m_source;
    std::vector<quint64> m_pages;
};

Result<TiffDecoder::Page> TiffDecoder::openPage(int page) const
{
    if (const Status there = pageAmong(page, int(m_pages.size())); !there)
        return there.error();
    Page found;
    found.handle = TiffHandle::reading(m_source);
    TIFF* tiff = found.handle->get();
    if (!tiff || !TIFFSetSubDirectory(tiff, m_pages[size_t(page - 1)]))
        return Error{ErrorKind::Damaged, found.handle->lastError()};
    const Result<TiffLayout> layout = readTiffLayout(tiff);
    if (!layout)
        return layout.error();
    found.layout = *layout;
    return found;
}

class TiffCodec final : public Codec
{
  public:
    TiffCodec()
        : Codec(QStringLiteral("TIFF"), {QStringLiteral("tif"), QStringLiteral("tiff")},
                {QStringLiteral("tif"), QStringLiteral("tiff")})
    {
    }

    bool sniff(const QByteArray& head, const QString&) const override
    {
        constexpr int markLength = 4;
        const QByteArray mark = head.left(markLength);
        return mark == QByteArray("II*\0", markLength) || mark == QByteArray("MM\0*", markLength) ||
               mark == QByteArray("II+\0", markLength) || mark == QByteArray("MM\0+", markLength);
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        std::vector<quint64> pages = tiffPageOffsets(*source);
        if (pages.empty())
            return Error{ErrorKind::Damaged, QStringLiteral("the file holds no page")};
        return std::unique_ptr<Decoder>(std::make_unique<TiffDecoder>(std::move(source), std::move(pages)));
    }

    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model != ColorModel::Cmyk;
    }

    Result<QByteArray> encode(const QImage& image, const QString&,
                              const EncodeOptions& options) const override
    {
        return writeTiff(image, options.profile);
    }
};

} // namespace

const Codec& tiffCodec()
{
    static const TiffCodec codec;
    return codec;
}

} // namespace quorvia::engine
