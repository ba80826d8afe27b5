// How an image lies in a cell of the filmstrip, and the colours behind the cells. Arithmetic only.
#pragma once

#include <QColor>
#include <QRectF>
#include <QSize>

namespace quorvia::collections {

/// The back colour of the cell that follows one of the colour `present`.
QColor nextCellColor(const QColor& present);
/// The back colour of a selected cell.
QColor selectedCellColor();

/// An image on the working canvas, which has the proportions of a cell.
struct CellFit
{
    QSizeF canvas;  ///< twips
    QRectF picture; ///< twips from the canvas's corner; 50 of the canvas stay free around it
    QSize pixels;   ///< what the image is scaled to, in pixels; at least 1 each
};

/// Size in twips of the working canvas on a screen of `twipsPerPixel` twips a pixel.
QSizeF workingCanvas(double twipsPerPixel);

/// Fits an image of `image` pixels. `density` is the number of pixels that it may have for each of the
/// screen's: 1, or the device pixel ratio where twips count device-independent ones. What is all but as wide
/// or as high as the canvas fills it; what would be thinner than a pixel gets one.
CellFit fitCell(QSize image, double twipsPerPixel, double density = 1);

} // namespace quorvia::collections
