// How each tab of a strip looks in each of its states, as boxes and colour numbers, without a painter.
#pragma once

#include "controls/TabList.h"
#include "controls/TabProperties.h"

#include <QRect>
#include <QRectF>

#include <optional>
#include <vector>

namespace quorvia::controls {

struct TabLook
{
    bool bold = false;
    bool underlined = false;
    QRect fill; ///< the box behind the text; empty for none
    quint32 fillColor = 0;
    QRect edge; ///< where the border's edge is drawn; empty for none
    QRect text; ///< the caption is centred in it
    quint32 textColor = 0;
    bool operator==(const TabLook&) const = default;
};

/// The look of `tab` on a surface `height` pixels high; all boxes in pixels of it. The ends of the filled box
/// follow from the height in twips, taken as plain numbers, and end with the surface.
TabLook tabLook(const TabRecord& tab, const TabProperties& properties, int height);

/// The separator at a tab's right edge, in pixels of a surface `height` pixels high.
QRectF separatorLine(TabSpan tab, int height);

enum class EdgeRing { Raised, Sunken };

/// The rings of the edge that `borderType`, 0 to 5, stands for, from the outside in, each one pixel wide;
/// none for any other number.
std::vector<EdgeRing> edgeRings(int borderType);

} // namespace quorvia::controls
