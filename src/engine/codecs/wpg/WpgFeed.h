// What libwpg is given of a version 2 file: a copy of its records that is safe to parse.
#pragma once

#include "engine/codecs/wpg/WpgCanvas.h"
#include "engine/codecs/wpg/WpgPalette.h"
#include "engine/codecs/wpg/WpgRecords.h"

#include <QImage>

#include <vector>

namespace quorvia::engine {

struct WpgFeed
{
    QByteArray bytes;            ///< a whole file; empty when the records are too many
    std::vector<size_t> bitmaps; ///< records whose pixels stand in `bytes` as one pixel of colour number i
    bool partial = false;        ///< something was left out that could not be drawn
};

/// Copies the records of `file` (version 2).
WpgFeed wpgFeed(const WpgFile& file, const ByteSource& source);

/// Decodes the bitmap that stands in `feed` as colour number `index`; null when it cannot be decoded.
/// `palettes` goes along with the bitmaps, which libwpg meets in the file's order.
QImage feedBitmap(const WpgFile& file, const ByteSource& source, const WpgFeed& feed, int index,
                  WpgPalettes& palettes, WpgCanvas& canvas);

} // namespace quorvia::engine
