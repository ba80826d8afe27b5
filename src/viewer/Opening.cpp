#include "viewer/Opening.h"

#include "app/ImageTypes.h"
#include "app/Log.h"
#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "collections/PictureList.h"
#include "collections/PlaylistSource.h"
#include "controls/gnTab.h"
#include "controls/ScrollBar.h"
#include "engine/ImageEngine.h"
#include "platform/Dialogs.h"
#include "viewer/PageNavigator.h"
#include "viewer/RecentList.h"
#include "viewer/Viewport.h"

#include <limits>

namespace quorvia::viewer {

namespace {

/// One more than `count`, for as long as the store can hold it.
int countAfter(int count)
{
    return count < std::numeric_limits<int>::max() ? count + 1 : count;
}

} // namespace

Opening::Opening(Parts parts, QObject* parent) : QObject(parent), m_parts(std::move(parts)) {}

void Opening::OpenX(const QString& path)
{
    if (!m_parts.gTab->Tag().isEmpty()) // a click on a tab is under way
        return;
    engine::ImageEngine* const ix1 = m_parts.ix1;
    ix1->SetPageNumber(1);
    if (path.isEmpty())
        return;
    if (!app::FileExists(path)) {
        openMissing(path);
        return;
    }
    if (OpenFileList(path))
        return;

    m_parts.viewport->announceLoadBox();
    ix1->SetPaintEnabled(false);
    ix1->SetFileName(path);
    if (const QString error = ix1->LastError(); !error.isEmpty())
        app::WriteLog(QStringLiteral("Not opened: %1: %2").arg(path, error));
    app::save(app::setting::ImageOpenCount, countAfter(app::read(app::setting::ImageOpenCount)));
    if (m_parts.showFull())
        app::letPendingEventsRunButInput();

    m_parts.list->setPath(app::SplitPathName(path, 1));
    rememberDirectory();
    m_parts.list->setListIndex(app::SplitPathName(path, 2));

    m_parts.viewport->layout();
    m_parts.viewport->sb1()->SetValue(0);
    m_parts.viewport->sb2()->SetValue(0);
    leaveOtherTabs();
    CheckTiff();
    m_parts.updateStatus();
    Q_EMIT ImageFileChanged();
    app::letPendingEventsRunButInput(); // a held key must not open the next image before this one is seen
    ix1->SetPaintEnabled(true);
    m_parts.showInFilmstrip();
    m_parts.updateToolbar();
}

void Opening::openMissing(const QString& path)
{
    platform::showMessage(m_parts.owner, {platform::BoxKind::Information, platform::BoxButtons::Ok,
                                          QStringLiteral("File Opening Error"),
                                          QStringLiteral("Error Opening File: File Not Found\n\n%1\n\n"
                                                         "This file may have been moved or deleted...")
                                              .arg(path)});
    m_parts.list->RefreshPlaylist();
    const QString current = m_parts.ix1->FileName();
    if (!current.isEmpty() && !app::FileExists(current)) {
        m_parts.ix1->SetFileName(QString());
        CheckTiff();
        m_parts.viewport->layout();
        m_parts.showFull();
    }
    m_parts.updateToolbar();
}

/// An open from the list leaves these tabs in place; any other gives way to the picture.
void Opening::leaveOtherTabs()
{
    const QStringList staying{QStringLiteral("Editor"), QStringLiteral("Information"),
                              QStringLiteral("Filmstrip")};
    if (!staying.contains(m_parts.gTab->SelectedTabKey()))
        m_parts.gTab->SetSelectedTab(QStringLiteral("Image"));
}

void Opening::rememberDirectory()
{
    m_recent = withRecent(m_recent, m_parts.list->path());
}

bool Opening::OpenFileList(const QString& path)
{
    const QString extension = app::GetExtension(path);
    if (app::extensionStandsIn(extension, QLatin1String(app::ImageExtensionList)))
        return false;
    if (!m_playlists || !app::extensionStandsIn(extension, m_playlists->GetPlaylistFormats()))
        return false;

    m_playlists->OpenPlaylist(path);
    app::letPendingEventsRun();
    const bool namedAtStart =
        !m_parts.commandLine.isEmpty() && path.contains(m_parts.commandLine, Qt::CaseInsensitive);
    if (m_playlists->ListCount() > 0 && namedAtStart)
        m_parts.runTool(QStringLiteral("miNext"));
    return true;
}

void Opening::OpenDirX(const QString& directory, int load)
{
    if (!app::FolderExists(directory))
        return;
    if (!m_parts.list->FolderMode()) // the other face takes no folder
        m_parts.list->SelectTab(0);
    m_parts.list->setPath(directory);
    if (load == 1) {
        m_parts.list->finishRebuild();
        m_parts.runTool(QStringLiteral("miLoadFirst"));
    }
}

void Opening::CheckTiff()
{
    if (m_navigator)
        m_navigator->hide();
    const QString name = m_parts.ix1->FileName();
    if (!isTiffName(name))
        return;
    const int count = m_parts.ix1->PageCount(name);
    if (count <= 1)
        return;
    if (!m_navigator) {
        m_navigator = m_parts.pTiff();
        connect(m_navigator, &PageNavigator::nextClicked, this, [this] { turnPage(1); });
        connect(m_navigator, &PageNavigator::previousClicked, this, [this] { turnPage(-1); });
    }
    m_navigator->showPage(m_parts.ix1->PageNumber(), count);
    m_navigator->show();
    m_navigator->raise();
}

void Opening::turnPage(int step)
{
    engine::ImageEngine* const ix1 = m_parts.ix1;
    const int page = ix1->PageNumber();
    if (step > 0 ? page < m_navigator->total() : page >= 2)
        ix1->SetPageNumber(page + step);
    app::letPendingEventsRun();
    ix1->SetFileName(ix1->FileName());
    if (const QString error = ix1->LastError(); !error.isEmpty())
        app::WriteLog(QStringLiteral("Page not opened: %1: %2").arg(ix1->FileName(), error));
    CheckTiff();
}

} // namespace quorvia::viewer
