#include "commands/WelcomeLayout.h"

#include <algorithm>

namespace quorvia::commands {

WelcomeColumns layoutWelcome(QSize panel)
{
    constexpr int widest = 6000;
    WelcomeColumns columns;
    columns.bar = QRect(0, 0, std::min(panel.width(), widest), panel.height());
    if (columns.bar.width() == widest)
        columns.back = QRect(widest, 0, panel.width() - widest, panel.height());
    return columns;
}

} // namespace quorvia::commands
