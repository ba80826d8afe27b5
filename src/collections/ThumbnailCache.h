// The thumbnails on the disk: one small JPEG an image, found by its name alone. No index and no object: a
// look costs a read of the image's time and one look for a file.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

namespace quorvia::collections {

/// Name of the thumbnail of an image `name` (without directory) last written at `modified` (local time): its
/// time stamp to the second, "_", the name less its last four characters, ".thb". An invalid time counts as
/// date 0, the 30th of December 1899. Empty for a name of fewer than four characters, which has none.
QString thumbnailName(const QString& name, const QDateTime& modified);

/// Where the thumbnails lie: `ThumbnailPath`, else "Thumbs/" below the data root. Names are put right behind
/// it.
QString thumbnailDirectory();

/// The full name of the thumbnail of the image at `path` as the file is now; empty when it has none. Looks at
/// the image's time.
QString thumbnailFor(const QString& path);

/// True when a thumbnail stands under exactly this full name: "*" and "?" match nothing but themselves.
bool hasThumbnail(const QString& thumbnail);

/// What lies in a directory of thumbnails.
struct ThumbnailCount
{
    QStringList files;    ///< full paths
    double megabytes = 0; ///< of all of them, 1024 * 1024 bytes each
};

/// The full paths of the "*.thb" in `directory` (a "/" at its end may be missing), not below it. Some tens of
/// milliseconds for 50,000.
QStringList listThumbnails(const QString& directory);
/// The size of `file`; 0 when it has gone. Costs a look at it.
double megabytesOf(const QString& file);

/// Deletes those of `files` that are thumbnails by their name and no directories; all others stay. What
/// cannot be deleted is passed over. `goOn` is asked before each, with how many are done; false ends it.
void deleteThumbnails(const QStringList& files, const std::function<bool(int done)>& goOn = {});

} // namespace quorvia::collections
