// Where the image control stands in the viewport: plain arithmetic in twips.
#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>

namespace quorvia::viewer {

struct ViewState
{
    QSize panel;       ///< scale size of the viewport panel, twips
    QSize image;       ///< the image's size at 100%, twips
    double zoom = 1.0; ///< 1.0 is 100%
    bool fitToWindow = true;
    bool fileOpen = false;
};

struct ImagePlacement
{
    QRect rectangle;   ///< of the image control inside the panel, twips
    int scaleMode = 0; ///< 4: the image fills the control; 0: at its zoom
    bool operator==(const ImagePlacement&) const = default;
};

/// The place of the image control. Any zoom but 1 overrides the fit; at zoom 1 an image smaller than the
/// panel in both directions stands centred at its natural size, so that a fit never enlarges.
ImagePlacement layoutImage(const ViewState& view);

/// Where a picture of `image` twips is painted in a control at `placement`: in the middle, as large as its
/// proportions allow, in mode 4, else from the control's corner on at `zoom`. In the panel, twips.
QRectF paintedPicture(const ImagePlacement& placement, QSize image, double zoom);

} // namespace quorvia::viewer
