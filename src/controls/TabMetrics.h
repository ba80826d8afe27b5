// The arithmetic of a tab strip, along its length, in device-independent pixels. Indexes of tabs are 1-based;
// 0 stands for none. Everything is linear in the number of tabs at most.
#pragma once

#include <vector>

namespace quorvia::controls {

/// A tab's place on the surface that the tabs are painted on.
struct TabSpan
{
    int Left = 0;
    int Width = 0;
    bool operator==(const TabSpan&) const = default;
};

/// The end of a tab: the first pixel that is no longer its own.
constexpr int tabEnd(TabSpan span)
{
    return span.Left + span.Width;
}

/// The width of a tab whose caption is `captionWidth` wide in bold.
int tabWidth(int captionWidth);

/// Places tabs whose captions are that wide in bold: the first at 5, each other 3 behind the one before it.
std::vector<TabSpan> placeTabs(const std::vector<int>& captionWidths);

/// How wide the surface is: up to the end of the last tab; 1 when there are no tabs.
int surfaceWidth(const std::vector<TabSpan>& tabs);

/// Where the tabs of a strip can be seen: `strip` is its width, `buttons` that of the two scroll buttons.
struct TabRoom
{
    int strip = 0;
    int buttons = 0;
};

/// Whether the tabs do not fit, so that the scroll buttons are wanted.
bool needsButtons(const std::vector<TabSpan>& tabs, int stripWidth);

/// What the scroll buttons leave of the strip for the tabs; all of it when they are not wanted.
int visibleWidth(const std::vector<TabSpan>& tabs, TabRoom room);

/// How far the surface is shifted to the left, so that tab `first` stands at the strip's left end and nothing
/// of the one before it is seen; 0 for the first tab, which keeps its place.
int drawingOffset(const std::vector<TabSpan>& tabs, int first);

/// The tab at `x` of the surface; 0 in a gap and beside the tabs.
int tabAt(const std::vector<TabSpan>& tabs, int x);

bool canScrollLeft(const std::vector<TabSpan>& tabs, int first);
/// True while the last tab's end lies beyond what can be seen.
bool canScrollRight(const std::vector<TabSpan>& tabs, int first, TabRoom room);

/// The first visible tab once all is laid out anew: 1 when all tabs fit; else `first`, or less when there is
/// room for more tabs than from there on.
int usableFirst(const std::vector<TabSpan>& tabs, int first, TabRoom room);

/// The first visible tab that brings tab `index` into sight: `index` itself when it lies before `first`, else
/// as many steps on from `first` as it takes for its end to be seen.
int firstToReveal(const std::vector<TabSpan>& tabs, int first, int index, TabRoom room);

/// Whether a separator stands at the right edge of tab `index`: neither it nor a neighbour is selected.
bool hasSeparator(int index, int selected);

/// How high the surface should be for a line of text of `lineHeight`: 23, where the boxes of the tabs come
/// out best, or more for a large font.
int preferredSurfaceHeight(int lineHeight);

} // namespace quorvia::controls
