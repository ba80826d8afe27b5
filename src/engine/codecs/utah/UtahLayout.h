// The header of a Utah run-length file. Cheap: the fixed 15 bytes, the background and the colour map.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRgb>

#include <array>
#include <vector>

namespace quorvia::engine {

struct UtahLayout
{
    QSize size;
    int channels = 1; ///< without alpha: 1 or 3
    bool hasAlpha = false;
    std::array<uchar, 3> background = {}; ///< what no code draws
    /// Colour map of one channel or three, 256 entries each; empty for none.
    std::vector<std::array<uchar, 256>> map;
    qint64 codesOffset = 0; ///< bytes from the start of the file

    /// One channel that the colour map makes a palette of.
    bool isIndexed() const { return channels == 1 && map.size() == 3; }
    int bitsPerPixel() const { return (channels + (hasAlpha ? 1 : 0)) * 8; }
    QImage::Format format() const;
    QList<QRgb> palette() const;
};

/// True when `head` begins with the mark.
bool isUtah(const QByteArray& head);

/// Reads the header of `source`. Damaged when it is cut short, Unsupported for other channels than grey or
/// RGB, each of 8 bits.
Result<UtahLayout> readUtahLayout(const ByteSource& source);

} // namespace quorvia::engine
