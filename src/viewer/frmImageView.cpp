#include "viewer/frmImageView.h"

#include "app/Colors.h"
#include "app/KeyCodes.h"
#include "app/mFile.h"
#include "app/mWindowsAPI.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "platform/Dialogs.h"
#include "viewer/CommandTable.h"
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
#include <cstdlib>

namespace quorvia::viewer {

namespace {

constexpr int resizeDelay = 50; // milliseconds

/// The viewport's own colour: dark, and without a hue that would tint how a picture looks.
constexpr QColor viewportColor(48, 48, 48);

} // namespace

frmImageView::frmImageView(std::shared_ptr<engine::ImageLoader> loader, app::CommandLine commandLine)
    : m_commandLine(std::move(commandLine)),
      m_panes(new Panes(this, {.setUpdate = [this](bool visible, int delay) { SetUpdate(visible, delay); },
                               .tabShown = [](const QString&) {},
                               .runTool = [this](const QString& name) { RunTool(name); },
                               .laidOut = [this] { layoutView(); }})),
      m_ix1(new engine::ImageEngine(loader, pContain())), m_viewport(new Viewport(pContain(), m_ix1, this)),
      m_gestures(new ViewportGestures(
          m_viewport, {.runTool = [this](const QString& name) { RunTool(name); }, .openMenu = [] {}}, this)),
      m_imageTab(new ImageTab(m_panes->gTab(), m_ix1)),
      m_list(new collections::FolderList([this] { return currentFile(); }, this)),
      m_opening(new Opening({.owner = this,
                             .ix1 = m_ix1,
                             .viewport = m_viewport,
                             .list = m_list,
                             .pTiff = [this] { return makeNavigator(); },
                             .gTab = m_panes->gTab(),
                             .runTool = [this](const QString& name) { RunTool(name); },
                             .updateStatus = [this] { UpdateStatus(); },
                             .commandLine = m_commandLine.line},
                            this)),
      m_keyboard(new commands::Keyboard(&m_shortcuts, keyboardSinks(), this))
{
    setObjectName(QStringLiteral("frmImageView"));
    setAccessibleName(app::productTitle());
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setFocus(); // the keys are the window's; the strip of tabs gets them only by Tab
    app::setPaneColor(pContain(), viewportColor);
    m_ix1->setObjectName(QStringLiteral("ix1"));
    m_ix1->setAccessibleName(tr("Picture"));
    m_ix1->hide();

    new ReadAheadPlan(std::move(loader), m_ix1, m_list, m_viewport, this);

    commands::fillShortcuts(m_shortcuts, commands::fixedShortcuts());
    const std::vector<commands::Tool> table = commandTable(*this);
    m_dispatcher = std::make_unique<commands::ToolDispatcher>(table, [this](const QString& text) {
        platform::showMessage(
            this, {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(), text});
    });
    connect(m_list, &collections::FolderList::OpenFile, this, &frmImageView::OpenX);

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

commands::KeyboardSinks frmImageView::keyboardSinks()
{
    return {.owner = this,
            .runTool = [this](const QString& name) { RunTool(name); },
            .isDescriptionUnsaved = [] { return false; },
            .minimise =
                [this] {
                    hide();
                    setWindowState(windowState() | Qt::WindowMinimized);
                    show();
                },
            .fitWindowToImage = [this] { FitWindowToImage(); },
            .interfaceVersions = [] { return app::versionText(app::productVersion(), QStringLiteral(".")); },
            .endProcess =
                [] {
                    app::closeSettings();
                    std::_Exit(EXIT_SUCCESS);
                }};
}

void frmImageView::SetUpdate(bool visible, int delay)
{
    m_ix1->setVisible(visible);
    if (!visible && delay >= 1)
        m_tUpdate.start(delay);
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
        m_pTiff->place();
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
    const int code = app::virtualKeyCode(event->key());
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
        m_opening->OpenDirX(path, app::read(app::setting::cLoad));
    else
        OpenX(path);
}

} // namespace quorvia::viewer
