#include "collections/PanelButtons.h"

#include "collections/ButtonRow.h"

#include <QObject>

namespace quorvia::collections {

void addFolderButtons(ButtonRow& row)
{
    row.addButton({.name = "cmdDir",
                   .icon = "open",
                   .text = " Select Directory",
                   .toolTip = QObject::tr("Choose the folder that the tree begins with"),
                   .command = QStringLiteral("selectdirectory")});
    row.addButton({.name = "cmdPlaylist",
                   .icon = "playlistadd",
                   .text = " Move All to Playlist",
                   .toolTip = QObject::tr("Add all pictures of the folder to the playlist"),
                   .command = QStringLiteral("movefilelisttoplaylist")});
}

QAbstractButton* addPlaylistButtons(ButtonRow& row)
{
    row.addButton({.name = "iAddToPlaylist",
                   .icon = "playlistadd",
                   .toolTip = QStringLiteral("Add Images to Playlist"),
                   .command = QStringLiteral("addmenu")});
    row.addButton({.name = "iRemovePlaylist",
                   .icon = "playlistremove",
                   .toolTip = QStringLiteral("Remove Images from Playlist"),
                   .command = QStringLiteral("removemenu")});
    row.addButton({.name = "iImportPlaylist",
                   .icon = "import",
                   .toolTip = QStringLiteral("Import Playlist from File"),
                   .command = QStringLiteral("openplaylist")});
    row.addButton({.name = "iExportPlaylist",
                   .icon = "export",
                   .toolTip = QStringLiteral("Export Playlist to File"),
                   .command = QStringLiteral("saveplaylist")});
    return row.addButton({.name = "iPlaylistEditor",
                          .icon = "edit",
                          .toolTip = QStringLiteral("Save Playlist As..."),
                          .label = "Playlist Editor",
                          .labelName = "lPlaylistEditor"});
}

} // namespace quorvia::collections
