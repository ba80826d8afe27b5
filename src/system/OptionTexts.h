// What the boxes and labels of the preferences say. Values only.
#pragma once

#include "platform/Dialogs.h"

#include <QString>

namespace quorvia::system {

/// The files of the thumbnail cache.
struct ThumbnailStatistics
{
    qsizetype files = 0;
    double megabytes = 0; ///< of 1024 * 1024 bytes
};

/// Two lines: their number, and the room that they take.
QString statisticsText(const ThumbnailStatistics& statistics);

/// Asks whether to become the viewer of all formats.
platform::MessageBox associateBox();
/// Asks whether to delete the thumbnails.
platform::MessageBox clearThumbnailsBox();
/// Chooses the program that becomes the viewer instead.
platform::FileChooser programChooser();

} // namespace quorvia::system
