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

/// The two opened trees. One for the process, handed to openSettings() at start.
struct SettingsTrees
{
    std::unique_ptr<platform::SettingsStore> user;
    std::unique_ptr<platform::SettingsStore> machine;
};

/// Opens both trees at their usual places and makes them the ones that all operations below use. Logs a store
/// that was set aside or cannot be written. Called once by main; again by tests, which then see the new
/// places.
void openSettings();
/// Closes both trees. Reads then give defaults and writes report false.
void closeSettings();

/// The value, or `fallback` when key or value is absent, when a text is empty, or when the type is unknown.
QVariant RegReadValue(Root root, const QString& keyPath, const QString& valueName, const QVariant& fallback);
/// True when written. 16-bit and 32-bit integers, text and byte arrays are written; any other type writes
/// nothing. Throws RegistryError when the key cannot be created.
bool RegWriteValue(Root root, const QString& keyPath, const QString& valueName, const QVariant& value);

QVariant GetAppSetting(const QString& section, const QString& key, const QVariant& fallback);
bool SaveAppSetting(const QString& section, const QString& key, const QVariant& value);
void DeleteAppSection(const QString& section);
QVariant GetCommonSetting(const QString& subkey, const QString& valueName, const QVariant& fallback);
bool SaveCommonSetting(const QString& subkey, const QString& valueName, const QVariant& value);
bool DeleteCommonValue(const QString& subkey, const QString& valueName);
void DeleteCommonKey(const QString& subkey);

/// The number that a stored value spells; `fallback` when it spells none.
int settingNumber(const QVariant& value, int fallback);

} // namespace quorvia::app
