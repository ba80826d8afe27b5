// Names of files and folders made fit to be shown: they may hold anything but "/" and a zero character.
#pragma once

#include <QString>

namespace quorvia::platform {

/// `text` with a blank for each control character and line separator, so that it stands on one line.
QString oneLine(const QString& text);

/// `text` as a tool tip that shows it letter for letter, however much it looks like mark-up.
QString plainToolTip(const QString& text);

} // namespace quorvia::platform
