#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/tga/TgaLayout.h"
#include "engine/codecs/tga/TgaRows.h"
#include "engine/codecs/tga/TgaWriter.h"

#include <algorithm>
#include <vector>

namespace quorvia::engine {

namespace {

template <class T>
void mirror(uchar* row, int width)
{
    auto* pixels = reinterpret_cast<T*>(row);
    std::reverse(pixels, pixels + width);
}

class TgaDecoder final : public OnePageDecoder
{
  public:
    TgaDecoder(std::shared_ptr<ByteSource> source, TgaLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.bitsPerPixel()}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    Result<Picture> readRows(QImage image, const CancelFlag& cancel) const;

    std::shared_ptr<ByteSource> m_source;
    TgaLayout m_layout;
};

Result<Picture> TgaDecoder::decodePage(const PageHeader&, QSize, const CancelFlag& cancel)
{
    const QImage::Format format = tgaImageFormat(m_layout);
    QImage image = allocateImage(m_layout.size, format);
    if (image.isNull())
        return noMemoryError();
    Result<Picture> picture = readRows(std::move(image), cancel);
    if (picture && format == QImage::Format_Indexed8) {
        QList<QRgb> palette = m_layout.palette;
        coverUsedEntries(palette, picture->image);
        picture->image.setColorTable(palette);
    }
    return picture;
}

Result<Picture> TgaDecoder::readRows(QImage image, const CancelFlag& cancel) const
{
    const int width = m_layout.size.width();
    uchar* const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    const bool deep = image.depth() == 32;
    const bool mayBeUnfilled =
        image.format() == QImage::Format_ARGB32 && m_layout.kind != TgaKind::Palette && !m_layout.alphaIsTold;
    AlphaWatch alpha;
    bool drawn = false;
    bool complete = true;
    std::vector<uchar> stored(size_t(width) * size_t(m_layout.bytesPerPixel));
    TgaPixels pixels(*m_source, m_layout);
    TgaRowOrder order(m_layout);
    for (int i = 0; i < m_layout.size.height() && complete; ++i) {
        if (cancel)
            return cancelledError();
        const int count = pixels.read(stored.data(), width);
        uchar* row = bits + order.next() * stride;
        convertTgaRow(m_layout, stored.data(), count, row);
        if (mayBeUnfilled)
            alpha.look(reinterpret_cast<const QRgb*>(row), count);
        if (m_layout.rightToLeft)
            deep ? mirror<QRgb>(row, width) : mirror<uchar>(row, width);
        drawn = drawn || count > 0;
        complete = count == width;
    }
    if (!drawn)
        return nothingToShowError();
    if (complete && alpha.isUnfilled())
        image.reinterpretAsFormat(QImage::Format_RGB32);
    return Picture{std::move(image), m_layout.size, m_layout.bitsPerPixel(), complete};
}

class TgaCodec final : public Codec
{
  public:
    TgaCodec()
        : Codec(QStringLiteral("TGA"),
                {QStringLiteral("tga"), QStringLiteral("icb"), QStringLiteral("vda"), QStringLiteral("vst")},
                {QStringLiteral("tga"), QStringLiteral("icb"), QStringLiteral("vda"), QStringLiteral("vst")})
    {
    }

    bool sniff(const QByteArray& head, const QString& extension) const override
    {
        return extensions().contains(extension) && isPlausibleTga(head);
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<TgaDecoder>(source, readTgaLayout(*source));
    }

    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writeTga(image);
    }
};

} // namespace

const Codec& tgaCodec()
{
    static const TgaCodec codec;
    return codec;
}

} // namespace quorvia::engine
