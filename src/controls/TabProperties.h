// The persisted properties of a tab strip, as a value, and the bag that they are written to and read from.
#pragma once

#include <QFont>
#include <QVariantMap>

#include <optional>

namespace quorvia::controls {

/// Colours are numbers: red in the lowest byte, or 0x80 in the top byte and a desktop colour's code in the
/// lowest. As it is made, a value has what a property takes that is missing in a bag.
struct TabProperties
{
    std::optional<QFont> Font; ///< none: the font of what is around the strip
    quint32 TabBackColor = 0x8000000F;
    quint32 TabTextColor = 0x80000012;
    quint32 ActiveTabBackColor = 0x80000005;
    quint32 ActiveTabTextColor = 0x80000012;
    quint32 BackColor = 0x8000000F;
    quint32 HoverColour = 0x80000012;
    bool AllignBottom = false; ///< the strip stands below its pane: the selected tab joins upwards
    quint32 SeperatorLineColor = 0x80000012;
    quint32 SelectedTabHoverColor = 0;
    int TabBorderType = 1; ///< an edge, 0 to 5; see edgeRings()
    bool operator==(const TabProperties&) const = default;

    /// What a new strip starts from; that differs in three colours.
    static TabProperties whenNew();
};

/// The properties that `bag` holds; one that is missing, or that is no number where one is wanted, takes its
/// default.
TabProperties readProperties(const QVariantMap& bag);
/// All properties under their keys; the font only when there is one of its own.
QVariantMap writeProperties(const TabProperties& properties);

} // namespace quorvia::controls
