// The wallpaper of a bare X server: a pixmap behind the root window, which stays when the program has ended.
// Costs the transfer of the whole root window, some tens of milliseconds, by a connection of its own.
#pragma once

#include "platform/WallpaperDesktop.h"

#include <QByteArray>
#include <QList>
#include <QRect>

namespace quorvia::platform {

/// Shows the picture file at `path` behind the root window of the X server `display` (empty: that of
/// DISPLAY). `screens` as in rootImage(). Other programs find the pixmap by the properties _XROOTPMAP_ID and
/// ESETROOT_PMAP_ID, and the one that they named before is freed. False with the reason in `why` (may be
/// null) when the picture cannot be read, there is no server, or it has another depth than 24 or 32.
bool setRootWallpaper(const QString& path, WallpaperStyle style, const QList<QRect>& screens,
                      const QByteArray& display = {}, QString* why = nullptr);

} // namespace quorvia::platform
