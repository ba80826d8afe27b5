#include "engine/codecs/pic/AnimatorPicture.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/OnePage.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int colors = 256;
constexpr qint64 paletteLength = 3 * colors;

// The first Animator: header, palette of 6-bit values, pixels.
constexpr qint64 headerLength = 32;

// Animator Pro: header, then blocks of a length, a type and data.
constexpr qint64 proHeaderLength = 64;
constexpr qint64 blockHeaderLength = 6;
constexpr int paletteBlock = 0;
constexpr int bytesBlock = 1;
constexpr int bitsBlock = 2;
constexpr int mostBlocks = 64; // real files have two

struct Layout
{
    QSize size;
    int bits = 8; ///< 8 or 1
    QList<QRgb> palette;
    qint64 pixelOffset = -1; ///< bytes from the start of the file; -1 when there are none

    qint64 rowBytes() const { return (qint64(size.width()) * bits + 7) / 8; }
};

int wordAt(const QByteArray& bytes, qint64 offset)
{
    return qFromLittleEndian<quint16>(bytes.constData() + offset);
}

/// The palette in `stored`; values of 6 bits abcdef are brought to abcdefab.
QList<QRgb> paletteOf(const QByteArray& stored, bool sixBits)
{
    QList<QRgb> palette(colors, qRgb(0, 0, 0));
    const auto value = [&](qsizetype at) {
        const int byte = uchar(stored[at]);
        return sixBits ? (byte & 63) << 2 | (byte & 63) >> 4 : byte;
    };
    for (qsizetype i = 0; i < stored.size() / 3; ++i)
        palette[i] = qRgb(value(3 * i), value(3 * i + 1), value(3 * i + 2));
    return palette;
}

Result<Layout> readLayout(const ByteSource& source, const QByteArray& head)
{
    if (head.size() < headerLength)
        return damaged(QStringLiteral("the header of the Animator picture is cut short"));
    if (head[10] != 8 || head[11] != 0)
        return Error{ErrorKind::Unsupported, QStringLiteral("Animator picture of another depth or packing")};
    Layout layout;
    layout.size = QSize(wordAt(head, 2), wordAt(head, 4));
    layout.palette = paletteOf(source.bytes(headerLength, paletteLength), true);
    layout.pixelOffset = headerLength + paletteLength;
    return layout;
}

Result<Layout> readProLayout(const ByteSource& source, const QByteArray& head)
{
    if (head.size() < proHeaderLength)
        return damaged(QStringLiteral("the header of the Animator Pro picture is cut short"));
    Layout layout;
    layout.size = QSize(wordAt(head, 6), wordAt(head, 8));
    layout.bits = uchar(head[18]);
    if (layout.bits != 8 && layout.bits != 1)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("Animator Pro picture with %1 bits").arg(layout.bits)};
    layout.palette =
        layout.bits == 1 ? QList<QRgb>{qRgb(0, 0, 0), qRgb(255, 255, 255)} : paletteOf({}, false);
    qint64 offset = proHeaderLength;
    for (int block = 0; block < mostBlocks; ++block) {
        const QByteArray blockHead = source.bytes(offset, blockHeaderLength);
        if (blockHead.size() < blockHeaderLength)
            break;
        const qint64 length = qFromLittleEndian<quint32>(blockHead.constData());
        const int type = wordAt(blockHead, 4);
        constexpr qint64 versionLength = 2;
        if (type == paletteBlock && layout.bits == 8)
            layout.palette =
                paletteOf(source.bytes(offset + blockHeaderLength + versionLength, paletteLength), false);
        else if (type == (layout.bits == 8 ? bytesBlock : bitsBlock) && layout.pixelOffset < 0)
            layout.pixelOffset = offset + blockHeaderLength;
        if (length < blockHeaderLength)
            break;
        offset += length;
    }
    return layout;
}

class AnimatorDecoder final : public OnePageDecoder
{
  public:
    AnimatorDecoder(std::shared_ptr<ByteSource> source, Layout layout)
        : m_source(std::move(source)), m_layout(std::move(layout))
    {
    }

  private:
    Result<PageHeader> facts() override { return PageHeader{m_layout.size, m_layout.bits}; }
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    std::shared_ptr<ByteSource> m_source;
    Layout m_layout;
};

Result<Picture> AnimatorDecoder::decodePage(const PageHeader&, QSize, const CancelFlag& cancel)
{
    QImage image =
        allocateImage(m_layout.size, m_layout.bits == 1 ? QImage::Format_Mono : QImage::Format_Indexed8);
    if (image.isNull())
        return noMemoryError();
    image.setColorTable(m_layout.palette);
    const qint64 rowBytes = m_layout.rowBytes();
    uchar* row = image.bits();
    bool drawn = false;
    bool complete = m_layout.pixelOffset >= 0;
    for (int y = 0; y < image.height() && complete; ++y, row += image.bytesPerLine()) {
        if (cancel)
            return cancelledError();
        const qint64 got = m_source->read(m_layout.pixelOffset + y * rowBytes, row, rowBytes);
        drawn = drawn || got > 0;
        complete = got == rowBytes;
    }
    if (!drawn)
        return damaged(QStringLiteral("the file ends before the first pixel"));
    return Picture{std::move(image), m_layout.size, m_layout.bits, complete};
}

} // namespace

bool isAnimatorPicture(const QByteArray& head)
{
    return head.startsWith("\x19\x91");
}

bool isAnimatorProPicture(const QByteArray& head)
{
    return head.mid(4, 2) == QByteArrayLiteral("\x00\x95");
}

Result<std::unique_ptr<Decoder>> openAnimatorPicture(std::shared_ptr<ByteSource> source)
{
    const QByteArray head = source->bytes(0, proHeaderLength);
    const Result<Layout> layout =
        isAnimatorPicture(head) ? readLayout(*source, head) : readProLayout(*source, head);
    if (!layout)
        return layout.error();
    return std::unique_ptr<Decoder>(std::make_unique<AnimatorDecoder>(std::move(source), *layout));
}

} // namespace quorvia::engine
