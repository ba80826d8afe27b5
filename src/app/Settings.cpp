#include "app/Settings.h"

#include "app/mWindowsAPI.h"

#include <array>

namespace quorvia::app {

namespace {

constexpr CatalogueRow catalogue[] = {
#define NUMBER(constant, section, name, fallback) {{section, name}, true, fallback, nullptr},
#define TEXT(constant, section, name, fallback) {{section, name}, false, std::nullopt, fallback},
#define OPEN_NUMBER(constant, section, name) {{section, name}, true, std::nullopt, nullptr},
#define OPEN_TEXT(constant, section, name) {{section, name}, false, std::nullopt, nullptr},
#include "app/SettingsTable.inc"
#undef NUMBER
#undef TEXT
#undef OPEN_NUMBER
#undef OPEN_TEXT
};

QString latin(const char* text)
{
    return QString::fromLatin1(text);
}

int readNumber(const KeyName& key, int fallback)
{
    return settingNumber(GetAppSetting(latin(key.section), latin(key.name), fallback), fallback);
}

QString readText(const KeyName& key, const QString& fallback)
{
    return GetAppSetting(latin(key.section), latin(key.name), fallback).toString();
}

bool saveValue(const KeyName& key, const QVariant& value)
{
    return SaveAppSetting(latin(key.section), latin(key.name), value);
}

QString placementName(const QString& stem, Placement part)
{
    static constexpr std::array<const char*, 5> words = {"WinState", "Left", "Top", "Width", "Height"};
    return stem + latin(words[size_t(part)]);
}

QString earlierOwnerName(const QString& verb, const QString& extension)
{
    return verb + QLatin1Char('x') + extension;
}

} // namespace

int read(const NumberKey& key)
{
    return readNumber(key, key.fallback);
}

int read(const OpenNumberKey& key, int present)
{
    return readNumber(key, present);
}

QString read(const TextKey& key)
{
    return readText(key, latin(key.fallback));
}

QString read(const OpenTextKey& key, const QString& present)
{
    return readText(key, present);
}

QString readAsText(const NumberKey& key)
{
    return readText(key, QString::number(key.fallback));
}

bool save(const NumberKey& key, int value)
{
    return saveValue(key, value);
}

bool save(const OpenNumberKey& key, int value)
{
    return saveValue(key, value);
}

bool save(const TextKey& key, const QString& value)
{
    return saveValue(key, value);
}

bool save(const OpenTextKey& key, const QString& value)
{
    return saveValue(key, value);
}

bool blank(const KeyName& key)
{
    return saveValue(key, QStringLiteral(""));
}

std::span<const CatalogueRow> settingsCatalogue()
{
    return catalogue;
}

int readPlacement(const QString& stem, Placement part, int present)
{
    return settingNumber(GetAppSetting(latin(section::Settings), placementName(stem, part), present),
                         present);
}

bool savePlacement(const QString& stem, Placement part, int value)
{
    return SaveAppSetting(latin(section::Settings), placementName(stem, part), value);
}

QString readEarlierOwner(const QString& verb, const QString& extension)
{
    return GetAppSetting(latin(section::Associations), earlierOwnerName(verb, extension),
                         QStringLiteral("(none)"))
        .toString();
}

bool saveEarlierOwner(const QString& verb, const QString& extension, const QString& program)
{
    return SaveAppSetting(latin(section::Associations), earlierOwnerName(verb, extension), program);
}

void forgetEarlierOwners()
{
    DeleteAppSection(latin(section::Associations));
}

QString read(const DesktopKey& key)
{
    return RegReadValue(Root::CurrentUser, latin(key.keyPath), latin(key.name), QString()).toString();
}

bool save(const DesktopKey& key, const QString& value)
{
    try {
        return RegWriteValue(Root::CurrentUser, latin(key.keyPath), latin(key.name), value);
    } catch (const RegistryError&) {
        return false;
    }
}

QString keyPath(const CommonSubkey& subkey)
{
    return machineKeyPath(latin(subkey.path));
}

QString read(const CommonKey& key, const QString& fallback)
{
    const QString otherwise = key.fallback ? latin(key.fallback) : fallback;
    return GetCommonSetting(latin(key.subkey.path), latin(key.name), otherwise).toString();
}

bool save(const CommonKey& key, const QString& value)
{
    return SaveCommonSetting(latin(key.subkey.path), latin(key.name), value);
}

QString readOfTool(const CommonSubkey& subkey, const QString& tool)
{
    return GetCommonSetting(latin(subkey.path), tool, QString()).toString();
}

bool saveOfTool(const CommonSubkey& subkey, const QString& tool, const QString& value)
{
    return SaveCommonSetting(latin(subkey.path), tool, value);
}

bool removeOfTool(const CommonSubkey& subkey, const QString& tool)
{
    return DeleteCommonValue(latin(subkey.path), tool);
}

} // namespace quorvia::app
