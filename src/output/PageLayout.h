// What stands where on the one printed page: plain arithmetic, in twips from the page's upper left corner.
// Cheap.
#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSize>

#include <optional>
#include <vector>

namespace quorvia::output {

/// How the picture is placed, in the order of the window's options.
enum class AreaMode { Center, TopCenter, TopLeft, TopLeftNatural, Custom, CenterNatural };
inline constexpr int areaModes = 6;

enum class TitleAlign { Left, Center, Right };
inline constexpr int titleAligns = 3;

/// The decorations that are switched on; none excludes another.
struct Decorations
{
    bool shadow = false;
    bool lightFrame = false;
    bool frame = false;
    bool circle = false;
    bool square = false;
    bool tile = false;
    bool trail = false;
    bool operator==(const Decorations&) const = default;
};

/// What the page is laid out from.
struct PageInput
{
    QSize printer; ///< the paper
    QSize image;   ///< the picture at its natural size
    AreaMode area = AreaMode::Center;
    TitleAlign titleAlign = TitleAlign::Center;
    std::optional<QSizeF> title = {};  ///< size of its text; empty: there is none
    std::optional<QSizeF> footer = {}; ///< the same
    QRectF custom = {};                ///< with AreaMode::Custom, in screen pixels, whatever the signs
    QSizeF twipsPerPixel{15, 15};      ///< of the screen
    Decorations decorations = {};
};

enum class PageForm { Circle, Box, Outline };

/// A shape that is drawn under the picture.
struct PageShape
{
    PageForm form = PageForm::Box; ///< circles and boxes are filled, an outline is not
    int drawWidth = 1;             ///< of the line, in screen pixels
    QRgb color = 0;
    QRectF rect; ///< that the line runs along
    bool operator==(const PageShape&) const = default;
};

/// How often a picture is repeated. They are painted row by row from the page's corner.
struct PageTiles
{
    qint64 columns = 0;
    qint64 rows = 0;
    qint64 count = 0; ///< of paintings: the last one begins a row below the others
    bool operator==(const PageTiles&) const = default;
};

struct PageLayout
{
    QSize page;     ///< the paper without its margins; never below 0
    QPointF title;  ///< where the title's text begins
    QPointF footer; ///< the same of the footer's
    double titleRoom = 0;
    int footerRoom = 0;
    QRectF image;       ///< of whole width; of no area, or less, when nothing can be painted
    int extraWidth = 0; ///< what the decorations add to the picture's extent
    int extraHeight = 0;
    std::vector<PageShape> shapes;  ///< in drawing order
    std::optional<PageTiles> tiles; ///< painted in place of the pictures
    std::vector<QPointF> pictures;  ///< corners of what is painted at the image's size, in drawing order
};

/// The margin of the paper on each side, left by the printed page.
inline constexpr int paperMargin = 550;

/// The page for a paper of `printer`.
QSize pageSize(QSize printer);

/// `number`, brought down to a hundred million where no page can hold it; 0 for none.
double withinPage(double number);

/// Lays the page out. Numbers are taken as withinPage() has them.
PageLayout layOutPage(const PageInput& input);

} // namespace quorvia::output
