// The buttons of the panel's two faces.
#pragma once

class QAbstractButton;

namespace quorvia::collections {

class ButtonRow;

void addFolderButtons(ButtonRow& row);

/// Gives back the button of the playlist editor, which is no command of the panel.
QAbstractButton* addPlaylistButtons(ButtonRow& row);

} // namespace quorvia::collections
