#include "viewer/frmImageView.h"

#include "app/Colors.h"
#include "app/KeyCodes.h"
#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "collections/Filmstrip.h"
#include "platform/MenuControl.h"
#include "platform/SpokenWidget.h"
#include "platform/ToolControl.h"
#include "viewer/CommandTable.h"
#include "viewer/FamilyCommands.h"
#include "viewer/MenuKey.h"
#include "viewer/PageNavigator.h"
#include "viewer/ReadAheadPlan.h"
#include "viewer/UnloadStep.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include <algorithm>

namespace quorvia::viewer {

namespace {

constexpr int resizeDelay = 50; // milliseconds

/// The viewport's own colour: dark, and without a hue that would tint how a picture looks.
constexpr QColor viewportColor(48, 48, 48);

} // namespace

frmImageView::frmImageView(std::shared_ptr<engine::ImageLoader> loader, app::CommandLine commandLine)
    : m_commandLine(std::move(commandLine)),
      m_panes(new Panes(this, {.setUpdate = [this](bool visible, int delay) { SetUpdate(visible, delay); },
                               .filmstripResized = [this] { m_filmstrip->Filmstrip1()->ReDraw(); },
                               .tabShown = [this](const QString&) { showTab(); },
                               .runTool = [this](const QString& name) { RunTool(name); },
                               .openMenu = [this] { OpenMenuX(false); },
                               .laidOut = [this] { layoutView(); },
                               .listToggled = [this] { noteList(); }})),
      m_ix1(new engine::ImageEngine(loader, pContain())), m_viewport(new Viewport(pContain(), m_ix1, this)),
      m_gestures(new ViewportGestures(m_viewport,
                                      {.runTool = [this](const QString& name) { RunTool(name); },
                                       .openMenu = [this] { OpenMenuX(false); }},
                                      this)),
      m_status(new ImageStatus({.main = this,
                                .panes = m_panes,
                                .ix1 = m_ix1,
                                .focusImage =
                                    [this] {
                                        activateWindow(); // the bar may float
                                        setFocus();
                                    }})),
      m_playlist(new collections::frmImageViewPlaylist(*this)),
      m_filmstrip(new FilmstripHost(filmstripParts())),
      m_slideshow(new output::Slideshow(slideshowSinks(), this)),
      m_interface(new InterfaceTools(interfaceParts())), m_full(*this),
      m_opening(new Opening({.owner = this,
                             .ix1 = m_ix1,
                             .viewport = m_viewport,
                             .list = list(),
                             .pTiff = [this] { return makeNavigator(); },
                             .gTab = m_panes->gTab(),
                             .runTool = [this](const QString& name) { RunTool(name); },
                             .showFull = [this] { return m_full.GenImage(); },
                             .updateStatus = [this] { UpdateStatus(); },
                             .showInFilmstrip = [this] { m_filmstrip->showCurrent(); },
                             .updateToolbar = [this] { UpdateToolbar(); },
                             .commandLine = m_commandLine.line},
                            this)),
      m_images(*this, loader),
      m_keyboard(new commands::Keyboard(&m_interface->shortcuts(), keyboardSinks(), this))
{
    setObjectName(QStringLiteral("frmImageView"));
    setAccessibleName(app::productTitle());
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setFocus(); // the keys are the window's; the strip of tabs gets them only by Tab
    app::setPaneColor(pContain(), viewportColor);
    m_ix1->setObjectName(QStringLiteral("ix1"));
    platform::speakAs(m_ix1, QAccessible::Graphic);
    m_ix1->setAccessibleName(tr("Picture"));
    m_ix1->hide();

    m_opening->setPlaylists(m_playlist);
    m_viewport->setLoadBoxElsewhere([this] { return m_full.loadBox(); });
    m_playlist->setBatchServices(m_images.batchServices());

    new MenuKey(this);
    new ReadAheadPlan(std::move(loader), m_ix1, list(), m_viewport, this);

    const std::vector<commands::Tool> table = commandTable(*this);
    m_dispatcher = std::make_unique<commands::ToolDispatcher>(table, prefixTools());

    m_tUpdate.setObjectName(QStringLiteral("tUpdate"));
    m_tUpdate.setParent(this);
    m_tUpdate.setSingleShot(true);
    connect(&m_tUpdate, &QTimer::timeout, this, [this] { SetUpdate(true, 0); });
}

frmImageView::~frmImageView() = default;

void frmImageView::RunTool(const QString& name)
{
    m_lastTool = name;
    m_dispatcher->RunTool(name);
}

void frmImageView::SetUpdate(bool visible, int delay)
{
    m_ix1->setVisible(visible);
    m_welcome.setUpdate(visible);
    if (!visible && delay >= 1)
        m_tUpdate.start(delay);
}

void frmImageView::UpdateToolbar()
{
    const commands::CommandFacts now = facts();
    m_welcome.show(commands::showsWelcome(now));
    m_interface->apply(now);
    m_playlist->SetUpdateInterval(commands::listUpdateInterval(now.listShown));
    m_panes->aP()->recalcLayout();
}

void frmImageView::updateTools()
{
    UpdateToolbar();
    updateViewMarks();
}

void frmImageView::buildInterfaceSoon()
{
    constexpr int delay = 100; // milliseconds
    QTimer::singleShot(delay, this, [this] {
        checkVersionAfterStart(*this);
        if (m_interface->isBuilt()) // who was quick to ask for the menu may have it open
            updateTools();
        else
            OpenMenuX(true);
        m_panes->awaitToolbar(false); // there is none when its definition is empty
        m_panes->place();
    });
}

void frmImageView::showTab()
{
    if (!m_interface) // the panes are built first
        return;
    showPaneContents();
    updateTools();
}

void frmImageView::showPaneContents()
{
    if (m_panes->isInformationShown())
        UpdateStatus();
    m_filmstrip->showList();
    m_filmstrip->showCurrent();
}

void frmImageView::noteList()
{
    if (!m_loading) // what is shown from the start is looked at with the rest
        UpdateToolbar();
}

void frmImageView::UpdateStatus()
{
    m_status->UpdateStatus();
    m_images.restoreCaption();
}

void frmImageView::OpenDirX(const QString& directory)
{
    m_opening->OpenDirX(directory, app::read(app::setting::cLoad));
}

void frmImageView::closeAll()
{
    app::letPendingEventsRun();
    close();
}

void frmImageView::unload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    runUnloadStep(*this);
}

