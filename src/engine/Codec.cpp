#include "engine/Codec.h"

#include "engine/codecs/Codecs.h"
#include "engine/LargePages.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quorvia::engine {

Decoder::~Decoder() = default;

Codec::Codec(QString name, QStringList extensions, QStringList written)
    : m_name(std::move(name)), m_extensions(std::move(extensions)), m_written(std::move(written))
{
}

Codec::~Codec() = default;

bool Decoder::scales() const
{
    return false;
}

bool Decoder::canBreakOff(int) const
{
    return true;
}

bool Codec::keepsProfile(const QString&, ColorModel) const
{
    return false;
}

Result<QByteArray> Codec::encode(const QImage&, const QString&, const EncodeOptions&) const
{
    return Error{ErrorKind::Unsupported, QStringLiteral("%1 is not written").arg(m_name)};
}

std::span<const Codec* const> codecTable()
{
    // Strong marks before weak ones: a headerless bitmap begins with a small number, a TGA has only its name.
    static const std::array table = {
        &losslessJpegCodec(), &jpegCodec(), &pngCodec(),     &gifCodec(), &tiffCodec(),
        &webpCodec(),         &avifCodec(), &jpegXlCodec(),  &wpgCodec(), &dcxCodec(),
        &softimageCodec(),    &pnmCodec(),  &utahRleCodec(), &wmfCodec(), &icoCodec(),
        &pcxCodec(),          &pictCodec(), &bmpCodec(),     &tgaCodec(),
    };
    return table;
}

namespace {

Result<std::unique_ptr<Decoder>> openBySniffing(const std::shared_ptr<ByteSource>& source,
                                                const QString& extension)
{
    constexpr qint64 headLength = 1024;
    const QByteArray head = source->bytes(0, headLength);
    if (head.isEmpty())
        return Error{ErrorKind::NotAnImage, QStringLiteral("the file is empty")};
    const QString folded = extension.toLower();
    for (const Codec* codec : codecTable()) {
        if (codec->sniff(head, folded))
            return codec->open(source);
    }
    return Error{ErrorKind::NotAnImage, QStringLiteral("no known image format")};
}

Error readError()
{
    return {ErrorKind::Unreadable, QStringLiteral("the file cannot be read")};
}

/// Tells a file that could not be read from one that is cut short: to the codecs both end early.
class ReadErrorTeller final : public Decoder
{
  public:
    ReadErrorTeller(std::unique_ptr<Decoder> decoder, std::shared_ptr<ByteSource> source)
        : m_decoder(std::move(decoder)), m_source(std::move(source))
    {
    }

    int pageCount() override { return m_decoder->pageCount(); }
    bool scales() const override { return m_decoder->scales(); }
    bool canBreakOff(int page) const override { return m_decoder->canBreakOff(page); }

    Result<PageHeader> header(int page) override
    {
        Result<PageHeader> header = m_decoder->header(page);
        return header || !m_source->failed() ? header : Result<PageHeader>(readError());
    }

    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) override
    {
        Result<Picture> picture = m_decoder->decode(page, box, cancel);
        if (!m_source->failed() || (!picture && picture.error().kind == ErrorKind::Cancelled))
            return picture;
        if (!picture)
            return readError();
        picture->readError = !picture->complete;
        return picture;
    }

  private:
    const std::unique_ptr<Decoder> m_decoder;
    const std::shared_ptr<ByteSource> m_source;
};

} // namespace

Result<std::unique_ptr<Decoder>> openDecoder(const std::shared_ptr<ByteSource>& source,
                                             const QString& extension)
{
    auto decoder = openBySniffing(source, extension);
    if (!decoder)
        return source->failed() ? readError() : decoder.error();
    return std::unique_ptr<Decoder>(std::make_unique<ReadErrorTeller>(*std::move(decoder), source));
}

const Codec* encoderFor(const QString& extension)
{
    const QString folded = extension.toLower();
    for (const Codec* codec : codecTable()) {
        if (codec->canEncode(folded))
            return codec;
    }
    return nullptr;
}

QImage allocateImage(QSize size, QImage::Format format)
{
    const qint64 bits = QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 bytesPerLine = (size.width() * bits + 31) / 32 * 4;
    void* memory =
        std::calloc(static_cast<size_t>(bytesPerLine), static_cast<size_t>(std::max(size.height(), 0)));
    if (!memory)
        return {};
    preferLargePages(memory, bytesPerLine * size.height());
    return QImage(static_cast<uchar*>(memory), size.width(), size.height(), bytesPerLine, format, std::free,
                  memory);
}

QSize fittedSize(QSize page, QSize box)
{
    if (box.isEmpty() || (page.width() <= box.width() && page.height() <= box.height()))
        return page;
    return page.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

} // namespace quorvia::engine
