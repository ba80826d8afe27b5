// Writes a file so that its name always stands for a whole content: the old one or the new one.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QString>

namespace quorvia::engine {

/// Puts `bytes` at `path` (native path) through a file beside it that takes the name when the disk has all of
/// them. Permissions of an existing file are kept; a symbolic link stays and what it leads to is written.
/// WriteFailed, with the old content untouched, when the file, its directory or the disk does not take it: a
/// file in a directory without write permission is not written in place, since a failure half way would lose
/// the old content. What nobody may write the super-user does not replace either.
Status writeWholeFile(const QString& path, const QByteArray& bytes);

/// Puts `bytes` into a new file at `path` (native path), without waiting for the disk: for one that is soon
/// read again and then removed. What was there is removed before. WriteFailed, and no file is left, when it
/// does not take them.
Status writeScratchFile(const QString& path, const QByteArray& bytes);

/// Puts what the file at `scratch` holds at `path`, as writeWholeFile() does. A new file costs no copy where
/// the disk gives one file two names; nobody may write to `scratch` in place afterwards.
Status writeFromScratch(const QString& scratch, const QString& path);

/// Waits until the disk also has the names in the directory of `path`, so that a loss of power does not bring
/// an old content back. Dear: milliseconds. What the file system does not offer is passed over.
void syncDirectoryOf(const QString& path);

} // namespace quorvia::engine
