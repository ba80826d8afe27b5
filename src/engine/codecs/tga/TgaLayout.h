// What the header, the footer and the extension area of a Targa file say, and its palette. Cheap: three or
// four short reads.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QSize>

namespace quorvia::engine {

enum class TgaKind { Palette, TrueColor, Gray };
enum class TgaAlpha { None, Straight, Premultiplied };

struct TgaLayout
{
    QSize size;
    TgaKind kind = TgaKind::TrueColor;
    bool runs = false;     ///< run-length packets instead of plain pixels
    int bytesPerPixel = 0; ///< 1 to 4; 2 for 15 bits too
    TgaAlpha alpha = TgaAlpha::None;
    bool alphaIsTold = false; ///< by the extension area, whatever its values are
    bool topDown = false;
    bool rightToLeft = false;
    int interleave = 1;     ///< rows between one stored row and the next: 1, 2 or 4
    QList<QRgb> palette;    ///< by pixel value; starts with black where the file's first entry is not 0
    qint64 pixelOffset = 0; ///< bytes from the start of the file

    int bitsPerPixel() const { return 8 * bytesPerPixel; }
};

/// True when `head` can be the beginning of a Targa file. The format has no mark: a good guess, no proof.
bool isPlausibleTga(const QByteArray& head);

/// Reads what stands around the pixels of `source`. NotAnImage when the header is not plausible, Unsupported
/// for the Huffman packings; sizes are not held against the limits here. Source: the published Truevision TGA
/// file format, version 2.0.
Result<TgaLayout> readTgaLayout(const ByteSource& source);

/// 5 bits abcde as the byte abcdeabc.
constexpr int tgaFiveBits(int value)
{
    return value << 3 | value >> 2;
}

} // namespace quorvia::engine
