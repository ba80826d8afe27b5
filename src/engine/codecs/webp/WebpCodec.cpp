#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/webp/WebpLayout.h"
#include "engine/codecs/webp/WebpWriter.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"

#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <memory>
#include <new>

namespace quorvia::engine {

namespace {

struct DemuxDeleter
{
    void operator()(WebPDemuxer* demux) const { WebPDemuxDelete(demux); }
};
using Demux = std::unique_ptr<WebPDemuxer, DemuxDeleter>;

struct IncrementalDeleter
{
    void operator()(WebPIDecoder* decoder) const { WebPIDelete(decoder); }
};
using Incremental = std::unique_ptr<WebPIDecoder, IncrementalDeleter>;

/// Where a frame stands in the file and on the canvas.
struct Frame
{
    const uchar* bytes = nullptr;
    size_t length = 0;
    QRect place;
    bool complete = true; ///< false when the file ends in it
};

class WebpDecoder final : public OnePageDecoder
{
  public:
    WebpDecoder(std::shared_ptr<ByteSource> source, WebpLayout layout)
        : m_source(std::move(source)), m_layout(layout)
    {
    }
    bool scales() const override { return !m_layout.isAnimated; }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.hasAlpha ? 32 : 24}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    Result<QByteArray> readFile() const;
    Result<Frame> firstFrame(const QByteArray& file, const WebPDemuxer* demux) const;

