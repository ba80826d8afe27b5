// Which desktop runs, and what its parts share in setting a wallpaper. Plain functions, free of cost.
#pragma once

#include <QString>

namespace quorvia::platform {

/// How the picture lies on the desktop. The numbers are those of the commands.
enum class WallpaperStyle { Stretch = 0, Tile = 1, Centre = 2 };

/// Who draws the desktop's background.
enum class WallpaperDesktop {
    Gnome, ///< and all that read its settings
    Cinnamon,
    Mate,
    Xfce,
    Plasma,
    Root,    ///< nobody: the root window of the X server shows it
    Unknown, ///< somebody who takes no wallpaper from us
};

/// The desktop that runs. `names` as in XDG_CURRENT_DESKTOP: a colon list, the closest name first, compared
/// without case. `isX` when the program shows its windows on an X server, `isWayland` when the session is one
/// of Wayland, whose X server has a root window that nobody sees.
WallpaperDesktop wallpaperDesktop(const QString& names, bool isX, bool isWayland);

/// The address ("file:///...") of the file at the absolute `path`.
QString fileAddress(const QString& path);

/// The file at the absolute `path` under a second spelling, "/a/./b" for "/a/b". Our wallpaper is always the
/// same file, but desktops look only when the value changes: from one wallpaper to the next it does, and no
/// wrong value ever stands in between.
QString otherSpelling(const QString& path);

/// What to store for the file at the absolute `path` where `present` is stored: the path, or its other
/// spelling where the path stands already.
QString changedPath(const QString& path, const QString& present);
/// The same for a value that is an address.
QString changedAddress(const QString& path, const QString& present);

} // namespace quorvia::platform