void frmImageView::layoutPanes()
{
    m_panes->place();
}

void frmImageView::layoutView()
{
    if (!m_viewport) // the panes are built first
        return;
    if (m_pTiff)
        m_pTiff->place(m_panes->freeRight());
    m_viewport->layout();
}

void frmImageView::FitWindowToImage()
{
    if (m_ix1->ImagePixelWidth() == 0)
        return;
    setWindowState(Qt::WindowNoState); // another has a size of its own
    const int toolbar = m_panes->ab1()->isHidden() ? 0 : app::toTwips(m_panes->ab1()->height());
    const QSize size = windowForImage(QSize(m_ix1->ImageWidthTwips(), m_ix1->ImageHeightTwips()), toolbar);
    resize(app::toPixels(size.width()), app::toPixels(size.height()));
}

PageNavigator* frmImageView::makeNavigator()
{
    m_pTiff = new PageNavigator(pTop());
    m_pTiff->place(m_panes->freeRight());
    return m_pTiff;
}

void frmImageView::closeEvent(QCloseEvent* event)
{
    unload();
    event->accept();
    QCoreApplication::quit();
}

void frmImageView::noteFrame()
{
    if (isVisible() && !isMinimized() && !isMaximized() && !isFullScreen())
        m_frameOffset = geometry().topLeft() - pos();
}

void frmImageView::showEvent(QShowEvent*)
{
    // Another screen may have other pixels, and the window be as large as before.
    connect(windowHandle(), &QWindow::screenChanged, this, &frmImageView::layoutPanes, Qt::UniqueConnection);
}

void frmImageView::moveEvent(QMoveEvent*)
{
    noteFrame();
}

void frmImageView::resizeEvent(QResizeEvent*)
{
    noteFrame();
    if (!m_loading)
        SetUpdate(false, resizeDelay);
    layoutPanes();
}

void frmImageView::keyPressEvent(QKeyEvent* event)
{
    const int code = app::virtualKeyCode(event->key(), event->nativeScanCode());
    if (code == 0) {
        event->ignore();
        return;
    }
    m_keyboard->keyDown(code, app::modifierMask(event->modifiers()));
}

void frmImageView::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData() && event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void frmImageView::dropEvent(QDropEvent* event)
{
    const QList<QUrl> urls = event->mimeData()->urls();
    const auto local =
        std::find_if(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
    if (local == urls.end())
        return;
    event->acceptProposedAction();
    const QString path = local->toLocalFile();
    if (app::FolderExists(path))
        OpenDirX(path);
    else
        OpenX(path);
}

} // namespace quorvia::viewer
