// The settings operations over the two trees of the store, with their exact read and write rules. All values
// are held as variants: text and number without distinction.
#pragma once

#include "platform/SettingsStore.h"

#include <QString>
#include <QVariant>

#include <memory>
#include <stdexcept>

namespace quorvia::app {

enum class Root { CurrentUser, LocalMachine };

/// Raised by RegWriteValue when a key cannot be created; number 1001.
class RegistryError : public std::runtime_error
{
  public:
    RegistryError();
    static constexpr int number = 1001;
};

/// The two opened trees.
struct SettingsTrees
{
    std::unique_ptr<platform::SettingsStore> user;
    std::unique_ptr<platform::SettingsStore> machine;
};

/// Opens both trees at their usual places and makes them the ones that all operations below use. Logs a store
/// that was set aside or cannot be written. Called once by main; again by tests, which then see the new
/// places. About a millisecond for both.
void openSettings();
/// Closes both trees. Reads then give defaults and writes report false.
void closeSettings();

/// `Software\Halvexa\Quorvia\<section>`, a key of the user's tree.
QString userKeyPath(const QString& section);
/// `Software\Halvexa\<subkey>`, a key of the machine-wide tree.
QString machineKeyPath(const QString& subkey);

/// The value, or `fallback` when key or value is absent, when a text is empty, or when the type is unknown.
/// Texts give a QString, binary a QByteArray, a number an int: its 32 bits, signed. A multi-string comes
/// without its last two characters and keeps the zeros within.
QVariant RegReadValue(Root root, const QString& keyPath, const QString& valueName, const QVariant& fallback);
/// True when written. 16-bit and 32-bit integers, text and byte arrays are written; any other type writes
/// nothing. Throws RegistryError when the key cannot be created; false as well while no tree is open or when
/// another program held the store too long.
bool RegWriteValue(Root root, const QString& keyPath, const QString& valueName, const QVariant& value);

// The operations below are the two above under the stems of the two trees. None of them throws: a write that
// fails, however it fails, gives false.

QVariant GetAppSetting(const QString& section, const QString& key, const QVariant& fallback);
bool SaveAppSetting(const QString& section, const QString& key, const QVariant& value);
void DeleteAppSection(const QString& section);
QVariant GetCommonSetting(const QString& subkey, const QString& valueName, const QVariant& fallback);
bool SaveCommonSetting(const QString& subkey, const QString& valueName, const QVariant& value);
/// True when the value was there.
bool DeleteCommonValue(const QString& subkey, const QString& valueName);
void DeleteCommonKey(const QString& subkey);

/// The number that a stored value spells, as "1" does, " 1 " and "1.0"; a fraction is rounded, a half to the
/// even number. `fallback` when it spells none or none of 32 bits.
int settingNumber(const QVariant& value, int fallback);

} // namespace quorvia::app
