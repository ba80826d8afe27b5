// The panel of the list of pictures: the folder tree, its buttons, the list box and the count. It shows what
// stands in a PictureList and tells it what the user does. Making one costs some milliseconds, so it is made
// when it is first to be seen.
#pragma once

#include <QWidget>

#include <array>

class QLabel;
class QPushButton;

namespace quorvia::platform {
class FolderTree;
}

namespace quorvia::collections {

class EntryView;
class PictureList;
class PanelTab;
enum class PanelPart;

class Playlist : public QWidget
{
    Q_OBJECT

  public:
    /// Shows `list`, which outlives the panel, as it stands. The tree gets its root from the settings.
    explicit Playlist(PictureList* list, QWidget* parent = nullptr);

    /// Runs a command of the panel, whatever its case: `selectdirectory` or `showcontextmenu`. Any other does
    /// nothing.
    void RunTool(const QString& command);
    /// Takes the tree away, and with it every later command.
    void CloseDown();

  Q_SIGNALS:
    /// The menu of the selected entries is wanted at a place of the screen.
    void contextMenuWanted(const QPoint& at);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    std::array<QWidget*, 3> controls() const;
    void fillParts();
    void takeDesktopColors();
    void followList();
    void followUser();
    void showList();
    void selectFolder(const QString& folder);
    void selectDirectory();
    void passSelection();
    void layOut();
    PanelPart partOf(const QObject* widget) const;

    PictureList* m_list;
    PanelTab* m_tab1;
    platform::FolderTree* m_ftv;
    QWidget* m_pFilelist;
    QPushButton* m_cmdDir;
    EntryView* m_lPlaylist;
    QLabel* m_lPlaylistInfo;
    QPoint m_menuPlace;
};

} // namespace quorvia::collections
