// The panel of the list of pictures with its two faces: the folder tree, or the name of the open playlist,
// and with both their buttons, the list box and the count. It shows what stands in a PictureList and tells it
// what the user does. Making one costs some milliseconds, so it is made when it is first to be seen.
#pragma once

#include <QHash>
#include <QPoint>
#include <QWidget>

class QAbstractButton;
class QLabel;

namespace quorvia::app {
class MainWindow;
}

namespace quorvia::platform {
class FolderTree;
}

namespace quorvia::collections {

class BatchActions;
class ButtonRow;
class EntryView;
class PanelMenus;
class PanelTabs;
class PictureList;
class PlaylistCommands;
class PlaylistHead;
enum class PanelPart;

class Playlist : public QWidget
{
    Q_OBJECT

  public:
    /// Shows `list` as it stands. The tree gets its root from the settings. What the panel does not run by
    /// itself goes to `commands`, `batch` and `main`. All outlive it.
    Playlist(PictureList* list, PlaylistCommands& commands, BatchActions& batch, app::MainWindow& main,
             QWidget* parent = nullptr);

    /// Runs a command of the panel, whatever its case: `selectdirectory`, `addmenu`, `removemenu`,
    /// `showcontextmenu`, or one of PlaylistCommands or BatchActions. Any other does nothing.
    void RunTool(const QString& sCommand);
    /// Prepares the menu of the list.
    void GenPopupMenu();
    /// Takes the tree away, and with it every later command.
    void CloseDown();

  Q_SIGNALS:
    /// The editor of playlists is wanted.
    void editorWanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void fillParts();
    void watchParts();
    void takeDesktopColors();
    void followList();
    void followPlaylist();
    void followUser();
    void showFace(bool animated);
    void showCount();
    void selectFolder(const QString& folder);
    void selectDirectory();
    void addMenu();
    void removeMenu();
    void showContextMenu();
    void popUp(const char* band);
    void openNamed(const QString& name);
    void passSelection();
    void layOut();

    PictureList* m_list;
    PlaylistCommands& m_commands;
    BatchActions& m_batch;
    PanelTabs* m_tabs;
    PlaylistHead* m_pInternalPlaylist;
    platform::FolderTree* m_ftv;
    ButtonRow* m_pFilelist;
    EntryView* m_lPlaylist;
    ButtonRow* m_ptPlaylist;
    QLabel* m_lPlaylistInfo;
    PanelMenus* m_menus;
    QHash<QWidget*, PanelPart> m_parts; ///< those that take keys
    QPoint m_menuPlace;                 ///< of the screen, where a menu was asked for; null: at the mouse
    QAbstractButton* m_menuButton = nullptr; ///< whose click is being dealt with
};

} // namespace quorvia::collections
