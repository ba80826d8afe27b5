#include "engine/codecs/bmp/BmpLayout.h"

#include "engine/codecs/CodecErrors.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 fileHeaderLength = 14;
constexpr qint64 arrayHeaderLength = 14;
constexpr quint32 os2CoreHeader = 12;
constexpr quint32 windowsHeader = 40;
constexpr quint32 os2ShortestHeader = 16; ///< of OS/2 2; its writers leave out the fields that are 0
constexpr quint32 os2LongHeader = 64;
constexpr quint32 version5Header = 124;

// Compression numbers. 3 and 4 mean something else in an OS/2 header.
constexpr quint32 plainRows = 0;
constexpr quint32 rle8 = 1;
constexpr quint32 rle4 = 2;
constexpr quint32 bitFields = 3;
constexpr quint32 jpegOrRle24 = 4;
constexpr quint32 png = 5;
constexpr quint32 alphaBitFields = 6;

/// The colour space of a version 5 header whose profile is in the file.
constexpr quint32 embeddedProfile = 0x4D424544; // "MBED"

template <class T>
T little(const QByteArray& bytes, qint64 offset)
{
    if (offset < 0 || offset + qint64(sizeof(T)) > bytes.size())
        return 0;
    return qFromLittleEndian<T>(bytes.constData() + offset);
}

/// The sizes that stand for themselves. Behind "BM" any length that OS/2 2 allows will do.
bool isHeaderSize(quint32 size, bool behindMark)
{
    if (behindMark && size >= os2ShortestHeader && size <= os2LongHeader)
        return true;
    constexpr std::array<quint32, 8> known = {12, 16, 40, 52, 56, 64, 108, 124};
    return std::find(known.begin(), known.end(), size) != known.end();
}

bool isDepth(int bits)
{
    constexpr std::array<int, 7> known = {1, 2, 4, 8, 16, 24, 32};
    return std::find(known.begin(), known.end(), bits) != known.end();
}

/// The fields of a DIB header that matter; those that a short header lacks are 0.
struct Fields
{
    quint32 headerSize = 0;
    qint64 width = 0;
    qint64 height = 0;
    int planes = 0;
    int bits = 0;
    quint32 compression = 0;
    quint32 clrUsed = 0;
    std::array<quint32, 4> masks = {};

    bool isOs2() const
    {
        return headerSize <= os2LongHeader && headerSize != windowsHeader && headerSize != 52 &&
               headerSize != 56;
    }
    /// A JPEG or PNG in place of pixels.
    bool isEmbedded() const { return compression == jpegOrRle24 || compression == png; }
};

Fields readFields(const QByteArray& head, qint64 at)
{
    Fields fields;
    fields.headerSize = little<quint32>(head, at);
    if (fields.headerSize == os2CoreHeader) {
        fields.width = little<quint16>(head, at + 4);
        fields.height = little<quint16>(head, at + 6);
        fields.planes = little<quint16>(head, at + 8);
        fields.bits = little<quint16>(head, at + 10);
        return fields;
    }
    fields.width = little<qint32>(head, at + 4);
    fields.height = little<qint32>(head, at + 8);
    fields.planes = little<quint16>(head, at + 12);
    fields.bits = little<quint16>(head, at + 14);
    const auto inHeader = [&](quint32 offset) {
        return fields.headerSize >= offset + 4 ? little<quint32>(head, at + offset) : 0;
    };
    fields.compression = inHeader(16);
    fields.clrUsed = inHeader(32);
    if (fields.isOs2())
        return fields;
    // Behind a header of 40 bytes the masks follow it, which is the place where longer ones hold them.
    const bool hasAlpha = fields.headerSize >= 56 || fields.compression == alphaBitFields;
    for (size_t i = 0; i < (hasAlpha ? 4u : 3u); ++i)
        fields.masks[i] = little<quint32>(head, at + windowsHeader + 4 * qint64(i));
    return fields;
}

