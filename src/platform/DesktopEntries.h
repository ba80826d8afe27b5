// The desktop entries of programs: where they lie, what they are called, and how a program's path is written
// into one. Looks at the file system, nothing is kept.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quorvia::platform {

/// The directories in which the desktop looks for entries, the user's own first.
QStringList applicationsDirectories();

/// The full path of the entry `id`, as in "viewer.desktop": the first that is a regular file. A "-" of the id
/// may stand for a subdirectory. Empty when there is none, and for an id of more than 255 bytes.
QString entryPath(const QString& id);
/// The id of the entry at `path`: its way below an applications directory with "-" between, else its name.
QString entryId(const QString& path);
/// True when the desktop takes the entry at `path` for a program that can be started: it is whole, not
/// hidden, and its program is there. Reads the
/// file itself: GIO would read all lists beside it, and wait for ever for one that is a pipe.
bool isUsableEntry(const QString& path);

/// `program`, a full path, as the first word of an entry's "Exec=" line, with all that such a line asks for.
QByteArray execWord(const QString& program);
/// The entry `text` with `program` in place of the first word of its "Exec=" lines.
QByteArray withProgram(const QByteArray& text, const QString& program);

} // namespace quorvia::platform
