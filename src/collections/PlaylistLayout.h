// Where the parts of the list's panel stand: plain arithmetic in twips.
#pragma once

#include <QRect>
#include <QSize>

namespace quorvia::collections {

/// The least height of the head that holds the tabs.
inline constexpr int tabHeadHeight = 290;

/// What the places follow from.
struct PlaylistSizes
{
    QSize panel;
    int head = tabHeadHeight;
    int toolRow = 0; ///< height of the row of buttons
    int info = 0;    ///< height of lPlaylistInfo
};

/// The two tabs, of one width: that in front stands left.
struct TabPlaces
{
    QRect tab1;
    QRect tab2;
    bool operator==(const TabPlaces&) const = default;
};

TabPlaces layoutTabs(const PlaylistSizes& sizes);

/// The face of the folders. What there is no room for has no height.
struct FolderFace
{
    QRect ftv;
    QRect pFilelist;
    QRect lPlaylist;
    QRect lPlaylistInfo;
    bool operator==(const FolderFace&) const = default;
};

FolderFace layoutFolderFace(const PlaylistSizes& sizes);

} // namespace quorvia::collections
