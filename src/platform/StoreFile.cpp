#include "platform/StoreFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

namespace quorvia::platform {

namespace {

constexpr int busyMilliseconds = 2000;
constexpr int lockMilliseconds = 1000;
constexpr int mostRepairs = 6;
/// Up to here every page is checked at opening. A store has a few KB; a huge one is some accident and is
/// checked only where it is read.
constexpr qint64 largestChecked = 4 * 1024 * 1024;
/// Value of user_version in a file for which the write-ahead log was refused, so that it is not tried at each
/// opening.
constexpr char refusalMark[] = "1";

constexpr char createTable[] = "CREATE TABLE IF NOT EXISTS settings("
                               "key TEXT COLLATE NOCASE, name TEXT COLLATE NOCASE, type INTEGER, value, "
                               "PRIMARY KEY(key, name)) WITHOUT ROWID";

/// Lock on the directory of the store, shared while a program opens the file and exclusive while one repairs
/// it, so that nobody opens a file that is half set aside. Leaves no file behind. A directory that cannot be
/// locked, or whose lock is held too long, is done without.
class DirectoryLock
{
  public:
    DirectoryLock(const QString& directory, int kind)
        : m_descriptor(::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        for (int waited = 0; m_descriptor >= 0 && waited < lockMilliseconds; ++waited) {
            if (::flock(m_descriptor, kind | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR))
                break;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    ~DirectoryLock()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

  private:
    int m_descriptor;
};

enum class Finding {
    Good,
    NoDirectory,
    NoTable,
    OtherJournal, ///< in order, but with a rollback journal that may be a legacy of another program
    NoAheadLog, ///< cannot even be read: its write-ahead log needs what this file system or directory refuses
    Damaged,
    Obstructed, ///< something that is no store and not ours to move, or held by another program
};

struct Look
{
    Finding finding = Finding::Obstructed;
    sqlite::Database database;
};

bool isReadOnly(const sqlite::Database& database)
{
    return sqlite3_db_readonly(database.get(), "main") != 0;
}

bool hasTable(const sqlite::Database& database)
{
    return sqlite3_table_column_metadata(database.get(), "main", "settings", "value", nullptr, nullptr,
                                         nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool usesAheadLog(const sqlite::Database& database)
{
    return sqlite::firstText(database.get(), "PRAGMA journal_mode") == "wal";
}

bool refusesAheadLog(const sqlite::Database& database)
{
    return sqlite::firstText(database.get(), "PRAGMA user_version") == refusalMark;
}

Finding findingFor(int code)
{
    if (sqlite::saysDamaged(code))
        return Finding::Damaged;
    return sqlite::saysBusy(code) ? Finding::Obstructed : Finding::NoAheadLog;
}

Finding examine(const sqlite::Database& database, qint64 size)
{
    int code = SQLITE_OK;
    if (size > 0 && size <= largestChecked) {
        const QByteArray verdict = sqlite::firstText(database.get(), "PRAGMA integrity_check(1)", &code);
        if (code == SQLITE_OK && verdict != "ok")
            return Finding::Damaged;
    } else {
        sqlite::firstText(database.get(), "PRAGMA schema_version", &code);
    }
    if (code != SQLITE_OK)
        return findingFor(code);
    if (!hasTable(database))
        return Finding::NoTable;
    const bool inOrder = isReadOnly(database) || usesAheadLog(database) || refusesAheadLog(database);
    return inOrder ? Finding::Good : Finding::OtherJournal;
}

Look look(const QString& path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) {
        // An empty directory in the file's place holds nothing of anybody's; all else stays where it is.
        const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        const bool empty = info.isDir() && QDir(path).isEmpty(everything);
        return {empty ? Finding::Damaged : Finding::Obstructed, nullptr};
    }
    sqlite::Opened opened = sqlite::open(path, sqlite::Access::ReadWrite, busyMilliseconds);
    if (!opened.database)
        return {QFileInfo(info.path()).isDir() ? Finding::Obstructed : Finding::NoDirectory, nullptr};
    const Finding finding = examine(opened.database, info.size());
    return {finding, std::move(opened.database)};
}

/// Puts the file and what belongs to it under a new name beside it; that name, or empty when it could not be
/// moved. The file itself goes last: cut short before that, the next opening finds it damaged still.
QString setAside(const QString& path)
{
    const QString stem = path + QStringLiteral(".damaged-") +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = stem;
    for (int n = 2; QFileInfo::exists(target) || QFileInfo::exists(target + QStringLiteral("-wal")); ++n)
        target = stem + QLatin1Char('-') + QString::number(n);

    const auto move = [&](const QString& suffix) {
        return std::rename(QFile::encodeName(path + suffix).constData(),
                           QFile::encodeName(target + suffix).constData()) == 0;
    };
    move(QStringLiteral("-wal"));
    move(QStringLiteral("-shm"));
    move(QStringLiteral("-journal"));
    return move(QString()) ? target : QString();
}

/// Gives the file a rollback journal and marks it so. Works without shared memory, alone with the file.
bool leaveAheadLog(const QString& path)
{
    const sqlite::Opened opened = sqlite::open(path, sqlite::Access::ReadWrite, busyMilliseconds);
    if (!opened.database)
        return false;
    sqlite3* database = opened.database.get();
    return sqlite::run(database, "PRAGMA locking_mode=EXCLUSIVE") == SQLITE_OK &&
           sqlite::firstText(database, "PRAGMA journal_mode=DELETE") == "delete" &&
           sqlite::run(database, "PRAGMA user_version=1") == SQLITE_OK;
}

/// Switches to the write-ahead log and tries it; false when it is refused. A file that others hold right now
/// keeps its journal, and that counts as good.
bool takeAheadLog(const sqlite::Database& database)
{
    int code = SQLITE_OK;
    sqlite::firstText(database.get(), "PRAGMA journal_mode=WAL", &code);
    if (code == SQLITE_OK)
        code = sqlite::run(database.get(), "BEGIN IMMEDIATE; ROLLBACK");
    return code == SQLITE_OK || sqlite::saysBusy(code);
}

/// Makes the table, in a new file together with the write-ahead log. Nothing in a new file is worth waiting
/// for the disk; the connection is not used for anything after this.
bool makeTable(const sqlite::Database& database)
{
    sqlite::run(database.get(), "PRAGMA synchronous=OFF");
    if (!refusesAheadLog(database) && !takeAheadLog(database))
        return false;
    return sqlite::run(database.get(), createTable) == SQLITE_OK;
}

StoreFile readOnlyFile(const QString& path)
{
    StoreFile file;
    if (!QFileInfo(path).isFile())
        return file;
    sqlite::Opened opened = sqlite::open(path, sqlite::Access::Immutable, busyMilliseconds);
    if (opened.database && examine(opened.database, QFileInfo(path).size()) == Finding::Good) {
        file.database = std::move(opened.database);
        file.result = OpenResult::ReadOnly;
    }
    return file;
}

StoreFile readyFile(sqlite::Database database)
{
    StoreFile file;
    file.result = isReadOnly(database) ? OpenResult::ReadOnly : OpenResult::Ready;
    if (file.result == OpenResult::Ready && usesAheadLog(database)) {
        struct stat log = {};
        const char* logName = sqlite3_filename_wal(sqlite3_db_filename(database.get(), "main"));
        file.firstWriteOff = ::stat(logName, &log) != 0 || log.st_size == 0;
        sqlite::run(database.get(),
                    file.firstWriteOff ? "PRAGMA synchronous=OFF" : "PRAGMA synchronous=NORMAL");
    }
    file.database = std::move(database);
    return file;
}

StoreFile repair(const QString& path, Journal journal)
{
    const DirectoryLock lock(QFileInfo(path).path(), LOCK_EX);
    bool keepJournal = journal == Journal::Rollback;
    if (keepJournal && !leaveAheadLog(path))
        return readOnlyFile(path);

    QString damagedPath;
    for (int round = 0; round < mostRepairs; ++round) {
        Look seen = look(path);
        switch (seen.finding) {
        case Finding::Good:
            break;
        case Finding::OtherJournal:
            if (keepJournal)
                break;
            keepJournal = true;
            if (takeAheadLog(seen.database))
                continue;
            seen.database.reset();
            leaveAheadLog(path);
            continue;
        case Finding::NoTable: {
            if (makeTable(seen.database))
                continue;
            const bool readOnly = isReadOnly(seen.database);
            seen.database.reset();
            if (!readOnly && leaveAheadLog(path))
                continue;
            return {};
        }
        case Finding::NoAheadLog:
            seen.database.reset();
            if (leaveAheadLog(path))
                continue;
            return readOnlyFile(path);
        case Finding::Damaged:
            // Closed without moving the log into the file: what is set aside stays as it was found.
            if (seen.database)
                sqlite3_db_config(seen.database.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
            seen.database.reset();
            damagedPath = setAside(path);
            if (damagedPath.isEmpty())
                return {};
            continue;
        case Finding::NoDirectory:
        case Finding::Obstructed:
            return {};
        }
        StoreFile file = readyFile(std::move(seen.database));
        file.setAsidePath = damagedPath;
        if (!damagedPath.isEmpty())
            file.result = OpenResult::SetAside;
        return file;
    }
    return {};
}

} // namespace

StoreFile openStoreFile(const QString& path, Journal journal)
{
    // Beside a link, the other end is the store.
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const QString file = canonical.isEmpty() ? path : canonical;
    if (journal == Journal::Ahead) {
        const DirectoryLock lock(QFileInfo(file).path(), LOCK_SH);
        Look seen = look(file);
        if (seen.finding == Finding::Good)
            return readyFile(std::move(seen.database));
        if (seen.finding == Finding::NoDirectory && !QDir().mkpath(QFileInfo(file).path()))
            return {};
        if (seen.finding == Finding::Damaged && seen.database)
            sqlite3_db_config(seen.database.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    }
    return repair(file, journal);
}

void syncAfterFirstWrite(StoreFile& file)
{
    if (std::exchange(file.firstWriteOff, false))
        sqlite::run(file.database.get(), "PRAGMA synchronous=NORMAL");
}

} // namespace quorvia::platform
