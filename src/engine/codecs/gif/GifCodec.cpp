#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/gif/GifStream.h"
#include "engine/codecs/gif/GifWriter.h"
#include "engine/codecs/OnePage.h"
#include "engine/Limits.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace quorvia::engine {

namespace {

/// The rows of a frame in the order of the file.
std::vector<int> rowOrder(int height, bool interlaced)
{
    std::vector<int> order;
    order.reserve(size_t(height));
    if (!interlaced) {
        for (int y = 0; y < height; ++y)
            order.push_back(y);
        return order;
    }
    constexpr std::array<int, 4> starts = {0, 4, 2, 1};
    constexpr std::array<int, 4> steps = {8, 8, 4, 2};
    for (size_t pass = 0; pass < starts.size(); ++pass) {
        for (int y = starts[pass]; y < height; y += steps[pass])
            order.push_back(y);
    }
    return order;
}

/// An entry that no pixel uses, or one behind the palette's end.
std::optional<int> freeEntry(const GifFrame& frame, const std::array<bool, 256>& used)
{
    const int count = int(frame.palette.size());
    if (count < int(used.size()) && !used[size_t(count)])
        return count;
    for (int i = 0; i < int(used.size()); ++i) {
        if (!used[size_t(i)])
            return i;
    }
    return std::nullopt;
}

/// The first frame on its way onto the canvas.
class Canvas
{
  public:
    Canvas(const GifFrame& frame, QImage image)
        : m_frame(frame), m_image(std::move(image)), m_covered(size_t(m_image.height()), false),
          m_inside(frame.rectangle & m_image.rect())
    {
    }

    /// Puts row `y` of the frame where it belongs; `row` holds the whole frame's width.
    void put(int y, const uchar* row)
    {
        const int line = m_frame.rectangle.top() + y;
        if (m_inside.isEmpty() || line > m_inside.bottom())
            return;
        const uchar* from = row + (m_inside.left() - m_frame.rectangle.left());
        std::copy_n(from, m_inside.width(), m_image.scanLine(line) + m_inside.left());
        for (int x = 0; x < m_inside.width(); ++x)
            m_used[from[x]] = true;
        m_covered[size_t(line)] = true;
    }

    /// The picture: what the frame has not covered is made transparent.
    QImage finished();

  private:
    bool isAllCovered() const
    {
        return m_inside.width() == m_image.width() &&
               std::all_of(m_covered.begin(), m_covered.end(), [](bool covered) { return covered; });
    }
    template <class Pixel>
    void fillUncovered(Pixel blank);

    const GifFrame& m_frame;
    QImage m_image;
    std::vector<bool> m_covered; ///< by row of the canvas
    QRect m_inside;              ///< the frame's part on the canvas
    std::array<bool, 256> m_used = {};
};

template <class Pixel>
void Canvas::fillUncovered(Pixel blank)
{
    for (int y = 0; y < m_image.height(); ++y) {
        auto* row = reinterpret_cast<Pixel*>(m_image.scanLine(y));
        const int left = m_covered[size_t(y)] ? m_inside.left() : m_image.width();
        std::fill(row, row + left, blank);
        if (m_covered[size_t(y)])
            std::fill(row + m_inside.right() + 1, row + m_image.width(), blank);
    }
}

QImage Canvas::finished()
{
    QList<QRgb> palette = m_frame.palette;
    std::optional<int> blank = m_frame.transparentIndex;
    const bool covered = isAllCovered();
    if (!covered && !blank)
        blank = freeEntry(m_frame, m_used);
    // Every index that a pixel may hold gets an entry; one past the palette's end is black.
    const auto highest = std::find(m_used.rbegin(), m_used.rend(), true);
    const auto needed = qsizetype(std::distance(highest, m_used.rend()));
    while (palette.size() < std::max<qsizetype>(needed, covered || !blank ? 0 : *blank + 1))
        palette.append(qRgb(0, 0, 0));
    if (blank && *blank < palette.size())
        palette[*blank] = qRgba(0, 0, 0, 0);
    m_image.setColorTable(palette);
    if (covered)
        return std::move(m_image);
    if (blank) {
        fillUncovered(uchar(*blank));
        return std::move(m_image);
    }
    m_image = m_image.convertToFormat(QImage::Format_ARGB32);
    if (!m_image.isNull())
        fillUncovered(QRgb(0));
    return std::move(m_image);
}

class GifDecoder final : public OnePageDecoder
{
  public:
    GifDecoder(std::shared_ptr<ByteSource> source, PageHeader facts)
        : m_source(std::move(source)), m_facts(facts)
    {
    }

  private:
    Result<PageHeader> facts() override { return m_facts; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    std::shared_ptr<ByteSource> m_source;
    PageHeader m_facts;
};

Result<Picture> GifDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    GifStream stream(m_source);
    const Result<GifFrame> frame = stream.firstFrame();
    if (!frame)
        return frame.error();
    // The frame costs time even where it lies outside the canvas.
    const Status allowed = checkSize(frame->rectangle.size());
    if (!allowed)
        return allowed.error();
    QImage image = allocateImage(facts.size, QImage::Format_Indexed8);
    if (image.isNull())
        return noMemoryError();

    Picture picture;
    picture.fullSize = facts.size;
    picture.bitsPerPixel = facts.bitsPerPixel;
    Canvas canvas(*frame, std::move(image));
    const uchar blank = uchar(frame->transparentIndex.value_or(0));
    std::vector<uchar> row(size_t(frame->rectangle.width()));
    bool drawn = false;
    for (const int y : rowOrder(frame->rectangle.height(), frame->interlaced)) {
        if (cancel)
            return cancelledError();
        std::fill(row.begin(), row.end(), blank);
        picture.complete = stream.readRow(row);
        // A row that breaks off is shown as far as it came.
        drawn = drawn || picture.complete ||
                std::any_of(row.begin(), row.end(), [&](uchar index) { return index != blank; });
        if (drawn)
            canvas.put(y, row.data());
        if (!picture.complete)
            break;
    }
    if (!drawn)
        return Error{ErrorKind::Damaged, QStringLiteral("the frame holds no pixel")};
    picture.image = canvas.finished();
    if (picture.image.isNull())
        return noMemoryError();
    return picture;
}

class GifCodec final : public Codec
{
  public:
    GifCodec() : Codec(QStringLiteral("GIF"), {QStringLiteral("gif")}, {QStringLiteral("gif")}) {}

    bool sniff(const QByteArray& head, const QString&) const override
    {
        return head.startsWith("GIF87a") || head.startsWith("GIF89a");
    }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        GifStream stream(source);
        const Result<GifFrame> frame = stream.firstFrame();
        if (!frame)
            return frame.error();
        return std::unique_ptr<Decoder>(
            std::make_unique<GifDecoder>(std::move(source), PageHeader{frame->canvas, frame->bitsPerPixel}));
    }

    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writeGif(image);
    }
};

} // namespace

const Codec& gifCodec()
{
    static const GifCodec codec;
    return codec;
}

} // namespace quorvia::engine
