#include "app/mMain.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "platform/Dialogs.h"

#include <QFile>

#include <array>

namespace quorvia::app {

namespace {

struct DataDirectory
{
    CommonKey key;
    const char* name;
};

constexpr std::array relocatableDirectories = {
    DataDirectory{common::ThumbnailPath, "Thumbs/"},
    DataDirectory{common::ImagePlaylistPath, "Playlist/"},
    DataDirectory{common::ImageDescriptionPath, "Description/"},
};

QString directoryBelow(const QString& installPath, const char* name)
{
    return installPath + QLatin1String(name);
}

void makeLogged(const QString& directory)
{
    MakePath(directory);
    if (!FolderExists(directory))
        WriteLog(QStringLiteral("Data directory cannot be made: ") + directory);
}

} // namespace

bool probeMachineStore()
{
    try {
        RegWriteValue(Root::LocalMachine, keyPath(common::Test.subkey), QLatin1String(common::Test.name),
                      QStringLiteral("Vaild"));
        return true;
    } catch (const RegistryError&) {
        platform::showMessage(
            nullptr,
            {platform::BoxKind::Information, platform::BoxButtons::Ok, QStringLiteral("Fatial Error"),
             QStringLiteral(
                 "Current user does not have query/set permission to access:\n"
                 "'HKLM\\Software\\Halvexa\\'\n\n"
                 "Please contact the system administrator to have the user permissions changed.")});
        return false;
    }
}

void prepareDataDirectories(const QString& installPath)
{
    for (const DataDirectory& directory : relocatableDirectories) {
        if (!read(directory.key).isEmpty())
            continue;
        const QString place = directoryBelow(installPath, directory.name);
        if (!FolderExists(place))
            MakePath(place); // a failure is told by the repair pass, which comes right after
        save(directory.key, place);
    }
}

void repairDataDirectories(const QString& installPath)
{
    const QString thumbs = read(common::ThumbnailPath, directoryBelow(installPath, "Thumbs/"));
    if (!FolderExists(thumbs))
        makeLogged(thumbs);

    const QString description = directoryBelow(installPath, "Description/");
    if (!FolderExists(read(common::ThumbnailPath, description)))
        makeLogged(description);

    const QString conversion = directoryBelow(installPath, "Conversion/");
    if (!FolderExists(conversion))
        makeLogged(conversion);

    const QString playlist = directoryBelow(installPath, "Playlist/");
    if (!FolderExists(read(common::ImagePlaylistPath, playlist)))
        makeLogged(playlist);
}

bool removeSettings(const QString& installPath)
{
    const QString leftover = installPath + QStringLiteral("playlist.qol");
    if (FileExists(leftover))
        QFile::remove(leftover);

    for (const KeyName& key : std::initializer_list<KeyName>{setting::Path,
                                                             setting::Recent,
                                                             setting::MainHeight,
                                                             setting::MainWidth,
                                                             setting::MainTop,
                                                             setting::MainLeft,
                                                             setting::cFView,
                                                             setting::cLayoutFiles,
                                                             setting::cLayoutFilesAlign,
                                                             setting::cLayoutFilesWidth,
                                                             setting::OnFolders,
                                                             setting::slidemode,
                                                             setting::cBorder,
                                                             setting::cFull,
                                                             setting::cLayout,
                                                             setting::cLayoutFilesVHeight,
                                                             setting::cLoad,
                                                             setting::cSlide,
                                                             setting::cView,
                                                             setting::FullBackColor,
                                                             setting::JPEGChrome,
                                                             setting::MainBackColor,
                                                             setting::LastCheck})
        blank(key);

    for (const char* name : {section::Settings, section::PrintSettings, section::SettingsNet})
        DeleteAppSection(QLatin1String(name));

    for (const CommonSubkey& subkey :
         {common::ProgramFileSupport, common::ProgramAssoPaths, common::WebSites, common::ProgramShortPaths,
          common::ProgramPaths, common::ComponentPaths})
        removeOfTool(subkey, productTitle());
    return readOfTool(common::ProgramPaths, productTitle()).isEmpty();
}

} // namespace quorvia::app
