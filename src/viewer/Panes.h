// The tree of panes inside the main window, and what places them: nothing is anchored, every pane is put in
// its place by the layout steps here.
#pragma once

#include "viewer/PaneLayout.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace quorvia::controls {
class gnTab;
class uLink;
} // namespace quorvia::controls

namespace quorvia::platform {
class Band;
class MenuControl;
class ToolButton;
class ToolControl;
} // namespace quorvia::platform

namespace quorvia::viewer {

class DragHandle;
class FileListHandle;

class Panes : public QObject
{
    Q_OBJECT

  public:
    /// What the panes ask of the window.
    struct Sinks
    {
        std::function<void(bool visible, int delay)> setUpdate; ///< the repaint guard
        std::function<void()> filmstripResized;                 ///< the strip was given another height
        std::function<void(const QString& key)> tabShown;       ///< after the panes of a tab are shown
        std::function<void(const QString& name)> runTool;
        std::function<void()> openMenu;    ///< the context menu, at the mouse
        std::function<void()> laidOut;     ///< the viewport has its place
        std::function<void()> listToggled; ///< the band of the file list has come or gone
    };

    /// Builds the tree in `window`.
    Panes(QWidget* window, Sinks sinks);

    QWidget* pMain() const { return m_pMain; }
    platform::ToolControl* ab1() const { return m_ab1; }
    QWidget* pTop() const { return m_pTop; }
    QWidget* pContain() const { return m_pContain; }
    QWidget* pWelcome() const { return m_pWelcome; }
    QWidget* pInformation() const { return m_pInformation; }
    QWidget* pShowInfo() const { return m_pShowInfo; }
    QWidget* pFilmStrip() const { return m_pFilmStrip; }
    QWidget* pFilm() const { return m_pFilm; }
    controls::uLink* uLink() const { return m_uLink; }
    controls::gnTab* gTab() const { return m_gTab; }
    platform::MenuControl* aP() const { return m_aP; }
    platform::Band* bPlay() const { return m_bPlay; }
    platform::Band* bInfo() const { return m_bInfo; }

    /// Gives the chrome the colour of pTop, and white text to all that stands on it.
    void colourChrome(const QColor& color);
    /// Gives the tab strip its three tabs.
    void addTabs();

    /// Places everything for the window's present size.
    void place();
    /// Places what is inside pTop.
    void placeTop();
    /// Where the free part of the strip on top ends: at the link, or else at the edge. Pixels of pTop.
    int freeRight() const;

    /// True while the viewport lies in front and takes all of pTop below the strip.
    bool interfaceFlag() const { return m_interfaceFlag; }
    void setInterfaceFlag(bool flag);
    /// Whether the pane of the tab can be seen: not while the viewport lies over it.
    bool isInformationShown() const;
    bool isFilmstripShown() const;

    /// The filmstrip's height in twips.
    int filmStripHeight() const { return m_filmStripHeight; }
    void setFilmStripHeight(int twips);

    /// Keeps the toolbar's place free as long as it is not there, so that it does not push the picture about
    /// when it comes.
    void awaitToolbar(bool awaits) { m_awaitsToolbar = awaits; }

    /// Shows the panel of a window without a picture, or takes it away.
    void showWelcome(bool show);
    /// True while the view and what lies around it shows.
    bool isViewShown() const;
    /// Hides all but an empty window, or brings it back.
    void showView(bool show);
    /// Shows or hides the band of the file list, and the handle beside it.
    void toggleFileList();
    /// Shows or hides the band of the side bar.
    void toggleSideBar();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void placeMain();
    void disableCovered();
    void placeButton();
    void showTab(const QString& key);
    void dragFilmstrip(int offset);
    void dropFilmstrip();
    TopState topState() const;

    QWidget* m_window;
    Sinks m_sinks;
    QWidget* m_pMain;
    platform::ToolControl* m_ab1;
    bool m_awaitsToolbar = false;
    platform::ToolButton* m_iButton; ///< shows while the interface flag is clear and the toolbar leaves room
    QWidget* m_Line1;
    platform::MenuControl* m_aP;
    QWidget* m_pTop;
    QWidget* m_pFilebar;
    controls::uLink* m_uLink;
    controls::gnTab* m_gTab;
    QWidget* m_pContain;
    QWidget* m_pWelcome;
    QWidget* m_pInformation;
    QWidget* m_pShowInfo;
    QWidget* m_pFilmStrip;
    QWidget* m_pFilm;
    DragHandle* m_pSize;
    QWidget* m_pCapture;
    platform::Band* m_bPlay;
    platform::Band* m_bInfo;
    FileListHandle* m_pMove;
    bool m_interfaceFlag = true;
    bool m_tabsReady = false;
    int m_filmStripHeight = 2500;
    std::optional<int> m_draggedTop; ///< of pSize while it is dragged, twips
};

} // namespace quorvia::viewer
