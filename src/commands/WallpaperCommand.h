// Makes the current image the desktop's wallpaper. Costs the save of a bitmap and what the desktop takes.
#pragma once

#include "platform/Wallpaper.h"

#include <functional>

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::commands {

/// As platform::setWallpaper().
using WallpaperSetter =
    std::function<bool(const QString& path, platform::WallpaperStyle style, QString* why)>;

/// Stores `style` (0 stretch, 1 tile, 2 centre) in the user's tree, saves the image that `ix1` holds as
/// "Quorvia.bmp" under InstallPath, lets pending events run and hands the file to the desktop. The name of
/// the current image stays. False, with a line in the log, when no image is held, the save fails (then the
/// desktop is not asked) or the desktop refuses. `ix1` is not touched any more once events have run.
bool SetWallpaperType(engine::ImageEngine& ix1, platform::WallpaperStyle style,
                      const WallpaperSetter& setter = platform::setWallpaper);

} // namespace quorvia::commands
