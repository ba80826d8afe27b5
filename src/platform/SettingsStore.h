// One tree of the typed settings store: keys with named values, kept in one SQLite file. Opening costs some
// tenths of a millisecond, a read microseconds, a write some tens of them. Several programs may use one file
// at once; within a program one thread does.
#pragma once

#include <QString>
#include <QVariant>

#include <functional>
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
    Failed,  ///< the store can be written, but this write failed: a full disk, a value too long
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
    /// Where the damaged file was put; empty when none was found.
    QString setAsidePath() const;
    /// Has `handler` called with the new setAsidePath() when damage shows up only later, at a read or a
    /// write. The operation then goes on with the new, empty file.
    void onSetAside(std::function<void(const QString& setAsidePath)> handler);

    /// The value under `key` and `name`, both compared without case; empty when absent.
    std::optional<StoredValue> read(const QString& key, const QString& name) const;
    /// Stores `value` under `key` and `name`: a QString for the texts, a QByteArray for Binary, an integer of
    /// 16 or 32 bits for Number. An equal value already there is left alone, at the price of a read.
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
/// The same with the shared directory named and the environment left out. The directory has to stand already.
QString machineStorePathBelow(const QString& sharedDirectory);

} // namespace quorvia::platform
