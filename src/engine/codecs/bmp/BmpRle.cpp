#include "engine/codecs/bmp/BmpRle.h"

namespace quorvia::engine {

namespace {

/// The pen that the codes move over the image, from its first stored row on.
class Pen
{
  public:
    Pen(QImage& image, bool topDown)
        : m_bits(image.bits()), m_stride(image.bytesPerLine()), m_width(image.width()),
          m_height(image.height()), m_topDown(topDown)
    {
        findRow();
    }

    /// Sets the present pixel (a palette index or a QRgb) and steps right.
    template <class Pixel>
    void draw(Pixel pixel)
    {
        if (m_row && m_x < m_width) {
            reinterpret_cast<Pixel*>(m_row)[m_x] = pixel;
            m_drawn = true;
        }
        ++m_x;
    }

    void nextRow()
    {
        m_x = 0;
        ++m_y;
        findRow();
    }

    void move(int right, int on)
    {
        m_x += right;
        m_y += on;
        findRow();
    }

    bool isPastEnd() const { return m_y >= m_height; }
    /// True when no pixel is left: writers exist that leave the end mark out.
    bool isAtEnd() const { return isPastEnd() || (m_y == m_height - 1 && m_x >= m_width); }
    bool hasDrawn() const { return m_drawn; }

  private:
    void findRow()
    {
        m_row = isPastEnd() ? nullptr : m_bits + (m_topDown ? m_y : m_height - 1 - m_y) * m_stride;
    }

    uchar* m_bits;
    qint64 m_stride;
    qint64 m_width;
    qint64 m_height;
    bool m_topDown;
    qint64 m_x = 0;
    qint64 m_y = 0;
    uchar* m_row = nullptr;
    bool m_drawn = false;
};

// What the three codes differ in: how a run repeats and how literals are packed. Each returns false at the
// end of the data.

bool runOfBytes(SourceReader& in, Pen& pen, int count)
{
    const int value = in.next();
    for (int i = 0; value >= 0 && i < count; ++i)
        pen.draw(uchar(value));
    return value >= 0;
}

bool literalBytes(SourceReader& in, Pen& pen, int count)
{
    for (int i = 0; i < count; ++i) {
        const int value = in.next();
        if (value < 0)
            return false;
        pen.draw(uchar(value));
    }
    return count % 2 == 0 || in.next() >= 0;
}

bool runOfNibbles(SourceReader& in, Pen& pen, int count)
{
    const int value = in.next();
    for (int i = 0; value >= 0 && i < count; ++i)
        pen.draw(uchar(i % 2 == 0 ? value >> 4 : value & 15));
    return value >= 0;
}

bool literalNibbles(SourceReader& in, Pen& pen, int count)
{
    const int bytes = (count + 1) / 2;
    for (int i = 0; i < bytes; ++i) {
        const int value = in.next();
        if (value < 0)
            return false;
        pen.draw(uchar(value >> 4));
        if (2 * i + 1 < count)
            pen.draw(uchar(value & 15));
    }
    return bytes % 2 == 0 || in.next() >= 0;
}

bool nextColor(SourceReader& in, QRgb& color)
{
    const int blue = in.next();
    const int green = in.next();
    const int red = in.next();
    color = qRgb(red, green, blue);
    return red >= 0;
}

bool runOfColors(SourceReader& in, Pen& pen, int count)
{
    QRgb color = 0;
    if (!nextColor(in, color))
        return false;
    for (int i = 0; i < count; ++i)
        pen.draw(color);
    return true;
}

bool literalColors(SourceReader& in, Pen& pen, int count)
{
    for (int i = 0; i < count; ++i) {
        QRgb color = 0;
        if (!nextColor(in, color))
            return false;
        pen.draw(color);
    }
    return count % 2 == 0 || in.next() >= 0;
}

using Step = bool (*)(SourceReader&, Pen&, int);

struct Steps
{
    Step run;
    Step literals;
};

Steps stepsOf(BmpPacking packing)
{
    switch (packing) {
    case BmpPacking::Rle4:
        return {runOfNibbles, literalNibbles};
    case BmpPacking::Rle24:
        return {runOfColors, literalColors};
    default:
        return {runOfBytes, literalBytes};
    }
}

/// Reads codes until the end mark, the last pixel or the end of the data; true unless the data ended early.
bool unpack(SourceReader& in, const Steps& steps, Pen& pen, const CancelFlag& cancel)
{
    constexpr int endOfRow = 0;
    constexpr int endOfBitmap = 1;
    constexpr int delta = 2;
    for (quint32 codes = 1; !pen.isPastEnd(); ++codes) {
        if (codes % 4096 == 0 && cancel)
            return false;
        const int count = in.next();
        if (count < 0)
            return pen.isAtEnd();
        if (count > 0) {
            if (!steps.run(in, pen, count))
                return pen.isAtEnd();
            continue;
        }
        const int code = in.next();
        if (code < 0)
            return pen.isAtEnd();
        if (code == endOfRow) {
            pen.nextRow();
        } else if (code == endOfBitmap) {
            return true;
        } else if (code == delta) {
            const int right = in.next();
            const int on = in.next();
            if (on < 0)
                return pen.isAtEnd();
            pen.move(right, on);
        } else if (!steps.literals(in, pen, code)) {
            return pen.isAtEnd();
        }
    }
    return true;
}

} // namespace

RleOutcome unpackRle(SourceReader& in, const BmpLayout& layout, QImage& image, const CancelFlag& cancel)
{
    Pen pen(image, layout.topDown);
    RleOutcome outcome;
    outcome.complete = unpack(in, stepsOf(layout.packing), pen, cancel);
    outcome.drawn = pen.hasDrawn();
    return outcome;
}

} // namespace quorvia::engine
