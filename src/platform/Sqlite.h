// The few pieces of the SQLite C library that the settings store stands on, with their handles owned.
// Cheap: everything but opening a database (some tenths of a millisecond).
#pragma once

#include <QByteArray>
#include <QString>

#include <sqlite3.h>

#include <memory>

namespace quorvia::platform::sqlite {

struct Close
{
    void operator()(sqlite3* database) const;
};
struct Finalize
{
    void operator()(sqlite3_stmt* statement) const;
};
using Database = std::unique_ptr<sqlite3, Close>;
using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

/// How a database file is to be opened.
enum class Access {
    ReadWrite, ///< created when missing; falls to reading when the file cannot be written
    Immutable, ///< read only, without any lock or file beside it, for a directory that cannot be written
};

struct Opened
{
    Database database; ///< null unless `code` is SQLITE_OK
    int code = SQLITE_OK;
};

/// Opens the file at `path`. Nothing in it is read yet, so that a file that is no database opens too. A
/// statement waits at most `busyMilliseconds` for other programs. Whatever a hostile file could run by itself
/// is switched off.
Opened open(const QString& path, Access access, int busyMilliseconds);

/// Runs one statement that gives no rows, or whose rows do not matter; the result code of SQLite, 0 when
/// good.
int run(sqlite3* database, const char* sql);
/// The first column of the first row of `sql` as text; null when it gives none. `code` gets the result code.
QByteArray firstText(sqlite3* database, const char* sql, int* code = nullptr);
/// A statement that is kept and run many times; null on failure, with the result code in `code`.
Statement prepare(sqlite3* database, const char* sql, int* code = nullptr);

/// True for the result codes that say that the file itself is damaged or no database.
bool saysDamaged(int code);
/// True for the result codes that say that another program holds the file.
bool saysBusy(int code);
/// True when the file may not be written at all, whatever is written.
bool saysClosed(int code);

} // namespace quorvia::platform::sqlite
