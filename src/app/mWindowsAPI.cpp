#include "app/mWindowsAPI.h"

#include "app/Log.h"

#include <QtNumeric>

#include <cmath>
#include <limits>

namespace quorvia::app {

namespace {

using platform::OpenResult;
using platform::SettingsStore;
using platform::ValueType;
using platform::WriteResult;

constexpr int multiTextEnd = 2; ///< characters that end a multi-string

SettingsTrees& trees()
{
    static SettingsTrees opened;
    return opened;
}

SettingsStore* tree(Root root)
{
    return root == Root::CurrentUser ? trees().user.get() : trees().machine.get();
}

void logSetAside(const QString& path, const QString& setAsidePath)
{
    WriteLog(QStringLiteral("Settings store damaged: ") + path + QStringLiteral(" was set aside as ") +
             setAsidePath);
}

std::unique_ptr<SettingsStore> openTree(const QString& path)
{
    auto store = std::make_unique<SettingsStore>(path);
    switch (store->openResult()) {
    case OpenResult::Ready:
        break;
    case OpenResult::SetAside:
        logSetAside(path, store->setAsidePath());
        break;
    case OpenResult::ReadOnly:
        WriteLog(QStringLiteral("Settings store cannot be written: ") + path);
        break;
    case OpenResult::Unusable:
        WriteLog(QStringLiteral("Settings store cannot be opened: ") + path);
        break;
    }
    store->onSetAside([path](const QString& setAsidePath) { logSetAside(path, setAsidePath); });
    return store;
}

/// The text of a stored value, whatever storage another program chose for it.
QString storedText(const QVariant& value)
{
    return value.typeId() == QMetaType::QByteArray ? QString::fromUtf8(value.toByteArray())
                                                   : value.toString();
}

QVariant textOr(const QString& text, const QVariant& fallback)
{
    return text.isEmpty() ? fallback : QVariant(text);
}

QVariant plainText(const QVariant& value, const QVariant& fallback)
{
    QString text = storedText(value);
    if (text.endsWith(QChar::Null))
        text.chop(1);
    return textOr(text, fallback);
}

QVariant multiText(const QVariant& value, const QVariant& fallback)
{
    QString text = storedText(value);
    text.chop(multiTextEnd); // of a shorter text nothing is left
    return textOr(text, fallback);
}

QVariant binary(const QVariant& value)
{
    return value.typeId() == QMetaType::QByteArray ? value : QVariant(value.toString().toUtf8());
}

/// The 32 bits of a stored number, signed: what was written as -1 or as 4294967295 reads -1.
QVariant number(const QVariant& value, const QVariant& fallback)
{
    bool good = false;
    const qlonglong wide = value.toLongLong(&good);
    if (!good || wide < std::numeric_limits<qint32>::min() || wide > std::numeric_limits<quint32>::max())
        return fallback;
    return QVariant(int(quint32(wide)));
}

/// The number that `text` spells, rounded half to even; not a number where it spells none.
double spelt(const QString& text)
{
    bool good = false;
    const double value = text.trimmed().toDouble(&good);
    return good && qIsFinite(value) ? std::nearbyint(value) : qQNaN();
}

} // namespace

RegistryError::RegistryError() : std::runtime_error("Unable to create the registry key") {}

void openSettings()
{
    closeSettings();
    trees().user = openTree(platform::userStorePath());
    trees().machine = openTree(platform::machineStorePath());
}

void closeSettings()
{
    trees() = SettingsTrees();
}

QString userKeyPath(const QString& section)
{
    return QLatin1String("Software\\Halvexa\\Quorvia\\") + section;
}

QString machineKeyPath(const QString& subkey)
{
    return QLatin1String("Software\\Halvexa\\") + subkey;
}

QVariant RegReadValue(Root root, const QString& keyPath, const QString& valueName, const QVariant& fallback)
{
    const SettingsStore* store = tree(root);
    const auto stored = store ? store->read(keyPath, valueName) : std::nullopt;
    if (!stored || !stored->value.isValid())
        return fallback;

    switch (ValueType(stored->type)) {
    case ValueType::Text:
    case ValueType::ExpandText:
        return plainText(stored->value, fallback);
    case ValueType::Binary:
        return binary(stored->value);
    case ValueType::Number:
        return number(stored->value, fallback);
    case ValueType::MultiText:
        return multiText(stored->value, fallback);
    }
    return fallback;
}

bool RegWriteValue(Root root, const QString& keyPath, const QString& valueName, const QVariant& value)
{
    SettingsStore* store = tree(root);
    if (!store)
        return false;
    ValueType type = ValueType::Text;
    switch (value.typeId()) {
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
        type = ValueType::Number;
        break;
    case QMetaType::QString:
        break;
    case QMetaType::QByteArray:
        type = ValueType::Binary;
        break;
    default:
        return false;
    }
    const WriteResult result = store->write(keyPath, valueName, type, value);
    if (result == WriteResult::NoKey)
        throw RegistryError();
    return result == WriteResult::Written;
}

namespace {

bool writeOrFalse(Root root, const QString& keyPath, const QString& valueName, const QVariant& value)
{
    try {
        return RegWriteValue(root, keyPath, valueName, value);
    } catch (const RegistryError&) {
        return false;
    }
}

} // namespace

QVariant GetAppSetting(const QString& section, const QString& key, const QVariant& fallback)
{
    return RegReadValue(Root::CurrentUser, userKeyPath(section), key, fallback);
}

bool SaveAppSetting(const QString& section, const QString& key, const QVariant& value)
{
    return writeOrFalse(Root::CurrentUser, userKeyPath(section), key, value);
}

void DeleteAppSection(const QString& section)
{
    if (SettingsStore* store = tree(Root::CurrentUser))
        store->removeKey(userKeyPath(section));
}

QVariant GetCommonSetting(const QString& subkey, const QString& valueName, const QVariant& fallback)
{
    return RegReadValue(Root::LocalMachine, machineKeyPath(subkey), valueName, fallback);
}

bool SaveCommonSetting(const QString& subkey, const QString& valueName, const QVariant& value)
{
    return writeOrFalse(Root::LocalMachine, machineKeyPath(subkey), valueName, value);
}

bool DeleteCommonValue(const QString& subkey, const QString& valueName)
{
    SettingsStore* store = tree(Root::LocalMachine);
    return store && store->removeValue(machineKeyPath(subkey), valueName);
}

void DeleteCommonKey(const QString& subkey)
{
    if (SettingsStore* store = tree(Root::LocalMachine))
        store->removeKey(machineKeyPath(subkey));
}

int settingNumber(const QVariant& value, int fallback)
{
    if (value.typeId() == QMetaType::Int)
        return value.toInt();
    if (value.typeId() == QMetaType::QByteArray)
        return fallback;
    const double whole = spelt(value.toString());
    const bool fits = whole >= std::numeric_limits<int>::min() && whole <= std::numeric_limits<int>::max();
    return fits ? int(whole) : fallback;
}

} // namespace quorvia::app
