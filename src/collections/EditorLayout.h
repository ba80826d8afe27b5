// Where the parts of the playlist editor stand: plain arithmetic in twips.
#pragma once

#include <QRect>
#include <QSize>

#include <array>

namespace quorvia::collections {

inline constexpr int editorButtons = 5;

/// What the places follow from. Heights and widths are what the parts ask for.
struct EditorSizes
{
    QSize control;
    QSize finished; ///< of lFinished
    QSize caption;  ///< of lPTitle
    int title = 0;  ///< height of lTitle
    int combo = 0;  ///< height of cPlaylist
    int button = 0; ///< side of a button's panel
};

/// The editing page. Each part's place counts from the panel that it stands on. What there is no room for has
/// no width or height.
struct EditorPlaces
{
    QRect pTitle;
    QRect lTitle;
    QRect pFile;
    QRect lDirectory; ///< the label above fDir
    QRect fDir;
    QRect fFiles;
    QRect filmstrip;
    QRect pFileTools; ///< between the two lists
    QRect pPlaylist;
    QRect lPTitle;
    QRect cPlaylist;
    QRect lPlaylist;
    QRect filmstrip2;
    QRect pPlaylistTools; ///< on pPlaylist, beside lPlaylist
    std::array<QRect, editorButtons> pImage;
    QRect pFooter;
    QRect lHelp;
    QRect lFinished;
    bool operator==(const EditorPlaces&) const = default;
};

EditorPlaces layoutEditor(const EditorSizes& sizes);

/// The page "define".
struct DefinePlaces
{
    QRect pDefine; ///< in the middle of the page
    QRect lPlaylistNames;
    QRect cmdCreate;
    QRect cmdRename;
    QRect cmdDelete;
    QRect cmdClose;
    bool operator==(const DefinePlaces&) const = default;
};

/// `button`: the size of the largest of the four buttons.
DefinePlaces layoutDefine(QSize page, QSize button);

} // namespace quorvia::collections
