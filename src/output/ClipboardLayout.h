// What of a picture the clipboard preview shows, and with which scroll bars: plain arithmetic. Lengths in
// twips.
#pragma once

#include <QSize>

namespace quorvia::output {

/// How picture, area and bars of the preview stand.
struct ClipboardView
{
    QSize area;             ///< of the viewing area once the bars have their room
    bool hasAcross = false; ///< the lying bar shows
    bool hasDown = false;   ///< the upright bar shows
    int maxAcross = 0;      ///< highest value of the lying bar; 0 while it is hidden
    int maxDown = 0;        ///< the same of the upright one
    bool stretched = false; ///< the picture is painted at the whole size of the area, in place of itself
    bool operator==(const ClipboardView&) const = default;
};

/// The view with scroll bars of `thickness`: a picture of `clip` at its natural size within `room`. A bar
/// that comes up takes its thickness from the area, which can bring up the other one as well. Each maximum
/// lets the picture be scrolled 200 twips beyond its end.
ClipboardView scrollBarView(QSize clip, QSize room, int thickness);

/// The view without bars: a picture that is wider or taller than `room` is stretched to it, proportions and
/// all; one that fits keeps its natural size.
ClipboardView aspectResizeView(QSize clip, QSize room);

/// The size of a picture of `pixels` on a screen with `ratio` device pixels to one of the program's. Rounded
/// upwards, so that no pixel is beyond reach.
QSize clipSize(QSize pixels, double ratio);

/// The same way back: device pixels for a size in twips, rounded upwards.
QSize devicePixels(QSize twips, double ratio);

} // namespace quorvia::output
