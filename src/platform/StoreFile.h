// Opening the file of a settings store: the usual good file in one pass, and everything that may be wrong
// with it (missing, damaged, read only, on a file system without shared memory) put right under a lock in a
// second one.
#pragma once

#include "platform/SettingsStore.h"
#include "platform/Sqlite.h"

#include <QString>

namespace quorvia::platform {

struct StoreFile
{
    sqlite::Database database; ///< null when `result` is Unusable
    OpenResult result = OpenResult::Unusable;
    QString setAsidePath; ///< where a damaged file was put by this opening, else empty
    bool firstWriteOff =
        false; ///< synchronous is off until the first write is done; see syncAfterFirstWrite()
};

/// Which journal the file is to have. Ahead falls to Rollback by itself where opening already shows the need.
enum class Journal {
    Ahead,
    Rollback, ///< for a file whose write-ahead log turned out unusable at a write
};

/// Opens or creates the store at `path` with its table. About half a millisecond for a good file.
StoreFile openStoreFile(const QString& path, Journal journal = Journal::Ahead);

/// Turns syncing on for all further writes. The first write into a new, empty write-ahead log would otherwise
/// wait for the disk for the log's head alone; a power cut before that head is on the disk only makes the
/// empty log stay empty.
void syncAfterFirstWrite(StoreFile& file);

} // namespace quorvia::platform
