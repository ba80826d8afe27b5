#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/MagickBridge.h"
#include "engine/codecs/Orientation.h"
#include "engine/codecs/PageNumber.h"

#include <new>

namespace quorvia::engine {

namespace {

class JpegXlCodec final : public Codec
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

} // namespace

namespace {

constexpr MagickFormat format = MagickFormat::JpegXl;

bool isGreyProfile(const QByteArray& profile)
{
    constexpr int spaceOffset = 16;
    return profile.mid(spaceOffset, 4) == "GRAY";
}

/// True for the profile that the library itself makes for pictures in sRGB, which need none. It is known by
/// its description, a text of 16 bits a letter.
bool isMadeForSrgb(const QByteArray& profile)
{
    for (const char* description :
         {"RGB_D65_SRG_Rel_SRG", "RGB_D65_SRG_Per_SRG", "Gra_D65_Rel_SRG", "Gra_D65_Per_SRG"}) {
        QByteArray text;
        for (const char* letter = description; *letter; ++letter) {
            text += '\0';
            text += *letter;
        }
        if (profile.contains(text))
            return true;
    }
    return false;
}

class JpegXlDecoder final : public Decoder
{
  public:
    JpegXlDecoder(QByteArray file, MagickFacts facts) : m_file(std::move(file)), m_facts(facts) {}

    int pageCount() override { return 1; }

    Result<PageHeader> header(int page) override
    {
        if (const Status there = onlyPage(page); !there)
            return there.error();
        const QSize size = isTransposed(m_facts.orientation) ? m_facts.size.transposed() : m_facts.size;
        const Status allowed = checkMagickSize(size);
        if (!allowed)
            return allowed.error();
        const int channels = m_facts.hasAlpha ? 4 : 3;
        return PageHeader{size, channels * (m_facts.depth > 8 ? 16 : 8)};
    }

    Result<Picture> decode(int page, QSize, const CancelFlag& cancel) override;

  private:
    QByteArray m_file;
    MagickFacts m_facts;
};

Result<Picture> JpegXlDecoder::decode(int page, QSize, const CancelFlag& cancel)
{
    const Result<PageHeader> facts = header(page);
    if (!facts)
        return facts.error();
    if (cancel)
        return cancelledError();
    Result<MagickPicture> read = readWithMagick(format, m_file, cancel);
    if (!read)
        return read.error();
    Picture picture;
    picture.fullSize = facts->size;
    picture.bitsPerPixel = facts->bitsPerPixel;
    picture.complete = read->complete;
    picture.image = std::move(read->image);
    if (isGreyProfile(read->profile) && !picture.image.hasAlphaChannel())
        picture.image = picture.image.convertToFormat(QImage::Format_Grayscale8);
    picture.image = upright(std::move(picture.image), m_facts.orientation);
    if (picture.image.isNull())
        return noMemoryError();
    if (picture.image.size() != facts->size)
        return Error{ErrorKind::Damaged, QStringLiteral("the picture has not the size that its header told")};
    if (!isMadeForSrgb(read->profile))
        picture.profile = read->profile;
    return picture;
}

} // namespace

QString JpegXlCodec::name() const
{
    return QStringLiteral("JPEG XL");
}

QStringList JpegXlCodec::extensions() const
{
    return {QStringLiteral("jxl")};
}

bool JpegXlCodec::sniff(const QByteArray& head, const QString&) const
{
    return head.startsWith("\xFF\x0A") || head.startsWith(QByteArray::fromHex("0000000c4a584c200d0a870a"));
}

Result<std::unique_ptr<Decoder>> JpegXlCodec::open(std::shared_ptr<ByteSource> source) const
{
    Result<QByteArray> file = readForMagick(*source);
    if (!file)
        return file.error();
    if (!sniff(*file, QString()))
        return Error{ErrorKind::Damaged, QStringLiteral("no mark of %1").arg(name())};
    const Result<MagickFacts> facts = pingWithMagick(format, *file);
    if (!facts)
        return facts.error();
    return std::unique_ptr<Decoder>(std::make_unique<JpegXlDecoder>(*std::move(file), *facts));
}

bool JpegXlCodec::canEncode(const QString&) const
{
    return false;
}

Result<QByteArray> JpegXlCodec::encode(const QImage&, const QString&, const EncodeOptions&) const
{
    return Error{ErrorKind::Unsupported, QStringLiteral("JPEG XL is not written")};
}

const Codec& jpegXlCodec()
{
    static const JpegXlCodec codec;
    return codec;
}

} // namespace quorvia::engine
