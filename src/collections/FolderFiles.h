// The files of a folder as the list shows them. Each function reads the folder once, whatever its size:
// 20,000 files take some tens of milliseconds.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::collections {

/// The paths of `folder`'s files that match the ";"-separated `pattern`, in the order of the list: by full
/// path, ignoring case (names that differ in nothing else by their characters' codes). A folder that cannot
/// be read has none.
QStringList sortedFolderFiles(const QString& folder, const QString& pattern);

/// True when one of `files`, paths of files in `folder`, is no longer there. A link whose target has gone
/// counts as gone.
bool anyHasVanished(const QString& folder, const QStringList& files);

} // namespace quorvia::collections
