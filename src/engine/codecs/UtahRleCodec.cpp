#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/OnlyPage.h"
#include "engine/codecs/SourceReader.h"
#include "engine/codecs/UtahLayout.h"
#include "engine/Limits.h"

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

class UtahRleCodec final : public Codec
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

enum Code { skipLines = 1, setColor = 2, skipPixels = 3, byteData = 5, runData = 6, endOfFile = 7 };

/// Draws the codes of a file into an image of the layout's size and format.
class UtahCanvas
{
  public:
    UtahCanvas(const ByteSource& source, const UtahLayout& layout, QImage& image)
        : m_reader(source, layout.codesOffset, std::numeric_limits<qint64>::max()), m_layout(layout),
          m_bits(image.bits()), m_stride(image.bytesPerLine()),
          m_budget(timesOver * image.width() * image.height() * (layout.channels + 1))
    {
    }

    /// Draws until the end of the picture or the file.
    void draw(const CancelFlag& cancel);

    bool isDrawn() const { return m_drawn; }
    /// True when the picture was ended by its code or drawn to its last pixel.
    bool isComplete() const { return m_complete; }

  private:
    /// A few bytes draw a whole row; no picture draws its pixels more often than this.
    static constexpr qint64 timesOver = 16;

    int byte();
    int word();
    void drawBytes(qint64 count);
    void drawRun(qint64 count);
    void put(qint64 x, int value);
    /// Ends the drawing when the last sample of the top row stands.
    void lookForTheEnd();

    SourceReader m_reader;
    const UtahLayout& m_layout;
    uchar* m_bits;
    qint64 m_stride;
    qint64 m_x = 0;    ///< from the left edge
    qint64 m_y = 0;    ///< from the lower edge
    int m_channel = 0; ///< 0 to 2, 255 for alpha
    qint64 m_budget;   ///< samples that may still be drawn
    bool m_ended = false;
    bool m_drawn = false;
    bool m_complete = false;
};

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

void UtahCanvas::put(qint64 x, int value)
{
    constexpr int alpha = 255;
    const QSize size = m_layout.size;
    if (x >= size.width() || m_y >= size.height())
        return;
    uchar* row = m_bits + (size.height() - 1 - m_y) * m_stride;
    const auto byMap = [&](int channel) {
        const auto& map = m_layout.map;
        return map.empty() ? value : map[map.size() == 3 ? size_t(channel) : 0][size_t(value)];
    };
    const bool deep = m_layout.hasAlpha || m_layout.channels == 3;
    if (!deep) {
        if (m_channel == 0)
            row[x] = uchar(m_layout.isIndexed() ? value : byMap(0));
    } else {
        QRgb& pixel = reinterpret_cast<QRgb*>(row)[x];
        const auto set = [&pixel](int shift, int sample) {
            pixel = (pixel & ~(0xFFU << shift)) | QRgb(sample) << shift;
        };
        if (m_channel == alpha && m_layout.hasAlpha) {
            set(24, value);
        } else if (m_channel < m_layout.channels) {
            for (int channel = 0; channel < 3; ++channel) {
                if (m_layout.channels == 1 || channel == m_channel)
                    set(16 - 8 * channel, byMap(channel));
            }
            if (!m_layout.hasAlpha)
                set(24, 255);
        }
    }
    m_drawn = true;
}

void UtahCanvas::drawBytes(qint64 count)
{
    for (qint64 i = 0; i < count; ++i) {
        const int value = byte();
        if (m_ended)
            return;
        put(m_x + i, value);
    }
    if (count % 2 != 0)
        byte(); // filled up to an even number
    m_x += count;
    lookForTheEnd();
}

void UtahCanvas::drawRun(qint64 count)
{
    const int value = word() & 0xFF;
    if (m_ended)
        return;
    const qint64 visible = std::min(count, m_layout.size.width() - m_x);
    m_budget -= std::max<qint64>(visible, 0);
    for (qint64 i = 0; i < visible; ++i)
        put(m_x + i, value);
    m_x += count;
    lookForTheEnd();
}

void UtahCanvas::lookForTheEnd()
{
    const int last = m_layout.hasAlpha ? 255 : m_layout.channels - 1;
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

class UtahDecoder final : public Decoder
{
  public:
    UtahDecoder(std::shared_ptr<ByteSource> source, UtahLayout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

    int pageCount() override { return 1; }

    Result<PageHeader> header(int page) override
    {
        const Status allowed = checkSize(m_layout.size);
        if (!allowed)
            return allowed.error();
        return PageHeader{m_layout.size, m_layout.bitsPerPixel()};
    }

    Result<Picture> decode(int page, QSize, const CancelFlag& cancel) override;

  private:
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

Result<Picture> UtahDecoder::decode(int page, QSize, const CancelFlag& cancel)
{
    const Result<PageHeader> facts = header(page);
    if (!facts)
        return facts.error();
    Picture picture;
    picture.image = allocateImage(facts->size, m_layout.format());
    if (picture.image.isNull())
        return noMemoryError();
    picture.fullSize = facts->size;
    picture.bitsPerPixel = facts->bitsPerPixel;
    fillBackground(picture.image);
    UtahCanvas canvas(*m_source, m_layout, picture.image);
    canvas.draw(cancel);
        if (const Status there = onlyPage(page); !there)
            return there.error();
    if (cancel)
        return cancelledError();
    picture.complete = canvas.isComplete();
    if (!canvas.isDrawn() && !picture.complete)
        return nothingToShowError();
    if (m_layout.isIndexed() && !m_layout.hasAlpha)
        picture.image.setColorTable(m_layout.palette());
    return picture;
}

} // namespace

QString UtahRleCodec::name() const
{
    return QStringLiteral("Utah RLE");
}

QStringList UtahRleCodec::extensions() const
{
    return {QStringLiteral("rle")};
}

bool UtahRleCodec::sniff(const QByteArray& head, const QString&) const
{
    return isUtah(head);
}

Result<std::unique_ptr<Decoder>> UtahRleCodec::open(std::shared_ptr<ByteSource> source) const
{
    const Result<UtahLayout> layout = readUtahLayout(*source);
    if (!layout)
        return layout.error();
    return std::unique_ptr<Decoder>(std::make_unique<UtahDecoder>(std::move(source), *layout));
}

bool UtahRleCodec::canEncode(const QString&) const
{
    return false;
}

Result<QByteArray> UtahRleCodec::encode(const QImage&, const QString&, const EncodeOptions&) const
{
    return Error{ErrorKind::Unsupported, QStringLiteral("Utah files are not written")};
}

const Codec& utahRleCodec()
{
    static const UtahRleCodec codec;
    return codec;
}

} // namespace quorvia::engine
