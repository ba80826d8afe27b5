// The catalogue of settings: every stored key with its section, name and default, as one typed table, and the
// reads and writes over it. Code writes read(setting::cView), read(setting::FilmStripHeight, present),
// save(setting::cView, 1); no key text and no default stands anywhere else. A read costs some microseconds, a
// write some tens of them.
#pragma once

#include <QString>

#include <optional>
#include <span>

namespace quorvia::app {

/// Where a value of the user's tree stands.
struct KeyName
{
    const char* section;
    const char* name;
};

/// A stored number with its default.
struct NumberKey : KeyName
{
    int fallback;
};

/// A stored text with its default.
struct TextKey : KeyName
{
    const char* fallback;
};

/// A stored number whose default the caller passes: the present value of the control.
struct OpenNumberKey : KeyName
{
};

/// A stored text whose default the caller passes.
struct OpenTextKey : KeyName
{
};

/// The sections of the user's tree.
namespace section {
inline constexpr char Settings[] = "Settings";
inline constexpr char PrintSettings[] = "Print Settings";
inline constexpr char SettingsNet[] = "SettingsNet";
inline constexpr char Associations[] = "Associations";
} // namespace section

/// One constant a key; the table says what each is for.
namespace setting {
#define NUMBER(constant, section, name, fallback)                                                            \
    inline constexpr NumberKey constant{{section, name}, fallback};
#define TEXT(constant, section, name, fallback) inline constexpr TextKey constant{{section, name}, fallback};
#define OPEN_NUMBER(constant, section, name) inline constexpr OpenNumberKey constant{{section, name}};
#define OPEN_TEXT(constant, section, name) inline constexpr OpenTextKey constant{{section, name}};
#include "app/SettingsTable.inc"
#undef NUMBER
#undef TEXT
#undef OPEN_NUMBER
#undef OPEN_TEXT
} // namespace setting

/// The number that the stored value spells; the default when it is absent, empty or spells none.
int read(const NumberKey& key);
int read(const OpenNumberKey& key, int present);
/// The stored text, a stored number in decimal; the default when it is absent or empty.
QString read(const TextKey& key);
QString read(const OpenTextKey& key, const QString& present);

/// The stored value of a number as text, for who reads it by a rule of his own; the default's decimal text
/// when it is absent or empty.
QString readAsText(const NumberKey& key);

/// True when written. A yes or no goes in as 0 or 1.
bool save(const NumberKey& key, int value);
bool save(const OpenNumberKey& key, int value);
bool save(const TextKey& key, const QString& value);
bool save(const OpenTextKey& key, const QString& value);
/// Stores the empty text under a key of any kind, which then reads as absent. True when written.
bool blank(const KeyName& key);

/// One line of the catalogue.
struct CatalogueRow
{
    KeyName key;
    bool isNumber;
    std::optional<int> number; ///< default of a number; empty when the caller passes it
    const char* text;          ///< default of a text; null when the caller passes it
};

/// All keys of the table, in its order.
std::span<const CatalogueRow> settingsCatalogue();

/// What is kept of a secondary window's place, each under the window's stem and a word of its own.
enum class Placement { WinState, Left, Top, Width, Height };

int readPlacement(const QString& stem, Placement part, int present);
bool savePlacement(const QString& stem, Placement part, int value);

/// The program that opened files of a type before this one took it over; "(none)" when none is stored. `verb`
/// as in "Open", `extension` with its point; the value's name is the verb, "x" and the extension, as in
/// `Openx.jpg`.
QString readEarlierOwner(const QString& verb, const QString& extension);
bool saveEarlierOwner(const QString& verb, const QString& extension, const QString& program);
/// Makes all of them absent.
void forgetEarlierOwners();

/// A key of the machine-wide tree, by its path below the maker's stem. Most hold one value per tool, under
/// its title.
struct CommonSubkey
{
    const char* path;
};

/// One named value of the machine-wide tree with its default; null where the caller passes one.
struct CommonKey
{
    CommonSubkey subkey;
    const char* name;
    const char* fallback;
};

/// The machine-wide tree, which the maker's tools share.
namespace common {
inline constexpr CommonSubkey ResourcePaths{"Common\\ResourcePaths"}; ///< the data directories
inline constexpr CommonSubkey ProgramPaths{"Common\\ProgramPaths"};   ///< full paths of the tools' programs
inline constexpr CommonSubkey ProgramShortPaths{"Common\\ProgramShortPaths"};   ///< their short forms
inline constexpr CommonSubkey ProgramAssoPaths{"Common\\ProgramAssoPaths"};     ///< what associations start
inline constexpr CommonSubkey ProgramFileSupport{"Common\\ProgramFileSupport"}; ///< the types that they open
inline constexpr CommonSubkey ComponentPaths{"Common\\ComponentPaths"};         ///< directories of the tools
inline constexpr CommonSubkey ProductIds{"Common\\Product IDs"};
inline constexpr CommonSubkey WebSites{"Web Sites"}; ///< web addresses of the tools
inline constexpr CommonSubkey Testing{"Common\\Testing"};

inline constexpr CommonKey ThumbnailPath{ResourcePaths, "ThumbnailPath", nullptr};
inline constexpr CommonKey ImagePlaylistPath{ResourcePaths, "ImagePlaylistPath", nullptr};
inline constexpr CommonKey ImageDescriptionPath{ResourcePaths, "ImageDescriptionPath", nullptr};
inline constexpr CommonKey AutoUpdate{ComponentPaths, "AutoUpdate", ""}; ///< full path of the updater
inline constexpr CommonKey MenuShellReg{WebSites, "MenuShellReg", ""};
inline constexpr CommonKey QOCSInstall{ProductIds, "QOCSInstall", "no"};
inline constexpr CommonKey Test{Testing, "Test", ""}; ///< written at start to see whether the tree can be
} // namespace common

/// One text of the user's tree that is the desktop's own, by its full key path.
struct DesktopKey
{
    const char* keyPath;
    const char* name;
};

/// What the desktop keeps of its wallpaper.
namespace desktop {
inline constexpr DesktopKey WallpaperStyle{"Control Panel\\Desktop", "WallpaperStyle"}; ///< "2" stretched
inline constexpr DesktopKey TileWallpaper{"Control Panel\\Desktop", "TileWallpaper"};   ///< "1" tiled
} // namespace desktop

/// The stored text; empty when it is absent.
QString read(const DesktopKey& key);
/// True when written.
bool save(const DesktopKey& key, const QString& value);

/// The full path of a machine-wide key, for RegWriteValue().
QString keyPath(const CommonSubkey& subkey);

/// The stored text; the default when it is absent or empty. `fallback` holds where the key names none.
QString read(const CommonKey& key, const QString& fallback = QString());
bool save(const CommonKey& key, const QString& value);

/// The value of one tool under `subkey`; "" when there is none.
QString readOfTool(const CommonSubkey& subkey, const QString& tool);
bool saveOfTool(const CommonSubkey& subkey, const QString& tool, const QString& value);
/// True when the value was there.
bool removeOfTool(const CommonSubkey& subkey, const QString& tool);

} // namespace quorvia::app
