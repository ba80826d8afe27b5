// The filmstrip in numbers: cells, scroll range, what lies under a point, dragging. Lengths are twips.
#pragma once

#include <QPointF>
#include <QSize>
#include <QStringList>

#include <optional>

namespace quorvia::collections {

/// The most images of a strip that is painted as a whole. As StripLayout::maxDraw it marks such a strip.
inline constexpr int wholeStrip = 200;
/// Twips of one unit of the scroll bar of a whole strip.
inline constexpr int scrollUnit = 50;

/// What a layout begins with.
struct StripSpace
{
    QSize control;       ///< inner size of the control
    int stripHeight = 0; ///< height of the painted strip before the layout
    int barHeight = 0;   ///< of the scroll bar
    int count = 0;       ///< images
    int rows = 1;
};

struct StripLayout
{
    int maxDraw = wholeStrip; ///< cells that one painting pass may paint
    int columns = 0;          ///< of the painted strip
    QSize cell;
    QSize strip; ///< size of the painted strip
    bool barVisible = false;
    int barMaximum = 0; ///< in units of 50 twips for a whole strip, else in columns

    bool isWhole() const { return maxDraw == wholeStrip; }
};

/// The height of the painted strip above its scroll bar, if that is visible.
int stripHeight(int controlHeight, int barHeight, bool barVisible);

/// One of `rows` cells in a strip of `height`: 1.333 times as wide as high, at least 1 twip. Empty without
/// height.
QSize cellSize(int height, int rows);

/// The layout of a strip. One that cannot show all of its images at a time always has its bar.
StripLayout sizeStrip(const StripSpace& space);

/// The 0-based position of the image at `point` of the painted strip whose first column begins with the image
/// `firstIndex` (1-based, 0 for the beginning). Nothing where none of the `count` images lies.
std::optional<int> imageAt(QPointF point, QSize cell, int rows, int firstIndex, int count);

/// Where the cell of an image lies.
struct CellPlace
{
    int column = 0;
    int row = 0; ///< from 0
    bool operator==(const CellPlace&) const = default;
};

/// The place of the image at 0-based `position` in a strip that begins with the first image.
CellPlace placeOf(int position, int rows);

/// The value that the scroll bar at `value` takes so that the image at 1-based `position` is seen in a
/// control `controlWidth` wide; nothing when it is seen already. Counts a column for each image and 50 twips
/// to a unit, whatever rows and strip are.
std::optional<int> valueShowing(int position, int cellWidth, int controlWidth, int value);

/// A strip in the hand: where it lies, and from where the hand is measured.
struct StripDrag
{
    int anchorX = 0;    ///< screen x of the pointer at the press, pixels
    int anchorLeft = 0; ///< left edge of the strip at the press, moved on while the strip runs by itself
    int left = 0;       ///< left edge of the strip now
    bool operator==(const StripDrag&) const = default;
};

/// True when the pointer has gone far enough from `anchorX` (both screen x in pixels) for a drag.
bool isDrag(int anchorX, int x);

/// One step of a drag with the pointer at `x` of a screen of `screenWidth` pixels: near the screen's edges
/// the strip runs by itself, between them it follows the hand. It stays within the control; a strip narrower
/// than that stays at the left.
StripDrag dragged(StripDrag drag, int x, int screenWidth, int controlWidth, int stripWidth,
                  int twipsPerPixel);

/// The value of the scroll bar of a whole strip whose left edge lies at `left`.
int valueAtLeft(int left);

/// A short fingerprint of a list: its length and at most three of its names.
QString listKey(const QStringList& files);

} // namespace quorvia::collections
