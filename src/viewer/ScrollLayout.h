// The two scroll bars of the viewport: when they show, how far they go and where they stand. Plain
// arithmetic; lengths in twips, values in device pixels of the screen.
#pragma once

#include <QRect>
#include <QSize>
#include <QSizeF>

namespace quorvia::viewer {

/// What a bar says of itself.
struct BarState
{
    int value = 0;
    int maximum = 1;
    bool visible = false;
    bool operator==(const BarState&) const = default;
};

struct ScrollState
{
    QSize panel;   ///< scale size of the viewport panel
    QSize control; ///< size of the image control
    bool fitToWindow = true;
    int verticalWidth = 0;    ///< cross size of the vertical bar
    int horizontalHeight = 0; ///< cross size of the horizontal bar
    QSizeF twipsPerPixel;     ///< of the screen
    BarState vertical;        ///< before the layout
    BarState horizontal;
};

struct ScrollLayout
{
    BarState vertical;
    BarState horizontal;
    QRect verticalPlace; ///< in the panel
    QRect horizontalPlace;
    bool operator==(const ScrollLayout&) const = default;
};

/// Both bars for the present panel and control. A bar that shows keeps its relative position; in a fit none
/// shows. With both visible the corner stays free.
ScrollLayout layoutScrollBars(const ScrollState& state);

/// Where the image control's edge goes for a bar's `value`: to the left of or above the panel.
int scrolledEdge(int value, double twipsPerPixel);

} // namespace quorvia::viewer
