#include "engine/codecs/pcx/PcxLayout.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

constexpr uchar mark = 0x0A;

int byteAt(const QByteArray& bytes, int offset)
{
    return uchar(bytes[offset]);
}

int wordAt(const QByteArray& bytes, int offset)
{
    return qFromLittleEndian<quint16>(bytes.constData() + offset);
}

/// What the display adapter showed where a file tells no colours.
constexpr std::array<QRgb, 16> adapterColors = {
    0xFF000000, 0xFF0000AA, 0xFF00AA00, 0xFF00AAAA, 0xFFAA0000, 0xFFAA00AA, 0xFFAA5500, 0xFFAAAAAA,
    0xFF555555, 0xFF5555FF, 0xFF55FF55, 0xFF55FFFF, 0xFFFF5555, 0xFFFF55FF, 0xFFFFFF55, 0xFFFFFFFF};
constexpr std::array<QRgb, 4> fourAdapterColors = {0xFF000000, 0xFF55FFFF, 0xFFFF55FF, 0xFFFFFFFF};

/// The colours that the header tells; those of the adapter, or black and white, when it tells none. Of two
/// colours the adapter's first ones count as none: programs left them in black and white files.
QList<QRgb> shortPalette(const QByteArray& head, int colors)
{
    constexpr int paletteOffset = 16;
    constexpr int versionWithoutPalette = 3;
    QList<QRgb> palette;
    bool told = false;
    for (int i = 0; i < colors; ++i) {
        const int at = paletteOffset + 3 * i;
        palette.append(qRgb(byteAt(head, at), byteAt(head, at + 1), byteAt(head, at + 2)));
        told = told || palette.last() != palette.first();
    }
    const int version = byteAt(head, 1);
    told = told && version != 0 && version != versionWithoutPalette;
    if (colors == 2 && (!told || palette == QList<QRgb>{adapterColors[0], adapterColors[1]}))
        return {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    if (told)
        return palette;
    if (colors == 4)
        return QList<QRgb>(fourAdapterColors.begin(), fourAdapterColors.end());
    return QList<QRgb>(adapterColors.begin(), adapterColors.begin() + colors);
}

bool isKnownDepth(int bits, int planes)
{
    return (bits == 1 && planes <= 4) || ((bits == 2 || bits == 4) && planes == 1) ||
           (bits == 8 && (planes == 1 || planes == 3 || planes == 4));
}

} // namespace

bool isPcx(const QByteArray& head)
{
    if (head.size() < 12 || byteAt(head, 0) != mark || byteAt(head, 1) > 5 || byteAt(head, 1) == 1 ||
        byteAt(head, 2) > 1)
        return false;
    const int bits = byteAt(head, 3);
    if (bits != 1 && bits != 2 && bits != 4 && bits != 8)
        return false;
    if (wordAt(head, 8) < wordAt(head, 4) || wordAt(head, 10) < wordAt(head, 6))
        return false;
    return head.size() < 66 || (byteAt(head, 65) >= 1 && byteAt(head, 65) <= 4);
}

Result<PcxLayout> readPcxLayout(const ByteSource& source)
{
    const QByteArray head = source.bytes(0, pcxHeaderBytes);
    if (head.size() < pcxHeaderBytes || byteAt(head, 0) != mark)
        return Error{ErrorKind::Damaged, QStringLiteral("the PCX header is incomplete")};
    PcxLayout layout;
    layout.size = QSize(wordAt(head, 8) - wordAt(head, 4) + 1, wordAt(head, 10) - wordAt(head, 6) + 1);
    layout.packed = byteAt(head, 2) != 0;
    layout.bitsPerSample = byteAt(head, 3);
    layout.planes = byteAt(head, 65);
    layout.planeBytes = wordAt(head, 66);
    if (!isKnownDepth(layout.bitsPerSample, layout.planes))
        return Error{
            ErrorKind::Unsupported,
            QStringLiteral("a PCX of %1 planes of %2 bits").arg(layout.planes).arg(layout.bitsPerSample)};
    if (layout.planeBytes < 1)
        return Error{ErrorKind::Damaged, QStringLiteral("a PCX with rows of no bytes")};
    if (layout.bitsPerPixel() < 8)
        layout.palette = shortPalette(head, 1 << layout.bitsPerPixel());
    constexpr int versionWithLongPalette = 5;
    constexpr int inColors = 1;
    layout.colored = layout.bitsPerPixel() == 8 && byteAt(head, 1) == versionWithLongPalette &&
                     wordAt(head, 68) == inColors;
    if (layout.bitsPerPixel() == 8)
        layout.palette = pcxPaletteAt(source, source.size() - pcxPaletteBytes);
    return layout;
}

QList<QRgb> pcxPaletteAt(const ByteSource& source, qint64 offset)
{
    constexpr char paletteMark = 0x0C;
    if (offset < pcxHeaderBytes)
        return {};
    const QByteArray bytes = source.bytes(offset, pcxPaletteBytes);
    if (bytes.size() < pcxPaletteBytes || bytes[0] != paletteMark)
        return {};
    QList<QRgb> palette;
    for (int at = 1; at < pcxPaletteBytes; at += 3)
        palette.append(qRgb(byteAt(bytes, at), byteAt(bytes, at + 1), byteAt(bytes, at + 2)));
    return palette;
}

} // namespace quorvia::engine
