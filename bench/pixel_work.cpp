// Times the engine's work on pixels against yardsticks, in turn, and prints medians and ratios. Uses its
// control offscreen: the time of a repaint is that of the paint itself, without a display's.
#include "engine/ColorCount.h"
#include "engine/ImageEngine.h"
#include "engine/Resample.h"

#include <QApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

using namespace quorvia::engine;

namespace {

using Clock = std::chrono::steady_clock;
using Step = std::function<void()>;

double milliseconds(const Step& step)
{
    const auto begin = Clock::now();
    step();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + long(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Runs both in turn; prints their medians, the ratio and what it is meant to be.
void compare(const char* what, const Step& ours, const char* against, const Step& yardstick, double aim,
             int runs)
{
    std::vector<double> mine;
    std::vector<double> theirs;
    for (int i = -2; i < runs; ++i) {
        const double a = milliseconds(ours);
        const double b = milliseconds(yardstick);
        if (i >= 0) {
            mine.push_back(a);
            theirs.push_back(b);
        }
    }
    const double ratio = median(mine) / median(theirs);
    std::printf("%-46s %7.2f ms  %-34s %7.2f ms  ratio %.2f (aim %.2f)\n", what, median(mine), against,
                median(theirs), ratio, aim);
}

/// Soft slopes with noise, as a photograph has.
QImage photograph(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    std::minstd_rand random(7);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const auto noise = static_cast<int>(random() & 0x0f0f0f);
            line[x] = qRgb(x * 220 / width + (noise & 15), y * 220 / height + (noise >> 8 & 15),
                           (x + y) * 220 / (width + height) + (noise >> 16 & 15));
        }
    }
    return image;
}

/// The largest difference of a channel between two images of one size.
int difference(const QImage& a, const QImage& b)
{
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return most;
}

/// A control of 1600 x 1000 that an image larger than it is moved under, as panning at 100% does.
class Panned
{
  public:
    explicit Panned(const QImage& image) : m_engine(std::make_shared<ImageLoader>(), &m_panel)
    {
        m_panel.resize(1600, 1000);
        m_engine.SetPicture(image);
        m_engine.resize(image.size());
        m_panel.show();
        step(0);
    }

    /// Moves by a few pixels and paints what the panel shows.
    void step(int number)
    {
        const QSize room = m_engine.size() - m_panel.size();
        m_engine.move(-(room.width() / 3 + number % 7 * 13), -(room.height() / 3 + number % 5 * 11));
        QCoreApplication::processEvents();
    }

    /// Paints all of what the panel shows, of which nothing stands ready.
    void repaintAll(int number)
    {
        m_engine.SetBackColor(number % 2 != 0 ? Qt::black : Qt::white);
        QCoreApplication::processEvents();
    }

  private:
    QWidget m_panel;
    ImageEngine m_engine;
};

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 21;
    {
        const QImage image = photograph(6000, 4000);
        std::vector<uchar> copy(static_cast<size_t>(image.sizeInBytes()));
        volatile int colors = 0;
        compare(
            "Unique colours of 24 MP", [&] { colors = countColors(image); }, "copy of the pixels",
            [&] { std::memcpy(copy.data(), image.constBits(), copy.size()); }, 40.0 / 14, runs);
        std::printf("  %d colours\n", colors);

        const QSize size(1200, 800);
        QImage ours;
        QImage qt;
        compare(
            "24 MP to 1200 x 800",
            [&] { ours = resampled(image, size, QRect(QPoint(), size), Filter::Area, Filter::Area); },
            "Qt's smooth scaling",
            [&] { qt = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation); }, 1.1, runs);
        std::printf("  differs from Qt's by %d at most\n", difference(ours, qt));
        const QSize odd(1333, 889);
        compare(
            "24 MP to 1333 x 889",
            [&] { ours = resampled(image, odd, QRect(QPoint(), odd), Filter::Area, Filter::Area); },
            "Qt's smooth scaling",
            [&] { qt = image.scaled(odd, Qt::IgnoreAspectRatio, Qt::SmoothTransformation); }, 1.1, runs);
        std::printf("  differs from Qt's by %d at most\n", difference(ours, qt));
    }
    Panned large(photograph(12500, 8000));
    Panned small(photograph(1700, 1100));
    int number = 0;
    compare(
        "A step of panning over 100 MP at 100%", [&] { large.step(++number); }, "the same over 2 MP",
        [&] { small.step(number); }, 1.2, runs * 5);
    compare(
        "The whole viewport of 100 MP anew", [&] { large.repaintAll(++number); }, "the same of 2 MP",
        [&] { small.repaintAll(number); }, 1.2, runs * 5);
    return 0;
}
