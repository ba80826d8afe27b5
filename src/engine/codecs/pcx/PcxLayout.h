// The header of a PCX file. Cheap: 128 bytes, and the palette of 256 colours at the file's end where there is
// one.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QList>
#include <QRgb>
#include <QSize>

namespace quorvia::engine {

constexpr int pcxHeaderBytes = 128;
constexpr qint64 pcxPaletteBytes = 1 + 256 * 3; ///< the palette of 256 colours with its mark

struct PcxLayout
{
    QSize size;
    int bitsPerSample = 8; ///< 1, 2, 4 or 8
    int planes = 1;        ///< 1 to 4, stored row by row one after the other
    int planeBytes = 0;    ///< bytes of one plane's row; the last ones may be filling
    bool packed = true;    ///< false: the bytes stand as they are, without run length
    QList<QRgb> palette;   ///< empty for deep pictures, and for greys without a palette
    bool colored = false;  ///< 8 bits: the header says that a palette follows the pixels

    int bitsPerPixel() const { return bitsPerSample * planes; }
    int rowBytes() const { return planeBytes * planes; }
};

/// True when `head` begins like a PCX file: mark, version, coding, depth and a window that is not empty.
bool isPcx(const QByteArray& head);

/// Reads the header of `source`. Damaged when it is cut short or has no mark, Unsupported for depths that no
/// program writes.
Result<PcxLayout> readPcxLayout(const ByteSource& source);

/// The palette of 256 colours whose mark 0C stands at `offset` (bytes); empty when there is none.
QList<QRgb> pcxPaletteAt(const ByteSource& source, qint64 offset);

} // namespace quorvia::engine
