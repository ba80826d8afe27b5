// The main window. It owns the rooms of the viewer and connects them; what they do stands beside it.
#pragma once

#include "app/CommandLine.h"
#include "app/MainWindow.h"
#include "collections/frmImageViewPlaylist.h"
#include "commands/CommandState.h"
#include "commands/Keyboard.h"
#include "commands/ToolDispatcher.h"
#include "engine/ImageEngine.h"
#include "output/Slideshow.h"
#include "viewer/FilmstripHost.h"
#include "viewer/FullScreenHost.h"
#include "viewer/ImageCommands.h"
#include "viewer/ImageStatus.h"
#include "viewer/InterfaceTools.h"
#include "viewer/Opening.h"
#include "viewer/Panes.h"
#include "viewer/ScanCommand.h"
#include "viewer/Viewport.h"
#include "viewer/ViewportGestures.h"
#include "viewer/WelcomeHost.h"

#include <QTimer>
#include <QWidget>

#include <memory>

namespace quorvia::viewer {

class frmImageView : public QWidget, public app::MainWindow
{
    Q_OBJECT

  public:
    /// `loader` serves the image control; `commandLine` is the one that the process was started with.
    frmImageView(std::shared_ptr<engine::ImageLoader> loader, app::CommandLine commandLine);
    ~frmImageView() override;

    // --- app::MainWindow
    void RunTool(const QString& name) override;
    void OpenX(const QString& path) override { m_opening->OpenX(path); }
    void GlobalKeyPress(int keyCode, int shift) override { m_keyboard->GlobalKeyPress(keyCode, shift); }
    QString currentFile() const override { return m_ix1->FileName(); }
    void OpenDirX(const QString& directory) override;
    QStringList recentDirectories() const override { return m_opening->recent(); }

    /// Shows or hides picture and welcome panel while the window changes its size; hidden with a `delay` of
    /// at least 1 millisecond, it comes back by itself after that.
    void SetUpdate(bool visible, int delay);
    /// Closes the other windows, this one last, and ends the process.
    void closeAll();

    // --- the rooms, for the load step, the unload step and the table of commands
    const app::CommandLine& commandLine() const { return m_commandLine; }
    Panes* panes() const { return m_panes; }
    QWidget* pTop() const { return m_panes->pTop(); }
    QWidget* pContain() const { return m_panes->pContain(); }
    engine::ImageEngine* ix1() const { return m_ix1; }
    Viewport* viewport() const { return m_viewport; }
    Opening* opening() const { return m_opening; }
    collections::PictureList* list() const { return m_playlist->list(); }
    collections::frmImageViewPlaylist* playlist() const { return m_playlist; }
    output::Slideshow* slideshow() const { return m_slideshow; }
    InterfaceTools* interfaceTools() const { return m_interface; }
    FilmstripHost* filmstrip() const { return m_filmstrip; }
    ImageStatus* status() const { return m_status; }
    ImageCommands& images() { return m_images; }
    ScanCommand& scan() { return m_scan; }
    FullScreenHost& full() { return m_full; }
    WelcomeHost& welcome() { return m_welcome; }
    /// Where the inside of the window lies within its frame, as last seen when it was neither minimised nor
    /// maximised.
    QPoint frameOffset() const { return m_frameOffset; }
    /// The name of the last command.
    QString lastTool() const { return m_lastTool; }
    /// True until the load step has ended; resizes are then taken without the repaint guard.
    bool isLoading() const { return m_loading; }
    void setLoading(bool loading) { m_loading = loading; }
    /// True when the unload step has run: what is left of the load step must not.
    bool isUnloaded() const { return m_unloaded; }
    /// Runs the unload step once.
    void unload();

    /// Brings what describes the current image up to date.
    void UpdateStatus();
    /// Fills the pane of the selected tab, when it has come to be seen.
    void showPaneContents();
    /// Brings tools and panels in line with what there is now. One look at the disk, no image work.
    void UpdateToolbar();
    /// Brings the marks of the views in line.
    void updateViewMarks() { m_interface->applyViewMarks(viewFacts()); }
    /// Builds menu and toolbar when the window has come to rest.
    void buildInterfaceSoon();
    /// See MenuBuild.
    void OpenMenuX(bool rebuild) { m_interface->OpenMenuX(rebuild); }
    /// Places the panes inside the window.
    void layoutPanes();
    /// Makes the window as large as the picture at 100% wants it; its place stays.
    void FitWindowToImage();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    commands::KeyboardSinks keyboardSinks();
    PageNavigator* makeNavigator();
    commands::CommandFacts viewFacts() const;
    commands::CommandFacts facts() const;
    commands::PrefixTools prefixTools();
    FilmstripHost::Parts filmstripParts();
    InterfaceTools::Parts interfaceParts();
    output::SlideshowSinks slideshowSinks();
    void updateTools();
    void showTab();
    void noteList();
    void layoutView();
    void noteFrame();

    app::CommandLine m_commandLine;
    Panes* m_panes;
    engine::ImageEngine* m_ix1;
    PageNavigator* m_pTiff = nullptr;
    Viewport* m_viewport = nullptr;
    ViewportGestures* m_gestures;
    ImageStatus* m_status;
    collections::frmImageViewPlaylist* m_playlist;
    FilmstripHost* m_filmstrip;
    output::Slideshow* m_slideshow;
    InterfaceTools* m_interface = nullptr;
    FullScreenHost m_full;
    WelcomeHost m_welcome{*this};
    Opening* m_opening;
    ImageCommands m_images;
    ScanCommand m_scan{*this};
    commands::Keyboard* m_keyboard;
    std::unique_ptr<commands::ToolDispatcher> m_dispatcher;
    QTimer m_tUpdate;
    QPoint m_frameOffset;
    QString m_lastTool;
    bool m_loading = true;
    bool m_unloaded = false;
};

} // namespace quorvia::viewer
