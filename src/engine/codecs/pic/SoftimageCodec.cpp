#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/pic/AnimatorPicture.h"
#include "engine/codecs/pic/SoftimageLayout.h"
#include "engine/codecs/pic/SoftimageRows.h"
#include "engine/codecs/pic/SoftimageWriter.h"

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

bool isPictor(const QByteArray& head)
{
    return head.startsWith("\x34\x12");
}

/// Spreads the first `stored` rows, one field, over the frame: each stands for two.
void spreadField(QImage& image, int stored)
{
    uchar* const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    for (int y = image.height() - 1; y > 0; --y)
        std::memcpy(bits + y * stride, bits + std::min(y / 2, stored - 1) * stride, size_t(stride));
}

class SoftimageDecoder final : public OnePageDecoder
{
  public:
    SoftimageDecoder(std::shared_ptr<ByteSource> source, SoftimageLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, bitsPerPixel()}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    int bitsPerPixel() const { return m_layout.hasAlpha() ? 32 : 24; }

    std::shared_ptr<ByteSource> m_source;
    SoftimageLayout m_layout;
};

Result<Picture> SoftimageDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    Picture picture = blank(facts, m_layout.hasAlpha() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (picture.image.isNull())
        return noMemoryError();
    SoftimageRows rows(*m_source, m_layout);
    uchar* row = picture.image.bits();
    const int height = m_layout.size.height();
    bool drawn = false;
    bool anything = false;
    int y = 0;
    for (; y < height; ++y, row += picture.image.bytesPerLine()) {
        if (cancel)
            return cancelledError();
        const int count = rows.read(reinterpret_cast<QRgb*>(row), anything);
        drawn = drawn || anything;
        if (count < m_layout.size.width())
            break;
    }
    if (!drawn)
        return nothingToShowError();
    picture.complete = y == height;
    const bool isHalf = y == height / 2 || y == height - height / 2;
    if (m_layout.isField && isHalf && !anything) {
        spreadField(picture.image, y);
        picture.complete = true;
    }
    return picture;
}

/// Softimage pictures; the other pictures of the extension pic are told apart by their marks and handed on or
/// refused by name.
class SoftimageCodec final : public Codec
{
  public:
    SoftimageCodec()
        : Codec(QStringLiteral("Softimage PIC"), {QStringLiteral("pic")}, {QStringLiteral("pic")})
    {
    }

    bool sniff(const QByteArray& head, const QString& extension) const override
    {
        if (isSoftimage(head))
            return true;
        return extensions().contains(extension) &&
               (isPictor(head) || isAnimatorPicture(head) || isAnimatorProPicture(head));
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        const QByteArray head = source->bytes(0, softimageHeadLength);
        if (isPictor(head))
            return Error{ErrorKind::Unsupported, QStringLiteral("PICtor picture")};
        if (!isSoftimage(head) && (isAnimatorPicture(head) || isAnimatorProPicture(head)))
            return openAnimatorPicture(std::move(source));
        return decoderOf<SoftimageDecoder>(source, readSoftimageLayout(head));
    }

    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writeSoftimage(image);
    }
};

} // namespace

const Codec& softimageCodec()
{
    static const SoftimageCodec codec;
    return codec;
}

} // namespace quorvia::engine
