// The window of the list of pictures. It lives from the start with the list itself, and is no more than that
// until it is first shown: only then is the panel made that fills it.
#pragma once

#include "collections/BatchActions.h"
#include "collections/PictureList.h"
#include "collections/PlaylistCommands.h"
#include "collections/PlaylistKeeper.h"
#include "collections/PlaylistSource.h"

#include <QWidget>

namespace quorvia::app {
class MainWindow;
}

namespace quorvia::collections {

class Playlist;

class frmImageViewPlaylist : public QWidget, public PlaylistSource
{
    Q_OBJECT

  public:
    /// `main` outlives the window. It opens what is picked, runs `FileListUpdated` after each rebuild, and
    /// gets the keys.
    explicit frmImageViewPlaylist(app::MainWindow& main, QWidget* parent = nullptr);

    /// The list itself, for those that need no window.
    PictureList* list() const { return m_list; }
    /// The panel; null until the window is first shown.
    Playlist* panel() const { return m_panel; }

    // --- the list's own operations; see PictureList
    void startUp() { m_list->startUp(); }
    QString path(int index = 0) const { return m_list->path(index); }
    void setPath(int index, const QString& folder) { m_list->setPath(index, folder); }
    QString Pattern() const { return m_list->Pattern(); }
    void SetPattern(const QString& pattern) { m_list->SetPattern(pattern); }
    QString List(int index) const { return m_list->List(index); }
    void SetList(int index, const QString& text) { m_list->SetList(index, text); }
    int ListIndex() const { return m_list->ListIndex(); }
    void SetListIndex(int index) { m_list->SetListIndex(index); }
    int ListCount() const override { return m_list->ListCount(); }
    QString ListFile(int index) const { return m_list->ListFile(index); }
    void setListIndex(const QString& text) { m_list->setListIndex(text); }
    void SetUpdateInterval(int milliseconds) { m_list->SetUpdateInterval(milliseconds); }
    void RefreshPlaylist() { m_list->RefreshPlaylist(); }
    QString GetSelectedFiles() const { return m_list->GetSelectedFiles(); }
    int GetSelectedTab() const { return m_list->GetSelectedTab(); }
    void SelectTab(int iTab) { m_list->SelectTab(iTab); }
    void TabEnabled(int iTab, bool bEnabled) { m_list->TabEnabled(iTab, bEnabled); }
    bool IsReady() const { return m_list->IsReady(); }
    void CloseDown();

    // --- the open playlist's; see PlaylistKeeper and PlaylistCommands
    QString ActivePlaylist() const { return m_list->playlist()->ActivePlaylist(); }
    /// Opens the playlist in `file` and has the list filled when this returns.
    void OpenPlaylist(const QString& file) override;
    void LoadQOLPlaylist(const QString& sFile) { m_list->playlist()->LoadQOLPlaylist(sFile); }
    void SaveQOLPlaylist(const QString& sFile) { m_list->playlist()->SaveQOLPlaylist(sFile); }
    QString GetPlaylistFormats() const override { return PlaylistKeeper::GetPlaylistFormats(); }
    void LoadActivePlaylist() { m_list->playlist()->LoadActivePlaylist(); }
    bool AddPlaylistFile(const QString& sFile) { return m_list->playlist()->AddPlaylistFile(sFile); }
    void ClearPlaylist() { m_list->playlist()->ClearPlaylist(); }
    bool IntiPlaylist(bool bSilent) { return m_list->playlist()->IntiPlaylist(bSilent); }
    void RenamePlaylist(const QString& sOld, const QString& sNew);
    void EnqueueAll(const QString& sDir) { m_commands.EnqueueAll(sDir); }
    PlaylistCommands& commands() { return m_commands; }
    /// Has the main window show the editor.
    void ShowPlaylistEditor();
    /// The editor has closed with the playlist `inHand`: the open one is loaded anew, since it may have been
    /// changed. When it has gone, deleted or renamed, the one in hand is opened instead.
    void PlaylistEditorDone(const QString& inHand = QString());
    /// What is done with the selected files goes by `services`. Those about the image on show, and the start
    /// of a program, are the window's own.
    void setBatchServices(BatchServices services);
    BatchActions& batch() { return *m_batch; }
    /// Prepares the menu of the list, in the panel when it is there.
    void GenPopupMenu();
    /// Runs a command of the panel, which is made for it when it is not there yet; see Playlist.
    void RunTool(const QString& command);

    /// A text that the main window keeps here; nothing is made of it.
    QString Tag() const { return m_tag; }
    void SetTag(const QString& tag) { m_tag = tag; }

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void makePanel();

    app::MainWindow& m_main;
    PictureList* m_list;
    PlaylistCommands m_commands;
    BatchActions* m_batch;
    Playlist* m_panel = nullptr;
    QString m_tag;
    bool m_closed = false;
};

} // namespace quorvia::collections
