#include "engine/codecs/webp/WebpWriter.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Growing.h"
#include "engine/codecs/ImageRows.h"

#include <webp/encode.h>
#include <webp/mux.h>

#include <algorithm>
#include <memory>
#include <new>

namespace quorvia::engine {

namespace {

struct MuxDeleter
{
    void operator()(WebPMux* mux) const { WebPMuxDelete(mux); }
};
using Mux = std::unique_ptr<WebPMux, MuxDeleter>;

/// Frees the pixels of a libwebp picture with the object.
class EncoderPicture
{
  public:
    EncoderPicture() : m_valid(WebPPictureInit(&m_picture) != 0) {}
    ~EncoderPicture() { WebPPictureFree(&m_picture); }
    EncoderPicture(const EncoderPicture&) = delete;
    EncoderPicture& operator=(const EncoderPicture&) = delete;

    WebPPicture* operator->() { return &m_picture; }
    WebPPicture* get() { return &m_picture; }
    bool isValid() const { return m_valid; }

  private:
    WebPPicture m_picture;
    bool m_valid;
};

int appendBytes(const uint8_t* bytes, size_t length, const WebPPicture* picture)
{
    return appended(*static_cast<QByteArray*>(picture->custom_ptr), bytes, qsizetype(length)) ? 1 : 0;
}

/// Lends the rows of `image` to the encoder, which only reads them: they have its layout of pixels.
void lend(EncoderPicture& picture, const QImage& image)
{
    picture->use_argb = 1;
    picture->width = image.width();
    picture->height = image.height();
    picture->argb = reinterpret_cast<uint32_t*>(const_cast<uchar*>(image.constBits()));
    picture->argb_stride = int(image.bytesPerLine() / 4);
}

Result<QByteArray> encoded(const QImage& image)
{
    constexpr int level = 2; // of 0 (fast) to 9 (small): where more time buys next to nothing
    WebPConfig config;
    EncoderPicture picture;
    if (!picture.isValid() || !WebPConfigInit(&config) || !WebPConfigLosslessPreset(&config, level))
        return Error{ErrorKind::Unsupported, QStringLiteral("libwebp has another version")};
    config.exact = 1;
    config.thread_level = 1;
    lend(picture, image);
    QByteArray out;
    picture->writer = appendBytes;
    picture->custom_ptr = &out;
    if (!WebPEncode(&config, picture.get()))
        return noMemoryError();
    return out;
}

bool isOfRgb(const QByteArray& profile)
{
    constexpr int spaceOffset = 16;
    return profile.mid(spaceOffset, 4) == "RGB ";
}

Result<QByteArray> withProfile(const QByteArray& file, const QByteArray& profile)
{
    const auto dataOf = [](const QByteArray& bytes) {
        return WebPData{reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size())};
    };
    const Mux mux(WebPMuxNew());
    const WebPData picture = dataOf(file);
    const WebPData chunk = dataOf(profile);
    if (!mux || WebPMuxSetImage(mux.get(), &picture, 0) != WEBP_MUX_OK ||
        WebPMuxSetChunk(mux.get(), "ICCP", &chunk, 0) != WEBP_MUX_OK)
        return noMemoryError();
    WebPData assembled = {};
    QByteArray out;
    const bool there = WebPMuxAssemble(mux.get(), &assembled) == WEBP_MUX_OK &&
                       appended(out, assembled.bytes, qsizetype(assembled.size));
    WebPDataClear(&assembled);
    if (!there)
        return noMemoryError();
    return out;
}

/// `image` with alpha, which is 255 throughout for one without: the encoder looks at the fourth byte of a
/// pixel, which is anything in RGB32. Null when there is no memory.
QImage asArgb32(const QImage& image)
{
    constexpr QRgb opaque = 0xff000000U;
    if (image.hasAlphaChannel())
        return inFormat(image, QImage::Format_ARGB32);
    QImage deep = inFormat(image, QImage::Format_RGB32);
    for (int y = 0; y < deep.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(deep.scanLine(y));
        if (!row)
            return {}; // the pixels were shared, and there is no memory for a copy
        std::for_each(row, row + deep.width(), [](QRgb& pixel) { pixel |= opaque; });
    }
    deep.reinterpretAsFormat(QImage::Format_ARGB32);
    return deep;
}

} // namespace

Result<QByteArray> writeWebp(const QImage& image, const QByteArray& profile)
{
    if (image.isNull())
        return noImageError();
    if (image.width() > WEBP_MAX_DIMENSION || image.height() > WEBP_MAX_DIMENSION)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("a WebP has 1 to %1 pixels a side").arg(WEBP_MAX_DIMENSION)};
    QImage deep = asArgb32(image);
    if (deep.isNull())
        return noMemoryError();
    Result<QByteArray> file = encoded(deep);
    if (!file || !isOfRgb(profile))
        return file;
    return withProfile(*file, profile);
}

} // namespace quorvia::engine
