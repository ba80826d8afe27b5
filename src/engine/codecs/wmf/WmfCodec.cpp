#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/PageNumber.h"
#include "engine/codecs/wmf/WmfHeader.h"
#include "engine/codecs/wmf/WmfPlayer.h"
#include "engine/codecs/wmf/WmfWriter.h"
#include "engine/Limits.h"
#include "engine/Toolkit.h"

#include <cmath>
#include <optional>

namespace quorvia::engine {

namespace {

/// The picture that a metafile makes, before it is drawn.
struct Layout
{
    QSize size;         ///< pixels
    WmfMapping mapping; ///< as it stands before the first record
    int depth = 24;     ///< bits a pixel
};

/// The frame of a drawing that tells no extent: all that it draws, in its own units. Texts are measured by
/// their fonts where the toolkit stands, else with room to spare.
std::optional<QRect> measuredFrame(const std::shared_ptr<ByteSource>& source, qint64 recordOffset)
{
    WmfCanvas canvas;
    const CancelFlag go = false;
    WmfContext context{canvas, go, {WmfMapping(QRectF(0, 0, 1, 1), QSize(1, 1), false)}};
    context.asksFonts = waitForToolkit(go, 0);
    WmfRecordReader reader(source, recordOffset);
    playRecords(context, reader);
    const QRectF noted = canvas.noted();
    if (noted.isEmpty())
        return std::nullopt;
    return noted.toAlignedRect();
}

/// Draws metafiles on white paper.
class WmfDecoder final : public Decoder
{
  public:
    WmfDecoder(std::shared_ptr<ByteSource> source, WmfHeader header)
        : m_source(std::move(source)), m_header(header)
    {
    }

    int pageCount() override { return 1; }
    Result<PageHeader> header(int page) override;
    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) override;

  private:
    Result<Layout> layOut() const;
    Result<WmfMapping> mappingFor(const WmfExtents& extents, QSize& size) const;

    std::shared_ptr<ByteSource> m_source;
    WmfHeader m_header;
    std::optional<Result<Layout>> m_layout; ///< once it was asked for
};

/// The mapping at the start, and the size of the picture.
Result<WmfMapping> WmfDecoder::mappingFor(const WmfExtents& extents, QSize& size) const
{
    if (m_header.placement) {
        size = placedWmfSize(*m_header.placement, mostWmfPixels(m_source->size()));
        const QRectF frame = extents.viewport ? QRectF(*extents.viewport) : QRectF(QPointF(), size);
        WmfMapping mapping(frame, size, true);
        mapping.setWindowOrg(m_header.placement->box.topLeft());
        mapping.setWindowExt(m_header.placement->box.size());
        return mapping;
    }
    if (extents.window && !extents.fixedUnits) {
        size = plainWmfSize(extents.viewport ? extents.viewport->size() : *extents.window);
        const QRectF frame = extents.viewport ? QRectF(*extents.viewport) : QRectF(QPointF(), size);
        WmfMapping mapping(frame, size, true);
        mapping.setWindowExt(*extents.window);
        return mapping;
    }
    const auto frame = measuredFrame(m_source, m_header.recordOffset);
    if (!frame)
        return Error{ErrorKind::Damaged, QStringLiteral("the metafile draws nothing")};
    size = plainWmfSize(frame->size());
    return WmfMapping(*frame, size, false);
}

Result<Layout> WmfDecoder::layOut() const
{
    QSize size;
    const WmfExtents extents = readWmfExtents(m_source, m_header.recordOffset);
    const Result<WmfMapping> mapping = mappingFor(extents, size);
    if (!mapping)
        return mapping.error();
    return Layout{size, *mapping, wmfDepth(m_source, m_header.recordOffset)};
}

Result<PageHeader> WmfDecoder::header(int page)
{
    if (const Status there = onlyPage(page); !there)
        return there.error();
    if (!m_layout)
        m_layout.emplace(layOut());
    if (!*m_layout)
        return m_layout->error();
    const Layout& layout = **m_layout;
    const Status allowed = checkSize(layout.size);
    if (!allowed)
        return allowed.error();
    return PageHeader{layout.size, layout.depth};
}

Result<Picture> WmfDecoder::decode(int page, QSize, const CancelFlag& cancel)
{
    const bool drawable = waitForToolkit(cancel); // the header, too, is better for it
    if (cancel)
        return cancelledError();
    const Result<PageHeader> facts = header(page);
    if (!facts)
        return facts.error();
    if (!drawable)
        return Error{ErrorKind::Unsupported, QStringLiteral("nothing can be drawn without a screen")};
    WmfCanvas canvas(facts->size);
    if (!canvas.isUsable())
        return noMemoryError();
    WmfContext context{canvas, cancel, {(**m_layout).mapping}};
    WmfRecordReader reader(m_source, m_header.recordOffset);
    playRecords(context, reader);
    if (cancel)
        return cancelledError();
    if (!context.complete && !canvas.wasDrawnOn())
        return Error{ErrorKind::Damaged, QStringLiteral("the file ends before anything is drawn")};

    Picture picture;
    const bool bitmapOnly = !context.whole.isNull() && canvas.drawings() == 1;
    picture.image = bitmapOnly ? context.whole : canvas.take();
    picture.fullSize = facts->size;
    picture.bitsPerPixel = facts->bitsPerPixel;
    picture.complete = context.complete;
    return picture;
}

class WmfCodec final : public Codec
{
  public:
    WmfCodec() : Codec(QStringLiteral("WMF"), {QStringLiteral("wmf")}, {QStringLiteral("wmf")}) {}

    bool sniff(const QByteArray& head, const QString&) const override { return isMetafile(head); }
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<WmfDecoder>(source, readWmfHeader(*source));
    }
    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writeWmf(image);
    }
};

} // namespace

const Codec& wmfCodec()
{
    static const WmfCodec codec;
    return codec;
}

} // namespace quorvia::engine
