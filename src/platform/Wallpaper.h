// The desktop's wallpaper. Costs what the running desktop's way costs: tens of milliseconds, and two or three
// seconds at most where it does not answer.
#pragma once

#include "platform/WallpaperDesktop.h"

namespace quorvia::platform {

/// Makes the picture file at the absolute `path` the wallpaper of the running desktop. The file has to stay;
/// a new picture under the same path is noticed when it is set again. False with the reason in `why` (may be
/// null), fit for the log, when there is no such file or the desktop does not take it.
bool setWallpaper(const QString& path, WallpaperStyle style, QString* why = nullptr);

} // namespace quorvia::platform
