// How long the engine's work on pixels takes beside yardsticks: pixel_ratio PICTURES [RUNS]; it makes its
// pictures itself and leaves PICTURES alone. The control is painted offscreen: without what a display takes.
#include "engine/Codec.h"
#include "engine/ColorCount.h"
#include "engine/ImageEngine.h"
#include "engine/Resample.h"
#include "engine/Transforms.h"
#include "Ratio.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

using namespace quorvia::engine;
using namespace quorvia::bench;

namespace {

/// Soft slopes with noise, as a photograph has.
QImage photograph(int width, int height)
{
    QImage image = allocateImage(QSize(width, height), QImage::Format_RGB32);
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
        QCoreApplication::processEvents();
        step(0);
    }

    /// Moves by a few pixels and paints what the panel shows.
    bool step(int number)
    {
        const QSize room = m_engine.size() - m_panel.size();
        m_engine.move(-(room.width() / 3 + number % 7 * 13), -(room.height() / 3 + number % 5 * 11));
        return paintNow();
    }

    /// Paints all of what the panel shows, of which nothing stands ready.
    bool repaintAll(int number)
    {
        m_engine.SetBackColor(number % 2 != 0 ? Qt::black : Qt::white);
        return paintNow();
    }

  private:
    /// Paints what has changed without waiting for the toolkit's timer.
    bool paintNow()
    {
        m_engine.painted = false;
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&m_panel, &request);
        if (!m_engine.painted) {
            std::fprintf(stderr, "nothing was painted\n");
            std::exit(1);
        }
        return true;
    }

    class Engine final : public ImageEngine
    {
      public:
        using ImageEngine::ImageEngine;
        bool painted = false;

      protected:
        void paintEvent(QPaintEvent* event) override
        {
            ImageEngine::paintEvent(event);
            painted = true;
        }
    };

    QWidget m_panel;
    Engine m_engine;
};

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 15;
    {
        const QImage image = photograph(6000, 4000);
        std::vector<uchar> copy(static_cast<size_t>(image.sizeInBytes()));
        const auto copied = [&] {
            std::memcpy(copy.data(), image.constBits(), copy.size());
            return copy[static_cast<size_t>(image.width())];
        };
        compare(
            "Unique colours of 24 MP : copy of its pixels", [&] { return countColors(image); }, copied, runs,
            40.0 / 14);

        for (const int degrees : {-90, 90, 180}) {
            const QByteArray name =
                QStringLiteral("24 MP turned by %1 degrees : copy of its pixels").arg(degrees).toLatin1();
            compare(
                name.constData(), [&] { return rotated(image, degrees, Qt::black); },
                [&] { // into memory of the same kind
                    QImage other = allocateImage(image.size(), image.format());
                    std::memcpy(other.bits(), image.constBits(), static_cast<size_t>(image.sizeInBytes()));
                    return other;
                },
                runs, 2.0);
        }

        for (const QSize size : {QSize(1200, 800), QSize(1333, 889)}) {
            const auto ours = [&] {
                return resampled(image, size, QRect(QPoint(), size), Filter::Area, Filter::Area);
            };
            const auto qts = [&] {
                return image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            };
            if (difference(ours(), qts()) > 1) {
                std::fprintf(stderr, "not Qt's pixels at %d x %d\n", size.width(), size.height());
                return 1;
            }
            const QByteArray name = QStringLiteral("24 MP to %1 x %2 : Qt's smooth scaling")
                                        .arg(size.width())
                                        .arg(size.height())
                                        .toLatin1();
            compare(name.constData(), ours, qts, runs, 1.1);
        }
    }
    // A repaint must stay under 8 ms; that the image's size does not matter shows in the ratio.
    Panned large(photograph(12500, 8000));
    Panned small(photograph(1600 + 6 * 13 * 2, 1000 + 4 * 11 * 2));
    int number = 0;
    compare(
        "Step of panning 100 MP at 100% : 2 MP", [&] { return large.step(++number); },
        [&] { return small.step(number); }, runs * 5, 1.5);
    compare(
        "Viewport of 100 MP made anew : 2 MP", [&] { return large.repaintAll(++number); },
        [&] { return small.repaintAll(number); }, runs * 5, 1.5);
    return 0;
}
