#include "viewer/ZoomSteps.h"

#include "app/Twips.h"

#include <algorithm>
#include <cmath>

namespace quorvia::viewer {

namespace {

constexpr double fineStep = 0.2;
constexpr double coarseStep = 2.0;
constexpr double lowestZoom = 0.2;
constexpr double highestRectangleZoom = 10;

/// Sums of steps of 0.2 as they are meant: ten of them are 2, and down again to exactly 1.
double withoutRoundingError(double zoom)
{
    constexpr double grain = 1e4;
    return std::round(zoom * grain) / grain;
}

/// A bar's value; far beyond any bar stays far beyond.
int barValue(double value)
{
    constexpr double farthest = 1 << 30;
    return int(std::lround(std::clamp(value, -farthest, farthest)));
}

} // namespace

double zoomedIn(double zoom)
{
    return withoutRoundingError(zoom + (zoom >= coarseStep ? coarseStep : fineStep));
}

double zoomedOut(double zoom)
{
    const double less = zoom - (zoom > coarseStep ? coarseStep : fineStep);
    return std::max(withoutRoundingError(less), lowestZoom);
}

QPoint imagePixelAt(QPointF position, QSizeF twipsPerPixel, double zoom)
{
    const auto pixel = [zoom](double length, double twips) {
        return int(std::floor(length * app::twipsPerPixel / twips / zoom));
    };
    return {pixel(position.x(), twipsPerPixel.width()), pixel(position.y(), twipsPerPixel.height())};
}

QPoint clampedPixel(QPoint pixel, QSize image)
{
    return {std::clamp(pixel.x(), 0, std::max(image.width() - 1, 0)),
            std::clamp(pixel.y(), 0, std::max(image.height() - 1, 0))};
}

std::optional<RectangleZoom> zoomOnto(QPoint corner, QPoint other, QSizeF panel)
{
    const int left = std::min(corner.x(), other.x());
    const int top = std::min(corner.y(), other.y());
    const double width = std::abs(double(other.x()) - corner.x());
    const double height = std::abs(double(other.y()) - corner.y());
    if (width <= 0 || height <= 0 || left < 0 || top < 0 || panel.isEmpty())
        return std::nullopt;
    const double across = panel.width() / width;
    const double down = panel.height() / height;
    const double zoom = std::min({across, down, highestRectangleZoom});
    // What is left of the panel beside the rectangle goes to both its sides.
    const auto centred = [zoom](double edge, double room, double length) {
        return (edge - (room - length * zoom) / (2 * zoom)) * zoom;
    };
    if (down < across)
        return RectangleZoom{zoom, barValue(centred(left, panel.width(), width)), barValue(top * zoom)};
    return RectangleZoom{zoom, barValue(left * zoom), barValue(centred(top, panel.height(), height))};
}

} // namespace quorvia::viewer
