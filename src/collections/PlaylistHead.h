// The head of the playlist's face: the name of the open playlist, and a list of the named ones that opens
// over it when the pointer rests on the name, or by click or key.
#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

class QComboBox;
class QFrame;
class QLabel;

namespace quorvia::collections {

/// What stands in the place of the name of the open playlist; `name` is empty when none is open.
QString playlistCaption(const QString& name);

/// Whether the pointer still rests where it was seen last; heights on the screen in pixels.
constexpr bool restsAt(int seenY, int y)
{
    constexpr int slack = 10;
    return y - seenY <= slack && seenY - y <= slack;
}

class PlaylistHead : public QWidget
{
    Q_OBJECT

  public:
    explicit PlaylistHead(QWidget* parent);

    /// The part that takes the keys.
    QWidget* box() const;
    /// The name of the open playlist; empty: none is open.
    QString name() const;
    void setName(const QString& name);
    /// What the list holds; texts shown letter for letter.
    void setNames(const QStringList& names);
    bool hasNames() const { return !m_names.isEmpty(); }
    /// Shows the list over the name. Nothing happens when it shows already, or has no entries.
    void openList();
    void hideList();

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// The user chose a name in the list.
    void chosen(const QString& name);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void fillParts();
    void startTimers();
    void noteHover();
    void endHover();
    void showCaption();
    void hideClosed();
    void choose(int row);
    bool takeKey(int key);

    QFrame* m_pPlaylistBox;
    QLabel* m_lPlaylistName;
    QWidget* m_iDown;
    QComboBox* m_cboPlaylist;
    QStringList m_names;
    QTimer m_tCombo; ///< its property "tag" is where on the screen the pointer was seen last
    QTimer m_tHide;
};

} // namespace quorvia::collections
