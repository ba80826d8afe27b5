#include "collections/PlaylistCommands.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Settings.h"
#include "collections/NamedCommand.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"

#include <QObject>

#include <array>
#include <utility>

namespace quorvia::collections {

bool PlaylistCommands::RunTool(const QString& sCommand)
{
    using Row = NamedCommand<PlaylistCommands>;
    static constexpr std::array rows{
        Row{QLatin1String("openplaylist"), &PlaylistCommands::open},
        Row{QLatin1String("saveplaylist"), &PlaylistCommands::save},
        Row{QLatin1String("clearplaylist"), &PlaylistCommands::clear},
        Row{QLatin1String("clearselected"), &PlaylistCommands::clearSelected},
        Row{QLatin1String("addfilestoplaylist"), &PlaylistCommands::addFiles},
        Row{QLatin1String("enqueuedir"), &PlaylistCommands::enqueueFolder},
        Row{QLatin1String("enqueuedirall"), &PlaylistCommands::enqueueFolders},
        Row{QLatin1String("movefilelisttoplaylist"), &PlaylistCommands::moveAll},
        Row{QLatin1String("moveselectedtoplaylist"), &PlaylistCommands::moveSelected},
    };
    return runNamed<PlaylistCommands>(*this, rows, sCommand);
}

QWidget* PlaylistCommands::owner() const
{
    return m_list->playlist()->dialogOwner();
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
    if (!m_list->playlist()->IntiPlaylist(false))
        return;
    add(platform::chooseFiles(owner(), {.title = QObject::tr("Add Files to Playlist"),
                                        .filters = app::imageFilters(),
                                        .start = startFolder()}));
}

/// Where a dialog begins: at the folder of the tree, which the playlist's face does not tell.
QString PlaylistCommands::startFolder() const
{
    const QString folder = m_list->path();
    return folder.isEmpty() ? app::read(app::setting::SelectedPath, QString()) : folder;
}

QString PlaylistCommands::chosenFolder() const
{
    return platform::browseForFolder(owner(),
                                     {.title = QStringLiteral("Enqueue Directory"), .start = startFolder()});
}

void PlaylistCommands::enqueueFolder()
{
    if (m_list->playlist()->IntiPlaylist(false))
        addFolder(chosenFolder(), false);
}

void PlaylistCommands::enqueueFolders()
{
    if (m_list->playlist()->IntiPlaylist(false))
        addFolder(chosenFolder(), true);
}

void PlaylistCommands::EnqueueAll(const QString& sDir)
{
    if (m_list->playlist()->IntiPlaylist(false))
        addFolder(sDir, true);
}

void PlaylistCommands::addFolder(const QString& sDir, bool recurse)
{
    platform::LongWork work(owner(), QObject::tr("Adding images...")); // of both steps
    QStringList files;
    if (list(sDir, recurse, files))
        add(files);
}

/// Adds to `files` the images of a folder. False when the user broke off.
bool PlaylistCommands::list(const QString& sDir, bool recurse, QStringList& files) const
{
    platform::LongWork work(owner(), QObject::tr("Looking for images..."));
    app::ListFiles(sDir, m_list->Pattern(), recurse, files, [&work] { return work.goOn(); });
    return work.goOn();
}

void PlaylistCommands::add(const QStringList& files)
{
    if (!files.isEmpty() && m_list->playlist()->AddPlaylistFiles(files))
        m_list->playlist()->saveOpen();
}

void PlaylistCommands::moveAll()
{
    if (!m_list->FolderMode()) {
        if (m_list->playlist()->IntiPlaylist(false))
            m_list->playlist()->saveOpen();
        return;
    }
    m_list->finishRebuild();
    move(QStringList(m_list->files()));
}

void PlaylistCommands::moveSelected()
{
    if (!m_list->FolderMode())
        return;
    QStringList files;
    for (const RowRange& range : m_list->selection())
        files += m_list->files().mid(range.first, range.last - range.first + 1);
    move(files);
}

/// `files` were taken up before the question about the playlist: the list may change while it waits.
void PlaylistCommands::move(const QStringList& files)
{
    if (!m_list->playlist()->IntiPlaylist(false) || !m_list->playlist()->AddPlaylistFiles(files))
        return;
    m_list->SelectTab(1);
    m_list->playlist()->saveOpen();
}

void PlaylistCommands::drop(QStringList paths) // a copy: the caller's may change while events run
{
    if (m_list->FolderMode() || !m_list->playlist()->IntiPlaylist(false))
        return;
    platform::LongWork work(owner(), QObject::tr("Adding images...")); // of all folders together
    QStringList files;
    for (QString& path : paths) {
        const QString extension = app::GetExtension(path).toLower();
        if (platform::isFile(path) &&
            app::extensionStandsIn(extension, QLatin1String(app::ImageExtensionList)))
            files.append(std::move(path));
        else if (app::FolderExists(path) && !list(path, true, files))
            return;
    }
    add(files);
}

} // namespace quorvia::collections
