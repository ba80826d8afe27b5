#include "viewer/ImageLayout.h"

#include <algorithm>
#include <cmath>

namespace quorvia::viewer {

namespace {

/// The corner of something of `size` in the middle of `panel`; along a side that is larger than the panel, 0.
QPoint centredCorner(QSize panel, QSize size)
{
    return {std::max(0, panel.width() / 2 - size.width() / 2),
            std::max(0, panel.height() / 2 - size.height() / 2)};
}

/// `image` at `zoom`; a side beyond what an int of twips holds stays at that.
QSize zoomed(QSize image, double zoom)
{
    constexpr double most = 1 << 30;
    const auto side = [zoom, most](int length) {
        return static_cast<int>(std::lround(std::min(length * zoom, most)));
    };
    return {side(image.width()), side(image.height())};
}

QRect centred(QSize panel, QSize size)
{
    return {centredCorner(panel, size), size};
}

} // namespace

ImagePlacement layoutImage(const ViewState& view)
{
    if (view.zoom != 1.0)
        return {centred(view.panel, zoomed(view.image, view.zoom)), 0};
    if (!view.fitToWindow)
        return {centred(view.panel, view.image), 0};
    // In a fit the control is always as large as the panel. It shows a small image from its corner, so the
    // corner goes where the image is to begin.
    const bool smaller = view.panel.width() > view.image.width() && view.panel.height() > view.image.height();
    if (view.fileOpen && smaller)
        return {QRect(centredCorner(view.panel, view.image), view.panel), 0};
    return {QRect(QPoint(0, 0), view.panel), 4};
}

QRectF paintedPicture(const ImagePlacement& placement, QSize image, double zoom)
{
    constexpr int fitted = 4;
    const QRectF control(placement.rectangle);
    if (placement.scaleMode != fitted)
        return {control.topLeft(), QSizeF(image) * zoom};
    QRectF picture(QPointF(), QSizeF(image).scaled(control.size(), Qt::KeepAspectRatio));
    picture.moveCenter(control.center());
    return picture;
}

} // namespace quorvia::viewer
