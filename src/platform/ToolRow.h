// The arithmetic of the toolbar: where its items stand in the width that there is, and which of them have no
// room. In device-independent pixels, without a widget.
#pragma once

#include <vector>

namespace quorvia::platform {

struct RowItem
{
    int width = 0; ///< of a separator, with the room around its line; 0 for what takes no part
    bool separator = false;
    bool operator==(const RowItem&) const = default;
};

/// Where an item stands; a width of 0: not at all.
struct RowPlace
{
    int left = 0;
    int width = 0;
    bool operator==(const RowPlace&) const = default;
};

struct RowPlan
{
    std::vector<RowPlace> places; ///< one an item
    int shown = 0;                ///< items before this index stand in the row, the others have no room
    int extension = -1;           ///< left edge of the button that opens the rest; -1: there is no rest
    bool operator==(const RowPlan&) const = default;
};

inline constexpr int rowMargin = 4; ///< at either end
inline constexpr int rowGap = 2;    ///< between two items
inline constexpr int extensionWidth = 20;

/// The width in which all `items` stand. Separators at the ends and behind one another take none.
int neededWidth(const std::vector<RowItem>& items);

/// Places `items` in `width`: in its middle when all have room, else from the left, with a button for the
/// rest at the right end.
RowPlan planRow(const std::vector<RowItem>& items, int width);

} // namespace quorvia::platform
