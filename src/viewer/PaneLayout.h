// Where the panes of the main window stand in each other: plain arithmetic in twips.
#pragma once

#include <QRect>
#include <QSize>

#include <optional>

namespace quorvia::viewer {

/// The panes right inside the window.
struct MainPanes
{
    QRect toolbar; ///< ab1, at the bottom centre
    int rule = 0;  ///< Line1, the height of the rule above the toolbar
    QRect docking; ///< aP
    bool operator==(const MainPanes&) const = default;
};

/// `window` is the inside of the window, `toolbar` the size of ab1.
MainPanes layoutMain(QSize window, QSize toolbar);

/// The top edge of iButton, whose right edge is at `right`, beside a toolbar at `toolbar`; nothing when it is
/// hidden for want of room.
std::optional<int> buttonTop(int right, const QRect& toolbar);

enum class TabPane { Image, Information, Filmstrip, Capture };

/// Docking areas of a band.
inline constexpr int dockedOnTop = 2;

struct TopState
{
    QSize size;               ///< of pTop
    int windowWidth = 0;      ///< of the whole window
    bool listVisible = false; ///< band bPlay
    int listArea = 0;         ///< its docking area
    int filebarHeight = 0;
    int tabHeight = 0;
    int splitterHeight = 0;    ///< of pSize
    int informationHeight = 0; ///< of pInformation
    int filmstripHeight = 0;   ///< of pFilmStrip
    int captureHeight = 0;     ///< of pCapture
    TabPane pane = TabPane::Image;
    bool interfaceFlag = true; ///< the viewport takes all, the panes are not placed
    QSize link;                ///< of uLink; empty when it is hidden
};

/// The panes inside pTop. A pane that is not placed has no rectangle.
struct TopPanes
{
    QRect filebar; ///< null when hidden
    QRect tabs;
    QRect viewport; ///< pContain
    QRect information;
    QRect splitter; ///< pSize
    QRect filmstrip;
    QRect capture;
    QPoint link; ///< uLink, at the right end of the strip on top
    bool operator==(const TopPanes&) const = default;
};

TopPanes layoutTop(const TopState& state);

/// What stands inside a pane with a margin: pShowInfo in pInformation, pFilm in pFilmStrip.
QRect layoutInside(QSize pane);

/// The top edge of pSize for a drag to `top`, between a viewport that begins at `viewportTop` and the end of
/// a pTop of `topHeight`. Where the two limits cross, the upper one holds.
int splitterTop(int top, int viewportTop, int topHeight);
/// The filmstrip's height below a splitter there.
int filmstripHeight(int splitterTop, int splitterHeight, int topHeight);

/// The window's size for an image of `image` twips above a toolbar of `toolbarHeight`.
QSize windowForImage(QSize image, int toolbarHeight);

} // namespace quorvia::viewer
