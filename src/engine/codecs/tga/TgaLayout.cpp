#include "engine/codecs/tga/TgaLayout.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 headerLength = 18;
constexpr qint64 footerLength = 26;
constexpr quint32 extensionLength = 495;
constexpr qint64 attributesTypeAt = 494; // in the extension area

constexpr int runLengthFlag = 8; // of the image type
constexpr int huffman = 32;
constexpr int huffmanQuadTree = 33;

struct Header
{
    int idLength = 0;
    int paletteType = 0;
    int imageType = 0;
    int paletteFirst = 0;
    int paletteCount = 0;
    int entryBits = 0;
    QSize size;
    int depth = 0;
    int descriptor = 0;

    bool hasPalette() const { return paletteType == 1; }
    int kind() const { return imageType & ~runLengthFlag; } // 1 palette, 2 true colour, 3 grey
    int attributeBits() const { return descriptor & 0x0F; }
    int entryBytes() const { return (entryBits + 7) / 8; }
};

Header readHeader(const QByteArray& head)
{
    const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
    const auto word = [bytes](int at) { return int(qFromLittleEndian<quint16>(bytes + at)); };
    Header header;
    header.idLength = bytes[0];
    header.paletteType = bytes[1];
    header.imageType = bytes[2];
    header.paletteFirst = word(3);
    header.paletteCount = word(5);
    header.entryBits = bytes[7];
    header.size = QSize(word(12), word(14));
    header.depth = bytes[16];
    header.descriptor = bytes[17];
    return header;
}

bool isEntrySize(int bits)
{
    return bits == 15 || bits == 16 || bits == 24 || bits == 32;
}

bool isDepth(int kind, int bits)
{
    if (kind == 2)
        return bits == 15 || bits == 16 || bits == 24 || bits == 32;
    return bits == 8 || bits == 16;
}

bool isPlausible(const Header& header)
{
    if (header.size.isEmpty() || header.paletteType > 1)
        return false;
    if (header.hasPalette() && !isEntrySize(header.entryBits))
        return false;
    if (header.imageType == huffman || header.imageType == huffmanQuadTree)
        return header.hasPalette() && header.depth == 8;
    if ((header.imageType & ~(runLengthFlag | 3)) != 0 || header.kind() < 1)
        return false;
    if (header.kind() == 1 && (!header.hasPalette() || header.paletteCount == 0))
        return false;
    return isDepth(header.kind(), header.depth);
}

QRgb entryAt(const uchar* at, int bytes)
{
    if (bytes == 2) {
        const int value = qFromLittleEndian<quint16>(at);
        return qRgb(tgaFiveBits(value >> 10 & 31), tgaFiveBits(value >> 5 & 31), tgaFiveBits(value & 31));
    }
    return qRgba(at[2], at[1], at[0], bytes == 4 ? at[3] : 255);
}

/// The palette as far as the file holds it; entries that are missing are black.
QList<QRgb> readPalette(const ByteSource& source, const Header& header)
{
    const int bytes = header.entryBytes();
    const int values = header.depth == 8 ? 256 : 65536;
    const int count = std::clamp(values - header.paletteFirst, 0, header.paletteCount);
    const QByteArray stored = source.bytes(headerLength + header.idLength, qint64(count) * bytes);
    const auto* at = reinterpret_cast<const uchar*>(stored.constData());
    QList<QRgb> palette(count, qRgb(0, 0, 0));
    for (qsizetype i = 0; i < stored.size() / bytes; ++i)
        palette[i] = entryAt(at + i * bytes, bytes);
    const bool allClear =
        std::all_of(palette.begin(), palette.end(), [](QRgb color) { return qAlpha(color) == 0; });
    if (allClear) { // the fourth byte was left at 0
        for (QRgb& color : palette)
            color |= 0xFF000000;
    }
    palette.insert(0, std::min(header.paletteFirst, values), qRgb(0, 0, 0));
    return palette;
}

/// The attributes type of the extension area, -1 when there is none.
int attributesType(const ByteSource& source)
{
    const QByteArray footer = source.bytes(source.size() - footerLength, footerLength);
    if (footer.size() < footerLength || footer.mid(8, 16) != "TRUEVISION-XFILE")
        return -1;
    const quint32 area = qFromLittleEndian<quint32>(footer.constData());
    const QByteArray extension = source.bytes(area, extensionLength);
    if (area < headerLength || extension.size() < qsizetype(extensionLength) ||
        qFromLittleEndian<quint16>(extension.constData()) < extensionLength)
        return -1;
    return uchar(extension[attributesTypeAt]);
}

void findAlpha(const ByteSource& source, const Header& header, TgaLayout& layout)
{
    const bool hasRoom = header.kind() == 2 ? header.depth == 32 || header.depth == 16
                                            : header.kind() == 3 && header.depth == 16;
    if (!hasRoom)
        return;
    switch (attributesType(source)) {
    case 0: // none
    case 1: // undefined, can be ignored
    case 2: // undefined, but to be kept
        return;
    case 3:
        layout.alpha = TgaAlpha::Straight;
        layout.alphaIsTold = true;
        return;
    case 4:
        layout.alpha = TgaAlpha::Premultiplied;
        layout.alphaIsTold = true;
        return;
    default:
        layout.alpha = header.attributeBits() > 0 ? TgaAlpha::Straight : TgaAlpha::None;
    }
}

} // namespace

bool isPlausibleTga(const QByteArray& head)
{
    return head.size() >= headerLength && isPlausible(readHeader(head));
}

Result<TgaLayout> readTgaLayout(const ByteSource& source)
{
    const QByteArray head = source.bytes(0, headerLength);
    if (!isPlausibleTga(head))
        return Error{ErrorKind::NotAnImage, QStringLiteral("no Targa header")};
    const Header header = readHeader(head);
    if (header.imageType >= huffman)
        return Error{ErrorKind::Unsupported, QStringLiteral("Targa with Huffman packing")};

    TgaLayout layout;
    layout.size = header.size;
    layout.kind = header.kind() == 1   ? TgaKind::Palette
                  : header.kind() == 2 ? TgaKind::TrueColor
                                       : TgaKind::Gray;
    layout.runs = (header.imageType & runLengthFlag) != 0;
    layout.bytesPerPixel = (header.depth + 7) / 8;
    findAlpha(source, header, layout);
    layout.rightToLeft = (header.descriptor & 0x10) != 0;
    layout.topDown = (header.descriptor & 0x20) != 0;
    constexpr int interleaves[] = {1, 2, 4, 1};
    layout.interleave = interleaves[header.descriptor >> 6];
    if (layout.kind == TgaKind::Palette)
        layout.palette = readPalette(source, header);
    // A true-colour file may carry a palette for screens of its time.
    const qint64 paletteBytes = header.hasPalette() ? qint64(header.paletteCount) * header.entryBytes() : 0;
    layout.pixelOffset = headerLength + header.idLength + paletteBytes;
    return layout;
}

} // namespace quorvia::engine
