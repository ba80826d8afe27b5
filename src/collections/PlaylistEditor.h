// The playlist editor: a page for editing one playlist, and a page for managing the named ones. It meets the
// panel of the list only through the files of the playlists. The playlist in hand is saved on the way to
// another one, on the way to the other page and at the end.
#pragma once

#include <QWidget>

#include <functional>

namespace quorvia::collections {

class DefinePage;
class EditedPlaylist;
class EditingPage;

class PlaylistEditor : public QWidget
{
    Q_OBJECT

  public:
    explicit PlaylistEditor(QWidget* parent = nullptr);

    /// Takes the playlist `sName` of the folder of the named ones in hand. Nothing happens for the empty
    /// name.
    void SetActivePlaylist(const QString& sName);
    /// The name of the playlist in hand; empty when it has none.
    QString ActivePlaylist() const;
    /// Saves the playlist in hand among the named ones, if it has a name. False when that failed, and what
    /// the user changed is in memory alone.
    bool SaveActivePlaylist();
    /// Fills the lists of the named playlists.
    void GetInternalPlaylist();
    /// Opens the playlist in the file `sFile`; of the empty text, in one that the user chooses. A file that
    /// is not there is an empty playlist. When he chooses none, or breaks off, all stays as it was.
    void LoadQOLPlaylist(const QString& sFile);
    /// Writes the list to the file `sFile`, whose name the playlist takes; of the empty text, to one that the
    /// user names, and nothing happens when there are no files. See QolFile::save(). False as above.
    bool SaveQOLPlaylist(const QString& sFile);
    /// Leaves no file in the list.
    void ClearPlaylist();
    /// Appends a file that exists; any other is passed over.
    void AddPlaylistFile(const QString& sFile);
    /// Shows the list anew; nothing is selected afterwards.
    void RefreshPlaylist();
    /// Puts the tip into the line of help.
    void ShowTip();

    /// Goes back from the page of the named playlists. False when it is not in front.
    bool leaveDefinePage();
    /// Saves the playlist in hand and ends all activity; every later call is shut out. False, and all stays
    /// as it is, when the save failed and nobody had been told: the line of help tells then.
    bool closeDown();

  Q_SIGNALS:
    /// The user has finished: the host is to close the window.
    void CloseRequest();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void followCombo();
    void followDefinePage();
    void offCombo();
    void onCombo();
    void answer(const std::function<void()>& does);
    void pick(const QString& name);
    void createPlaylist();
    void definePlaylists();
    void renamePlaylist(const QString& name);
    void deletePlaylist(const QString& name);

    EditedPlaylist* m_playlist;
    EditingPage* m_editing;
    DefinePage* m_pDefinePlaylist;
    bool m_closed = false;
    bool m_toldOfFailure = false; ///< of the save at the end
};

} // namespace quorvia::collections
