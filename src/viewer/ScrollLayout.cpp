#include "viewer/ScrollLayout.h"

#include <algorithm>
#include <cmath>

namespace quorvia::viewer {

namespace {

/// `before` for a control that stands out of the panel by `excess` twips; `across` is the other bar's cross
/// size, by which the way is longer, so that the far edge comes clear of it.
BarState laidOut(const BarState& before, int excess, int across, double twipsPerPixel)
{
    BarState bar = before;
    bar.visible = excess > 0;
    if (!bar.visible)
        return bar;
    const double ratio = double(before.value) / std::max(before.maximum, 1);
    bar.maximum = std::max(1, int(std::lround((double(excess) + across) / twipsPerPixel)));
    bar.value = std::clamp(int(std::lround(bar.maximum * ratio)), 0, bar.maximum);
    return bar;
}

} // namespace

ScrollLayout layoutScrollBars(const ScrollState& state)
{
    ScrollLayout layout{state.vertical, state.horizontal, {}, {}};
    layout.vertical.visible = false;
    layout.horizontal.visible = false;
    if (state.fitToWindow)
        return layout;
    layout.vertical = laidOut(state.vertical, state.control.height() - state.panel.height(),
                              state.horizontalHeight, state.twipsPerPixel.height());
    layout.horizontal = laidOut(state.horizontal, state.control.width() - state.panel.width(),
                                state.verticalWidth, state.twipsPerPixel.width());
    const int corner = layout.vertical.visible && layout.horizontal.visible ? state.horizontalHeight : 0;
    layout.verticalPlace = QRect(state.panel.width() - state.verticalWidth, 0, state.verticalWidth,
                                 std::max(state.panel.height() - corner, 0));
    layout.horizontalPlace =
        QRect(0, state.panel.height() - state.horizontalHeight, state.panel.width(), state.horizontalHeight);
    return layout;
}

int scrolledEdge(int value, double twipsPerPixel)
{
    return -int(std::lround(value * twipsPerPixel));
}

} // namespace quorvia::viewer
