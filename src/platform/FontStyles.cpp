#include "platform/FontStyles.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>

namespace quorvia::platform {

QString nearestStyle(std::span<const FontStyle> styles, int weight, bool italic)
{
    const auto distance = [&](const FontStyle& style) {
        return std::tuple(std::abs(style.weight - weight), style.italic != italic, style.name.size());
    };
    const auto nearest = std::ranges::min_element(styles, {}, distance);
    return nearest == styles.end() ? QString() : nearest->name;
}

} // namespace quorvia::platform
