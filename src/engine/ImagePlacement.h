// Where an image lies in the imaging control, as arithmetic over numbers: device pixels throughout, from the
// control's top left corner. Everything here is cheap.
#pragma once

#include "engine/Resample.h"

#include <QRect>
#include <QRegion>
#include <QSize>

namespace quorvia::engine {

/// ScaleMode 4: the image fills the control. Any other mode shows it at its zoom.
inline constexpr int scaleToControl = 4;

struct DisplaySettings
{
    int scaleMode = 0;
    int scaleOption = 0; ///< with scaleToControl: 0 keeps the proportions, any other value fills both axes
    double zoom = 1.0;
};

/// Where an image of `image` pixels is painted in a control of `control` pixels. At its zoom: from the top
/// left corner, at least 1 pixel a side. Empty when either size is.
QRect placedImage(QSize image, QSize control, const DisplaySettings& settings);

/// How `from` pixels of an axis are shown on `to`: averaged when made smaller, smooth up to 300%, crisp
/// above.
Filter displayFilter(int from, int to);

/// True when a picture of `decoded` pixels is enough to show a page of `full` pixels on `target` pixels.
bool coversTarget(QSize decoded, QSize full, QSize target);

/// The frame of a rubber band between two corners (image pixels, inclusive, in any order) of an image of
/// `image` pixels that lies in `target`: four rectangles one pixel wide, around the pixels taken in.
QRegion bandFrame(QPoint from, QPoint to, QSize image, QRect target);

/// Device pixels that `logical` (device-independent pixels) touches at device pixel ratio `ratio`.
QRect toDevicePixels(QRect logical, double ratio);
/// Device-independent pixels that `device` touches at device pixel ratio `ratio`.
QRect toLogicalPixels(QRect device, double ratio);

/// Twips (15 to a device-independent pixel) of `pixels` device pixels at device pixel ratio `ratio`, rounded.
int toTwips(int pixels, double ratio);

} // namespace quorvia::engine
