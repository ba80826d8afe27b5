#include "platform/ToolRow.h"

#include <algorithm>

namespace quorvia::platform {

namespace {

/// Places the items before `end` from the left margin on; gives the right edge of the last one. A separator
/// stands only between two others.
int placeFromLeft(const std::vector<RowItem>& items, std::size_t end, std::vector<RowPlace>& places)
{
    places.assign(items.size(), {});
    int right = rowMargin;
    int separator = -1; // waits for an item behind it
    bool first = true;
    for (std::size_t index = 0; index < end; ++index) {
        if (items[index].width <= 0)
            continue;
        if (items[index].separator) {
            if (!first && separator < 0)
                separator = int(index);
            continue;
        }
        if (separator >= 0) {
            RowPlace& place = places[std::size_t(separator)];
            place = {right + rowGap, items[std::size_t(separator)].width};
            right = place.left + place.width;
            separator = -1;
        }
        places[index] = {right + (first ? 0 : rowGap), items[index].width};
        right = places[index].left + places[index].width;
        first = false;
    }
    return right;
}

} // namespace

int neededWidth(const std::vector<RowItem>& items)
{
    std::vector<RowPlace> places;
    return placeFromLeft(items, items.size(), places) + rowMargin;
}

RowPlan planRow(const std::vector<RowItem>& items, int width)
{
    RowPlan plan;
    plan.shown = int(items.size());
    const int needed = placeFromLeft(items, items.size(), plan.places) + rowMargin;
    if (needed <= width) {
        for (RowPlace& place : plan.places) {
            if (place.width > 0)
                place.left += (width - needed) / 2;
        }
        return plan;
    }
    plan.extension = std::max(0, width - rowMargin - extensionWidth);
    const auto fits = [&plan](const RowPlace& place) {
        return place.left + place.width + rowGap <= plan.extension;
    };
    const auto cut = std::find_if_not(plan.places.begin(), plan.places.end(), fits);
    plan.shown = int(cut - plan.places.begin());
    placeFromLeft(items, std::size_t(plan.shown), plan.places);
    return plan;
}

} // namespace quorvia::platform
