// The names in one directory, read in one go and in the file system's order. Costs one pass over the
// directory; links and, on file systems that do not tell the kind of a name, every name cost a look each.
#pragma once

#include <QString>

#include <vector>

namespace quorvia::app {

enum class EntryKind {
    File,
    Directory,
    Other
}; ///< a link counts as what it leads to; Other: device, socket, dead link

struct DirectoryEntry
{
    QString name;
    EntryKind kind = EntryKind::Other;
    bool isHidden() const { return name.startsWith(u'.'); }
};

/// The entries of `directory` without "." and ".."; none when it cannot be read. Names that are not UTF-8 are
/// left out: no later operation could open them.
std::vector<DirectoryEntry> readDirectory(const QString& directory);

} // namespace quorvia::app
