#include "output/PageLayout.h"

#include <algorithm>
#include <cmath>

namespace quorvia::output {

namespace {

constexpr int textMargin = 100;
constexpr int titleGap = 200;
constexpr int sideMargin = 100; // of a picture that was too wide
constexpr double farthest = 1e8;
constexpr QRgb darkGrey = 0xff404040;
constexpr QRgb middleGrey = 0xff808080;
constexpr QRgb white = 0xffffffff;

/// A half goes to the even number.
double whole(double number)
{
    return std::nearbyint(withinPage(number));
}

/// The room that is left for the picture.
struct Room
{
    double width;  ///< of the page
    double height; ///< of the page
    double title;
    double footer;
    double free() const { return height - (footer + title); }
};

struct Size
{
    double width; ///< a whole number
    double height;
};

void setWidth(Size& size, double width)
{
    size.width = whole(width);
}

/// The ratio is that of the sides as they are now, the shorter one over the longer one at first, for both
/// steps: the right way up for one of them, and the wrong way up for the other, which so changes the
/// picture's shape.
void shrinkOblong(Size& size, const Room& room)
{
    const bool isHigh = size.height > size.width;
    const auto ratio = [&size, isHigh] {
        return isHigh ? size.width / size.height : size.height / size.width;
    };
    if (size.width > room.width) {
        size.height = (room.width - sideMargin) * ratio();
        setWidth(size, room.width - sideMargin);
    }
    if (size.height > room.free()) {
        const double now = ratio();
        size.height = room.free();
        setWidth(size, now * room.free());
    }
}

void shrinkSquare(Size& size, const Room& room)
{
    if (size.width > room.width) {
        size.height = room.width - sideMargin;
        setWidth(size, room.width - sideMargin);
    } else if (size.height > room.free()) {
        size.height = room.free();
        setWidth(size, room.free());
    }
}

/// A picture that runs over the title's and the footer's room only stays as it is.
void shrink(Size& size, const Room& room)
{
    if (size.width <= room.width && size.height <= room.height)
        return;
    if (size.height == size.width)
        shrinkSquare(size, room);
    else
        shrinkOblong(size, room);
}

bool resizes(AreaMode area)
{
    return area == AreaMode::Center || area == AreaMode::TopCenter || area == AreaMode::TopLeft;
}

QPointF cornerOf(AreaMode area, const Size& size, const Room& room)
{
    const double middle = room.width / 2 - size.width / 2;
    switch (area) {
    case AreaMode::Center:
    case AreaMode::CenterNatural:
        return {middle, room.height / 2 - size.height / 2 + room.title};
    case AreaMode::TopCenter:
        return {middle, room.title};
    case AreaMode::TopLeft:
    case AreaMode::TopLeftNatural:
    case AreaMode::Custom:
        break;
    }
    return {0, room.title};
}

QRectF imageRect(const PageInput& input, const Room& room)
{
    const QSizeF pixel = input.twipsPerPixel;
    if (input.area == AreaMode::Custom) {
        const QRectF& custom = input.custom;
        return {withinPage(custom.x() * pixel.width()), withinPage(custom.y() * pixel.height()),
                whole(custom.width() * pixel.width()), withinPage(custom.height() * pixel.height())};
    }
    Size size{double(input.image.width()), double(input.image.height())};
    if (resizes(input.area))
        shrink(size, room);
    const QPointF corner = cornerOf(input.area, size, room);
    if (input.area == AreaMode::TopLeftNatural)
        size.height -= room.title + room.footer; // squeezed, not cut
    return {withinPage(corner.x()), withinPage(corner.y()), size.width, withinPage(size.height)};
}

QRectF between(double left, double top, double right, double bottom)
{
    return QRectF(QPointF(left, top), QPointF(right, bottom)).normalized();
}

/// Adds a shape of `form` for each corner of the decorated picture, clockwise from the upper left one.
void addCorners(std::vector<PageShape>& shapes, PageForm form, QRgb color, const QRectF& extent,
                double outside, double inside)
{
    const double left = extent.left();
    const double top = extent.top();
    const double right = extent.right();
    const double bottom = extent.bottom();
    shapes.push_back({form, 1, color, between(left - outside, top - outside, left + inside, top + inside)});
    shapes.push_back({form, 1, color, between(right - inside, top - outside, right + outside, top + inside)});
    shapes.push_back(
        {form, 1, color, between(right - inside, bottom - inside, right + outside, bottom + outside)});
    shapes.push_back(
        {form, 1, color, between(left - outside, bottom - inside, left + inside, bottom + outside)});
}

std::vector<PageShape> shapesAround(const PageLayout& layout, const Decorations& wanted)
{
    constexpr double radius = 600;
    constexpr double circleInset = 200;
    const QRectF& image = layout.image;
    const QRectF extent = image.adjusted(0, 0, layout.extraWidth, layout.extraHeight);
    std::vector<PageShape> shapes;
    if (wanted.circle)
        addCorners(shapes, PageForm::Circle, middleGrey, extent, radius - circleInset, radius + circleInset);
    if (wanted.square)
        addCorners(shapes, PageForm::Box, darkGrey, extent, 200, 500);
    if (wanted.shadow)
        shapes.push_back(
            {PageForm::Box, 1, darkGrey,
             between(image.left() + 60, image.top() + 60, image.right() + 100, image.bottom() + 100)});
    const QRectF outline =
        between(extent.left() - 150, extent.top() - 150, extent.right() + 150, extent.bottom() + 150);
    if (wanted.frame)
        shapes.push_back({PageForm::Outline, 5, darkGrey, outline});
    if (wanted.lightFrame)
        shapes.push_back({PageForm::Outline, 2, wanted.frame ? white : darkGrey, outline});
    return shapes;
}

PageTiles tilesOn(QSize page, QSizeF tile)
{
    const auto times = [](double length, double step) { return qint64(std::floor(length / step)) + 1; };
    // Nothing is to be seen of a smaller step, and 64 bits would not count the tiles.
    constexpr double least = 1e-3;
    PageTiles tiles;
    tiles.columns = times(page.width(), std::max(tile.width(), least));
    tiles.rows = times(page.height(), std::max(tile.height(), least));
    tiles.count = tiles.columns * tiles.rows + 1;
    return tiles;
}

void addPictures(PageLayout& layout, const Decorations& wanted)
{
    constexpr int copies = 20;
    if (layout.image.isEmpty())
        return;
    if (wanted.tile) {
        layout.tiles = tilesOn(layout.page, layout.image.size());
        return;
    }
    const QPointF corner = layout.image.topLeft();
    for (int i = copies; wanted.trail && i >= 0; --i)
        layout.pictures.push_back(corner + QPointF(i * 100, i * 70));
    layout.pictures.push_back(corner);
}

void placeTexts(PageLayout& layout, const PageInput& input)
{
    const double width = layout.page.width();
    const auto centred = [width](const QSizeF& text) { return width / 2 - text.width() / 2; };
    if (const auto& title = input.title) {
        layout.titleRoom = title->height() + titleGap;
        layout.title = {input.titleAlign == TitleAlign::Left    ? textMargin
                        : input.titleAlign == TitleAlign::Right ? width - textMargin - title->width()
                                                                : centred(*title),
                        textMargin};
    }
    if (const auto& footer = input.footer) {
        layout.footerRoom = int(whole(footer->height()));
        layout.footer = {centred(*footer), layout.page.height() - textMargin - footer->height()};
    }
}

} // namespace

double withinPage(double number)
{
    return std::isnan(number) ? 0 : std::clamp(number, -farthest, farthest);
}

QSize pageSize(QSize printer)
{
    return (printer - QSize(2 * paperMargin, 2 * paperMargin)).expandedTo({0, 0});
}

PageLayout layOutPage(const PageInput& input)
{
    PageLayout layout;
    layout.page = pageSize(input.printer);
    placeTexts(layout, input);
    const Room room{double(layout.page.width()), double(layout.page.height()), layout.titleRoom,
                    double(layout.footerRoom)};
    layout.image = imageRect(input, room);
    if (input.decorations.shadow) {
        layout.extraWidth = 100;
        layout.extraHeight = 100;
    }
    if (input.decorations.trail) {
        layout.extraWidth += 2000;
        layout.extraHeight += 1400;
    }
    layout.shapes = shapesAround(layout, input.decorations);
    addPictures(layout, input.decorations);
    return layout;
}

} // namespace quorvia::output
