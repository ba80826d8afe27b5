#include "platform/Sqlite.h"

#include <QFile>

namespace quorvia::platform::sqlite {

namespace {

constexpr int largestValueBytes = 16 * 1024 * 1024;

int primary(int code)
{
    return code & 0xff;
}

void harden(sqlite3* database)
{
    sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, largestValueBytes);
}

} // namespace

void Close::operator()(sqlite3* database) const
{
    sqlite3_close_v2(database);
}

void Finalize::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

Opened open(const QString& path, Access access, int busyMilliseconds)
{
    // One thread uses a store, so the library's own mutexes are left out.
    int flags = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE | SQLITE_OPEN_EXRESCODE;
    QByteArray name = QFile::encodeName(path);
    if (access == Access::Immutable) {
        flags |= SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
        name = "file:" + name.toPercentEncoding("/") + "?immutable=1";
    } else {
        flags |= SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    }

    sqlite3* raw = nullptr;
    Opened opened;
    opened.code = sqlite3_open_v2(name.constData(), &raw, flags, nullptr);
    opened.database.reset(raw); // a failed open leaves a handle too
    if (opened.code != SQLITE_OK) {
        opened.database.reset();
        return opened;
    }
    harden(raw);
    sqlite3_busy_timeout(raw, busyMilliseconds);
    return opened;
}

int run(sqlite3* database, const char* sql)
{
    return sqlite3_exec(database, sql, nullptr, nullptr, nullptr);
}

QByteArray firstText(sqlite3* database, const char* sql, int* code)
{
    int result = SQLITE_OK;
    QByteArray text;
    if (const Statement statement = prepare(database, sql, &result)) {
        result = sqlite3_step(statement.get());
        if (result == SQLITE_ROW) {
            const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
            text = QByteArray(bytes, bytes ? sqlite3_column_bytes(statement.get(), 0) : 0);
            result = SQLITE_OK;
        }
    }
    if (code)
        *code = result;
    return text;
}

Statement prepare(sqlite3* database, const char* sql, int* code)
{
    sqlite3_stmt* raw = nullptr;
    const int result = sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &raw, nullptr);
    if (code)
        *code = result;
    return Statement(raw);
}

bool saysDamaged(int code)
{
    return primary(code) == SQLITE_CORRUPT || primary(code) == SQLITE_NOTADB;
}

bool saysBusy(int code)
{
    return primary(code) == SQLITE_BUSY || primary(code) == SQLITE_LOCKED;
}

bool saysClosed(int code)
{
    return primary(code) == SQLITE_CANTOPEN || primary(code) == SQLITE_READONLY ||
           primary(code) == SQLITE_PERM || primary(code) == SQLITE_AUTH;
}

} // namespace quorvia::platform::sqlite
