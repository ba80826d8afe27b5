#include "controls/TabMetrics.h"

#include <algorithm>
#include <cstdlib>

namespace quorvia::controls {

namespace {

constexpr int firstLeft = 5;
constexpr int gap = 3;
constexpr int scrolledLeft = 2; // hides the tab before, with its separator
constexpr int captionMargins = 4;

const TabSpan& at(const std::vector<TabSpan>& tabs, int index)
{
    return tabs[static_cast<std::size_t>(index - 1)];
}

int countOf(const std::vector<TabSpan>& tabs)
{
    return static_cast<int>(tabs.size());
}

/// Whether tab `index` ends within what can be seen when `first` is the first visible one.
bool isEndSeen(const std::vector<TabSpan>& tabs, int first, int index, TabRoom room)
{
    return tabEnd(at(tabs, index)) - drawingOffset(tabs, first) <= visibleWidth(tabs, room);
}

} // namespace

int tabWidth(int captionWidth)
{
    return captionWidth + captionMargins;
}

std::vector<TabSpan> placeTabs(const std::vector<int>& captionWidths)
{
    std::vector<TabSpan> tabs;
    tabs.reserve(captionWidths.size());
    int left = firstLeft;
    for (const int captionWidth : captionWidths) {
        tabs.push_back({left, tabWidth(captionWidth)});
        left = tabEnd(tabs.back()) + gap;
    }
    return tabs;
}

int surfaceWidth(const std::vector<TabSpan>& tabs)
{
    return tabs.empty() ? 1 : tabEnd(tabs.back());
}

bool needsButtons(const std::vector<TabSpan>& tabs, int stripWidth)
{
    return !tabs.empty() && surfaceWidth(tabs) > stripWidth;
}

int visibleWidth(const std::vector<TabSpan>& tabs, TabRoom room)
{
    return needsButtons(tabs, room.strip) ? std::max(room.strip - room.buttons, 0) : room.strip;
}

int drawingOffset(const std::vector<TabSpan>& tabs, int first)
{
    if (first <= 1 || first > countOf(tabs))
        return 0;
    return at(tabs, first).Left - scrolledLeft;
}

int tabAt(const std::vector<TabSpan>& tabs, int x)
{
    const auto found = std::find_if(tabs.begin(), tabs.end(),
                                    [x](const TabSpan& tab) { return tab.Left <= x && x < tabEnd(tab); });
    return found == tabs.end() ? 0 : static_cast<int>(found - tabs.begin()) + 1;
}

bool canScrollLeft(const std::vector<TabSpan>& tabs, int first)
{
    return tabs.size() > 1 && first > 1;
}

bool canScrollRight(const std::vector<TabSpan>& tabs, int first, TabRoom room)
{
    return tabs.size() > 1 && first < countOf(tabs) && !isEndSeen(tabs, first, countOf(tabs), room);
}

int usableFirst(const std::vector<TabSpan>& tabs, int first, TabRoom room)
{
    if (!needsButtons(tabs, room.strip))
        return 1;
    first = std::clamp(first, 1, countOf(tabs));
    while (first > 1 && isEndSeen(tabs, first - 1, countOf(tabs), room))
        --first;
    return first;
}

int firstToReveal(const std::vector<TabSpan>& tabs, int first, int index, TabRoom room)
{
    if (index < 1 || index > countOf(tabs) || !needsButtons(tabs, room.strip))
        return first;
    if (index < first)
        return index;
    while (first < index && !isEndSeen(tabs, first, index, room))
        ++first;
    return first;
}

bool hasSeparator(int index, int selected)
{
    return selected == 0 || std::abs(index - selected) > 1;
}

int preferredSurfaceHeight(int lineHeight)
{
    constexpr int bestHeight = 23;
    constexpr int aboveAndBelow = 7;
    return std::max(bestHeight, lineHeight + aboveAndBelow);
}

} // namespace quorvia::controls
