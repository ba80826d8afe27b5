#include "engine/codecs/pict/PictScan.h"

#include "engine/codecs/pict/PictReader.h"
#include "engine/codecs/pict/PictRows.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 prefixBytes = 512;
constexpr size_t mostBitmaps = 65536;
constexpr int jpegBits = 24;

enum Op {
    clip = 0x01,
    backPattern = 0x12,
    fillPattern = 0x14,
    origin = 0x0C,
    versionOp = 0x11,
    bitsRect = 0x90,
    bitsRegion = 0x91,
    packBitsRect = 0x98,
    packBitsRegion = 0x99,
    directBitsRect = 0x9A,
    directBitsRegion = 0x9B,
    longComment = 0xA1,
    endOfPicture = 0xFF,
    header = 0x0C00,
    compressed = 0x8200,
};

/// True when a picture begins at `offset`: a frame that is not empty and the version.
bool beginsAt(const QByteArray& head, qsizetype offset)
{
    constexpr qsizetype beginning = 12;
    if (head.size() < offset + beginning)
        return false;
    const auto source = ByteSource::fromBytes(head.mid(offset, beginning));
    PictReader reader(*source, 2); // the first word is a length that nobody keeps right
    const QRect frame = reader.rectangle();
    if (frame.width() < 1 || frame.height() < 1)
        return false;
    const QByteArray version = head.mid(offset + 10, 4);
    return version == QByteArray::fromHex("001102ff") || version.startsWith(QByteArray::fromHex("1101"));
}

/// Bytes behind an opcode that is not looked at, for opcodes of fixed length; -1 for the others.
int fixedLength(int op)
{
    static constexpr signed char lengths[0xA2] = {
        0,  -1, 8,  2,  1,  2,  4,  4,  2,  8,  8,  4,  4,  2,  4,  4,  // 00
        8,  1,  -1, -1, -1, 2,  2,  0,  0,  0,  6,  6,  0,  6,  0,  6,  // 10
        8,  4,  6,  2,  -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, // 20: lines, text
        8,  8,  8,  8,  8,  8,  8,  8,  0,  0,  0,  0,  0,  0,  0,  0,  // 30: rectangles
        8,  8,  8,  8,  8,  8,  8,  8,  0,  0,  0,  0,  0,  0,  0,  0,  // 40: rounded rectangles
        8,  8,  8,  8,  8,  8,  8,  8,  0,  0,  0,  0,  0,  0,  0,  0,  // 50: ovals
        12, 12, 12, 12, 12, 12, 12, 12, 4,  4,  4,  4,  4,  4,  4,  4,  // 60: arcs
        -1, -1, -1, -1, -1, -1, -1, -1, 0,  0,  0,  0,  0,  0,  0,  0,  // 70: polygons
        -1, -1, -1, -1, -1, -1, -1, -1, 0,  0,  0,  0,  0,  0,  0,  0,  // 80: regions
        -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1, // 90: bitmaps
        2,  -1,
    };
    if (op < int(std::size(lengths)))
        return lengths[op];
    if (op >= 0xB0 && op <= 0xCF)
        return 0;
    if (op == header)
        return 24;
    if (op >= 0x0100 && op <= 0x7FFF)
        return (op >> 8) * 2;
    return op >= 0x8000 && op <= 0x80FF ? 0 : -1;
}

class Walk
{
  public:
    Walk(const ByteSource& source, qint64 start) : m_source(source), m_reader(source, start) {}

    PictScan result();

  private:
    void readBeginning();
    /// Reads opcode after opcode until the end of the picture.
    void readOps();
    bool readOp(int op);
    void readHeader();
    void skipText(int op);
    void skipPattern();
    void readBitmap(int op);
    bool readPixmap(PictBitmap& bitmap, int rowWord, bool direct);
    QList<QRgb> readColors();
    void readCompressed();

    const ByteSource& m_source;
    PictReader m_reader;
    PictScan m_scan;
    QRect m_frame;
    QPoint m_origin;
    int m_version = 1;
    bool m_lost = false; ///< something that the walk cannot pass over
};

PictScan Walk::result()
{
    readBeginning();
    readOps();
    m_scan.size = m_frame.size();
    m_scan.isTruncated = m_lost || m_reader.isPast();
    // Beside compressed pictures stand bitmaps that ask for the program which reads them.
    const auto isEmbedded = [](const PictBitmap& b) { return b.packing == PictPacking::Embedded; };
    if (std::any_of(m_scan.bitmaps.begin(), m_scan.bitmaps.end(), isEmbedded))
        std::erase_if(m_scan.bitmaps, [&](const PictBitmap& b) { return !isEmbedded(b); });
    for (PictBitmap& bitmap : m_scan.bitmaps)
        bitmap.target.translate(-m_frame.topLeft());
    return std::move(m_scan);
}

void Walk::readBeginning()
{
    m_reader.skip(2);
    m_frame = m_reader.rectangle();
    m_version = m_reader.byte() == versionOp ? 1 : 2;
    m_reader.skip(m_version == 1 ? 1 : 3);
}

