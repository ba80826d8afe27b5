// The wallpaper of Plasma, by a script that its shell runs. Costs one call over the session bus, some tens of
// milliseconds; two seconds when the shell does not answer.
#pragma once

#include "platform/WallpaperDesktop.h"

namespace quorvia::platform {

/// Makes the file at the absolute `path` the wallpaper of all screens. False with the reason in `why` (may be
/// null) when there is no session bus, no shell of Plasma, or when the shell refuses.
bool setPlasmaWallpaper(const QString& path, WallpaperStyle style, QString* why = nullptr);

/// The script that the shell runs for it.
QString plasmaScript(const QString& path, WallpaperStyle style);

/// `text` as JavaScript writes it: in double quotes, and nothing in it ends the quotes or the line.
QString javaScriptText(const QString& text);

} // namespace quorvia::platform
