#include "viewer/CommandTable.h"

#include "app/ImageTypes.h"
#include "app/mFile.h"
#include "app/Product.h"
#include "app/Resources.h"
#include "app/Settings.h"
#include "collections/Filmstrip.h"
#include "collections/frmImageViewPlaylistEditor.h"
#include "collections/Navigation.h"
#include "commands/WallpaperCommand.h"
#include "controls/gnTab.h"
#include "platform/Dialogs.h"
#include "platform/MenuControl.h"
#include "viewer/FamilyCommands.h"
#include "viewer/frmImageView.h"
#include "viewer/PreferencesCommand.h"
#include "viewer/PrintCommand.h"
#include "viewer/RecentList.h"
#include "viewer/ShellVerb.h"

#include <QTime>

namespace quorvia::viewer {

namespace {

void miNext(frmImageView& window)
{
    collections::PictureList* const list = window.list();
    if (list->ListCount() == 0)
        return;
    if (window.currentFile().isEmpty()) {
        list->SetListIndex(-1);
        list->SetListIndex(0);
        return;
    }
    const auto exists = [list](int index) { return app::FileExists(list->ListFile(index)); };
    list->SetListIndex(collections::nextIndex(list->ListIndex(), list->ListCount(), exists));
}

void miPrevious(frmImageView& window)
{
    collections::PictureList* const list = window.list();
    if (list->ListCount() > 0)
        list->SetListIndex(collections::previousIndex(list->ListIndex(), list->ListCount()));
}

void miRandom(frmImageView& window)
{
    collections::PictureList* const list = window.list();
    const double unit = collections::randomUnit(collections::secondsSinceMidnight(QTime::currentTime()));
    list->SetListIndex(collections::randomIndex(unit, list->ListCount()));
}

void miRefresh(frmImageView& window)
{
    if (const QString current = window.currentFile(); app::FileExists(current))
        window.OpenX(current);
    window.list()->RefreshPlaylist();
    window.UpdateToolbar();
}

void miRecentClear(frmImageView& window)
{
    const QString nothing = QLatin1String(app::setting::Recent.fallback);
    app::save(app::setting::Recent, nothing);
    window.opening()->setRecent(recentFromText(nothing));
}

void miCloseImage(frmImageView& window)
{
    window.ix1()->SetFileName(QString());
    window.opening()->CheckTiff();
    window.UpdateStatus();
    window.UpdateToolbar();
    window.layoutPanes();
}

void flipFit(frmImageView& window)
{
    window.viewport()->flipFit();
    window.UpdateToolbar();
}

/// For a glance over the shoulder: nothing of the pictures shows, not even in the caption.
void miQuickHide(frmImageView& window)
{
    Panes* const panes = window.panes();
    panes->showView(!panes->isViewShown());
    if (!panes->isViewShown()) {
        if (panes->bPlay()->visible())
            window.RunTool(QStringLiteral("miFileList"));
        if (panes->bInfo()->visible())
            window.RunTool(QStringLiteral("miEXIFView"));
        window.setWindowTitle(QStringLiteral("Unknown"));
        return;
    }
    window.setWindowTitle(app::GetAppDisplayName());
    window.UpdateStatus();
    window.UpdateToolbar();
    window.layoutPanes();
}

void miFileList(frmImageView& window)
{
    window.panes()->toggleFileList();
}

void miOpen(frmImageView& window)
{
    const QString path = platform::chooseFile(
        &window, {QObject::tr("Open Image"), app::imageFilters(), window.list()->path()});
    if (!app::FileExists(path))
        return;
    window.OpenX(path);
    window.list()->setPath(app::SplitPathName(path, 1));
}

void miEdit(frmImageView& window)
{
    if (const QString current = window.currentFile(); app::FileExists(current))
        runShellVerb(current, "edit");
}

void openHelp(frmImageView& window, const char* page)
{
    const QString path = app::resourcePath(QLatin1String(page));
    if (app::FileExists(path))
        runShellVerb(path, "open");
    else
        platform::showMessage(&window,
                              {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(),
                               QStringLiteral("Help file could not be found… Please re-install the "
                                              "application to fix this error.")});
}

void miCustomizeToolbar(frmImageView& window)
{
    platform::showMessage(&window, {platform::BoxKind::Plain, platform::BoxButtons::Ok, app::productTitle(),
                                    QStringLiteral("Feature not complete")});
}

void zoomBy(frmImageView& window, double (*next)(double))
{
    if (window.viewport()->FitToWindow())
        window.RunTool(QStringLiteral("miActualSize"));
    window.viewport()->zoomTo(next(window.ix1()->ZoomFactor()));
}

void miZoomOut(frmImageView& window)
{
    zoomBy(window, zoomedOut);
    window.UpdateToolbar();
}

void miHideInterface(frmImageView& window)
{
    window.panes()->setInterfaceFlag(!window.panes()->interfaceFlag());
    window.updateViewMarks();
    window.showPaneContents();
}

void showTab(frmImageView& window, const char* key)
{
    window.panes()->gTab()->SetSelectedTab(QString::fromLatin1(key));
    if (window.panes()->interfaceFlag())
        window.RunTool(QStringLiteral("miHideInterface"));
}

void FileListUpdated(frmImageView& window)
{
    window.filmstrip()->showList();
    window.UpdateToolbar();
}

void setFilmstripRows(frmImageView& window, int rows)
{
    window.filmstrip()->setRows(rows);
    app::save(app::setting::FilmStripRows, rows);
    window.UpdateToolbar();
}

void miThumbFull(frmImageView& window)
{
    window.OpenX(window.interfaceTools()->imageOfMenu());
    window.RunTool(QStringLiteral("miFullScreen"));
}

void miPlaylistEditor(frmImageView& window)
{
    using collections::frmImageViewPlaylistEditor;
    if (auto* const open =
            window.findChild<frmImageViewPlaylistEditor*>()) { // a second one would undo the first
        open->activateWindow();
        return;
    }
    collections::frmImageViewPlaylist* const panel = window.playlist();
    panel->list()->playlist()->saveOpen(); // the editor knows it by its file
    auto* const editor = new frmImageViewPlaylistEditor(panel->ActivePlaylist(), &window);
    QObject::connect(editor, &frmImageViewPlaylistEditor::closed, panel,
                     [panel](const QString& inHand) { panel->PlaylistEditorDone(inHand); });
    editor->show();
}

void ShowEXIFBar(frmImageView& window)
{
    window.panes()->toggleSideBar();
    window.UpdateToolbar();
}

} // namespace

std::vector<commands::Tool> commandTable(frmImageView& window)
{
    constexpr double quarter = 90; // degrees, against the clock
    frmImageView* const w = &window;
    const auto wallpaper = [w](platform::WallpaperStyle style) {
        return [w, style] { commands::SetWallpaperType(*w->ix1(), style); };
    };
    std::vector<commands::Tool> table = {
        {"miPrevious", [w] { miPrevious(*w); }},
        {"miLoadFirst", [w] { w->list()->SetListIndex(0); }},
        {"miNext", [w] { miNext(*w); }},
        {"miRandom", [w] { miRandom(*w); }},
        {"miCloseImage", [w] { miCloseImage(*w); }},
        {"miBestFit", [w] { flipFit(*w); }},
        {"miActualSize", [w] { flipFit(*w); }},
        {"miFileList", [w] { miFileList(*w); }},
        {"miFilelistMenu", [w] { w->RunTool(QStringLiteral("miFileList")); }},
        {"FileListUpdated", [w] { FileListUpdated(*w); }},
        {"miQuickHide", [w] { miQuickHide(*w); }},
        {"miHideInterface", [w] { miHideInterface(*w); }},
        {"miInterfaceTabs", [w] { w->RunTool(QStringLiteral("miHideInterface")); }},
        {"miViewNormal", [w] { showTab(*w, "Image"); }},
        {"miViewInformation", [w] { showTab(*w, "Information"); }},
        {"miInformation", [w] { w->RunTool(QStringLiteral("miViewInformation")); }},
        {"miViewFilmstrip", [w] { showTab(*w, "Filmstrip"); }},
        {"miZoomIn", [w] { zoomBy(*w, zoomedIn); }},
        {"miZoomOut", [w] { miZoomOut(*w); }},
        {"miFullScreen", [w] { w->full().LoadX(); }},
        {"xSlideShow", [w] { w->slideshow()->startAlone(); }},
        {"miScan", [w] { w->scan().run(); }},
        {"miPrint", [w] { miPrint(*w); }},
        {"miPref", [w] { miPref(*w); }},
        {"miOpen", [w] { miOpen(*w); }},
        {"tOpenx", [w] { w->RunTool(QStringLiteral("miOpen")); }},
        {"miOpenMenu", [w] { w->RunTool(QStringLiteral("miOpen")); }},
        {"miEdit", [w] { miEdit(*w); }},
        {"miRefresh", [w] { miRefresh(*w); }},
        {"miRecentClear", [w] { miRecentClear(*w); }},
        {"miSlideShow", [w] { w->slideshow()->toggle(); }},
        {"tSldAdvance", [w] { w->slideshow()->choose(app::SlideMode::Advance); }},
        {"tSldReverse", [w] { w->slideshow()->choose(app::SlideMode::Reverse); }},
        {"tSldRandom", [w] { w->slideshow()->choose(app::SlideMode::Random); }},
        {"miWallpaper", wallpaper(platform::WallpaperStyle::Stretch)},
        {"miWallpaperS", wallpaper(platform::WallpaperStyle::Stretch)},
        {"miWallpaperT", wallpaper(platform::WallpaperStyle::Tile)},
        {"miWallpaperC", wallpaper(platform::WallpaperStyle::Centre)},
        {"miWallpaperMenu", [w] { w->RunTool(QStringLiteral("miWallpaper")); }},
        {"miPaste", [w] { w->images().paste(); }},
        {"miSave", [w] { w->images().saver().saveAs(); }},
        {"miCopy", [w] { w->images().edits().copy(); }},
        {"miRotateClock", [w] { w->images().edits().rotate(-quarter); }},
        {"miRotateCounter", [w] { w->images().edits().rotate(quarter); }},
        {"miBevel", [w] { w->images().edits().bevel(); }},
        {"miCustomResize", [w] { w->images().edits().customResize(); }},
        {"miDelete", [w] { w->images().files().deleteCurrent(); }},
        {"miThumbDelete", [w] { w->images().files().deleteOfStrip(); }},
        {"miRename", [w] { w->images().files().renameCurrent(); }},
        {"miEmailImage", [w] { w->images().mail().send(); }},
        {"miThumbFull", [w] { miThumbFull(*w); }},
        {"miFilm1", [w] { setFilmstripRows(*w, 1); }},
        {"miFilm2", [w] { setFilmstripRows(*w, 2); }},
        {"miFilm3", [w] { setFilmstripRows(*w, 3); }},
        {"miEXIFView", [w] { ShowEXIFBar(*w); }},
        {"miPlaylistEditor", [w] { miPlaylistEditor(*w); }},
        {"miCustomizeToolbar", [w] { miCustomizeToolbar(*w); }},
        {"miHelp", [w] { openHelp(*w, "help/qo_faq_help.htm"); }},
        {"miHelpShortcuts", [w] { openHelp(*w, "help/qo_shortcut.htm"); }},
        {"miHide", [w] { w->hide(); }},
        {"miShow", [w] { w->show(); }},
        {"miExit", [w] { w->closeAll(); }},
    };
    addFamilyCommands(table, window);
    for (const commands::FixedSize& size : commands::fixedSizes())
        table.push_back({size.command, [w, &size] { w->images().edits().resize(size); }});
    return table;
}

} // namespace quorvia::viewer
