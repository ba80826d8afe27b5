// What the root window of an X server shows as a wallpaper, drawn into an image of its size, and how that
// image travels. Drawing scales the picture once for each size of a screen.
#pragma once

#include "platform/WallpaperDesktop.h"

#include <QImage>
#include <QList>
#include <QRect>

namespace quorvia::platform {

/// The image of a root window of `size` pixels with `screens` (in its pixels) on it, black where no picture
/// lies. Each screen has its own stretched or centred picture, cut off at its edges; tiles begin at the
/// window's corner and run over all screens. Without screens the whole window is one. RGB32; null when there
/// is no memory for it.
QImage rootImage(const QImage& picture, QSize size, const QList<QRect>& screens, WallpaperStyle style);

/// How many rows of `bytesPerRow` bytes one request of at most `limit` bytes carries behind its head; 0 when
/// not even one does.
int rowsPerRequest(qint64 limit, qint64 bytesPerRow);

/// The picture file at `path`, whatever its size; null when it cannot be read, and `why` (may be null) tells.
QImage wallpaperPicture(const QString& path, QString* why = nullptr);

} // namespace quorvia::platform
