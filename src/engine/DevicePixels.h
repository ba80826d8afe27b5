// Painting in the pixels of the screen, where the toolkit counts in its own.
#pragma once

class QPainter;

namespace quorvia::engine {

/// Makes `painter`, just begun on a widget of device pixel ratio `ratio`, draw in device pixels from the
/// widget's corner; returns nothing to undo. At a fractional ratio the corner lies between two pixels, and
/// the nearest one is taken.
void useDevicePixels(QPainter& painter, double ratio);

} // namespace quorvia::engine
