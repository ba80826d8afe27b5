// What the desktop does with files for us: open with the default program, start a program. Each call costs a
// look at the desktop's tables and the start of a process, some milliseconds; none waits for the program it
// started.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::platform {

/// Outcome of a shell request. The numbers are those that mFile's table of failure texts is written in.
enum class ShellCode : int {
    Failed = 1,
    FileNotFound = 2,
    PathNotFound = 3,
    AccessDenied = 5,
    OutOfMemory = 8,
    BadExecutable = 11,
    SharingViolation = 26,
    AssociationIncomplete = 27,
    TimedOut = 28,
    TransactionFailed = 29,
    Busy = 30,
    NoAssociation = 31,
    LibraryMissing = 32,
    Ok = 33,
};

/// Opens a document, a directory or an address with the program that the user has chosen for its type. A path
/// that begins with "-" is made absolute first. A text that names something on disk is a path even when it
/// looks like an address. Returns as soon as the program has been asked for.
ShellCode shellOpen(const QString& target);

/// Opens `path` in an editor for its type: the user's default program for it that is not this one, else the
/// first raster graphics editor that the desktop knows: those that name the type before the others.
ShellCode shellEdit(const QString& path);

/// Starts the program file `program` with `arguments` in `directory` (empty: the present one), detached,
/// without a shell. A `program` without "/" is looked up in PATH and nowhere else. Reports what can be told
/// before it runs: missing, not executable, not a program.
ShellCode startProgram(const QString& program, const QStringList& arguments, const QString& directory);

/// True when `path` is a regular file that the user may execute and whose first bytes are those of a program
/// or of a script. The bytes decide beside the permission because some file systems let every file be
/// executed.
bool isProgramFile(const QString& path);

/// The path of the program file `name` in the first of `directories`, each ending in "/", that holds it;
/// empty when none does.
QString findProgram(const QStringList& directories, const QString& name);

/// True when `text` begins with the scheme of an address ("https:", "mailto:", "file:") and names nothing on
/// disk. One letter is a drive, not a scheme.
bool isAddress(const QString& text);

} // namespace quorvia::platform
