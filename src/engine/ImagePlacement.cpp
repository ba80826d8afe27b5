#include "engine/ImagePlacement.h"

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

namespace {

/// One side at `zoom`, bounded so that sums of coordinates stay inside an int.
int zoomedSide(int pixels, double zoom)
{
    constexpr double most = 1 << 29;
    return static_cast<int>(std::lround(std::clamp(pixels * zoom, 1.0, most)));
}

QSize keptProportions(QSize image, QSize control)
{
    return image.scaled(control, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QRect touched(QRect rect, double factor)
{
    constexpr double slack = 1e-6; // a product such as 10 * 1.1 must not reach into the next pixel
    const int left = static_cast<int>(std::floor(rect.x() * factor + slack));
    const int top = static_cast<int>(std::floor(rect.y() * factor + slack));
    const int right = static_cast<int>(std::ceil((rect.x() + rect.width()) * factor - slack));
    const int bottom = static_cast<int>(std::ceil((rect.y() + rect.height()) * factor - slack));
    return {left, top, right - left, bottom - top};
}

/// The pixels [begin, end) of an axis that image pixels `a` to `b`, inclusive, take up.
struct Span
{
    int begin;
    int end;
};

Span shown(int a, int b, int image, int origin, int length)
{
    const auto place = [image, length](qint64 pixel) { return static_cast<int>(pixel * length / image); };
    const int begin = place(std::min(a, b));
    return {origin + begin, origin + std::max(place(qint64(std::max(a, b)) + 1), begin + 1)};
}

} // namespace

QRect placedImage(QSize image, QSize control, const DisplaySettings& settings)
{
    if (image.isEmpty() || control.isEmpty())
        return {};
    if (settings.scaleMode != scaleToControl)
        return {0, 0, zoomedSide(image.width(), settings.zoom), zoomedSide(image.height(), settings.zoom)};
    if (settings.scaleOption != 0)
        return {QPoint(), control};
    const QSize fitted = keptProportions(image, control);
    return {QPoint((control.width() - fitted.width()) / 2, (control.height() - fitted.height()) / 2), fitted};
}

Filter displayFilter(int from, int to)
{
    if (to < from)
        return Filter::Area;
    return to > 3 * qint64(from) ? Filter::Nearest : Filter::Bicubic;
}

bool coversTarget(QSize decoded, QSize full, QSize target)
{
    return decoded == full || (decoded.width() >= target.width() && decoded.height() >= target.height());
}

QRegion bandFrame(QPoint from, QPoint to, QSize image, QRect target)
{
    if (image.isEmpty() || target.isEmpty())
        return {};
    const Span across = shown(from.x(), to.x(), image.width(), target.x(), target.width());
    const Span down = shown(from.y(), to.y(), image.height(), target.y(), target.height());
    const int width = across.end - across.begin;
    const int height = down.end - down.begin;
    QRegion frame(across.begin, down.begin, width, 1);
    frame += QRect(across.begin, down.end - 1, width, 1);
    frame += QRect(across.begin, down.begin, 1, height);
    frame += QRect(across.end - 1, down.begin, 1, height);
    return frame;
}

QRect toDevicePixels(QRect logical, double ratio)
{
    return touched(logical, ratio);
}

QRect toLogicalPixels(QRect device, double ratio)
{
    return touched(device, 1 / ratio);
}

int toTwips(int pixels, double ratio)
{
    constexpr double twipsPerPixel = 15;
    return static_cast<int>(std::lround(pixels * twipsPerPixel / ratio));
}

} // namespace quorvia::engine
