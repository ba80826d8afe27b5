// How a band with more tools than a menu can show is laid out: in groups, each a sub-menu. Arithmetic alone.
#pragma once

namespace quorvia::platform {

/// How many of `rows` stand together in one group, so that no menu is longer than about a screen: 1, so no
/// groups, up to 100 rows; above that groups of 40, or of 40 groups, and so on.
constexpr int groupSize(int rows)
{
    constexpr int longestMenu = 100;
    constexpr int most = 60; // groups in one menu
    constexpr int step = 40;
    if (rows <= longestMenu)
        return 1;
    int size = step;
    while ((rows - 1) / size + 1 > most)
        size *= step;
    return size;
}

} // namespace quorvia::platform