/// Bytes of masks that stand behind the header instead of in it.
qint64 looseMaskBytes(const Fields& fields)
{
    if (fields.headerSize != windowsHeader || (fields.bits != 16 && fields.bits != 24 && fields.bits != 32))
        return 0;
    if (fields.compression == bitFields)
        return 12;
    return fields.compression == alphaBitFields ? 16 : 0;
}

Status findPacking(const Fields& fields, BmpLayout& layout)
{
    const auto mismatch = [&] {
        return damaged(
            QStringLiteral("compression %1 with %2 bits").arg(fields.compression).arg(fields.bits));
    };
    switch (fields.compression) {
    case plainRows:
        layout.packing = BmpPacking::Rows;
        break;
    case rle8:
        layout.packing = BmpPacking::Rle8;
        return fields.bits == 8 ? ok() : Status(mismatch());
    case rle4:
        layout.packing = BmpPacking::Rle4;
        return fields.bits == 4 ? ok() : Status(mismatch());
    case bitFields:
        if (fields.isOs2() || fields.bits == 1)
            return unsupported(QStringLiteral("Huffman 1D compression"));
        [[fallthrough]];
    case alphaBitFields:
        if (fields.bits < 16)
            return mismatch();
        layout.packing = BmpPacking::Rows;
        break;
    case jpegOrRle24: // an OS/2 writer may use a header of 40 bytes as well
        layout.packing =
            fields.bits == 24 && fields.headerSize <= os2LongHeader ? BmpPacking::Rle24 : BmpPacking::Jpeg;
        return ok();
    case png:
        layout.packing = BmpPacking::Png;
        return ok();
    default:
        return unsupported(QStringLiteral("compression %1").arg(fields.compression));
    }
    if (!isDepth(fields.bits))
        return unsupported(QStringLiteral("%1 bits a pixel").arg(fields.bits));
    return ok();
}

std::array<quint32, 4> findMasks(const Fields& fields)
{
    const bool given = fields.compression == bitFields || fields.compression == alphaBitFields;
    if (given && (fields.masks[0] | fields.masks[1] | fields.masks[2]) != 0)
        return fields.masks;
    if (fields.bits == 16)
        return {0x7C00, 0x03E0, 0x001F, 0};
    return {0xFF0000, 0x00FF00, 0x0000FF, 0};
}

QList<QRgb> readPalette(const QByteArray& head, qint64 at, qint64 stored, int entryBytes, int bits)
{
    const int full = 1 << bits;
    QList<QRgb> palette(full, qRgb(0, 0, 0));
    const qint64 present =
        std::clamp<qint64>((head.size() - at) / entryBytes, 0, std::min<qint64>(stored, full));
    for (qint64 i = 0; i < present; ++i) {
        const auto* entry = reinterpret_cast<const uchar*>(head.constData()) + at + i * entryBytes;
        palette[i] = qRgb(entry[2], entry[1], entry[0]);
    }
    if (present == 0) { // a picture without any colour is better shown in grey than black all over
        for (int i = 0; i < full; ++i)
            palette[i] = qRgb(i * 255 / (full - 1), i * 255 / (full - 1), i * 255 / (full - 1));
    }
    return palette;
}

/// Offset of the DIB header, behind the file header and that of an OS/2 array of bitmaps; 0 for a bare DIB.
qint64 dibOffset(const QByteArray& head)
{
    if (head.startsWith("BA") && head.mid(arrayHeaderLength, 2) == "BM")
        return arrayHeaderLength + fileHeaderLength;
    return head.startsWith("BM") ? fileHeaderLength : 0;
}

