#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/OnePage.h"
#include "engine/codecs/SourceReader.h"
#include "engine/codecs/utah/UtahLayout.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace quorvia::engine {

namespace {

enum Code { skipLines = 1, setColor = 2, skipPixels = 3, byteData = 5, runData = 6, endOfFile = 7 };

/// What a value of one channel makes of a pixel.
struct Spread
{
    QRgb mask = 0;                   ///< the bits that it decides; 0 for a channel that is not there
    std::array<QRgb, 256> bits = {}; ///< by value
};

/// Draws the codes of a file into an image of the layout's size and format.
class UtahCanvas
{
  public:
    UtahCanvas(const ByteSource& source, const UtahLayout& layout, QImage& image);

    /// Draws until the end of the picture or the file.
    void draw(const CancelFlag& cancel);

    bool isDrawn() const { return m_drawn; }
    /// True when the picture was ended by its code or drawn to its last pixel.
    bool isComplete() const { return m_complete; }

  private:
    int byte();
    int word();
    void drawBytes(qint64 count);
    void drawRun(qint64 count);
    template <class ValueAt>
    void put(qint64 count, const ValueAt& valueAt);
    /// Ends the drawing when the last sample of the top row stands.
    void lookForTheEnd();

    SourceReader m_reader;
    const UtahLayout& m_layout;
    uchar* m_bits;
    qint64 m_stride;
    bool m_deep;                   ///< pixels of 32 bits
    std::vector<Spread> m_spreads; ///< by channel, 0 to 255
    std::vector<uchar> m_values;   ///< of the piece under way
    qint64 m_x = 0;                ///< from the left edge
    qint64 m_y = 0;                ///< from the lower edge
    int m_channel = 0;             ///< 0 to 2, 255 for alpha
    qint64 m_budget;               ///< samples that runs may still draw
    bool m_ended = false;
    bool m_drawn = false;
    bool m_complete = false;
};

constexpr int alphaChannel = 255;

std::vector<Spread> spreadsOf(const UtahLayout& layout)
{
    constexpr QRgb opaque = 0xFF000000;
    const bool deep = layout.hasAlpha || layout.channels == 3;
    const auto byMap = [&](int channel, int value) {
        const auto& map = layout.map;
        return QRgb(map.empty() ? value : map[map.size() == 3 ? size_t(channel) : 0][size_t(value)]);
    };
    std::vector<Spread> spreads(256);
    for (int channel = 0; channel < layout.channels; ++channel) {
        Spread& spread = spreads[size_t(channel)];
        spread.mask = layout.channels == 3 ? 0xFFU << (16 - 8 * channel) : 0x00FFFFFF;
        for (int value = 0; value < 256; ++value) {
            QRgb& bits = spread.bits[size_t(value)];
            if (!deep)
                bits = layout.isIndexed() ? QRgb(value) : byMap(0, value);
            else if (layout.channels == 3)
                bits = byMap(channel, value) << (16 - 8 * channel);
            else
                bits = byMap(0, value) << 16 | byMap(1, value) << 8 | byMap(2, value);
            if (!layout.hasAlpha)
                bits |= opaque;
        }
        if (!layout.hasAlpha)
            spread.mask |= opaque;
    }
    if (layout.hasAlpha) {
        spreads[alphaChannel].mask = opaque;
        for (QRgb value = 0; value < 256; ++value)
            spreads[alphaChannel].bits[value] = value << 24;
    }
    return spreads;
}

/// A few bytes draw a whole row. Pictures draw each sample once, so twice is more than enough.
qint64 budgetOf(const UtahLayout& layout)
{
    constexpr qint64 timesOver = 2;
    return timesOver * layout.size.width() * layout.size.height() * (layout.channels + 1);
}

UtahCanvas::UtahCanvas(const ByteSource& source, const UtahLayout& layout, QImage& image)
    : m_reader(source, layout.codesOffset, std::numeric_limits<qint64>::max()), m_layout(layout),
      m_bits(image.bits()), m_stride(image.bytesPerLine()), m_deep(image.depth() == 32),
      m_spreads(spreadsOf(layout)), m_budget(budgetOf(layout))
{
}

/// The next byte; 0, and the end of the drawing, where the file ends.
int UtahCanvas::byte()
{
    const int value = m_reader.next();
    m_ended = m_ended || value < 0;
    return std::max(value, 0);
}

int UtahCanvas::word()
{
    const int low = byte();
    return low | byte() << 8;
}

/// Puts `count` values where the pen stands, as far as they lie in the picture.
template <class ValueAt>
void UtahCanvas::put(qint64 count, const ValueAt& valueAt)
{
    const QSize size = m_layout.size;
    const qint64 visible = std::min(count, size.width() - m_x);
    if (visible <= 0 || m_y >= size.height())
        return;
    m_drawn = true;
    const Spread& spread = m_spreads[size_t(m_channel)];
    if (spread.mask == 0)
        return;
    uchar* row = m_bits + (size.height() - 1 - m_y) * m_stride;
    if (!m_deep) {
        for (qint64 i = 0; i < visible; ++i)
            row[m_x + i] = uchar(spread.bits[valueAt(i)]);
        return;
    }
    QRgb* pixels = reinterpret_cast<QRgb*>(row) + m_x;
    for (qint64 i = 0; i < visible; ++i)
        pixels[i] = (pixels[i] & ~spread.mask) | spread.bits[valueAt(i)];
}

void UtahCanvas::drawBytes(qint64 count)
{
    m_values.resize(size_t(count));
    const qint64 there = m_reader.read(m_values.data(), count);
    put(there, [this](qint64 i) { return m_values[size_t(i)]; });
    if (count % 2 != 0 || there < count)
        byte(); // filled up to an even number
    if (there < count)
        return;
    m_x += count;
    lookForTheEnd();
}

void UtahCanvas::drawRun(qint64 count)
{
    const auto value = size_t(word() & 0xFF);
    if (m_ended)
        return;
    m_budget -= std::clamp<qint64>(m_layout.size.width() - m_x, 0, count);
    put(count, [value](qint64) { return value; });
    m_x += count;
    lookForTheEnd();
}

void UtahCanvas::lookForTheEnd()
{
    const int last = m_layout.hasAlpha ? alphaChannel : m_layout.channels - 1;
    m_complete = m_complete ||
                 (m_channel == last && m_y == m_layout.size.height() - 1 && m_x >= m_layout.size.width());
}

void UtahCanvas::draw(const CancelFlag& cancel)
{
    constexpr int codeBits = 0x3F;
    constexpr int longBit = 0x40;
    while (!m_ended && !cancel && m_budget >= 0 && m_y < m_layout.size.height()) {
        const int first = byte();
        int operand = byte();
        if (m_ended)
            return;
        if (first & longBit)
            operand = word();
        switch (first & codeBits) {
        case skipLines:
            m_y += operand;
            m_x = 0;
            break;
        case setColor:
            m_channel = operand & 0xFF;
            m_x = 0;
            break;
        case skipPixels:
            m_x += operand;
            break;
        case byteData:
            drawBytes(qint64(operand) + 1);
            break;
        case runData:
            drawRun(qint64(operand) + 1);
            break;
        case endOfFile:
            m_complete = true;
            return;
        default: // no such code: what follows it cannot be told
            return;
        }
    }
    m_complete = m_complete || m_y >= m_layout.size.height();
    m_complete = m_complete && m_budget >= 0;
}

class UtahDecoder final : public OnePageDecoder
{
  public:
    UtahDecoder(std::shared_ptr<ByteSource> source, UtahLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.bitsPerPixel()}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    void fillBackground(QImage& image) const;

