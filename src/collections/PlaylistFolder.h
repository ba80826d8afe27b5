// The folder of the named playlists.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::collections {

/// What the dialogs show of playlist files: rows as in platform::FileChooser.
inline constexpr char playlistFilter[] = "Quorvia Playlist|*.qol";
/// The extension of a playlist file, without its point.
inline constexpr char playlistExtension[] = "qol";

/// The folder of the named playlists, ending in "/". It need not exist.
QString playlistFolder();

/// The file of the playlist `name`: in playlistFolder(), whatever the name holds.
QString namedPlaylistPath(const QString& name);

/// Whether there can be a file of that name in the folder: not empty, no "/" or zero character, and not too
/// long.
bool canBePlaylistName(const QString& name);

/// The name that somebody means who typed `text`: without blanks around it and without the extension. It may
/// be none.
QString typedPlaylistName(const QString& text);

/// The names of the playlists in the folder, sorted without case: of each file of the type its name less
/// every
/// ".qol". Two files may so have one name.
QStringList namedPlaylists();

} // namespace quorvia::collections
