// The wallpaper of the desktops that keep it in GSettings: GNOME and its relatives, Cinnamon, MATE. A write
// waits until the settings are stored, some milliseconds.
#pragma once

#include "platform/WallpaperDesktop.h"

namespace quorvia::platform {

/// Makes the file at the absolute `path` the wallpaper of `desktop`: Gnome, Cinnamon or Mate. False with the
/// reason in `why` (may be null) when the desktop's schema or one of its keys is not there, is locked, or
/// takes no such value; then nothing has changed.
bool setSettingsWallpaper(WallpaperDesktop desktop, const QString& path, WallpaperStyle style,
                          QString* why = nullptr);

} // namespace quorvia::platform
