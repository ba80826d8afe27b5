// Walks through the opcodes of a Macintosh picture and notes the bitmaps in it; pixels are passed over, not
// unpacked. Cost: one read of the file up to where the walk ends.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QRgb>

#include <vector>

namespace quorvia::engine {

/// How the rows of a bitmap are stored.
enum class PictPacking {
    Plain,     ///< as they are
    PackBits,  ///< each row packed by bytes, a byte or word with its packed length before it
    PackWords, ///< the same by words of 16 bits
    NoPad,     ///< 32 bits without the unused byte
    Planes,    ///< packed by bytes; a row holds one component after the other
    Embedded,  ///< a compressed file, JPEG or another that the engine knows
};

/// A bitmap that the picture draws.
struct PictBitmap
{
    PictPacking packing = PictPacking::Plain;
    int bitsPerPixel = 1;    ///< 1, 2, 4, 8, 16 or 32
    int components = 3;      ///< of Planes: 3, or 4 with alpha first
    QSize size;              ///< pixels as stored
    int rowBytes = 0;        ///< of an unpacked row
    bool wideCounts = false; ///< the packed length before a row is a word
    QList<QRgb> palette;     ///< up to 8 bits
    QRect source;            ///< the part that is drawn, from the top left pixel of the bitmap
    QRect target;            ///< where it is drawn, from the top left corner of the picture
    qint64 offset = 0;       ///< of the pixels, bytes from the start of the file
    qint64 length = 0;       ///< bytes of an Embedded file
};

struct PictScan
{
    QSize size;
    std::vector<PictBitmap> bitmaps;
    bool hasDrawings = false; ///< lines, shapes or text, which are not drawn
    bool isTruncated = false; ///< the walk met the end of the file or something it cannot read
    QString unread;           ///< the coding of an embedded picture that is not read; empty for none

    /// Bits a pixel of the deepest bitmap; 24 for embedded files.
    int bitsPerPixel() const;
};

/// True when a picture begins at the start of `head` or behind a prefix of 512 bytes.
bool isPict(const QByteArray& head);

/// Walks through `source`. Damaged when it does not begin like a picture.
Result<PictScan> scanPict(const ByteSource& source);

} // namespace quorvia::engine
