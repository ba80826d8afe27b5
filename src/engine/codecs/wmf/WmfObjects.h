// The drawing tools that a metafile makes, selects and deletes by number, as plain values.
#pragma once

#include "engine/codecs/wmf/WmfRecords.h"

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QRect>

#include <memory>
#include <variant>
#include <vector>

namespace quorvia::engine {

/// A colour as stored: blue, green, red in the low three bytes, or the number of a palette entry.
using WmfColor = quint32;

/// Keeps bytes of WmfMemory taken while a copy of it lives.
using WmfHold = std::shared_ptr<const void>;

/// The bytes that the objects and saved contexts of one file may hold together.
class WmfMemory
{
  public:
    /// Takes `bytes` until the last copy of the hold is gone; null when fewer are left.
    WmfHold take(qint64 bytes);

  private:
    static constexpr qint64 mostBytes = qint64(64) << 20; ///< far more than drawings have

    std::shared_ptr<qint64> m_left = std::make_shared<qint64>(mostBytes);
};

struct WmfPalette
{
    QList<QRgb> entries;
    WmfHold hold = {};
};

/// A palette is changed in place, for all that have selected it.
using WmfSharedPalette = std::shared_ptr<WmfPalette>;

/// `color` as an opaque colour; numbers are looked up in `palette`.
QRgb rgbOf(WmfColor color, const WmfPalette& palette);

enum class WmfLine { Solid, Dash, Dot, DashDot, DashDotDot, None, InsideFrame };

struct WmfPen
{
    WmfLine line = WmfLine::Solid;
    int width = 0; ///< units; 0 is one pixel
    WmfColor color = 0;
    int capsAndJoins = 0; ///< the stored style: 0x100 square and 0x200 flat ends, 0x1000 bevel, 0x2000 mitre
};

struct WmfBrush
{
    enum class Kind { None, Solid, Hatch, Tile };
    Kind kind = Kind::Solid;
    WmfColor color = 0xFFFFFF;
    int hatch = 0; ///< 0 level, 1 upright, 2 falling, 3 rising, 4 cross, 5 slanting cross
    QImage tile;   ///< RGB32, repeated from the top left of the picture, no larger than it
    WmfHold hold = {};
    bool twoColored = false; ///< the tile's black and white stand for text and background colour
};

struct WmfFont
{
    int height = 0;     ///< units; above 0 the height of a line, below 0 of the letters' em
    int width = 0;      ///< mean width of a letter in units; 0 for the natural one
    int escapement = 0; ///< tenths of a degree against the clock
    int weight = 0;     ///< 400 regular, 700 bold
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    int charset = 0;
    int pitchAndFamily = 0;
    QByteArray face; ///< in the charset of the maker

    bool operator==(const WmfFont&) const = default;
};

struct WmfRegion
{
    QList<QRect> rects; ///< units
    WmfHold hold = {};
};

/// What was made, but is of no use here: keeps its number.
struct WmfOther
{
};

using WmfObject =
    std::variant<std::monostate, WmfPen, WmfBrush, WmfFont, WmfSharedPalette, WmfRegion, WmfOther>;

/// Objects by number. A new one takes the lowest number that is free; those that no record could select any
/// more, since numbers have 16 bits, are not kept.
class WmfObjects
{
  public:
    void add(WmfObject object);
    void remove(int number);
    /// The object, or null when there is none of that number.
    const WmfObject* find(int number) const;
    /// The same, when it is a `T`.
    template <class T>
    T* findAs(int number)
    {
        return number >= 0 && size_t(number) < m_slots.size() ? std::get_if<T>(&m_slots[size_t(number)])
                                                              : nullptr;
    }

  private:
    std::vector<WmfObject> m_slots;
    size_t m_lowestFree = 0; ///< no slot before it is free
};

/// Objects from the parameters of the records that make them.
WmfPen penOf(const WmfParams& params);
WmfBrush brushOf(const WmfParams& params);
WmfFont fontOf(const WmfParams& params);
WmfPalette paletteOf(const WmfParams& params);
WmfRegion regionOf(const WmfParams& params);

/// Overwrites entries of `palette` from the parameters of a record: first entry, count, entries.
void setPaletteEntries(WmfPalette& palette, const WmfParams& params);

/// The 8 x 8 pixels of hatch `hatch` in `line` over `ground` (ARGB32 premultiplied; may be clear).
QImage hatchTile(int hatch, QRgb line, QRgb ground);

} // namespace quorvia::engine
