#include "platform/SettingsStore.h"

#include "platform/BaseDirectories.h"
#include "platform/Sqlite.h"
#include "platform/StoreFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

#include <array>
#include <utility>

namespace quorvia::platform {

namespace {

/// An operation is begun again at most this often: after a repair, or when the file was replaced under it.
constexpr int mostAttempts = 3;
/// A process repairs its store at most this often, so that a failing disk is not filled with damaged copies.
constexpr int mostReopenings = 8;

enum Operation { Read, Write, RemoveValue, RemoveKey, OperationCount };

constexpr std::array<const char*, OperationCount> statementTexts = {
    "SELECT type, value FROM settings WHERE key = ?1 AND name = ?2",
    "INSERT INTO settings(key, name, type, value) VALUES(?1, ?2, ?3, ?4) "
    "ON CONFLICT(key, name) DO UPDATE SET type = excluded.type, value = excluded.value",
    "DELETE FROM settings WHERE key = ?1 AND name = ?2",
    "DELETE FROM settings WHERE key = ?1",
};

/// The column as the file holds it; an invalid value for NULL and for floating point, which no writer here
/// stores.
QVariant columnValue(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return QVariant(qlonglong(sqlite3_column_int64(statement, column)));
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return QVariant(QString::fromUtf8(text, sqlite3_column_bytes(statement, column)));
    }
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return QVariant(QByteArray(bytes ? bytes : "", sqlite3_column_bytes(statement, column)));
    }
    default:
        return QVariant();
    }
}

/// `value` in the form that the file holds for `type`; invalid when it is not of that type.
QVariant storedForm(ValueType type, const QVariant& value)
{
    switch (type) {
    case ValueType::Number:
        switch (value.typeId()) {
        case QMetaType::Short:
        case QMetaType::UShort:
        case QMetaType::Int:
            return QVariant(qlonglong(value.toInt()));
        case QMetaType::UInt:
            return QVariant(qlonglong(qint32(value.toUInt()))); // the same 32 bits
        default:
            return QVariant();
        }
    case ValueType::Binary:
        return value.typeId() == QMetaType::QByteArray ? value : QVariant();
    case ValueType::Text:
    case ValueType::ExpandText:
    case ValueType::MultiText:
        return value.typeId() == QMetaType::QString ? value : QVariant();
    }
    return QVariant();
}

