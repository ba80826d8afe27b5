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

} // namespace quorvia::collections
