#include "collections/PlaylistLayout.h"

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int margin = 20;
constexpr int widestTab = 1500;

int inside(int length)
{
    return std::max(length, 0);
}

} // namespace

TabPlaces layoutTabs(const PlaylistSizes& sizes)
{
    const int width = std::min(inside(sizes.panel.width() - 2 * margin) / 2, widestTab);
    return {{margin, 0, width, sizes.head}, {margin + width, 0, width, sizes.head}};
}

QRect movingTab(const TabPlaces& places, int left)
{
    return {QPoint(left, places.tab2.top()), places.tab2.size()};
}

FolderFace layoutFolderFace(const PlaylistSizes& sizes)
{
    const int width = inside(sizes.panel.width() - 2 * margin);
    const int below = inside(sizes.panel.height() - sizes.head);
    // Below the tree the list gets the rest; in a low panel the tree goes first, then the list.
    const int tree = inside(below * 666 / 1000 - sizes.toolRow - sizes.info - 50);
    const int buttonsTop = sizes.head + tree;
    const int listTop = buttonsTop + sizes.toolRow;
    const int list = inside(sizes.panel.height() - listTop - sizes.info);
    return {{margin, sizes.head, width, tree},
            {margin, buttonsTop, width, sizes.toolRow},
            {margin, listTop, width, list},
            {margin, listTop + list, width, sizes.info}};
}

PlaylistFace layoutPlaylistFace(const PlaylistSizes& sizes)
{
    const int width = inside(sizes.panel.width() - 2 * margin);
    const int listTop = sizes.head + sizes.nameRow;
    const int list = inside(sizes.panel.height() - listTop - sizes.toolRow - sizes.info);
    const int buttonsTop = listTop + list;
    return {{margin, sizes.head, width, sizes.nameRow},
            {margin, listTop, width, list},
            {margin, buttonsTop, width, sizes.toolRow},
            {margin, buttonsTop + sizes.toolRow, width, sizes.info}};
}

QList<QRect> placeInRows(int width, int gap, const QList<QSize>& sizes)
{
    QList<QRect> places;
    qsizetype rowBegin = 0;
    int left = 0;
    int top = 0;
    int rowHeight = 0;
    const auto levelRow = [&] {
        for (qsizetype i = rowBegin; i < places.size(); ++i)
            places[i].moveTop(top + (rowHeight - places[i].height()) / 2);
    };
    for (const QSize& size : sizes) {
        const int partWidth = std::min(size.width(), inside(width));
        if (left > 0 && left + partWidth > width) {
            levelRow();
            rowBegin = places.size();
            top += rowHeight + gap;
            left = 0;
            rowHeight = 0;
        }
        places.append(QRect(left, top, partWidth, size.height()));
        left += partWidth + gap;
        rowHeight = std::max(rowHeight, size.height());
    }
    levelRow();
    return places;
}

} // namespace quorvia::collections
