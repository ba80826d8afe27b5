#include "controls/TabLook.h"

#include "app/Twips.h"

#include <algorithm>

namespace quorvia::controls {

namespace {

/// The box over a tab's width from `top` to `bottom`, which need not lie on the surface.
QRect boxOf(const TabRecord& tab, int top, int bottom, int height)
{
    const int from = std::clamp(top, 0, height);
    const int to = std::clamp(bottom, from, height);
    return {tab.Left, from, tab.Width, to - from};
}

/// For a strip below its pane.
void lookBelow(TabLook& look, const TabRecord& tab, const TabProperties& properties, int height)
{
    const int twips = app::toTwips(height);
    if (!tab.Selected) {
        look.textColor = properties.TabTextColor;
    } else if (!tab.Hover) {
        look.fill = boxOf(tab, 0, twips - 327, height);
        look.fillColor = properties.ActiveTabBackColor;
        look.text.adjust(0, 0, 0, -2);
        look.textColor = properties.ActiveTabTextColor;
    } else {
        look.fill = boxOf(tab, 0, twips - 100, height);
        look.fillColor = properties.SelectedTabHoverColor;
        look.edge = look.text.adjusted(1, 0, 0, -5);
        look.text.adjust(0, 0, 0, -2);
        look.textColor = properties.SelectedTabHoverColor;
    }
}

/// For a strip above its pane.
void lookAbove(TabLook& look, const TabRecord& tab, const TabProperties& properties, int height)
{
    if (!tab.Selected) {
        look.text.adjust(0, 4, 0, 0);
        look.textColor = tab.Hover ? properties.HoverColour : properties.TabTextColor;
        return;
    }
    look.fill = boxOf(tab, 4, app::toTwips(height) + 315, height);
    look.fillColor = tab.Hover ? properties.SelectedTabHoverColor : properties.ActiveTabBackColor;
    look.textColor = properties.ActiveTabTextColor;
    if (tab.Hover) {
        look.edge = look.text.adjusted(2, 3, 0, 0);
        look.text.adjust(0, 1, 0, 0);
    }
}

} // namespace

TabLook tabLook(const TabRecord& tab, const TabProperties& properties, int height)
{
    TabLook look;
    look.bold = tab.Selected;
    look.underlined = tab.Hover;
    look.text = {tab.Left, 0, tab.Width, height - 1};
    if (properties.AllignBottom)
        lookBelow(look, tab, properties, height);
    else
        lookAbove(look, tab, properties, height);
    return look;
}

QRectF separatorLine(TabSpan tab, int height)
{
    const double surface = height;
    const double oneEnd = std::min(5.5, surface);
    const double otherEnd = std::clamp(app::toTwips(height) - 330.0, 0.0, surface);
    return {QPointF(tabEnd(tab), std::min(oneEnd, otherEnd)),
            QPointF(tabEnd(tab) + 1, std::max(oneEnd, otherEnd))};
}

std::vector<EdgeRing> edgeRings(int borderType)
{
    using enum EdgeRing;
    switch (borderType) {
    case 1:
        return {Raised, Raised};
    case 2:
        return {Sunken, Sunken};
    case 3: // a bump
        return {Raised, Sunken};
    case 4: // etched
        return {Sunken, Raised};
    case 5:
        return {Raised};
    default:
        return {};
    }
}

} // namespace quorvia::controls
