#include "platform/BandState.h"

#include <algorithm>

namespace quorvia::platform {

namespace {

constexpr int keptForClient = 80;
constexpr int largestWithoutScreens = 16384;
constexpr int farthest = 1 << 20; // beyond any desktop, and far from where sums of coordinates overflow

QSize largestScreen(const QList<QRect>& screens)
{
    QSize largest;
    for (const QRect& screen : screens)
        largest = largest.expandedTo(screen.size());
    return screens.isEmpty() ? QSize(largestWithoutScreens, largestWithoutScreens) : largest;
}

int usableLength(int wanted, int fallback, int largest)
{
    const int length = wanted > 0 ? wanted : fallback;
    return std::max(std::min(length, largest), smallestBand);
}

QPoint nearerThan(int limit, QPoint point)
{
    return {std::clamp(point.x(), -limit, limit), std::clamp(point.y(), -limit, limit)};
}

bool canBeGripped(const QRect& band, const QList<QRect>& screens)
{
    const QRect upperEdge(band.topLeft(), QSize(band.width(), smallestGrip.height()));
    return std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        const QRect seen = screen.intersected(upperEdge);
        return seen.width() >= std::min(smallestGrip.width(), band.width()) &&
               seen.height() >= smallestGrip.height();
    });
}

QPoint nearestIn(const QRect& area, QPoint point)
{
    return {std::clamp(point.x(), area.left(), area.right()),
            std::clamp(point.y(), area.top(), area.bottom())};
}

QRect nearestScreen(const QRect& band, const QList<QRect>& screens)
{
    const QPoint upperMiddle(band.left() + band.width() / 2, band.top());
    const auto squaredDistance = [&](const QRect& screen) {
        const QPointF way = upperMiddle - nearestIn(screen, upperMiddle);
        return QPointF::dotProduct(way, way);
    };
    return *std::min_element(screens.begin(), screens.end(), [&](const QRect& one, const QRect& other) {
        return squaredDistance(one) < squaredDistance(other);
    });
}

} // namespace

QRect onScreen(QPoint position, QSize size, const QList<QRect>& screens)
{
    const QSize largest = largestScreen(screens);
    QRect band(nearerThan(farthest, position),
               QSize(usableLength(size.width(), smallestBand, largest.width()),
                     usableLength(size.height(), smallestBand, largest.height())));
    if (screens.isEmpty())
        return band;
    const QRect screen = nearestScreen(band, screens);
    band.setSize(band.size().boundedTo(screen.size()));
    if (canBeGripped(band, screens))
        return band;
    const QRect corners(screen.topLeft(), screen.size() - band.size() + QSize(1, 1));
    band.moveTopLeft(nearestIn(corners, band.topLeft()));
    return band;
}

BandState usableState(const BandState& wanted, const BandState& fallback, const QList<QRect>& screens)
{
    const QSize largest = largestScreen(screens);
    BandState state = wanted;
    if (!isDockingArea(wanted.area))
        state.area = fallback.area;
    state.width = usableLength(wanted.width, fallback.width, largest.width());
    state.height = usableLength(wanted.height, fallback.height, largest.height());
    state.floatingSize = {
        usableLength(wanted.floatingSize.width(), fallback.floatingSize.width(), largest.width()),
        usableLength(wanted.floatingSize.height(), fallback.floatingSize.height(), largest.height())};
    if (wanted.floatingPosition) {
        const QRect rect = onScreen(*wanted.floatingPosition, state.floatingSize, screens);
        state.floatingPosition = rect.topLeft();
        state.floatingSize = rect.size();
    }
    return state;
}

int dockedExtent(int wanted, int available)
{
    const int most = std::max(available - keptForClient, std::min(smallestBand, available));
    return std::max(std::min(wanted, most), 0);
}

} // namespace quorvia::platform
