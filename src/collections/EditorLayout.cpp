#include "collections/EditorLayout.h"

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int margin = 120; // around the page
constexpr int gap = 60;     // between parts that belong together
constexpr int lowestStrip = 1050;
constexpr int highestStrip = 2700;
constexpr QSize largestDefine(7500, 6000);

int inside(int length)
{
    return std::max(length, 0);
}

/// The buttons of the column between the lists, add, add all and remove, around its middle.
void placeFileTools(EditorPlaces& places, int side)
{
    constexpr std::array column{3, 4, 2};
    const int step = side + gap;
    int top = inside((places.pFileTools.height() - int(column.size()) * step + gap) / 2);
    for (const int index : column) {
        places.pImage.at(std::size_t(index)) = {0, top, side, side};
        top += step;
    }
}

void placePlaylistTools(EditorPlaces& places, int side)
{
    const int top = inside((places.pPlaylistTools.height() - 2 * side - gap) / 2);
    places.pImage[0] = {0, top, side, side};
    places.pImage[1] = {0, top + side + gap, side, side};
}

void placeFiles(EditorPlaces& places, int head, int strip)
{
    const int width = places.pFile.width();
    const int lists = inside(places.pFile.height() - head - strip - 3 * gap);
    const int tree = lists * 45 / 100;
    places.lDirectory = {0, 0, width, head};
    places.fDir = {0, head + gap, width, tree};
    places.fFiles = {0, head + 2 * gap + tree, width, lists - tree};
    places.filmstrip = {0, head + 3 * gap + lists, width, strip};
}

void placePlaylist(EditorPlaces& places, const EditorSizes& sizes, int head, int strip)
{
    const int width = places.pPlaylist.width();
    const int caption = std::min(sizes.caption.width(), width);
    const int combo = caption + gap;
    const int list = inside(places.pPlaylist.height() - head - strip - 2 * gap);
    const int listWidth = inside(width - gap - sizes.button);
    places.lPTitle = {0, 0, caption, head};
    places.cPlaylist = {combo, (head - sizes.combo) / 2, inside(listWidth - combo), sizes.combo};
    places.lPlaylist = {0, head + gap, listWidth, list};
    places.pPlaylistTools = {listWidth + gap, head + gap, sizes.button, list};
    places.filmstrip2 = {0, head + 2 * gap + list, width, strip};
}

} // namespace

EditorPlaces layoutEditor(const EditorSizes& sizes)
{
    EditorPlaces places;
    const int width = sizes.control.width();
    const int line = inside(width - 2 * margin);
    const int footer = sizes.finished.height() + 2 * gap;
    places.pTitle = {0, 0, width, sizes.title + 2 * gap};
    places.lTitle = {margin, gap, line, sizes.title};
    places.pFooter = {0, inside(sizes.control.height() - footer), width, footer};
    const int finished = std::min(sizes.finished.width(), line);
    places.lFinished = {width - margin - finished, gap, finished, sizes.finished.height()};
    places.lHelp = {margin, gap, inside(line - finished - gap), sizes.finished.height()};

    const int top = places.pTitle.height() + gap;
    const int height = inside(places.pFooter.top() - gap - top);
    const int half = inside(line - sizes.button - 2 * margin) / 2;
    places.pFile = {margin, top, half, height};
    places.pPlaylist = {3 * margin + half + sizes.button, top, half, height};

    const int head = std::max(sizes.combo, sizes.caption.height());
    const int strip = std::min(std::clamp(height / 4, lowestStrip, highestStrip), height);
    places.pFileTools = {2 * margin + half, top, sizes.button, inside(height - strip - gap)};
    placeFiles(places, head, strip);
    placePlaylist(places, sizes, head, strip);
    placeFileTools(places, sizes.button);
    placePlaylistTools(places, sizes.button);
    return places;
}

DefinePlaces layoutDefine(QSize page, QSize button)
{
    const QSize box =
        QSize(inside(page.width() - 2 * margin), inside(page.height() - 2 * margin)).boundedTo(largestDefine);
    DefinePlaces places;
    places.pDefine = {QPoint((page.width() - box.width()) / 2, (page.height() - box.height()) / 2), box};
    const int left = inside(box.width() - margin - button.width());
    const auto row = [&button, left](int top) { return QRect(QPoint(left, top), button); };
    const int bottom = box.height() - margin;
    const int step = button.height() + gap;
    places.lPlaylistNames = {margin, margin, inside(left - 2 * margin), inside(bottom - margin)};
    places.cmdCreate = row(margin);
    places.cmdRename = row(margin + step);
    places.cmdDelete = row(margin + 2 * step);
    places.cmdClose = row(std::max(bottom - button.height(), margin + 3 * step));
    return places;
}

} // namespace quorvia::collections
