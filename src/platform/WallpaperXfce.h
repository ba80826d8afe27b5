// The wallpaper of Xfce, through its own program `xfconf-query`. Costs two rounds of processes, some tens of
// milliseconds; three seconds when the desktop does not answer.
#pragma once

#include "platform/WallpaperDesktop.h"

#include <QList>
#include <QStringList>

namespace quorvia::platform {

/// Makes the file at the absolute `path` the wallpaper of every screen and workspace that Xfce knows. Where
/// it knows none yet, of those with the names `screens` (as in "HDMI-1"). False with the reason in `why` (may
/// be null) when the program is missing, fails or does not end in time.
bool setXfceWallpaper(const QString& path, WallpaperStyle style, const QStringList& screens,
                      QString* why = nullptr);

/// The arguments of one run of `xfconf-query` for each value to be set. `listing` is what it printed of all
/// properties with their values.
QList<QStringList> xfceChanges(const QString& listing, const QString& path, WallpaperStyle style,
                               const QStringList& screens);

} // namespace quorvia::platform
