#include "viewer/LoadStep.h"

#include "app/Colors.h"
#include "app/ImageTypes.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "app/Settings.h"
#include "app/Twips.h"
#include "app/WindowGeometry.h"
#include "app/WindowPlacement.h"
#include "controls/gnTab.h"
#include "controls/ScrollBar.h"
#include "output/StartTools.h"
#include "platform/MenuControl.h"
#include "platform/ProgramIcon.h"
#include "system/Companions.h"
#include "system/mAssociation.h"
#include "system/Publishing.h"
#include "viewer/BandSettings.h"
#include "viewer/frmImageView.h"
#include "viewer/RecentList.h"

#include <QGuiApplication>
#include <QScreen>

namespace quorvia::viewer {

namespace {

constexpr int maximisedState = 2;
constexpr int firstPictureWait = 500; // milliseconds at most until the first picture is painted

void log(const char* text)
{
    app::WriteLog(QLatin1String(text));
}

void colourChrome(frmImageView& window)
{
    window.panes()->colourChrome(QColor(0, 121, 191));
}

void restoreGeometry(frmImageView& window, bool othersWereRunning)
{
    // Of a window that never showed, the toolkit's own guess is the screen that lies at 0, 0.
    const QScreen& primary = *QGuiApplication::primaryScreen();
    const QSize screen = app::inTwips(primary.size());
    const QSize usual = app::defaultSize(screen);
    const QSize stored(app::read(app::setting::MainWidth, usual.width()),
                       app::read(app::setting::MainHeight, usual.height()));
    const QPoint origin = app::inTwips(primary.geometry()).topLeft();
    const QPoint centred = origin + app::defaultCorner(screen, stored);

    const QSize desktop = app::inTwips(primary.virtualSize());
    const QSize size = app::usableSize(stored, desktop);
    window.resize(app::toPixels(size.width()), app::toPixels(size.height()));
    if (!othersWereRunning) {
        const QPoint middle = origin + app::defaultCorner(screen, size);
        const QPoint asked(app::read(app::setting::MainLeft, centred.x()),
                           app::read(app::setting::MainTop, centred.y()));
        // A size that had to be lowered was stored for another desktop, and so was its place.
        const bool lowered = size.width() < stored.width() || size.height() < stored.height();
        const QPoint corner =
            lowered ? middle : app::visibleCorner(asked, size, app::screensInTwips(), middle);
        window.move(app::toPixels(corner.x()), app::toPixels(corner.y()));
    }
    if (app::read(app::setting::MainWindowState) == maximisedState)
        window.setWindowState(Qt::WindowMaximized);
}

/// The layout of the last run, for a start without a command line; any other gets the one that the window is
/// made with.
void restoreBand(frmImageView& window)
{
    platform::Band* const bPlay = window.panes()->bPlay();
    if (app::read(app::setting::cLayout) == 1 && window.commandLine().isEmpty())
        bPlay->apply(storedBand(bPlay->state()));
}

/// Filmstrip and chosen tab of the last run.
void restoreTabs(frmImageView& window)
{
    Panes* const panes = window.panes();
    window.filmstrip()->setRows(app::read(app::setting::FilmStripRows));
    panes->setFilmStripHeight(app::read(app::setting::FilmStripHeight, panes->filmStripHeight()));
    panes->gTab()->SetSelectedTab(app::read(app::setting::ActiveTabWindow));
    if (panes->gTab()->SelectedTab() == 0) // a damaged setting
        panes->gTab()->SetSelectedTab(QStringLiteral("Image"));
}

void restoreView(frmImageView& window)
{
    QWidget* const pContain = window.pContain();
    app::setPaneColor(pContain,
                      app::fromColorNumber(app::read(app::setting::MainBackColor,
                                                     app::toColorNumber(app::paneColor(pContain)))));
    window.ix1()->SetBackColor(app::paneColor(window.pContain()));
    window.viewport()->setFitToWindow(app::read(app::setting::cView) != 1);
    window.viewport()->sb2()->SetSmallChange(1);
}

/// Puts the file of a bare command line straight on the screen, before list and tabs exist.
void showEarly(frmImageView& window, const QString& file)
{
    window.ix1()->show();
    window.layoutPanes();
    if (!app::extensionStandsIn(app::GetExtension(file), QLatin1String(app::ImageExtensionList)))
        return;
    window.viewport()->announceLoadBox();
    window.ix1()->SetFileName(file);
    window.viewport()->layout();
}

void showWindow(frmImageView& window)
{
    bool painted = false;
    const auto connection = QObject::connect(window.ix1(), &engine::ImageEngine::FirstPainted, &window,
                                             [&painted] { painted = true; });
    const bool pictureWaits = window.ix1()->ImagePixelWidth() > 0;
    window.show();
    if (pictureWaits) // the picture stands before anything else is made
        app::letEventsRunUntil([&] { return painted || window.isUnloaded(); }, firstPictureWait);
    QObject::disconnect(connection);
}

/// Opens the first image. True when the line was a bare file, which carries no commands and no preferences.
bool openFirst(frmImageView& window)
{
    const app::CommandLine& line = window.commandLine();
    const int cLoad = app::read(app::setting::cLoad);
    const bool bareFile = app::FileExists(line.bareFile);
    const QString target = line.isEmpty() ? QString() : bareFile ? line.bareFile : line.path;

    if (app::FileExists(target)) {
        window.OpenX(target);
        window.list()->setPath(app::SplitPathName(target, 1));
    } else if (app::FolderExists(target)) {
        window.opening()->OpenDirX(target, cLoad);
    } else if (app::read(app::setting::imgAutoLoad) == 1) {
        window.list()->finishRebuild();
        window.RunTool(QStringLiteral("miLoadFirst"));
    }
    return bareFile;
}

/// Runs the commands of the line, or without any what the preferences ask for. Ends when one of them ended
/// the window.
void runLine(frmImageView& window)
{
    const app::CommandLine& line = window.commandLine();
    for (const QString& command : line.commands) {
        if (window.isUnloaded())
            return;
        window.RunTool(command);
    }
    const QStringList tools = output::startTools({.lineHoldsSwitch = line.holdsSwitch(),
                                                  .imageOpen = !window.currentFile().isEmpty(),
                                                  .cView = app::read(app::setting::cView),
                                                  .cSlide = app::read(app::setting::cSlide),
                                                  .cFull = app::read(app::setting::cFull)});
    for (const QString& tool : tools) {
        if (!window.isUnloaded())
            window.RunTool(tool);
    }
}

} // namespace

bool runLoadStep(frmImageView& window, bool othersWereRunning)
{
    const app::CommandLine& line = window.commandLine();
    colourChrome(window);
    log("Init: Form_Load: frmImageView");
    system::PublishProgram(false);
    system::publishCompanions(app::companionDirectories());
    system::ApplyAssociations();
    if (line.isInstall())
        return false;

    log("Start: Sizing");
    fillLink(*window.panes()->uLink());
    restoreGeometry(window, othersWereRunning);
    window.panes()->setInterfaceFlag(app::read(app::setting::ToggleInterface) != 0);
    restoreBand(window);
    restoreView(window);
    window.panes()->awaitToolbar(true);
    log("End: Sizing");

    log("Start: First_CommandLineParsing");
    if (app::FileExists(line.bareFile))
        showEarly(window, line.bareFile);
    if (!line.mentions(QStringLiteral("/miHide")) && !line.mentions(QStringLiteral("/miFullScreen")))
        showWindow(window);
    if (window.isUnloaded())
        return false;
    log("End: First_CommandLineParsing");

    log("Start: TabLoading and Name");
    window.setWindowTitle(app::GetAppDisplayName());
    window.panes()->addTabs();
    log("End: TabLoading and Name");

    log("Start: frmImageViewPlaylist_Load");
    window.panes()->bPlay()->setClient(window.playlist());
    controls::gnTab* const gTab = window.panes()->gTab();
    gTab->SetTabCaption(QStringLiteral("Image"), QStringLiteral("Loading..."));
    window.playlist()->startUp();
    gTab->SetTabCaption(QStringLiteral("Image"), QStringLiteral("Active Image"));
    window.playlist()->SetPattern(QLatin1String(app::ImageExtensionList));
    log("End: frmImageViewPlaylist_Load");
    restoreTabs(window);

    if (!openFirst(window))
        runLine(window);
    if (window.isUnloaded())
        return false;

    window.layoutPanes();
    window.welcome().build();
    window.ix1()->show();
    window.opening()->setRecent(recentFromText(app::read(app::setting::Recent)));
    window.slideshow()->readSettings();
    window.setLoading(false);
    QGuiApplication::setWindowIcon(platform::programIcon());
    log("Finish: Form_Load: frmImageView");
    window.buildInterfaceSoon();
    return true;
}

} // namespace quorvia::viewer
