// Unpacks the rows of a bitmap in a Macintosh picture.
#pragma once

#include "engine/codecs/pict/PictReader.h"
#include "engine/codecs/pict/PictScan.h"

#include <QImage>

#include <vector>

namespace quorvia::engine {

class PictRows
{
  public:
    /// Reads the rows of `bitmap`, which must outlive this and is not Embedded.
    PictRows(const ByteSource& source, const PictBitmap& bitmap);

    /// Unpacks the next row. False when the file ends in it; what was there is in the row, the rest is 0.
    bool next();
    /// Colour of pixel `x` of the row, opaque unless the bitmap has alpha.
    QRgb color(int x) const;
    /// Value of pixel `x` of a bitmap with a palette.
    int index(int x) const;
    /// Offset behind the last row.
    qint64 position() const { return m_reader.position(); }

  private:
    bool unpack(int unit);

    PictReader m_reader;
    const PictBitmap& m_bitmap;
    std::vector<uchar> m_row;
};

/// Passes over the rows of `bitmap` from `reader` on without unpacking them.
void skipPictRows(PictReader& reader, const PictBitmap& bitmap);

/// Bytes of one unpacked row of `bitmap` as stored, without filling for Planes and NoPad.
int pictRowLength(const PictBitmap& bitmap);

/// True when the lengths before packed rows are words. Programs disagree for rows of 201 to 250 bytes: there
/// the first row, which must unpack to its exact length, tells.
bool hasWideCounts(const ByteSource& source, const PictBitmap& bitmap);

} // namespace quorvia::engine
