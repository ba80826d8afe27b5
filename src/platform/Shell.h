// What the desktop does with files for us: open with the default program, start a program.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::platform {

/// Outcome of a shell request. The numbers are those that mFile's table of failure texts is written in.
enum class ShellCode : int {
    OutOfMemory = 8,
    FileNotFound = 2,
    PathNotFound = 3,
    AccessDenied = 5,
    BadExecutable = 11,
    SharingViolation = 26,
    AssociationIncomplete = 27,
    TimedOut = 28,
    TransactionFailed = 29,
    Busy = 30,
    NoAssociation = 31,
    LibraryMissing = 32,
    Failed = 1,
    Ok = 33,
};

/// Opens a document or a web address with the program that the user has chosen for its type. A path that
/// begins with
/// "-" is made absolute first. Returns as soon as the program has been asked for.
ShellCode shellOpen(const QString& target);

/// Opens `path` in an editor for its type: the user's default program for it that is not this one, else the
/// first raster graphics editor that the desktop knows.
ShellCode shellEdit(const QString& path);

/// Starts the program file `program` with `arguments` in `directory` (empty: the present one), detached,
/// without a shell. Reports what can be told before it runs: missing, not executable, not a program.
ShellCode startProgram(const QString& program, const QStringList& arguments, const QString& directory);

/// True when `path` is a regular file that the user may execute.
bool isProgramFile(const QString& path);

} // namespace quorvia::platform
