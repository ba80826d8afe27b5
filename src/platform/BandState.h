// What is remembered of a docking band, and the arithmetic that keeps it usable: plain values in
// device-independent pixels, no windows.
#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

namespace quorvia::platform {

/// Where a band stands, as the numbers that settings hold: 2 and 4 are of old, the others complete the row.
namespace dockingArea {
inline constexpr int left = 0;
inline constexpr int right = 1;
inline constexpr int top = 2;
inline constexpr int bottom = 3;
inline constexpr int floating = 4;
} // namespace dockingArea

constexpr bool isDockingArea(int number)
{
    return number >= dockingArea::left && number <= dockingArea::floating;
}

/// True for the sides where a band's width counts: left and right.
constexpr bool isUpright(int area)
{
    return area == dockingArea::left || area == dockingArea::right;
}

struct BandState
{
    bool visible = true;
    int area = dockingArea::left;
    int width = 240;                             ///< docked left or right, title bar and all
    int height = 180;                            ///< docked at the top or bottom, title bar and all
    std::optional<QPoint> floatingPosition = {}; ///< on the desktop; none before the first floating
    QSize floatingSize = {260, 360};
    bool operator==(const BandState&) const = default;
};

/// A band is never made narrower or lower than this.
inline constexpr int smallestBand = 60;
/// Of a floating band this much has to lie on a screen, beginning at its upper edge, for the user to take it.
inline constexpr QSize smallestGrip{48, 16};

/// `wanted`, which may come from damaged settings, with every value that cannot be used put right. An unknown
/// area, and a length that is not positive, become those of `fallback`; lengths end at smallestBand and at
/// the largest screen; a place off all `screens` moves to the nearest one. Without screens only the lengths
/// count.
BandState usableState(const BandState& wanted, const BandState& fallback, const QList<QRect>& screens);

/// The rectangle where a floating band comes up: left as it is while its upper edge can be gripped, else
/// moved wholly onto the nearest of `screens`; never larger than that screen.
QRect onScreen(QPoint position, QSize size, const QList<QRect>& screens);

/// The width or height that a docked band of the `wanted` one gets where `available` is left: some is kept
/// for the client area, but the band keeps smallestBand as long as there is that much.
int dockedExtent(int wanted, int available);

} // namespace quorvia::platform
