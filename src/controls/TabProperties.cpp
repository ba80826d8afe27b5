#include "controls/TabProperties.h"

namespace quorvia::controls {

namespace {

struct ColorRow
{
    const char* key;
    quint32 TabProperties::*color;
};

constexpr ColorRow colorRows[] = {
    {"TabBackColor", &TabProperties::TabBackColor},
    {"TabTextColor", &TabProperties::TabTextColor},
    {"ActiveTabBackColor", &TabProperties::ActiveTabBackColor},
    {"ActiveTabTextColor", &TabProperties::ActiveTabTextColor},
    {"BackColor", &TabProperties::BackColor},
    {"HoverColour", &TabProperties::HoverColour},
    {"SeperatorLineColor", &TabProperties::SeperatorLineColor},
    {"SelectedTabHoverColor", &TabProperties::SelectedTabHoverColor},
};

constexpr QLatin1String fontKey("Font");
constexpr QLatin1String allignKey("AllignBottom");
constexpr QLatin1String borderKey("BorderType");

/// The number at `key`, also one that was written as a negative 32-bit one.
std::optional<qint64> numberAt(const QVariantMap& bag, QLatin1String key)
{
    bool isNumber = false;
    const qint64 number = bag.value(key).toLongLong(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

} // namespace

TabProperties TabProperties::whenNew()
{
    TabProperties properties;
    properties.ActiveTabBackColor = 0x8000000F;
    properties.ActiveTabTextColor = 0x404040;
    properties.BackColor = 0x8000000C;
    return properties;
}

TabProperties readProperties(const QVariantMap& bag)
{
    TabProperties properties;
    if (const QVariant font = bag.value(fontKey); font.canConvert<QFont>())
        properties.Font = font.value<QFont>();
    for (const ColorRow& row : colorRows) {
        if (const auto number = numberAt(bag, QLatin1String(row.key)))
            properties.*row.color = static_cast<quint32>(*number);
    }
    if (const QVariant allign = bag.value(allignKey); allign.isValid())
        properties.AllignBottom = allign.toBool();
    if (const auto number = numberAt(bag, borderKey))
        properties.TabBorderType = static_cast<int>(*number);
    return properties;
}

QVariantMap writeProperties(const TabProperties& properties)
{
    QVariantMap bag;
    if (properties.Font)
        bag.insert(fontKey, *properties.Font);
    for (const ColorRow& row : colorRows)
        bag.insert(QLatin1String(row.key), properties.*row.color);
    bag.insert(allignKey, properties.AllignBottom);
    bag.insert(borderKey, properties.TabBorderType);
    return bag;
}

} // namespace quorvia::controls
