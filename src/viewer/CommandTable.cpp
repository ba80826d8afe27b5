#include "viewer/CommandTable.h"

#include "app/mFile.h"
#include "app/Settings.h"
#include "collections/Navigation.h"
#include "controls/gnTab.h"
#include "viewer/frmImageView.h"
#include "viewer/RecentList.h"

#include <QTime>

namespace quorvia::viewer {

namespace {

void miNext(frmImageView& window)
{
    collections::FolderList* const list = window.list();
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
    collections::FolderList* const list = window.list();
    if (list->ListCount() > 0)
        list->SetListIndex(collections::previousIndex(list->ListIndex(), list->ListCount()));
}

void miRandom(frmImageView& window)
{
    collections::FolderList* const list = window.list();
    const double unit = collections::randomUnit(collections::secondsSinceMidnight(QTime::currentTime()));
    list->SetListIndex(collections::randomIndex(unit, list->ListCount()));
}

void miRefresh(frmImageView& window)
{
    if (const QString current = window.currentFile(); app::FileExists(current))
        window.OpenX(current);
    window.list()->RefreshPlaylist();
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
    window.UpdateStatus();
    window.viewport()->layout();
}

void zoomBy(frmImageView& window, double (*next)(double))
{
    if (window.viewport()->FitToWindow())
        window.RunTool(QStringLiteral("miActualSize"));
    window.viewport()->zoomTo(next(window.ix1()->ZoomFactor()));
}

void miHideInterface(frmImageView& window)
{
    window.panes()->setInterfaceFlag(!window.panes()->interfaceFlag());
}

void showTab(frmImageView& window, const char* key)
{
    window.panes()->gTab()->SetSelectedTab(QString::fromLatin1(key));
    if (window.panes()->interfaceFlag())
        window.RunTool(QStringLiteral("miHideInterface"));
}

} // namespace

std::vector<commands::Tool> commandTable(frmImageView& window)
{
    frmImageView* const w = &window;
    return {
        {"miPrevious", [w] { miPrevious(*w); }},
        {"miLoadFirst", [w] { w->list()->SetListIndex(0); }},
        {"miNext", [w] { miNext(*w); }},
        {"miRandom", [w] { miRandom(*w); }},
        {"miCloseImage", [w] { miCloseImage(*w); }},
        {"miBestFit", [w] { w->viewport()->flipFit(); }},
        {"miActualSize", [w] { w->viewport()->flipFit(); }},
        {"miFileList", [w] { w->panes()->toggleFileList(); }},
        {"miFilelistMenu", [w] { w->RunTool(QStringLiteral("miFileList")); }},
        {"miHideInterface", [w] { miHideInterface(*w); }},
        {"miInterfaceTabs", [w] { w->RunTool(QStringLiteral("miHideInterface")); }},
        {"miViewNormal", [w] { showTab(*w, "Image"); }},
        {"miViewInformation", [w] { showTab(*w, "Information"); }},
        {"miInformation", [w] { w->RunTool(QStringLiteral("miViewInformation")); }},
        {"miViewFilmstrip", [w] { showTab(*w, "Filmstrip"); }},
        {"miZoomIn", [w] { zoomBy(*w, zoomedIn); }},
        {"miZoomOut", [w] { zoomBy(*w, zoomedOut); }},
        {"miRefresh", [w] { miRefresh(*w); }},
        {"miRecentClear", [w] { miRecentClear(*w); }},
        {"miHide", [w] { w->hide(); }},
        {"miShow", [w] { w->show(); }},
        {"miExit", [w] { w->closeAll(); }},
    };
}

} // namespace quorvia::viewer
