#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/pcx/PcxLayout.h"
#include "engine/codecs/pcx/PcxRuns.h"
#include "engine/codecs/pcx/PcxWriter.h"

#include <algorithm>
#include <vector>

namespace quorvia::engine {

namespace {

QImage::Format formatOf(const PcxLayout& layout)
{
    switch (layout.bitsPerPixel()) {
    case 1:
        return QImage::Format_Mono;
    case 24:
        return QImage::Format_RGB32;
    case 32:
        return QImage::Format_ARGB32;
    default:
        return QImage::Format_Indexed8;
    }
}

/// The sample of plane `plane` at `x` of an unpacked row.
int sampleAt(const PcxLayout& layout, const uchar* row, int plane, int x)
{
    const int bits = layout.bitsPerSample;
    const uchar byte = row[plane * layout.planeBytes + x * bits / 8];
    return byte >> (8 - bits - x * bits % 8) & ((1 << bits) - 1);
}

/// Converts the first `count` pixels of an unpacked row.
void convertRow(const PcxLayout& layout, const uchar* row, int count, uchar* out)
{
    auto* deep = reinterpret_cast<QRgb*>(out);
    switch (layout.bitsPerPixel()) {
    case 1:
        std::copy_n(row, (count + 7) / 8, out);
        return;
    case 8:
        std::copy_n(row, count, out);
        return;
    case 24:
    case 32:
        for (int x = 0; x < count; ++x) {
            const auto at = [&](int plane) { return row[plane * layout.planeBytes + x]; };
            deep[x] = layout.planes == 3 ? qRgb(at(0), at(1), at(2)) : qRgba(at(0), at(1), at(2), at(3));
        }
        return;
    default:
        for (int x = 0; x < count; ++x) {
            int index = 0;
            for (int plane = 0; plane < layout.planes; ++plane)
                index |= sampleAt(layout, row, plane, x) << (plane * layout.bitsPerSample);
            out[x] = uchar(index);
        }
    }
}

class PcxDecoder final : public OnePageDecoder
{
  public:
    PcxDecoder(std::shared_ptr<ByteSource> source, PcxLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.bitsPerPixel()}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    /// How many pixels of a row are there when `got` of its bytes are: all planes must have come to a pixel.
    int pixelsIn(int got) const;

    std::shared_ptr<ByteSource> m_source;
    PcxLayout m_layout;
};

int PcxDecoder::pixelsIn(int got) const
{
    const int ofLastPlane = std::max(got - m_layout.planeBytes * (m_layout.planes - 1), 0);
    return int(std::min<qint64>(qint64(ofLastPlane) * 8 / m_layout.bitsPerSample, m_layout.size.width()));
}

Result<Picture> PcxDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    Picture picture = blank(facts, formatOf(m_layout));
    if (picture.image.isNull())
        return noMemoryError();

    PcxRuns runs(*m_source, m_layout.packed);
    std::vector<uchar> row(size_t(m_layout.rowBytes()));
    uchar* bits = picture.image.bits();
    const qint64 stride = picture.image.bytesPerLine();
    bool drawn = false;
    bool more = true;
    for (int y = 0; y < facts.size.height() && more; ++y) {
        if (cancel)
            return cancelledError();
        const int got = runs.read(row.data(), m_layout.rowBytes());
        const int pixels = pixelsIn(got);
        convertRow(m_layout, row.data(), pixels, bits + y * stride);
        drawn = drawn || pixels > 0;
        more = got == m_layout.rowBytes();
        picture.complete = picture.complete && more && pixels == facts.size.width();
    }
    if (!drawn)
        return nothingToShowError();
    if (m_layout.bitsPerPixel() == 8) {
        QList<QRgb> palette = m_layout.palette;
        if (palette.isEmpty()) // the end of the file may hold something else behind it
            palette = pcxPaletteAt(*m_source, runs.position());
        // A cut file may end in something that looks like a palette, among the pixels.
        const bool behind = !palette.isEmpty() && runs.position() + pcxPaletteBytes <= m_source->size();
        picture.complete = picture.complete && (behind || (palette.isEmpty() && !m_layout.colored));
        if (palette.isEmpty())
            picture.image.reinterpretAsFormat(QImage::Format_Grayscale8);
        else
            picture.image.setColorTable(palette);
    } else if (!m_layout.palette.isEmpty()) {
        picture.image.setColorTable(m_layout.palette);
    }
    return picture;
}

class PcxCodec final : public Codec
{
  public:
    PcxCodec() : Codec(QStringLiteral("PCX"), {QStringLiteral("pcx")}, {QStringLiteral("pcx")}) {}

    bool sniff(const QByteArray& head, const QString&) const override { return isPcx(head); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<PcxDecoder>(source, readPcxLayout(*source));
    }

    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writePcx(image);
    }
};

} // namespace

const Codec& pcxCodec()
{
    static const PcxCodec codec;
    return codec;
}

} // namespace quorvia::engine