    std::shared_ptr<ByteSource> m_source;
    WebpLayout m_layout;
};

Result<QByteArray> WebpDecoder::readFile() const
{
    if (m_source->size() > Limits::machine().maxBytes)
        return Error{ErrorKind::TooLarge, QStringLiteral("a WebP file of %1 bytes").arg(m_source->size())};
    try {
        return m_source->bytes(0, m_source->size());
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
}

/// The ICC profile; empty when there is none or it is not one of RGB colours, which the pixels are.
QByteArray profileIn(const WebPDemuxer* demux)
{
    WebPChunkIterator chunk = {};
    QByteArray profile;
    if (demux && WebPDemuxGetChunk(demux, "ICCP", 1, &chunk))
        profile = QByteArray(reinterpret_cast<const char*>(chunk.chunk.bytes), qsizetype(chunk.chunk.size));
    WebPDemuxReleaseChunkIterator(&chunk);
    constexpr int spaceOffset = 16;
    return profile.mid(spaceOffset, 4) == "RGB " ? profile : QByteArray();
}

/// A still picture is the whole file; the decoder finds its way, through damage in other chunks too. Of an
/// animation it is the first frame.
Result<Frame> WebpDecoder::firstFrame(const QByteArray& file, const WebPDemuxer* demux) const
{
    Frame frame;
    if (!m_layout.isAnimated) {
        frame.bytes = reinterpret_cast<const uchar*>(file.constData());
        frame.length = size_t(file.size());
        frame.place = QRect(QPoint(0, 0), m_layout.size);
        return frame;
    }
    WebPIterator iterator = {};
    if (!demux || !WebPDemuxGetFrame(demux, 1, &iterator))
        return Error{ErrorKind::Damaged, QStringLiteral("the animation has no first frame")};
    frame.bytes = iterator.fragment.bytes;
    frame.length = iterator.fragment.size;
    frame.place = QRect(iterator.x_offset, iterator.y_offset, iterator.width, iterator.height);
    frame.complete = iterator.complete != 0;
    WebPDemuxReleaseIterator(&iterator);
    if (!QRect(QPoint(0, 0), m_layout.size).contains(frame.place))
        return Error{ErrorKind::Damaged, QStringLiteral("the first frame lies outside the canvas")};
    return frame;
}

struct Outcome
{
    VP8StatusCode status = VP8_STATUS_OK;
    int rows = 0; ///< that are drawn, from the top
};

/// Decodes `frame` into `image` at its place, scaled to the whole image when `scaled`. Hands the bytes over
/// in steps, so that a cancelled decode ends soon.
Outcome decodeInto(QImage& image, const Frame& frame, bool scaled, const CancelFlag& cancel)
{
    WebPDecoderConfig config;
    if (!WebPInitDecoderConfig(&config))
        return {VP8_STATUS_INVALID_PARAM, 0};
    const QPoint corner = scaled ? QPoint(0, 0) : frame.place.topLeft();
    const qint64 stride = image.bytesPerLine();
    const qint64 first = corner.y() * stride + qint64(corner.x()) * 4;
    config.options.use_threads = 1;
    config.options.use_scaling = scaled ? 1 : 0;
    config.options.scaled_width = image.width();
    config.options.scaled_height = image.height();
    config.output.colorspace = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? MODE_BGRA : MODE_ARGB;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = image.bits() + first;
    config.output.u.RGBA.stride = int(stride);
    config.output.u.RGBA.size = size_t(stride * image.height() - first);
    const Incremental decoder(WebPIDecode(nullptr, 0, &config));
    if (!decoder)
        return {VP8_STATUS_OUT_OF_MEMORY, 0};
    constexpr size_t step = 128 * 1024;
    Outcome outcome;
    outcome.status = VP8_STATUS_SUSPENDED;
    for (size_t there = 0; there < frame.length && outcome.status == VP8_STATUS_SUSPENDED && !cancel;) {
        there = std::min(there + step, frame.length);
        outcome.status = WebPIUpdate(decoder.get(), frame.bytes, there);
        int rows = 0;
        if (WebPIDecGetRGB(decoder.get(), &rows, nullptr, nullptr, nullptr))
            outcome.rows = std::max(outcome.rows, rows);
    }
    return outcome;
}

/// A lossless picture may hold alpha that it says it has not.
void makeOpaque(QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::transform(row, row + image.width(), row, [](QRgb pixel) { return pixel | 0xff000000U; });
    }
}

Result<Picture> WebpDecoder::decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel)
{
    const Result<QByteArray> file = readFile();
    if (!file)
        return file.error();
    const WebPData data = {reinterpret_cast<const uchar*>(file->constData()), size_t(file->size())};
    WebPDemuxState state = WEBP_DEMUX_PARSE_ERROR;
    const bool needsDemux = m_layout.isAnimated || m_layout.hasProfile;
    const Demux demux(needsDemux ? WebPDemuxPartial(&data, &state) : nullptr);
    const Result<Frame> frame = firstFrame(*file, demux.get());
    if (!frame)
        return frame.error();

    const QSize wanted = m_layout.isAnimated ? m_layout.size : fittedSize(m_layout.size, box);
    Picture picture;
    picture.image = allocateImage(wanted, m_layout.hasAlpha || m_layout.isAnimated ? QImage::Format_ARGB32
                                                                                   : QImage::Format_RGB32);
    if (picture.image.isNull())
        return noMemoryError();
    picture.fullSize = m_layout.size;
    picture.bitsPerPixel = facts.bitsPerPixel;
    const Outcome outcome = decodeInto(picture.image, *frame, wanted != m_layout.size, cancel);
    if (cancel)
        return cancelledError();
    if (outcome.status == VP8_STATUS_OUT_OF_MEMORY)
        return noMemoryError();
    picture.complete = outcome.status == VP8_STATUS_OK && frame->complete;
    if (!picture.complete && outcome.rows == 0)
        return nothingToShowError();
    if (picture.image.format() == QImage::Format_RGB32)
        makeOpaque(picture.image);
    picture.profile = profileIn(demux.get());
    return picture;
}

class WebpCodec final : public Codec
{
  public:
    WebpCodec() : Codec(QStringLiteral("WebP"), {QStringLiteral("webp")}, {QStringLiteral("webp")}) {}

    bool sniff(const QByteArray& head, const QString&) const override { return isWebp(head); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<WebpDecoder>(source, readWebpLayout(*source));
    }

    bool keepsProfile(const QString& extension, ColorModel model) const override
    {
        return canEncode(extension) && model == ColorModel::Rgb;
    }

    Result<QByteArray> encode(const QImage& image, const QString&,
                              const EncodeOptions& options) const override
    {
        return writeWebp(image, options.profile);
    }
};

} // namespace

const Codec& webpCodec()
{
    static const WebpCodec codec;
    return codec;
}

} // namespace quorvia::engine
