// One tree of the typed settings store: keys with named values, kept in one SQLite file. Opening costs about
// a millisecond, a read microseconds, a write well under a millisecond. Several programs may use one file at
// once.
#pragma once

#include <QString>
#include <QVariant>

#include <memory>
#include <optional>

namespace quorvia::platform {

/// Types of a stored value, with the numbers that stand in the file.
enum class ValueType { Text = 1, ExpandText = 2, Binary = 3, Number = 4, MultiText = 7 };

struct StoredValue
{
    int type = 0;   ///< a ValueType, or what another program wrote
    QVariant value; ///< QString, QByteArray or qlonglong, as the file holds it
};

enum class WriteResult {
    Written,
    Refused, ///< the value's type is not one that the store writes
    NoKey,   ///< the key could not be created: the store cannot be written
    Busy,    ///< another program held the store longer than the time-out
};

/// What was found when the store was opened; for the log.
enum class OpenResult {
    Ready,
    SetAside, ///< the file was damaged: it lies beside the new one under setAsidePath()
    ReadOnly, ///< readable, not writable
    Unusable, ///< neither readable nor creatable: reads find nothing, writes give NoKey
};

class SettingsStore
{
  public:
    /// Opens or creates the file at `path` (its directory too). Never fails: see openResult().
    explicit SettingsStore(const QString& path);
    ~SettingsStore();
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    QString path() const;
    OpenResult openResult() const;
    /// Where the damaged file was put; empty unless openResult() is SetAside.
    QString setAsidePath() const;

    /// The value under `key` and `name`, both compared without case; empty when absent.
    std::optional<StoredValue> read(const QString& key, const QString& name) const;
    /// Stores `value` under `key` and `name`. An equal value already there is left alone, at the price of a
    /// read.
    WriteResult write(const QString& key, const QString& name, ValueType type, const QVariant& value);
    /// Removes one value; true when it was there.
    bool removeValue(const QString& key, const QString& name);
    /// Removes a key with all its values.
    void removeKey(const QString& key);

  private:
    class Private;
    std::unique_ptr<Private> d;
};

/// File of the user's tree: `$XDG_CONFIG_HOME/halvexa/user.db`.
QString userStorePath();
/// File of the machine-wide tree: `$HALVEXA_MACHINE_STORE`, else `/var/lib/halvexa/machine.db` when the user
/// can write there, else `$XDG_CONFIG_HOME/halvexa/machine.db`.
QString machineStorePath();

} // namespace quorvia::platform
