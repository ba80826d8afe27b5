// Where things lie in the full-screen window, and what keys and mouse do there. Plain functions over numbers;
// lengths are twips unless they say otherwise.
#pragma once

#include <QRect>
#include <QString>

#include <span>

namespace quorvia::output {

// --- the picture

/// How the picture lies in the window, by the numbers of the setting `cFView`.
enum class FitMode { Actual = 0, BestFit = 1, Stretch = 2 };

/// The mode that a stored number means; Actual for one that means none.
FitMode fitModeOf(int cFView);
/// The number that follows `cFView` when the mode is changed: 1, 2, 0 and again.
int nextFitMode(int cFView);

/// What a composition depends on, in twips.
struct FullScreenView
{
    QSizeF window;
    QSizeF image;  ///< at 100%
    QSizeF screen; ///< the primary one
};

/// Twips of a device pixel at device pixel ratio `ratio`.
double twipsPerDevicePixel(double ratio);
/// Where the picture lies in the window. It may reach out of it at two sides; that is how the modes are.
/// Empty when picture or window is.
QRectF composedRect(FitMode mode, const FullScreenView& view);
/// The same in device pixels of `twipsPerPixel` twips, place and size each rounded by itself, so that a
/// picture at actual size keeps its pixels. At least 1 pixel a side, unless `twips` is empty.
QRect inDevicePixels(const QRectF& twips, double twipsPerPixel);
/// What the first picture of a load has to cover, so that composing it in a window of `window` device pixels
/// seldom needs more: pictures are fitted into it with kept proportions, and never made larger.
QSize fullScreenLoadBox(FitMode mode, QSize window);

// --- the window

struct FullScreenPlace
{
    QRect geometry;        ///< device-independent pixels
    bool isSecond = false; ///< on a second monitor, of a fixed size
};

/// Where the window goes when the main window's left edge is at `mainLeft`: over the primary screen `primary`
/// or, when the main window is right of that, beside it with 1024 x 768 device pixels. `ratio` is the device
/// pixel ratio there.
FullScreenPlace fullScreenPlace(int mainLeft, const QRect& primary, double ratio);

// --- the bar

inline constexpr int barHeight = 615;
inline constexpr QSize barPicture(1455, 570);
inline constexpr int previousLeft = 0;
inline constexpr int nextLeft = 1440;
inline constexpr int playLeft = 2880;
inline constexpr int sizeLeft = 4320;

/// What moves when the bar gets another width.
struct FullScreenBarLayout
{
    int closeLeft = 0;
    QRect name; ///< of the label; never narrower than 0

    bool operator==(const FullScreenBarLayout&) const = default;
};

FullScreenBarLayout fullScreenBarLayout(int barWidth);
/// True when the pointer `y` below the window's upper edge is near enough to show the bar.
bool isNearBar(double y);
/// The name of the picture on the bar, with its size in pixels.
QString longNameLabel(const QString& name, QSize imagePixels);
/// What the label says when `longText` would be `longWidth` wide: that, where it is narrower than the label.
QString nameLabel(const QString& name, const QString& longText, double longWidth, double labelWidth);

// --- keys and mouse

enum class FullScreenAction {
    None,
    Close,
    Exit, ///< closes the window, then the program
    Random,
    PressNext, ///< with a sign on the bar that the button is pressed
    PressPrevious,
    Next,
    Previous,
    Caption,
    Mode,
    SlideShow,
};

struct FullScreenKey
{
    int keyCode; ///< with any modifier
    FullScreenAction action;
    const char* text; ///< a phrase without a full stop
};

/// The keys that do something else than to close.
std::span<const FullScreenKey> fullScreenKeys();
/// What a key does: a virtual key code (0 for a key without one) and a modifier mask (1 Shift, 2 Ctrl, 4
/// Alt). While the slideshow runs alone every key closes.
FullScreenAction keyAction(int keyCode, int shift, bool slideShowOnly);
/// What letting go of a mouse button over the window does. `shift` as above.
FullScreenAction mouseUpAction(Qt::MouseButton button, int shift, bool slideShowOnly);
/// What letting go of the mouse does on the bar itself, `x` pixels (of 15 twips) from its left edge.
FullScreenAction barZoneAction(double x);
/// True for an action that ends the window.
bool closes(FullScreenAction action);

/// A move of the pointer to `x` while the slideshow runs alone. `exitMouseX` is where it was first, 0 while
/// that is not known, and is taken from it then. True when it has gone far enough to close the window.
bool leavesByMouse(int& exitMouseX, double x);

} // namespace quorvia::output
