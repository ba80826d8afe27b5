// The header of a portable bitmap, graymap, pixmap or arbitrary map: P1 to P7. Cheap: reads the header words
// and nothing else.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QSize>

namespace quorvia::engine {

struct PnmLayout
{
    QSize size;
    int channels = 1;        ///< 1 grey, 2 grey and alpha, 3 RGB, 4 RGB and alpha
    int maxval = 1;          ///< the sample value of full intensity, 1 to 65535
    bool plain = false;      ///< the samples are decimal numbers
    bool packedBits = false; ///< P4: eight pixels a byte
    bool oneIsBlack = false; ///< P1 and P4
    bool bilevel = false;    ///< two values and nothing between them: 1 bit a pixel
    qint64 pixelOffset = 0;  ///< bytes from the start of the file

    bool hasAlpha() const { return channels == 2 || channels == 4; }
    int bytesPerSample() const { return maxval > 255 ? 2 : 1; }
    /// Bytes of a row as stored; only for files that are not plain.
    qint64 rowBytes() const;
    int bitsPerPixel() const;
};

/// True when `head` (up to 1024 bytes) begins with P1 to P6, blanks or comments and a number, or with P7 and
/// a line of an arbitrary map's header.
bool isPnm(const QByteArray& head);

/// Reads the header of `source`. Damaged when a word is missing or no number, Unsupported for tuples that are
/// neither grey nor RGB.
Result<PnmLayout> readPnmLayout(const ByteSource& source);

} // namespace quorvia::engine
