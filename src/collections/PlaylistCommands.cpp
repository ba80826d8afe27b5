#include "collections/PlaylistCommands.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"

#include <QObject>

#include <algorithm>
#include <array>

namespace quorvia::collections {

bool PlaylistCommands::RunTool(const QString& sCommand)
{
    enum class Needs { Nothing, OpenPlaylist };
    struct Row
    {
        QLatin1String name;
        Needs needs;
        void (PlaylistCommands::*run)();
    };
    static constexpr std::array rows{
        Row{QLatin1String("openplaylist"), Needs::Nothing, &PlaylistCommands::open},
        Row{QLatin1String("saveplaylist"), Needs::Nothing, &PlaylistCommands::save},
        Row{QLatin1String("clearplaylist"), Needs::Nothing, &PlaylistCommands::clear},
        Row{QLatin1String("clearselected"), Needs::Nothing, &PlaylistCommands::clearSelected},
        Row{QLatin1String("addfilestoplaylist"), Needs::OpenPlaylist, &PlaylistCommands::addFiles},
        Row{QLatin1String("enqueuedir"), Needs::OpenPlaylist, &PlaylistCommands::enqueueFolder},
        Row{QLatin1String("enqueuedirall"), Needs::OpenPlaylist, &PlaylistCommands::enqueueFolders},
        Row{QLatin1String("movefilelisttoplaylist"), Needs::OpenPlaylist, &PlaylistCommands::moveAll},
        Row{QLatin1String("moveselectedtoplaylist"), Needs::OpenPlaylist, &PlaylistCommands::moveSelected},
    };
    const QString command = sCommand.toLower();
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [&command](const Row& candidate) { return candidate.name == command; });
    if (row == rows.end())
        return false;
    if (row->needs == Needs::Nothing || m_list->playlist()->IntiPlaylist(false))
        (this->*row->run)();
    return true;
}

void PlaylistCommands::open()
{
    m_list->playlist()->LoadQOLPlaylist(QString());
}

void PlaylistCommands::save()
{
    m_list->playlist()->SaveQOLPlaylist(QString());
}

void PlaylistCommands::clear()
{
    m_list->playlist()->ClearPlaylist();
    m_list->playlist()->saveSoon(); // the rebuild of the other face would not
}

void PlaylistCommands::clearSelected()
{
    if (m_list->FolderMode() || m_list->selection().empty())
        return;
    m_list->playlist()->removeFiles(m_list->selection());
    m_list->playlist()->saveOpen();
}

void PlaylistCommands::addFiles()
{
    const QStringList files = platform::chooseFiles(m_list->playlist()->dialogOwner(),
                                                    {.title = QObject::tr("Add Files to Playlist"),
                                                     .filters = app::imageFilters(),
                                                     .start = m_list->path()});
    if (files.isEmpty())
        return;
    m_list->playlist()->AddPlaylistFiles(files);
    m_list->playlist()->saveOpen();
}

QString PlaylistCommands::chosenFolder() const
{
    return platform::browseForFolder(m_list->playlist()->dialogOwner(),
                                     {.title = QStringLiteral("Enqueue Directory"), .start = m_list->path()});
}

void PlaylistCommands::enqueueFolder()
{
    if (const QString folder = chosenFolder(); !folder.isEmpty())
        gather(folder, false);
}

void PlaylistCommands::enqueueFolders()
{
    if (const QString folder = chosenFolder(); !folder.isEmpty())
        EnqueueAll(folder);
}

void PlaylistCommands::EnqueueAll(const QString& sDir)
{
    gather(sDir, true);
}

void PlaylistCommands::gather(const QString& sDir, bool recurse)
{
    QStringList files;
    {
        platform::LongWork work(m_list->playlist()->dialogOwner(), QObject::tr("Looking for images..."));
        bool goesOn = true;
        app::ListFiles(sDir, m_list->Pattern(), recurse, files,
                       [&work, &goesOn] { return goesOn = goesOn && work.goOn(); });
        if (!goesOn)
            return;
    }
    m_list->playlist()->AddPlaylistFiles(files);
    m_list->playlist()->saveOpen();
}

void PlaylistCommands::moveAll()
{
    if (m_list->FolderMode()) {
        m_list->finishRebuild();
        const QStringList files = m_list->files();
        m_list->playlist()->AddPlaylistFiles(files);
        m_list->SelectTab(1);
    }
    m_list->playlist()->saveOpen();
}

void PlaylistCommands::moveSelected()
{
    if (!m_list->FolderMode())
        return;
    QStringList files;
    for (const RowRange& range : m_list->selection())
        files += m_list->files().mid(range.first, range.last - range.first + 1);
    m_list->playlist()->AddPlaylistFiles(files);
    m_list->SelectTab(1);
    m_list->playlist()->saveOpen();
}

void PlaylistCommands::drop(const QStringList& paths)
{
    if (m_list->FolderMode() || !m_list->playlist()->IntiPlaylist(false))
        return;
    const QStringList given = paths; // the caller's may change while events run
    for (const QString& path : given) {
        const QString extension = app::GetExtension(path).toLower();
        if (platform::isFile(path) &&
            app::extensionStandsIn(extension, QLatin1String(app::ImageExtensionList)))
            m_list->playlist()->AddPlaylistFile(path);
        else if (app::FolderExists(path))
            EnqueueAll(path);
    }
    m_list->playlist()->saveOpen();
}

} // namespace quorvia::collections
