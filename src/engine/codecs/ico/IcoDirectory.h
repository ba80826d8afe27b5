// The directory of an icon file and the headers of its entries. Cheap: a few bytes an entry are read.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QSize>

#include <vector>

namespace quorvia::engine {

struct IcoEntry
{
    qint64 offset = 0; ///< bytes from the start of the file
    bool png = false;  ///< a PNG file; else a bitmap without file header
    QSize size;        ///< pixels, by the entry's own header
    int bitsPerPixel = 0;
    bool masked = true; ///< a bitmap's mask of transparent pixels follows its rows
};

/// True when `head` begins with a directory of icons whose entries all make sense. When the file is `named`
/// as an icon or cursor, one possible entry is enough, and cursors are told too: without that name a TGA may
/// begin with the same bytes.
bool isIco(const QByteArray& head, bool named);

/// The entries whose headers can be read and are within the limits, the best first: the largest area, then
/// the most bits, then the order in the file. Damaged when there is none; TooLarge or Unsupported when that
/// was the reason.
Result<std::vector<IcoEntry>> readIcoDirectory(const ByteSource& source);

} // namespace quorvia::engine
