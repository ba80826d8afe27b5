#include "output/FullScreenLayout.h"

#include "app/KeyCodes.h"
#include "app/Twips.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvia::output {

namespace {

namespace code = app::keyCode;
using app::twipsPerPixel;

constexpr QSize secondMonitor(1024, 768); // device pixels
constexpr int anyWidth = 65535;           // pixels, more than a picture is shown wide
constexpr int nameTop = 120;
constexpr int nameHeight = 255;
constexpr int nameGap = 50;
constexpr int nearBar = 200;      // below the bar
constexpr int farFromFirst = 100; // across

QRectF atActualSize(const FullScreenView& view)
{
    const double windowWidth = view.window.width();
    const double windowHeight = view.window.height();
    const QSizeF image = view.image;
    if (image.height() > windowHeight) {
        const double width = view.screen.height() / image.height() * image.width();
        return {windowWidth / 2 - width / 2, 0, width, windowHeight};
    }
    return {windowWidth / 2 - image.width() / 2, windowHeight / 2 - image.height() / 2, image.width(),
            image.height()};
}

/// The longer side alone is fitted.
QRectF atBestFit(const FullScreenView& view)
{
    const double windowWidth = view.window.width();
    const double windowHeight = view.window.height();
    const QSizeF image = view.image;
    if (image.height() > image.width()) {
        const double width = windowHeight / image.height() * image.width();
        return {windowWidth / 2 - width / 2, 0, width, std::trunc(view.screen.height())};
    }
    const double height = std::trunc(windowWidth / image.width() * image.height());
    return {0, windowHeight / 2 - height / 2, windowWidth, height};
}

constexpr char nextText[] = "go to the next image";
constexpr char previousText[] = "go to the previous image";

constexpr std::array keys = {
    FullScreenKey{code::right, FullScreenAction::PressNext, nextText},
    FullScreenKey{code::down, FullScreenAction::Next, nextText},
    FullScreenKey{code::left, FullScreenAction::PressPrevious, previousText},
    FullScreenKey{code::up, FullScreenAction::Previous, previousText},
    FullScreenKey{code::space, FullScreenAction::Random, "go to an image by chance"},
    FullScreenKey{'P', FullScreenAction::SlideShow, "start or stop the slide show"},
    FullScreenKey{'S', FullScreenAction::Mode, "change between actual size, best fit and stretched"},
    FullScreenKey{'T', FullScreenAction::Caption, "show or hide the name of the image"},
    FullScreenKey{code::escape, FullScreenAction::Exit, "end the program"},
};

/// A part of the bar, both ends outside of it.
struct ZoneRow
{
    int from;
    int to;
    FullScreenAction action;
};

constexpr std::array zones = {
    ZoneRow{3, 15, FullScreenAction::Close},      ZoneRow{23, 35, FullScreenAction::PressPrevious},
    ZoneRow{38, 50, FullScreenAction::PressNext}, ZoneRow{59, 69, FullScreenAction::Caption},
    ZoneRow{73, 84, FullScreenAction::Mode},
};

} // namespace

FitMode fitModeOf(int cFView)
{
    return cFView == 1 ? FitMode::BestFit : cFView == 2 ? FitMode::Stretch : FitMode::Actual;
}

int nextFitMode(int cFView)
{
    return cFView == 1 ? 2 : cFView == 2 ? 0 : 1;
}

double twipsPerDevicePixel(double ratio)
{
    return twipsPerPixel / ratio;
}

QRectF composedRect(FitMode mode, const FullScreenView& view)
{
    if (view.image.isEmpty() || view.window.isEmpty())
        return {};
    switch (mode) {
    case FitMode::BestFit:
        return atBestFit(view);
    case FitMode::Stretch:
        return {QPointF(), view.window};
    case FitMode::Actual:
        break;
    }
    return atActualSize(view);
}

QRect inDevicePixels(const QRectF& twips, double pixel)
{
    if (twips.isEmpty())
        return {};
    const auto rounded = [pixel](double length) { return int(std::lround(length / pixel)); };
    return {rounded(twips.x()), rounded(twips.y()), std::max(1, rounded(twips.width())),
            std::max(1, rounded(twips.height()))};
}

QSize fullScreenLoadBox(FitMode mode, QSize window)
{
    if (mode == FitMode::Actual)
        return {anyWidth, window.height()};
    const int side = std::max(window.width(), window.height());
    return {side, side};
}

FullScreenPlace fullScreenPlace(int mainLeft, const QRect& primary, double ratio)
{
    if (mainLeft - primary.left() <= primary.width())
        return {primary, false};
    const QPoint beside = primary.topLeft() + QPoint(primary.width(), 0);
    return {QRect(beside, (QSizeF(secondMonitor) / ratio).toSize()), true};
}

FullScreenBarLayout fullScreenBarLayout(int barWidth)
{
    const int sizeRight = sizeLeft + barPicture.width();
    const int width = barWidth - (sizeRight + barPicture.width() + 2 * nameGap);
    return {barWidth - barPicture.width(),
            QRect(sizeRight + nameGap, nameTop, std::max(0, width), nameHeight)};
}

bool isNearBar(double y)
{
    return y < barHeight + nearBar;
}

QString longNameLabel(const QString& name, QSize imagePixels)
{
    return name + QStringLiteral(" (") + QString::number(imagePixels.width()) + u'x' +
           QString::number(imagePixels.height()) + u')';
}

QString nameLabel(const QString& name, const QString& longText, double longWidth, double labelWidth)
{
    return longWidth < labelWidth ? longText : name;
}

std::span<const FullScreenKey> fullScreenKeys()
{
    return keys;
}

FullScreenAction keyAction(int keyCode, int shift, bool slideShowOnly)
{
    if (slideShowOnly)
        return FullScreenAction::Close;
    if (keyCode == 0)
        return FullScreenAction::None;
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [keyCode](const FullScreenKey& row) { return row.keyCode == keyCode; });
    if (found != keys.end())
        return found->action;
    return shift == app::NoModifier ? FullScreenAction::Close : FullScreenAction::None;
}

FullScreenAction mouseUpAction(Qt::MouseButton button, int shift, bool slideShowOnly)
{
    if (button == Qt::LeftButton && shift == app::ShiftBit)
        return keyAction(code::left, app::NoModifier, slideShowOnly);
    if (button == Qt::RightButton)
        return keyAction(code::right, app::NoModifier, slideShowOnly);
    return FullScreenAction::None;
}

FullScreenAction barZoneAction(double x)
{
    const auto found = std::find_if(zones.begin(), zones.end(),
                                    [x](const ZoneRow& row) { return x > row.from && x < row.to; });
    return found == zones.end() ? FullScreenAction::None : found->action;
}

bool closes(FullScreenAction action)
{
    return action == FullScreenAction::Close || action == FullScreenAction::Exit;
}

bool leavesByMouse(int& exitMouseX, double x)
{
    if (exitMouseX == 0) {
        exitMouseX = int(std::lround(x));
        return false;
    }
    return std::abs(x - exitMouseX) > farFromFirst;
}

} // namespace quorvia::output
