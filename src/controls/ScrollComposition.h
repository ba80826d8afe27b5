// Puts a scroll bar's track and thumb together from the pictures of a skin, on whole device pixels.
#pragma once

#include "controls/ScrollSkin.h"

class QPainter;

namespace quorvia::controls {

/// The device pixels that one unit of `painter` has.
qreal paintRatio(const QPainter& painter);

/// Paints the background over `length` device-independent pixels from the painter's origin (and up to a tile
/// beyond: the surface cuts it off), and the arrows over its ends. `painter` is left as it was.
void paintTrack(QPainter& painter, ScrollSkin& skin, Qt::Orientation orientation, int length,
                SkinState nearArrow, SkinState farArrow);

/// Paints a thumb of `length` device-independent pixels from the painter's origin in the same way: the fill,
/// the ends over it, the grip in the middle. The pictures hold the track's background beside the thumb.
void paintThumb(QPainter& painter, ScrollSkin& skin, Qt::Orientation orientation, int length,
                SkinState state);

} // namespace quorvia::controls
