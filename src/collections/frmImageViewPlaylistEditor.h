// The window of the playlist editor. While it shows, no other window of the program takes input.
#pragma once

#include <QWidget>

namespace quorvia::collections {

class PlaylistEditor;

class frmImageViewPlaylistEditor : public QWidget
{
    Q_OBJECT

  public:
    /// Where it stood the last time, with the playlist `activePlaylist` (may be empty) in hand. Once closed
    /// it deletes itself.
    explicit frmImageViewPlaylistEditor(const QString& activePlaylist, QWidget* parent = nullptr);

    PlaylistEditor* editor() const { return m_editor; }

  Q_SIGNALS:
    /// The window has been closed, and the playlist is saved. `inHand` is its name; empty when there was
    /// none.
    void closed(const QString& inHand);

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void restorePlace();

    PlaylistEditor* m_editor;
    bool m_closing = false;
};

} // namespace quorvia::collections
