// The page of the playlist editor where a playlist is edited: the files of a folder on one side, those of the
// playlist on the other, each with a strip of what is selected there.
#pragma once

#include "collections/EditorMoves.h"
#include "collections/PathModel.h"

#include <QTimer>
#include <QWidget>

#include <vector>

class QLabel;
class QMenu;
class QPushButton;

namespace quorvia::platform {
class FolderTree;
}

namespace quorvia::collections {

class EditedPlaylist;
class EditorButtons;
class EntryView;
class Filmstrip;
class HelpLine;
class PlaylistCombo;
enum class EditorAction;

class EditingPage : public QWidget
{
    Q_OBJECT

  public:
    /// Edits `playlist`, which outlives the page. The folder is that of the last time, if it is still there.
    explicit EditingPage(EditedPlaylist* playlist, QWidget* parent = nullptr);

    PlaylistCombo* combo() const { return m_cPlaylist; }
    /// What dialogs belong to.
    QWidget* dialogOwner() const { return m_pPlaylist; }

    /// Both strips show what is selected, 200 ms after the last request.
    void refreshFilm();
    /// Ends that, and empties both strips.
    void endFilm();
    /// Puts the tip into the line of help.
    void ShowTip();
    /// Puts `text` into it, until there is something else to tell.
    void showHelp(const QString& text);
    /// Gives the keys back to where they belong.
    void takeFocus();

  Q_SIGNALS:
    /// The user has finished.
    void finished();
    /// Files are to be added while there is no playlist in hand; whoever gives one does it before returning.
    void playlistWanted();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// One side: a list of files, and the strip of those that are selected.
    struct Side
    {
        PathModel* paths;
        EntryView* list;
        Filmstrip* strip;
    };

    void nameParts();
    void makeMenu();
    void setTabOrders();
    void followLists();
    void followStrip(const Side& side, const QString& help);
    void followPointer();

    void showFolder(const QString& folder);
    void run(EditorAction action);
    void moveSelected(Direction direction);
    void removeSelected();
    void addSelected();
    bool hasPlaylist();
    void select(const std::vector<RowRange>& rows, int current);
    void unselect(const Side& side, int position);
    void showFilm();
    void popUpMenu(const QPoint& at);
    void setRows(int rows);
    bool takeKey(const QObject* watched, QKeyEvent* event);
    void layOut();

    EditedPlaylist* m_playlist;
    PathModel m_folderFiles;
    QWidget* m_pTitle;
    QLabel* m_lTitle;
    QWidget* m_pFile;
    QLabel* m_lDirectory;
    platform::FolderTree* m_fDir;
    Side m_files;
    QWidget* m_pFileTools;
    QWidget* m_pPlaylist;
    QLabel* m_lPTitle;
    PlaylistCombo* m_cPlaylist;
    Side m_entries;
    QWidget* m_pPlaylistTools;
    QWidget* m_pFooter;
    HelpLine* m_lHelp;
    QPushButton* m_lFinished;
    EditorButtons* m_iImg;
    QMenu* m_mnuPopup;
    QTimer m_tFilm;
    bool m_moving = false; ///< the selection follows entries that move
};

} // namespace quorvia::collections
