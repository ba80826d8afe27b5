#include "engine/codecs/Codecs.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/PageNumber.h"
#include "engine/codecs/tga/TgaLayout.h"
#include "engine/codecs/tga/TgaRows.h"
#include "engine/codecs/tga/TgaWriter.h"
#include "engine/Limits.h"

#include <algorithm>
#include <vector>

namespace quorvia::engine {

namespace {

class TgaCodec final : public Codec
{
  public:
    QString name() const override;
    QStringList extensions() const override;
    bool sniff(const QByteArray& head, const QString& extension) const override;
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override;
    bool canEncode(const QString& extension) const override;
    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions& options) const override;
};

Error noMemory()
{
    return Error{ErrorKind::TooLarge, QStringLiteral("no memory for the picture")};
}

template <class T>
void mirror(uchar* row, int width)
{
    auto* pixels = reinterpret_cast<T*>(row);
    std::reverse(pixels, pixels + width);
}

class TgaDecoder final : public Decoder
{
  public:
    TgaDecoder(std::shared_ptr<ByteSource> source, TgaLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

    int pageCount() override { return 1; }

    Result<PageHeader> header(int page) override
    {
        if (const Status there = onlyPage(page); !there)
            return there.error();
        const Status allowed = checkSize(m_layout.size);
        if (!allowed)
            return allowed.error();
        return PageHeader{m_layout.size, m_layout.bitsPerPixel()};
    }

    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) override;

  private:
    Result<Picture> readRows(QImage image, const CancelFlag& cancel) const;

    std::shared_ptr<ByteSource> m_source;
    TgaLayout m_layout;
};

Result<Picture> TgaDecoder::decode(int page, QSize, const CancelFlag& cancel)
{
    const Result<PageHeader> facts = header(page);
    if (!facts)
        return facts.error();
    const QImage::Format format = tgaImageFormat(m_layout);
    QImage image = allocateImage(m_layout.size, format);
    if (image.isNull())
        return noMemory();
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
            return Error{ErrorKind::Cancelled, QStringLiteral("cancelled")};
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
        return Error{ErrorKind::Damaged, QStringLiteral("the file ends before the first pixel")};
    if (complete && alpha.isUnfilled())
        image.reinterpretAsFormat(QImage::Format_RGB32);
    return Picture{std::move(image), m_layout.size, m_layout.bitsPerPixel(), complete};
}

} // namespace

QString TgaCodec::name() const
{
    return QStringLiteral("TGA");
}

QStringList TgaCodec::extensions() const
{
    return {QStringLiteral("tga"), QStringLiteral("icb"), QStringLiteral("vda"), QStringLiteral("vst")};
}

bool TgaCodec::sniff(const QByteArray& head, const QString& extension) const
{
    return extensions().contains(extension) && isPlausibleTga(head);
}

Result<std::unique_ptr<Decoder>> TgaCodec::open(std::shared_ptr<ByteSource> source) const
{
    const Result<TgaLayout> layout = readTgaLayout(*source);
    if (!layout)
        return layout.error();
    return std::unique_ptr<Decoder>(std::make_unique<TgaDecoder>(std::move(source), *layout));
}

bool TgaCodec::canEncode(const QString& extension) const
{
    return extensions().contains(extension);
}

Result<QByteArray> TgaCodec::encode(const QImage& image, const QString&, const EncodeOptions&) const
{
    return writeTga(image);
}

const Codec& tgaCodec()
{
    static const TgaCodec codec;
    return codec;
}

} // namespace quorvia::engine