    std::shared_ptr<ByteSource> m_source;
    UtahLayout m_layout;
};

/// Paints what no code may draw. Nothing is to be done for black, which the image is, or under alpha.
void UtahDecoder::fillBackground(QImage& image) const
{
    const auto [red, green, blue] = m_layout.background;
    if (m_layout.hasAlpha || (red == 0 && green == 0 && blue == 0))
        return;
    if (m_layout.channels == 3)
        image.fill(qRgb(red, green, blue));
    else
        image.fill(uint(red));
}

Result<Picture> UtahDecoder::decodePage(const PageHeader& facts, QSize, const CancelFlag& cancel)
{
    Picture picture = blank(facts, m_layout.format());
    if (picture.image.isNull())
        return noMemoryError();
    fillBackground(picture.image);
    UtahCanvas canvas(*m_source, m_layout, picture.image);
    canvas.draw(cancel);
    if (cancel)
        return cancelledError();
    picture.complete = canvas.isComplete();
    if (!canvas.isDrawn() && !picture.complete)
        return nothingToShowError();
    if (m_layout.isIndexed() && !m_layout.hasAlpha)
        picture.image.setColorTable(m_layout.palette());
    return picture;
}

class UtahRleCodec final : public Codec
{
  public:
    UtahRleCodec() : Codec(QStringLiteral("Utah RLE"), {QStringLiteral("rle")}) {}

    bool sniff(const QByteArray& head, const QString&) const override { return isUtah(head); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<UtahDecoder>(source, readUtahLayout(*source));
    }
};

} // namespace

const Codec& utahRleCodec()
{
    static const UtahRleCodec codec;
    return codec;
}

} // namespace quorvia::engine