void Walk::readOps()
{
    while (!m_reader.isPast() && !m_lost) {
        if (m_version == 2)
            m_reader.align();
        const int op = m_version == 2 ? m_reader.word() : m_reader.byte();
        if (m_reader.isPast() || !readOp(op))
            return;
    }
}

bool Walk::readOp(int op)
{
    if (op == endOfPicture)
        return false;
    const bool draws = (op >= 0x20 && op <= 0x2B) || (op >= 0x30 && op <= 0x8F);
    m_scan.hasDrawings = m_scan.hasDrawings || draws;
    if (op == header && m_version == 2) {
        readHeader();
    } else if (op == origin) {
        const int dx = m_reader.signedWord();
        m_origin += QPoint(dx, m_reader.signedWord());
    } else if (fixedLength(op) >= 0) {
        m_reader.skip(fixedLength(op));
    } else if (op == clip || (op >= 0x70 && op <= 0x87)) {
        m_reader.skip(m_reader.word() - 2); // a region or polygon; the length counts itself
    } else if (op >= backPattern && op <= fillPattern) {
        skipPattern();
    } else if (op >= 0x24 && op <= 0x2F) {
        skipText(op);
    } else if (op == bitsRect || op == bitsRegion || (op >= packBitsRect && op <= directBitsRegion)) {
        readBitmap(op);
    } else if (op == longComment) {
        m_reader.skip(2);
        m_reader.skip(m_reader.word());
    } else if (op <= 0xAF) {
        m_reader.skip(m_reader.word());
    } else if (op == compressed) {
        readCompressed();
    } else {
        m_reader.skip(m_reader.longWord());
    }
    return true;
}

/// The header of version 2; in its extended form the frame is told once more, in pixels.
void Walk::readHeader()
{
    const int kind = m_reader.word();
    m_reader.skip(2 + 4 + 4);
    constexpr int extended = 0xFFFE;
    const QRect frame = m_reader.rectangle();
    m_reader.skip(4);
    if (kind == extended && frame.width() > 0 && frame.height() > 0)
        m_frame = frame;
}

void Walk::skipText(int op)
{
    switch (op) {
    case 0x28: // at a point
        m_reader.skip(4);
        m_reader.skip(m_reader.byte());
        break;
    case 0x29: // moved to the right or down
    case 0x2A:
        m_reader.skip(1);
        m_reader.skip(m_reader.byte());
        break;
    case 0x2B: // moved in both directions
        m_reader.skip(2);
        m_reader.skip(m_reader.byte());
        break;
    default:
        m_reader.skip(m_reader.word());
    }
}

void Walk::skipPattern()
{
    constexpr int dithered = 2;
    const int kind = m_reader.word();
    m_reader.skip(8);
    if (kind == dithered) {
        m_reader.skip(6);
        return;
    }
    PictBitmap bitmap;
    const int rowWord = m_reader.word();
    if (!readPixmap(bitmap, rowWord, false)) {
        m_lost = true;
        return;
    }
    bitmap.palette = readColors();
    bitmap.offset = m_reader.position();
    bitmap.packing = PictPacking::PackBits;
    bitmap.wideCounts = hasWideCounts(m_source, bitmap);
    skipPictRows(m_reader, bitmap);
}

QList<QRgb> Walk::readColors()
{
    constexpr int indexed = 0x8000; // the entries stand in order, their numbers say nothing
    m_reader.skip(4);
    const int flags = m_reader.word();
    const int count = m_reader.word() + 1;
    QList<QRgb> colors;
    for (int i = 0; i < count && !m_reader.isPast(); ++i) {
        const int told = m_reader.word();
        const int at = flags & indexed ? i : told;
        const int red = m_reader.word() >> 8;
        const int green = m_reader.word() >> 8;
        const QRgb color = qRgb(red, green, m_reader.word() >> 8);
        if (at > 255)
            continue;
        while (colors.size() <= at)
            colors.append(qRgb(0, 0, 0));
        colors[at] = color;
    }
    return colors;
}

/// What follows the word with the bytes of a row; false when no bitmap can look like that.
bool Walk::readPixmap(PictBitmap& bitmap, int rowWord, bool direct)
{
    constexpr int rowMask = 0x7FFF;
    const QRect bounds = m_reader.rectangle();
    bitmap.rowBytes = rowWord & rowMask;
    bitmap.size = bounds.size();
    bitmap.source = bounds; // the origin for the rectangle that is drawn
    m_reader.skip(2);
    const int packType = m_reader.word();
    m_reader.skip(4 + 4 + 4 + 2);
    bitmap.bitsPerPixel = m_reader.word();
    bitmap.components = m_reader.word();
    m_reader.skip(2 + 4 + 4 + 4);
    const int bits = bitmap.bitsPerPixel;
    const bool depthIsRight =
        direct ? bits == 16 || bits == 32 : bits == 1 || bits == 2 || bits == 4 || bits == 8;
    if (direct && bits == 16)
        bitmap.packing = packType == 1 ? PictPacking::Plain : PictPacking::PackWords;
    else if (direct)
        bitmap.packing = packType == 1   ? PictPacking::Plain
                         : packType == 2 ? PictPacking::NoPad
                                         : PictPacking::Planes;
    const bool componentsAreRight =
        bitmap.packing != PictPacking::Planes || bitmap.components == 3 || bitmap.components == 4;
    return depthIsRight && componentsAreRight;
}

