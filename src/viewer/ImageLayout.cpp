#include "viewer/ImageLayout.h"

#include <algorithm>

namespace quorvia::viewer {

namespace {

/// A rectangle of `size` in the middle of `panel`; a side that is larger than the panel begins at 0.
QRect centred(QSize panel, QSize size)
{
    const int left = std::max(0, panel.width() / 2 - size.width() / 2);
    const int top = std::max(0, panel.height() / 2 - size.height() / 2);
    return {QPoint(left, top), size};
}

} // namespace

ImagePlacement layoutImage(const ViewState& view)
{
    if (view.zoom != 1.0)
        return {centred(view.panel, view.image * view.zoom), 0};
    if (!view.fitToWindow)
        return {centred(view.panel, view.image), 0};
    // In a fit the control is always as large as the panel; a small image is centred in it by the control.
    const bool smaller = view.panel.width() > view.image.width() && view.panel.height() > view.image.height();
    return {QRect(QPoint(0, 0), view.panel), view.fileOpen && smaller ? 0 : 4};
}

} // namespace quorvia::viewer
