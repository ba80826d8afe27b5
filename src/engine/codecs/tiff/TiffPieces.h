// A TIFF page as pieces that may be decoded in any order: tiles, compressed strips, and parts of strips that
// are not compressed. Only arithmetic.
#pragma once

#include "engine/codecs/tiff/TiffLayout.h"

namespace quorvia::engine {

/// Some rows of a strip or tile, and where they are shown.
struct TiffPiece
{
    quint32 strile = 0;
    int first = 0; ///< row of the strile
    int rows = 0;  ///< that are shown; none when the strile ends outside the page
    int x = 0;     ///< column of the page
    int y = 0;     ///< row of the page
};

class TiffPieces
{
  public:
    /// `layout`, which must outlive this, has striles whose rows of blocks take `rowBytes` (at least 1) when
    /// decoded.
    TiffPieces(const TiffLayout& layout, qint64 rowBytes);

    qint64 count() const { return strilesPerPlane() * m_perStrile; }
    /// The piece `index` (from 0).
    TiffPiece at(qint64 index) const;
    /// Rows of the tallest piece.
    int tallest() const { return m_step; }
    qint64 strilesPerPlane() const { return m_across * m_down; }
    /// False when two pieces may write to the same byte of a picture of 1 bit.
    bool areApart() const { return m_across == 1 || m_layout.strile.width() % 8 == 0; }

  private:
    const TiffLayout& m_layout;
    qint64 m_across;
    qint64 m_down;
    qint64 m_perStrile;
    int m_step;
};

} // namespace quorvia::engine
