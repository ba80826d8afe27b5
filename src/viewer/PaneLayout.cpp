#include "viewer/PaneLayout.h"

#include <algorithm>

namespace quorvia::viewer {

MainPanes layoutMain(QSize window, QSize toolbar)
{
    constexpr int gap = 10; // above the toolbar, and above the rule
    MainPanes panes;
    const int left = std::max(window.width() / 2 - toolbar.width() / 2, 0);
    panes.toolbar = QRect(QPoint(left, window.height() - toolbar.height()), toolbar);
    panes.rule = panes.toolbar.top() - gap;
    panes.docking = QRect(0, 0, window.width(), std::max(panes.rule - gap, 0));
    return panes;
}

std::optional<int> buttonTop(int right, const QRect& toolbar)
{
    constexpr int room = 150;
    constexpr int below = 40;
    if (right + room >= toolbar.left())
        return std::nullopt;
    return toolbar.top() + below;
}

TopPanes layoutTop(const TopState& state)
{
    constexpr int narrowWindow = 8000;
    constexpr int linkMargin = 100;
    constexpr int leastViewport = 100;
    TopPanes panes;
    const int width = state.size.width();
    const int height = state.size.height();
    int y = 0;
    if (state.windowWidth >= narrowWindow && (!state.listVisible || state.listArea == dockedOnTop)) {
        panes.filebar = QRect(0, 0, width, state.filebarHeight);
        y += state.filebarHeight;
    }
    panes.tabs = QRect(0, y, width, state.tabHeight);
    y += state.tabHeight;
    const auto below = [&](int top, int length) { return QRect(0, top, width, std::max(length, 0)); };
    const TabPane pane = state.interfaceFlag ? TabPane::Image : state.pane;
    switch (pane) {
    case TabPane::Information:
        panes.viewport = below(y, height - state.informationHeight - y);
        panes.information = below(panes.viewport.top() + panes.viewport.height(), state.informationHeight);
        break;
    case TabPane::Filmstrip: {
        // A strip stored for a higher window leaves the picture its least.
        const int room = std::max(height - y - state.splitterHeight - leastViewport, 0);
        const int strip = std::min(state.filmstripHeight, room);
        panes.viewport = below(y, height - strip - y - state.splitterHeight);
        panes.splitter = below(panes.viewport.top() + panes.viewport.height(), state.splitterHeight);
        panes.filmstrip = below(panes.splitter.top() + panes.splitter.height(), strip);
        break;
    }
    case TabPane::Capture:
        panes.viewport = below(y, height - state.captureHeight - y);
        panes.capture = below(panes.viewport.top() + panes.viewport.height(), state.captureHeight);
        break;
    case TabPane::Image:
        panes.viewport = below(y, height - y);
        break;
    }
    const QRect& strip = panes.filebar.isNull() ? panes.tabs : panes.filebar;
    panes.link = QPoint(width - state.link.width() - linkMargin,
                        std::max(strip.height() - state.link.height(), 0) / 2);
    return panes;
}

QRect layoutInside(QSize pane)
{
    constexpr int margin = 40;
    return {margin, margin, std::max(pane.width() - 2 * margin, 0), std::max(pane.height() - 2 * margin, 0)};
}

int splitterTop(int top, int viewportTop, int topHeight)
{
    constexpr int leastViewport = 100;
    constexpr int leastBelow = 1000;
    return std::max(std::min(top, topHeight - leastBelow), viewportTop + leastViewport);
}

int filmstripHeight(int splitterTop, int splitterHeight, int topHeight)
{
    return std::max(topHeight - splitterTop - splitterHeight, 0);
}

QSize windowForImage(QSize image, int toolbarHeight)
{
    constexpr int frame = 200;
    constexpr int tabs = 500;
    return {image.width() + frame, image.height() + toolbarHeight + frame + tabs};
}

} // namespace quorvia::viewer
