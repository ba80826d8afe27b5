// The colours that the indices in a WordPerfect graphic name.
#pragma once

#include "engine/codecs/wpg/WpgRecords.h"

#include <QColor>

#include <array>

namespace quorvia::engine {

class WpgPalette
{
  public:
    /// The colours that hold while a file names none: those of a VGA card after a reset, of which the first
    /// 16 are the EGA's.
    WpgPalette();

    /// Takes over the colours of the colour map record `content`.
    void read(const WpgFile& file, const WpgRecord& record, const ByteSource& source);

    QRgb color(int index) const { return m_colors[size_t(index & 0xFF)]; }
    /// The palette of a picture of `bits` (1 to 8) a pixel. One bit is black and white, whatever the larger
    /// map of the whole file says; a map of just two colours was made for it.
    QList<QRgb> colors(int bits) const;

  private:
    std::array<QRgb, 256> m_colors;
    int m_named = 0; ///< entries in the latest map
};

/// The palettes that hold at the records of a file. Cheap for records in their order: each colour map is then
/// read once; going back begins anew.
class WpgPalettes
{
  public:
    /// The palette at record `index` (from 0).
    const WpgPalette& at(const WpgFile& file, size_t index, const ByteSource& source);
    /// What all asking has cost so far, in filled pixels.
    double cost() const { return m_cost; }

  private:
    WpgPalette m_palette;
    size_t m_next = 0; ///< the first record that `m_palette` does not know
    double m_cost = 0;
};

} // namespace quorvia::engine