void bindText(sqlite3_stmt* statement, int index, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    sqlite3_bind_text64(statement, index, bytes.constData(), sqlite3_uint64(bytes.size()), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
}

void bindValue(sqlite3_stmt* statement, int index, const QVariant& value)
{
    if (value.typeId() == QMetaType::LongLong) {
        sqlite3_bind_int64(statement, index, value.toLongLong());
    } else if (value.typeId() == QMetaType::QByteArray) {
        const QByteArray bytes = value.toByteArray();
        sqlite3_bind_blob64(statement, index, bytes.isNull() ? "" : bytes.constData(),
                            sqlite3_uint64(bytes.size()), SQLITE_TRANSIENT);
    } else {
        bindText(statement, index, value.toString());
    }
}

/// Puts a statement back when it goes out of scope, so that it holds neither a lock nor its values.
class Run
{
  public:
    explicit Run(sqlite3_stmt* statement) : m_statement(statement) {}
    ~Run()
    {
        sqlite3_reset(m_statement);
        sqlite3_clear_bindings(m_statement);
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

  private:
    sqlite3_stmt* m_statement;
};

} // namespace

class SettingsStore::Private
{
  public:
    explicit Private(const QString& path) : m_path(path), m_file(openStoreFile(path)) {}

    /// Runs one statement to its end; the result code of SQLite, 0 when good. `bind` fills its values, `row`
    /// sees the first row. Begins again where the file was replaced meanwhile or had to be repaired.
    template <typename Bind, typename Row>
    int perform(Operation operation, const Bind& bind, const Row& row);

    const QString& path() const { return m_path; }
    const StoreFile& file() const { return m_file; }

    std::function<void(const QString&)> whenSetAside;

  private:
    template <typename Bind, typename Row>
    int attempt(Operation operation, const Bind& bind, const Row& row);
    bool hasMoved() const;
    /// Opens the file anew, which repairs what is wrong with it; false when that has been done too often or
    /// in vain.
    bool reopen(Journal journal);

    QString m_path;
    StoreFile m_file;
    std::array<sqlite::Statement, OperationCount>
        m_statements; // gone before the database that they belong to
    int m_reopenings = 0;
};

template <typename Bind, typename Row>
int SettingsStore::Private::attempt(Operation operation, const Bind& bind, const Row& row)
{
    sqlite::Statement& statement = m_statements[operation];
    int code = SQLITE_OK;
    if (!statement)
        statement = sqlite::prepare(m_file.database.get(), statementTexts[operation], &code);
    if (!statement)
        return code;

    const Run run(statement.get());
    bind(statement.get());
    code = sqlite3_step(statement.get());
    if (code == SQLITE_ROW) {
        row(statement.get());
        return SQLITE_OK;
    }
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

template <typename Bind, typename Row>
int SettingsStore::Private::perform(Operation operation, const Bind& bind, const Row& row)
{
    int code = SQLITE_CANTOPEN;
    for (int n = 0; n < mostAttempts && m_file.database; ++n) {
        code = attempt(operation, bind, row);
        const bool logRefused = (code & 0xff) == SQLITE_READONLY && m_file.result != OpenResult::ReadOnly;
        // SQLITE_ERROR: the table has gone from the file.
        const bool needsRepair = sqlite::saysDamaged(code) || code == SQLITE_ERROR;
        // Looked at after the work: only then is it certain that what was read or written is in the file that
        // stands.
        const bool moved = hasMoved();
        if (!logRefused && !needsRepair && !moved) {
            if (code == SQLITE_OK && operation != Read)
                syncAfterFirstWrite(m_file);
            return code;
        }
        if (!reopen(logRefused && !moved ? Journal::Rollback : Journal::Ahead))
            return SQLITE_CANTOPEN;
    }
    return code;
}

bool SettingsStore::Private::hasMoved() const
{
    int moved = 0;
    sqlite3_file_control(m_file.database.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved);
    return moved != 0;
}

bool SettingsStore::Private::reopen(Journal journal)
{
    for (sqlite::Statement& statement : m_statements)
        statement.reset();
    const QString earlierSetAside = m_file.setAsidePath;
    m_file = StoreFile();
    if (++m_reopenings <= mostReopenings)
        m_file = openStoreFile(m_path, journal);

    if (m_file.result == OpenResult::SetAside && whenSetAside)
        whenSetAside(m_file.setAsidePath);
    if (m_file.setAsidePath.isEmpty() && !earlierSetAside.isEmpty()) {
        m_file.setAsidePath = earlierSetAside;
        if (m_file.result == OpenResult::Ready)
            m_file.result = OpenResult::SetAside;
    }
    return m_file.database != nullptr;
}

SettingsStore::SettingsStore(const QString& path) : d(std::make_unique<Private>(path)) {}

SettingsStore::~SettingsStore() = default;

QString SettingsStore::path() const
{
    return d->path();
}

OpenResult SettingsStore::openResult() const
{
    return d->file().result;
}

QString SettingsStore::setAsidePath() const
{
    return d->file().setAsidePath;
}

void SettingsStore::onSetAside(std::function<void(const QString&)> handler)
{
    d->whenSetAside = std::move(handler);
}

std::optional<StoredValue> SettingsStore::read(const QString& key, const QString& name) const
{
    std::optional<StoredValue> found;
    const int code = d->perform(
        Read,
        [&](sqlite3_stmt* statement) {
            found.reset();
            bindText(statement, 1, key);
            bindText(statement, 2, name);
        },
        [&](sqlite3_stmt* statement) {
            found = StoredValue{sqlite3_column_int(statement, 0), columnValue(statement, 1)};
        });
    return code == SQLITE_OK ? found : std::nullopt;
}

WriteResult SettingsStore::write(const QString& key, const QString& name, ValueType type,
                                 const QVariant& value)
{
    const QVariant stored = storedForm(type, value);
    if (!stored.isValid())
        return WriteResult::Refused;
    if (d->file().result == OpenResult::ReadOnly || d->file().result == OpenResult::Unusable)
        return WriteResult::NoKey;

    const std::optional<StoredValue> present = read(key, name);
    if (present && present->type == int(type) && present->value.typeId() == stored.typeId() &&
        present->value == stored)
        return WriteResult::Written;

    const int code = d->perform(
        Write,
        [&](sqlite3_stmt* statement) {
            bindText(statement, 1, key);
            bindText(statement, 2, name);
            sqlite3_bind_int(statement, 3, int(type));
            bindValue(statement, 4, stored);
        },
        [](sqlite3_stmt*) {});
    if (code == SQLITE_OK)
        return WriteResult::Written;
    if (sqlite::saysBusy(code))
        return WriteResult::Busy;
    return sqlite::saysClosed(code) ? WriteResult::NoKey : WriteResult::Failed;
}

bool SettingsStore::removeValue(const QString& key, const QString& name)
{
    if (!read(key, name))
        return false;
    const int code = d->perform(
        RemoveValue,
        [&](sqlite3_stmt* statement) {
            bindText(statement, 1, key);
            bindText(statement, 2, name);
        },
        [](sqlite3_stmt*) {});
    return code == SQLITE_OK;
}

void SettingsStore::removeKey(const QString& key)
{
    d->perform(
        RemoveKey, [&](sqlite3_stmt* statement) { bindText(statement, 1, key); }, [](sqlite3_stmt*) {});
}

QString userStorePath()
{
    return configHome() + QStringLiteral("/halvexa/user.db");
}

QString machineStorePath()
{
    const QByteArray named = qgetenv("HALVEXA_MACHINE_STORE");
    if (!named.isEmpty())
        return QDir::cleanPath(QDir::current().absoluteFilePath(QFile::decodeName(named)));
    return machineStorePathBelow(QStringLiteral("/var/lib/halvexa"));
}

QString machineStorePathBelow(const QString& sharedDirectory)
{
    QString shared = sharedDirectory + QStringLiteral("/machine.db");
    const auto writable = [](const QString& path, int mode) {
        return ::access(QFile::encodeName(path).constData(), mode) == 0;
    };
    const bool mayCreate = QFileInfo(sharedDirectory).isDir() && writable(sharedDirectory, W_OK | X_OK);
    if (mayCreate && (!QFileInfo::exists(shared) || writable(shared, R_OK | W_OK)))
        return shared;
    return configHome() + QStringLiteral("/halvexa/machine.db");
}

} // namespace quorvia::platform