void Walk::readBitmap(int op)
{
    const bool direct = op == directBitsRect || op == directBitsRegion;
    const bool region = op == bitsRegion || op == packBitsRegion || op == directBitsRegion;
    constexpr int pixmapFlag = 0x8000;
    PictBitmap bitmap;
    if (direct)
        m_reader.skip(4);
    const int rowWord = m_reader.word();
    if (direct || (rowWord & pixmapFlag)) {
        if (!readPixmap(bitmap, rowWord, direct)) {
            m_lost = true;
            return;
        }
        if (!direct)
            bitmap.palette = readColors();
    } else {
        bitmap.rowBytes = rowWord;
        bitmap.source = m_reader.rectangle();
        bitmap.size = bitmap.source.size();
        bitmap.palette = {qRgb(255, 255, 255), qRgb(0, 0, 0)};
    }
    if (op == packBitsRect || op == packBitsRegion)
        bitmap.packing = PictPacking::PackBits;
    const QPoint corner = bitmap.source.topLeft();
    bitmap.source = m_reader.rectangle().translated(-corner);
    bitmap.target = m_reader.rectangle().translated(-m_origin);
    m_reader.skip(2); // how it is mixed with what is there
    if (region)
        m_reader.skip(m_reader.word() - 2);
    bitmap.offset = m_reader.position();
    const bool ownLength = bitmap.packing == PictPacking::Planes || bitmap.packing == PictPacking::NoPad;
    const qint64 needed = ownLength ? 1 : (qint64(bitmap.size.width()) * bitmap.bitsPerPixel + 7) / 8;
    if (bitmap.size.width() < 1 || bitmap.size.height() < 1 || bitmap.rowBytes < needed ||
        m_scan.bitmaps.size() >= mostBitmaps || bitmap.offset >= m_source.size()) {
        m_lost = true;
        return;
    }
    bitmap.wideCounts = hasWideCounts(m_source, bitmap);
    m_scan.bitmaps.push_back(bitmap);
    skipPictRows(m_reader, bitmap);
}

/// A picture that another program compressed: its place, its description, then the file.
void Walk::readCompressed()
{
    const qint64 length = m_reader.longWord();
    const qint64 end = m_reader.position() + length;
    m_reader.skip(2 + 6 * 4);
    const int x = int(m_reader.longWord() >> 16);
    const int y = int(m_reader.longWord() >> 16);
    m_reader.skip(4);
    const qint64 matteBytes = m_reader.longWord();
    m_reader.skip(8 + 2 + 8 + 4);
    const qint64 maskBytes = m_reader.longWord();
    if (matteBytes > 0) { // a picture of its own before the one that counts
        const qint64 description = m_reader.longWord();
        m_reader.skip(description - 4 + matteBytes);
    }
    m_reader.skip(maskBytes);
    const qint64 start = m_reader.position();
    const qint64 description = m_reader.longWord();
    QByteArray coding;
    for (int i = 0; i < 4; ++i)
        coding += char(m_reader.byte());
    m_reader.skip(24);
    PictBitmap bitmap;
    bitmap.packing = PictPacking::Embedded;
    bitmap.bitsPerPixel = jpegBits;
    const int width = m_reader.word();
    bitmap.size = QSize(width, m_reader.word());
    bitmap.source = QRect(QPoint(0, 0), bitmap.size);
    bitmap.target = QRect(QPoint(qint16(x), qint16(y)) - m_origin, bitmap.size);
    bitmap.offset = start + description;
    bitmap.length = end - bitmap.offset;
    if (coding != "jpeg" && coding != "png ")
        m_scan.unread = QString::fromLatin1(coding);
    else if (bitmap.length > 0 && bitmap.offset < m_source.size() && m_scan.bitmaps.size() < mostBitmaps)
        m_scan.bitmaps.push_back(bitmap);
    m_reader.moveTo(end);
    m_reader.skip(0);
}

} // namespace

int PictScan::bitsPerPixel() const
{
    int bits = 1;
    for (const PictBitmap& bitmap : bitmaps)
        bits = std::max(
            bits, bitmap.packing == PictPacking::Planes && bitmap.components == 3 ? 24 : bitmap.bitsPerPixel);
    return bits;
}

bool isPict(const QByteArray& head)
{
    return beginsAt(head, prefixBytes) || beginsAt(head, 0);
}

Result<PictScan> scanPict(const ByteSource& source)
{
    const QByteArray head = source.bytes(0, 2 * prefixBytes);
    const bool prefixed = beginsAt(head, prefixBytes);
    if (!prefixed && !beginsAt(head, 0))
        return Error{ErrorKind::Damaged, QStringLiteral("no beginning of a Macintosh picture")};
    return Walk(source, prefixed ? prefixBytes : 0).result();
}

} // namespace quorvia::engine