/// Finds palette and pixels. A pixel offset that points into the headers or past the end is nonsense that
/// real files hold: the pixels then follow the palette. One that leaves room for a part of the palette cuts
/// it.
void placePaletteAndPixels(const QByteArray& head, qint64 at, const Fields& fields, qint64 fileSize,
                           BmpLayout& layout)
{
    const qint64 paletteAt = at + fields.headerSize + looseMaskBytes(fields);
    const int entryBytes = fields.headerSize == os2CoreHeader ? 3 : 4;
    const bool indexed = fields.bits > 0 && fields.bits <= 8 && !fields.isEmbedded();
    qint64 stored = fields.isEmbedded() ? 0 : fields.clrUsed;
    if (indexed && stored == 0)
        stored = qint64(1) << fields.bits;
    if (paletteAt + stored * entryBytes > fileSize)
        stored = indexed ? qint64(1) << fields.bits : 0;

    layout.pixelOffset = paletteAt + stored * entryBytes;
    if (at >= fileHeaderLength) {
        const qint64 told = little<quint32>(head, at - 4);
        const bool sane = indexed ? told > paletteAt : told >= paletteAt;
        if (sane && told < fileSize) {
            layout.pixelOffset = told;
            stored = std::min(stored, (told - paletteAt) / entryBytes);
        }
    }
    layout.pixelLength = std::max<qint64>(fileSize - layout.pixelOffset, 0);
    if (indexed)
        layout.palette = readPalette(head, paletteAt, stored, entryBytes, fields.bits);
}

/// Finds the profile, whose place counts from the DIB header. One within the header is nonsense.
void placeProfile(const QByteArray& head, qint64 at, const Fields& fields, BmpLayout& layout)
{
    if (fields.headerSize != version5Header || little<quint32>(head, at + 56) != embeddedProfile)
        return;
    const qint64 offset = little<quint32>(head, at + 112);
    if (offset < version5Header)
        return;
    layout.profileOffset = at + offset;
    layout.profileLength = little<quint32>(head, at + 116);
}

} // namespace

bool isBmpFile(const QByteArray& head)
{
    const qint64 at = dibOffset(head);
    return at > 0 && isHeaderSize(little<quint32>(head, at), true);
}

bool isBareDib(const QByteArray& head, bool weak)
{
    const Fields fields = readFields(head, 0);
    constexpr qint64 widest = 65535;
    const bool likely = fields.headerSize >= windowsHeader && fields.width <= widest &&
                        std::abs(fields.height) <= widest && head.size() >= qint64(fields.headerSize);
    return fields.planes == 1 && isIconDib(head) && (weak || likely);
}

bool isIconDib(const QByteArray& head)
{
    const Fields fields = readFields(head, 0);
    if (!isHeaderSize(fields.headerSize, false) || fields.planes > 1)
        return false;
    if (fields.width <= 0 || fields.height == 0 || fields.compression > alphaBitFields)
        return false;
    return isDepth(fields.bits) || (fields.isEmbedded() && fields.bits == 0);
}

Result<BmpLayout> readBmpLayout(const QByteArray& head, qint64 fileSize)
{
    const qint64 at = dibOffset(head);
    const Fields fields = readFields(head, at);
    if (!isHeaderSize(fields.headerSize, at > 0))
        return damaged(QStringLiteral("a header of %1 bytes").arg(fields.headerSize));
    if (head.size() < at + qint64(fields.headerSize))
        return damaged(QStringLiteral("the header is cut short"));

    BmpLayout layout;
    const Status packing = findPacking(fields, layout);
    if (!packing)
        return packing.error();
    constexpr qint64 mostNegative = std::numeric_limits<qint32>::min();
    if (fields.width < 0 || fields.height == mostNegative)
        return damaged(QStringLiteral("a size of %1 x %2").arg(fields.width).arg(fields.height));
    layout.topDown = fields.height < 0;
    layout.size = QSize(int(fields.width), int(std::abs(fields.height)));
    layout.bitsPerPixel = fields.bits;
    layout.masks = findMasks(fields);
    placePaletteAndPixels(head, at, fields, fileSize, layout);
    placeProfile(head, at, fields, layout);
    const bool startsAsJpeg = head.mid(layout.pixelOffset).startsWith("\xFF\xD8\xFF");
    if (layout.packing == BmpPacking::Rle24 && !fields.isOs2() && startsAsJpeg)
        layout.packing = BmpPacking::Jpeg;
    return layout;
}

} // namespace quorvia::engine
