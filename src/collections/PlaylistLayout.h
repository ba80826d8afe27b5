// Where the parts of the list's panel stand: plain arithmetic in twips.
#pragma once

#include <QList>
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
    int nameRow = 0; ///< height of pInternalPlaylist
};

/// The two tabs, of one width: that in front stands left.
struct TabPlaces
{
    QRect tab1;
    QRect tab2;
    bool operator==(const TabPlaces&) const = default;
};

TabPlaces layoutTabs(const PlaylistSizes& sizes);

/// Where the tab behind stands while the tabs change places; `left` is its left edge.
QRect movingTab(const TabPlaces& places, int left);

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

/// The face of the playlist. What there is no room for has no height.
struct PlaylistFace
{
    QRect pInternalPlaylist;
    QRect lPlaylist;
    QRect ptPlaylist;
    QRect lPlaylistInfo;
    bool operator==(const PlaylistFace&) const = default;
};

PlaylistFace layoutPlaylistFace(const PlaylistSizes& sizes);

/// Places for parts of the given sizes from left to right, `gap` apart, in as many rows as `width` asks for.
/// None is wider than `width`; in a row all stand at half height. Any unit of length.
QList<QRect> placeInRows(int width, int gap, const QList<QSize>& sizes);

} // namespace quorvia::collections
