#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpegxl/JxlLayers.h"
#include "engine/codecs/jpegxl/JxlReader.h"
#include "engine/codecs/OnePage.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

Error noLibrary()
{
    return Error{ErrorKind::Unsupported, QStringLiteral("libjxl, which reads JPEG XL, is not installed")};
}

Error brokenError()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the JPEG XL data is damaged")};
}

/// What the codestream tells of the picture before its pixels.
struct Facts
{
    QSize size; ///< upright
    bool grey = false;
    bool alpha = false;
    bool deep = false; ///< more than 8 bits a sample
    int planes = 3;    ///< of the codestream, all kinds

    bool isGrey8() const { return grey && !alpha; }
};

Facts factsOf(const JxlBasicInfo& info)
{
    Facts facts;
    facts.size = jxlSize(info.xsize, info.ysize);
    facts.grey = info.num_color_channels == 1;
    facts.alpha = info.alpha_bits > 0;
    facts.deep = info.bits_per_sample > 8;
    facts.planes = int(info.num_color_channels + std::min(info.num_extra_channels, 4096U));
    return facts;
}

/// R, G, B, A in bytes to QRgb, in place.
void toArgb(QImage& image, const CancelFlag& cancel)
{
    const QRgb opaque = image.hasAlphaChannel() ? 0 : 0xff000000U; // where nothing was drawn
    for (int y = 0; y < image.height() && !cancel; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const auto* bytes = reinterpret_cast<const uchar*>(row + x);
            row[x] = qRgba(bytes[0], bytes[1], bytes[2], bytes[3]) | opaque;
        }
    }
}

bool isBlank(const QImage& image)
{
    const uchar* bytes = image.constBits();
    return std::all_of(bytes, bytes + image.sizeInBytes(), [](uchar byte) { return byte == 0; });
}

class JpegXlDecoder final : public OnePageDecoder
{
  public:
    JpegXlDecoder(const JxlLibrary& library, std::shared_ptr<ByteSource> source, const Facts& facts)
        : m_library(library), m_source(std::move(source)), m_facts(facts)
    {
    }

  private:
    Result<PageHeader> facts() override
    {
        const Status allowed = checkJxlPlanes(m_facts.size, m_facts.planes);
        if (!allowed)
            return allowed.error();
        const int channels = m_facts.alpha ? 4 : m_facts.grey ? 1 : 3;
        return PageHeader{m_facts.size, channels * (m_facts.deep ? 16 : 8)};
    }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    bool setBuffer(JxlReader& reader, QImage& image) const;

    const JxlLibrary& m_library;
    std::shared_ptr<ByteSource> m_source;
    Facts m_facts;
};

/// Lets the library write its pixels right into `image`, whose rows are 4 bytes apart as it aligns its own.
bool JpegXlDecoder::setBuffer(JxlReader& reader, QImage& image) const
{
    const uint32_t channels = m_facts.isGrey8() ? 1 : 4;
    const JxlPixelFormat format = {channels, JXL_TYPE_UINT8, JXL_NATIVE_ENDIAN, 4};
    size_t needed = 0;
    const auto there = size_t(image.sizeInBytes());
    return m_library.ImageOutBufferSize(reader.get(), &format, &needed) == JXL_DEC_SUCCESS &&
           needed <= there &&
           m_library.SetImageOutBuffer(reader.get(), &format, image.bits(), there) == JXL_DEC_SUCCESS;
}

Result<Picture> JpegXlDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    Result<std::vector<JxlStretch>> layers =
        jxlLayers(m_library, *m_source, m_facts.size, m_facts.planes, cancel);
    if (!layers)
        return layers.error();
    JxlReader reader(m_library, *m_source, JXL_DEC_BASIC_INFO | JXL_DEC_COLOR_ENCODING | JXL_DEC_FULL_IMAGE);
    if (!reader.get())
        return noMemoryError();
    Picture picture;
    picture.fullSize = facts.size;
    picture.bitsPerPixel = facts.bitsPerPixel;
    JxlEnd end = JxlEnd::Event;
    for (;;) {
        JxlDecoderStatus event = JXL_DEC_ERROR;
        end = reader.run(cancel, event);
        if (end != JxlEnd::Event || event == JXL_DEC_FULL_IMAGE)
            break;
        if (event == JXL_DEC_COLOR_ENCODING) {
            picture.profile = reader.settleColors(reader.info());
            reader.feedFor(*layers);
        } else if (event == JXL_DEC_NEED_IMAGE_OUT_BUFFER) {
            if (factsOf(reader.info()).size != facts.size)
                return brokenError(); // another file by now
            picture.image = allocateImage(facts.size, m_facts.isGrey8() ? QImage::Format_Grayscale8
                                                      : m_facts.alpha   ? QImage::Format_ARGB32
                                                                        : QImage::Format_RGB32);
            if (picture.image.isNull())
                return noMemoryError();
            if (!setBuffer(reader, picture.image))
                return brokenError();
        }
    }
    if (end == JxlEnd::Cancelled || cancel)
        return cancelledError();
    if (picture.image.isNull())
        return end == JxlEnd::Cut ? nothingToShowError() : brokenError();
    picture.complete = end == JxlEnd::Event;
    if (end == JxlEnd::Cut)
        m_library.FlushImage(reader.get()); // what came since the last whole part
    if (!picture.complete && isBlank(picture.image))
        return end == JxlEnd::Cut ? nothingToShowError() : brokenError();
    if (!m_facts.isGrey8())
        toArgb(picture.image, cancel);
    if (cancel)
        return cancelledError();
    return picture;
}

class JpegXlCodec final : public Codec
{
  public:
    JpegXlCodec() : Codec(QStringLiteral("JPEG XL"), {QStringLiteral("jxl")}) {}

    bool sniff(const QByteArray& head, const QString&) const override
    {
        return head.startsWith("\xFF\x0A") ||
               head.startsWith(QByteArray::fromHex("0000000c4a584c200d0a870a"));
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        const QByteArray head = source->bytes(0, 16);
        if (!sniff(head, QString()))
            return Error{ErrorKind::Damaged, QStringLiteral("no mark of %1").arg(name())};
        const JxlLibrary* library = JxlLibrary::get();
        if (!library)
            return noLibrary();
        JxlReader reader(*library, *source, JXL_DEC_BASIC_INFO);
        if (!reader.get())
            return noMemoryError();
        const CancelFlag go = false;
        JxlDecoderStatus event = JXL_DEC_ERROR;
        if (reader.run(go, event) != JxlEnd::Event)
            return brokenError();
        const JxlBasicInfo info = reader.info();
        if (reader.hasInk(info))
            return Error{ErrorKind::Unsupported, QStringLiteral("JPEG XL with a plane of black ink")};
        return std::unique_ptr<Decoder>(
            std::make_unique<JpegXlDecoder>(*library, std::move(source), factsOf(info)));
    }
};

} // namespace

const Codec& jpegXlCodec()
{
    static const JpegXlCodec codec;
    return codec;
}

} // namespace quorvia::engine
