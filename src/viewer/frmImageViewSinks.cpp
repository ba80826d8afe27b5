// What the rooms ask of the main window, each in its own words.
#include "app/EraseSettings.h"
#include "app/mFile.h"
#include "app/Product.h"
#include "app/Settings.h"
#include "collections/EntryText.h"
#include "collections/Filmstrip.h"
#include "controls/gnTab.h"
#include "platform/Dialogs.h"
#include "platform/MenuControl.h"
#include "platform/ToolControl.h"
#include "viewer/frmImageView.h"

#include <QApplication>

namespace quorvia::viewer {

namespace {

/// The entries of `list` as the menu of them shows them.
QList<commands::ListedFile> listedFiles(const collections::PictureList& list)
{
    QList<commands::ListedFile> files;
    for (int i = 0; i < list.ListCount(); ++i)
        files.append({collections::displayName(list.ListFile(i)), list.ListFile(i)});
    return files;
}

} // namespace

commands::CommandFacts frmImageView::viewFacts() const
{
    commands::CommandFacts facts;
    facts.selectedTab = m_panes->gTab()->SelectedTabKey();
    facts.interfaceHidden = m_panes->interfaceFlag();
    return facts;
}

commands::CommandFacts frmImageView::facts() const
{
    commands::CommandFacts facts = viewFacts();
    facts.hasImage = commands::hasImage(app::FileExists(currentFile()), facts.selectedTab);
    facts.bestFit = m_viewport->FitToWindow();
    facts.slideRunning = m_slideshow->isRunning();
    facts.listNonEmpty = list()->ListCount() > 0;
    facts.listShown = m_panes->bPlay()->visible();
    facts.rows = m_filmstrip->Filmstrip1()->NumberOfRows();
    facts.slidemode = m_slideshow->slidemode();
    return facts;
}

commands::KeyboardSinks frmImageView::keyboardSinks()
{
    return {.owner = this,
            .runTool = [this](const QString& name) { RunTool(name); },
            .isDescriptionUnsaved = [this] { return m_status->isDescriptionUnsaved(); },
            .minimise =
                [this] {
                    hide();
                    setWindowState(windowState() | Qt::WindowMinimized);
                    show();
                },
            .fitWindowToImage = [this] { FitWindowToImage(); },
            .interfaceVersions = [] { return platform::ToolControl::version(); },
            .endProcess = &app::endProcess};
}

commands::PrefixTools frmImageView::prefixTools()
{
    return {.openRecent = [this](const QString& name) { OpenDirX(m_interface->recentDirectory(name)); },
            .openListed = [this](const QString& name) { OpenX(m_interface->listedFile(name)); },
            .message =
                [this](const QString& text) {
                    platform::showMessage(this, {platform::BoxKind::Plain, platform::BoxButtons::Ok,
                                                 app::productTitle(), text});
                }};
}

FilmstripHost::Parts frmImageView::filmstripParts()
{
    return {.pFilm = m_panes->pFilm(),
            .list = list(),
            .currentFile = [this] { return currentFile(); },
            .isShown = [this] { return m_panes->isFilmstripShown(); },
            .openMenu = [this](const QString& file) { m_interface->openImageMenu(file); }};
}

InterfaceTools::Parts frmImageView::interfaceParts()
{
    return {.ab1 = m_panes->ab1(),
            .slideshow = m_slideshow,
            .contents = {.recentDirectories = [this] { return m_opening->recent(); },
                         .directoryExists = &app::FolderExists,
                         .files = [this] { return listedFiles(*list()); },
                         .delay = [this] { return m_slideshow->delayText(); }},
            .runTool = [this](const QString& name) { RunTool(name); },
            .updateToolbar = [this] { updateTools(); },
            .placePanes = [this] { layoutPanes(); }};
}

output::SlideshowSinks frmImageView::slideshowSinks()
{
    return {.runTool = [this](const QString& name) { RunTool(name); },
            .updateToolbar = [this] { UpdateToolbar(); },
            .caption = [this] { return windowTitle(); },
            .setCaption = [this](const QString& caption) { setWindowTitle(caption); },
            .isAsking =
                [this] {
                    return QApplication::activeModalWidget() || m_playlist->batch().isBusy() ||
                           m_scan.isBusy();
                },
            .isFullVisible = [this] { return m_full.isVisible(); },
            .closeFull = [this] { m_full.close(); },
            .hideMain = [this] { hide(); },
            .closeMain = [this] { close(); }};
}

} // namespace quorvia::viewer
