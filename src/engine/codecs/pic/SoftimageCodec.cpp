#include "engine/codecs/Codecs.h"
#include "engine/codecs/PageNumber.h"
#include "engine/codecs/pic/AnimatorPicture.h"
#include "engine/codecs/pic/SoftimageLayout.h"
#include "engine/codecs/pic/SoftimageRows.h"
#include "engine/codecs/pic/SoftimageWriter.h"
#include "engine/Limits.h"

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

/// Softimage pictures; the other pictures of the extension pic are told apart by their marks and handed on or
/// refused by name.
class SoftimageCodec final : public Codec
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

class SoftimageDecoder final : public Decoder
{
  public:
    SoftimageDecoder(std::shared_ptr<ByteSource> source, SoftimageLayout layout)
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
        return PageHeader{m_layout.size, bitsPerPixel()};
    }

    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) override;

  private:
    int bitsPerPixel() const { return m_layout.hasAlpha() ? 32 : 24; }

    std::shared_ptr<ByteSource> m_source;
    SoftimageLayout m_layout;
};

Result<Picture> SoftimageDecoder::decode(int page, QSize, const CancelFlag& cancel)
{
    const Result<PageHeader> facts = header(page);
    if (!facts)
        return facts.error();
    Picture picture;
    picture.fullSize = m_layout.size;
    picture.bitsPerPixel = bitsPerPixel();
    picture.image =
        allocateImage(m_layout.size, m_layout.hasAlpha() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (picture.image.isNull())
        return Error{ErrorKind::TooLarge, QStringLiteral("no memory for the picture")};
    SoftimageRows rows(*m_source, m_layout);
    uchar* row = picture.image.bits();
    const int height = m_layout.size.height();
    bool drawn = false;
    bool anything = false;
    int y = 0;
    for (; y < height; ++y, row += picture.image.bytesPerLine()) {
        if (cancel)
            return Error{ErrorKind::Cancelled, QStringLiteral("cancelled")};
        const int count = rows.read(reinterpret_cast<QRgb*>(row), anything);
        drawn = drawn || anything;
        if (count < m_layout.size.width())
            break;
    }
    if (!drawn)
        return Error{ErrorKind::Damaged, QStringLiteral("the file ends before the first pixel")};
    picture.complete = y == height;
    const bool isHalf = y == height / 2 || y == height - height / 2;
    if (m_layout.isField && isHalf && !anything) {
        spreadField(picture.image, y);
        picture.complete = true;
    }
    return picture;
}

} // namespace

QString SoftimageCodec::name() const
{
    return QStringLiteral("Softimage PIC");
}

QStringList SoftimageCodec::extensions() const
{
    return {QStringLiteral("pic")};
}

bool SoftimageCodec::sniff(const QByteArray& head, const QString& extension) const
{
    if (isSoftimage(head))
        return true;
    return extensions().contains(extension) &&
           (isPictor(head) || isAnimatorPicture(head) || isAnimatorProPicture(head));
}

Result<std::unique_ptr<Decoder>> SoftimageCodec::open(std::shared_ptr<ByteSource> source) const
{
    const QByteArray head = source->bytes(0, softimageHeadLength);
    if (isPictor(head))
        return Error{ErrorKind::Unsupported, QStringLiteral("PICtor picture")};
    if (!isSoftimage(head) && (isAnimatorPicture(head) || isAnimatorProPicture(head)))
        return openAnimatorPicture(std::move(source));
    const Result<SoftimageLayout> layout = readSoftimageLayout(head);
    if (!layout)
        return layout.error();
    return std::unique_ptr<Decoder>(std::make_unique<SoftimageDecoder>(std::move(source), *layout));
}

bool SoftimageCodec::canEncode(const QString& extension) const
{
    return extensions().contains(extension);
}

Result<QByteArray> SoftimageCodec::encode(const QImage& image, const QString&, const EncodeOptions&) const
{
    return writeSoftimage(image);
}

const Codec& softimageCodec()
{
    static const SoftimageCodec codec;
    return codec;
}

} // namespace quorvia::engine
