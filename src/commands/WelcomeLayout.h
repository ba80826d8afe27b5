// Where the two columns of the welcome panel stand: plain arithmetic in twips.
#pragma once

#include <QRect>
#include <QSize>

#include <optional>

namespace quorvia::commands {

struct WelcomeColumns
{
    QRect bar;                 ///< vBar, at the top left
    std::optional<QRect> back; ///< vBack, right of it; none: not placed
    bool operator==(const WelcomeColumns&) const = default;
};

/// The columns in a panel of `panel` twips: vBar as wide as that, 6000 at most, and vBack in what remains
/// once vBar has its 6000.
WelcomeColumns layoutWelcome(QSize panel);

} // namespace quorvia::commands
