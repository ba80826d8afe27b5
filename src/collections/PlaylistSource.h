// What opening a named file needs of the panel that holds playlists.
#pragma once

#include <QString>

namespace quorvia::collections {

class PlaylistSource
{
  public:
    virtual ~PlaylistSource() = default;
    /// The extensions that count as playlists, as one text.
    virtual QString GetPlaylistFormats() const = 0;
    /// Opens the playlist in `file` and fills the list with it.
    virtual void OpenPlaylist(const QString& file) = 0;
    virtual int ListCount() const = 0;
};

} // namespace quorvia::collections
