// What the welcome panel holds: panes and rows of its two columns, as values. The tag of a row is the command
// that it runs; a row without one is a text.
#pragma once

#include "platform/PaneBar.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvia::commands {

/// The key of the row that counts the images.
inline constexpr char viewedItem[] = "INFO4";

struct WelcomeFacts
{
    QStringList missingTools; ///< titles of the other tools of the family that are not installed
    int imagesOpened = 0;     ///< `ImageOpenCount`
    QStringList tips;         ///< one a row, five of them
};

/// The panes of `vBar`, the column on the left.
QList<platform::Pane> welcomePanes(const WelcomeFacts& facts);
/// The panes of `vBack`, the column on the right.
QList<platform::Pane> resourcePanes(const WelcomeFacts& facts);

} // namespace quorvia::commands
