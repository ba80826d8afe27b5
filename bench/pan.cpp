// How long a drag over a picture takes a frame: pan PICTURES [RUNS] drags a picture of 100 MP at 100% in the
// real viewport, by mouse events, and paints what each shows. It makes its picture itself and leaves PICTURES
// alone. Painted offscreen: without what a display takes.
#include "engine/ImageEngine.h"
#include "Ratio.h"
#include "viewer/Viewport.h"
#include "viewer/ViewportGestures.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace quorvia;

namespace {

constexpr QSize imageSize(12000, 8400);
constexpr QSize panelSize(1600, 1000);

QImage striped(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
            line[x] = qRgb(x * 255 / size.width(), y * 255 / size.height(), (x ^ y) & 255);
    }
    return image;
}

/// A mouse event at `inPanel`, and all that follows from it, painting included.
void mouse(engine::ImageEngine& ix1, QEvent::Type type, QPointF inPanel)
{
    const bool moves = type == QEvent::MouseMove;
    const QPointF at = inPanel - ix1.pos();
    QMouseEvent event(type, at, ix1.mapToGlobal(at), moves ? Qt::NoButton : Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&ix1, &event);
    QCoreApplication::processEvents();
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int frames = 20 * (argc > 2 ? std::max(1, std::atoi(argv[2])) : 15);
    QWidget panel;
    panel.resize(panelSize);
    engine::ImageEngine ix1(std::make_shared<engine::ImageLoader>(), &panel);
    viewer::Viewport viewport(&panel, &ix1);
    const viewer::ViewportGestures gestures(&viewport, {.runTool = [](const QString&) {}, .openMenu = [] {}});
    viewport.setFitToWindow(false);
    ix1.SetPicture(striped(imageSize));
    panel.show();
    viewport.layout();
    viewport.scrollBy(imageSize.width() / 3, imageSize.height() / 3);
    QCoreApplication::processEvents();

    QPointF at(panelSize.width() / 2.0, panelSize.height() / 2.0);
    mouse(ix1, QEvent::MouseButtonPress, at);
    const QPoint begin = ix1.pos();
    QPointF moved;
    std::vector<double> times;
    for (int frame = 0; frame < frames; ++frame) {
        const QPointF step = frame / 40 % 2 == 0 ? QPointF(-17, -11) : QPointF(17, 11);
        at += step;
        moved += step;
        times.push_back(bench::millisecondsOf([&] { mouse(ix1, QEvent::MouseMove, at); }));
    }
    if (ix1.pos() != begin + moved.toPoint()) {
        std::fprintf(stderr, "the picture did not follow the pointer\n");
        return 1;
    }
    constexpr double most = 8; // milliseconds, half a frame
    std::sort(times.begin(), times.end());
    const double median = bench::medianOf(times);
    const double slow = times[times.size() * 99 / 100];
    std::printf("%-44s median %5.2f ms  99 of 100 within %5.2f ms  aim %.0f ms  %s\n",
                "A frame of dragging 100 MP at 100%", median, slow, most, slow <= most ? "met" : "NOT MET");
    return 0;
}
