#include "engine/Transforms.h"

#include "engine/Bands.h"
#include "engine/QuarterTurn.h"
#include "engine/Resample.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quorvia::engine {

namespace {

/// 0 to 3 quarter turns counter-clockwise for a multiple of 90 degrees, else -1.
int quarterTurns(double degrees)
{
    const double quarters = degrees / 90;
    if (quarters != std::floor(quarters))
        return -1;
    return static_cast<int>(quarters - 4 * std::floor(quarters / 4));
}

double radians(double degrees)
{
    return std::fmod(degrees, 360) * std::numbers::pi / 180;
}

/// Two premultiplied pixels mixed: `share` of `b`, 0 to 256.
QRgb mixed(QRgb a, QRgb b, unsigned share)
{
    const auto mix = [share](unsigned x, unsigned y) { return (x * (256 - share) + y * share + 128) >> 8; };
    return mix(a >> 24, b >> 24) << 24 | mix((a >> 16) & 255, (b >> 16) & 255) << 16 |
           mix((a >> 8) & 255, (b >> 8) & 255) << 8 | mix(a & 255, b & 255);
}

/// The colour at a point of an image of premultiplied pixels (pixel centres at halves), from the four pixels
/// around it; `fill` is outside.
QRgb sampled(const QImage& image, double x, double y, QRgb fill)
{
    const int left = static_cast<int>(std::floor(x - 0.5));
    const int top = static_cast<int>(std::floor(y - 0.5));
    const auto right = static_cast<unsigned>((x - 0.5 - left) * 256);
    const auto below = static_cast<unsigned>((y - 0.5 - top) * 256);
    const auto at = [&image, fill](int px, int py) {
        if (px < 0 || py < 0 || px >= image.width() || py >= image.height())
            return fill;
        return reinterpret_cast<const QRgb*>(image.constScanLine(py))[px];
    };
    return mixed(mixed(at(left, top), at(left + 1, top), right),
                 mixed(at(left, top + 1), at(left + 1, top + 1), right), below);
}

/// The whole image as premultiplied (or alpha-less) 32-bit pixels.
QImage asPixels(const QImage& image)
{
    const bool alpha = image.hasAlphaChannel();
    return image.convertToFormat(alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

/// Brings 32-bit pixels back to the format that an image with the facts `gray` and alpha has.
QImage settled(const QImage& pixels, bool gray)
{
    if (gray)
        return pixels.convertToFormat(QImage::Format_Grayscale8);
    return pixels.hasAlphaChannel() ? pixels.convertToFormat(QImage::Format_ARGB32) : pixels;
}

QImage turnedFreely(const QImage& image, double degrees, const QColor& fill)
{
    const double angle = radians(degrees);
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    QImage source = asPixels(image);
    QRgb around = fill.rgba();
    if (qAlpha(around) != 255 && !source.hasAlphaChannel())
        source = source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    around = qPremultiply(around);
    QImage result(rotatedSize(image.size(), degrees), source.format());
    if (source.isNull() || result.isNull())
        return {};
    uchar* bits = result.bits();
    const auto rows = [&](int, int from, int to) {
        for (int y = from; y < to; ++y) {
            auto* line = reinterpret_cast<QRgb*>(bits + y * result.bytesPerLine());
            const double dy = y + 0.5 - result.height() / 2.0;
            for (int x = 0; x < result.width(); ++x) {
                const double dx = x + 0.5 - result.width() / 2.0;
                line[x] = sampled(source, image.width() / 2.0 + dx * cosine - dy * sine,
                                  image.height() / 2.0 + dx * sine + dy * cosine, around);
            }
        }
    };
    const qint64 steps = qint64(result.width()) * result.height() * 8;
    inBands(result.height(), bandCount(result.height(), steps), rows);
    const bool grayFill = fill.alpha() == 255 && fill.red() == fill.green() && fill.green() == fill.blue();
    return settled(result, grayFill && isGrayByFormat(image));
}

Filter resizeFilter(int from, int to)
{
    return to < from ? Filter::Area : Filter::Bicubic;
}

/// `share` of 256 of the way from `value` to `goal`.
unsigned towards(unsigned value, unsigned goal, unsigned share)
{
    return (value * (256 - share) + goal * share + 128) >> 8;
}

constexpr int fullIntensity = 25; // so that 10 stands out and what is below it can still be seen

/// What the bevel does to the pixel at (x, y): how far it goes (0 to 256), and whether to the light.
struct Shade
{
    unsigned share;
    bool light;
};

Shade shadeAt(QSize size, int x, int y, bool raised, int width, int intensity)
{
    const int upperLeft = std::min(x, y);
    const int lowerRight = std::min(size.width() - 1 - x, size.height() - 1 - y);
    const int depth = std::min(upperLeft, lowerRight);
    if (depth >= width)
        return {0, false};
    const int whole = fullIntensity * width;
    const int share = (256 * intensity * (width - depth) + whole / 2) / whole;
    return {static_cast<unsigned>(share), (upperLeft <= lowerRight) == raised};
}

} // namespace

QSize rotatedSize(QSize size, double degrees)
{
    if (const int quarters = quarterTurns(degrees); quarters >= 0)
        return quarters % 2 == 0 ? size : size.transposed();
    const double cosine = std::abs(std::cos(radians(degrees)));
    const double sine = std::abs(std::sin(radians(degrees)));
    constexpr double slack = 1e-9; // what the sine of a round angle is off by
    return {static_cast<int>(std::ceil(size.width() * cosine + size.height() * sine - slack)),
            static_cast<int>(std::ceil(size.width() * sine + size.height() * cosine - slack))};
}

QImage rotated(const QImage& image, double degrees, const QColor& fill)
{
    if (image.isNull() || !std::isfinite(degrees))
        return image;
    const QImage plain = normalized(image);
    const int quarters = quarterTurns(degrees);
    return quarters >= 0 ? turned(plain, quarters) : turnedFreely(plain, degrees, fill);
}

QImage resized(const QImage& image, QSize size)
{
    if (image.isNull() || size.isEmpty())
        return {};
    QImage plain = normalized(image);
    if (plain.size() == size)
        return plain;
    const QImage pixels =
        resampled(plain, size, QRect(QPoint(), size), resizeFilter(plain.width(), size.width()),
                  resizeFilter(plain.height(), size.height()));
    return settled(pixels, isGrayByFormat(plain));
}

QImage bevelled(const QImage& image, int style, int width, int intensity)
{
    QImage result = normalized(image);
    const int bound = std::min(width, std::min(image.width(), image.height()) / 2);
    const int strength = std::min(intensity, fullIntensity);
    if (bound < 1 || strength < 1)
        return result;
    const bool gray = isGrayByFormat(result);
    if (gray)
        result.convertTo(QImage::Format_Grayscale8);
    else
        result.convertTo(result.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (result.isNull())
        return {};
    const auto paint = [&](uchar* line, int x, int y) {
        const Shade shade = shadeAt(result.size(), x, y, style == 1, bound, strength);
        const unsigned goal = shade.light ? 255 : 0;
        if (gray) {
            line[x] = static_cast<uchar>(towards(line[x], goal, shade.share));
            return;
        }
        QRgb& pixel = reinterpret_cast<QRgb*>(line)[x];
        pixel = (pixel & 0xff000000U) | towards((pixel >> 16) & 255, goal, shade.share) << 16 |
                towards((pixel >> 8) & 255, goal, shade.share) << 8 | towards(pixel & 255, goal, shade.share);
    };
    uchar* bits = result.bits();
    for (int y = 0; y < result.height(); ++y) {
        uchar* line = bits + y * result.bytesPerLine();
        const bool rim = y < bound || y >= result.height() - bound;
        const int leftEnd = rim ? result.width() : bound;
        for (int x = 0; x < leftEnd; ++x)
            paint(line, x, y);
        for (int x = rim ? result.width() : result.width() - bound; x < result.width(); ++x)
            paint(line, x, y);
    }
    return result;
}

} // namespace quorvia::engine
