#include "collections/PictureList.h"

#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "collections/EntryText.h"
#include "collections/FolderFiles.h"
#include "collections/PlaylistKeeper.h"
#include "collections/PresenceWalk.h"
#include "platform/LongWork.h"

#include <QDir>
#include <QScopedValueRollback>

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int rebuildDelay = 10;       // milliseconds
constexpr int vanishedInterval = 3000; // milliseconds

} // namespace

PictureList::PictureList(std::function<QString()> currentFile, QObject* parent)
    : QObject(parent), m_currentFile(std::move(currentFile)), m_playlist(new PlaylistKeeper(this)),
      m_walk(new PresenceWalk(this))
{
    m_tFolder.setObjectName(QStringLiteral("tFolder"));
    m_tFolder.setSingleShot(true);
    m_tFolder.setInterval(rebuildDelay);
    connect(&m_tFolder, &QTimer::timeout, this, &PictureList::rebuild);
    m_tAutoUpdate.setObjectName(QStringLiteral("tAutoUpdate"));
    m_tAutoUpdate.setInterval(vanishedInterval);
    connect(&m_tAutoUpdate, &QTimer::timeout, this, &PictureList::lookForVanished);
    for (QTimer* timer : {&m_tFolder, &m_tAutoUpdate})
        timer->setParent(this);
    connect(m_playlist, &PlaylistKeeper::loaded, this, &PictureList::showPlaylist);
    for (const auto request : {&PlaylistKeeper::filesChanged, &PlaylistKeeper::notLoaded})
        connect(m_playlist, request, this, &PictureList::RefreshPlaylist);
}

void PictureList::startUp()
{
    const bool cLoad = app::read(app::setting::cLoad) == 1;
    if (cLoad)
        setPath(app::read(app::setting::SelectedPath, QString()));
    {
        const QScopedValueRollback starting(m_starting, true);
        m_playlist->fillNames();
        if (cLoad)
            m_playlist->LoadActivePlaylist();
        if (app::read(app::setting::PlaylistTab) != 0) {
            m_folderMode = false;
            Q_EMIT tabChanged(false);
        }
    }
    m_initialising = false;
    if (m_closed)
        return;
    m_tAutoUpdate.start();
    RefreshPlaylist();
    if (m_playlist->names().isEmpty())
        m_playlist->IntiPlaylist(true);
}

void PictureList::changeTab()
{
    if (m_closed)
        return;
    m_folderMode = !m_folderMode;
    app::save(app::setting::PlaylistTab, GetSelectedTab());
    m_walk->stop();
    m_files.clear();
    forgetEntries();
    Q_EMIT listEmptied();
    RefreshPlaylist();
    Q_EMIT tabChanged(true);
}

void PictureList::SelectTab(int iTab)
{
    if (m_closed)
        return;
    if (!m_tab2Visible) {
        m_tab2Visible = true;
        Q_EMIT tab2VisibleChanged();
    }
    if ((iTab == 0 && !m_folderMode) || (iTab == 1 && m_folderMode))
        changeTab();
}

void PictureList::TabEnabled(int iTab, bool bEnabled)
{
    if (m_closed || (bEnabled && m_tab2Visible))
        return;
    SelectTab(iTab == 1 ? 0 : 1);
    m_tab2Visible = bEnabled;
    Q_EMIT tab2VisibleChanged();
}

/// A playlist has been loaded.
void PictureList::showPlaylist()
{
    if (m_closed)
        return;
    if (!m_starting)
        SelectTab(1);
    RefreshPlaylist();
    Q_EMIT ListChanged();
}

void PictureList::setPath(int index, const QString& folder)
{
    if (m_closed || index != 0 || !m_folderMode)
        return;
    if (!QDir::isAbsolutePath(folder) || !app::FolderExists(folder))
        return;
    const QString clean = QDir::cleanPath(folder);
    if (clean == m_path)
        return;
    m_path = clean;
    Q_EMIT pathChanged(m_path);
    if (!m_initialising)
        RefreshPlaylist();
}

void PictureList::SetPattern(const QString& pattern)
{
    if (m_closed)
        return;
    m_pattern = pattern;
    RefreshPlaylist();
}

void PictureList::SetListIndex(int index)
{
    if (m_closed || (index != -1 && !holds(index)) || index == m_index)
        return;
    select(index);
    pick(index);
}

void PictureList::select(int index)
{
    if (m_closed || (index != -1 && !holds(index)))
        return;
    m_index = index;
    m_selection = normalised({{index, index}}, ListCount());
    Q_EMIT indexChanged(index);
}

void PictureList::setListIndex(const QString& text)
{
    if (m_starting)
        return;
    // Texts that were not given begin with their entry's number.
    QList<int> candidates = m_texts.keys();
    candidates.append(numberOf(text) - 1);
    std::sort(candidates.begin(), candidates.end());
    const auto found = std::find_if(candidates.cbegin(), candidates.cend(),
                                    [&](int i) { return holds(i) && List(i) == text; });
    if (found != candidates.cend())
        SetListIndex(*found);
}

QString PictureList::text(int index) const
{
    if (!holds(index))
        return {};
    const auto given = m_texts.constFind(index);
    if (given != m_texts.constEnd())
        return *given;
    const QString usual = entryText(index + 1, m_files.at(index));
    return isMissing(index) ? missingText(usual) : usual;
}

void PictureList::SetList(int index, const QString& text)
{
    if (m_closed || !holds(index))
        return;
    m_texts.insert(index, text);
    Q_EMIT textChanged(index);
}

void PictureList::setSelection(std::vector<RowRange> rows)
{
    if (!m_closed)
        m_selection = normalised(std::move(rows), ListCount());
}

void PictureList::replaceFile(int index, const QString& sOld, const QString& sNew)
{
    if (m_closed || !m_playlist->replaceFile(index, sOld, sNew) || m_folderMode || ListFile(index) != sOld)
        return;
    m_files[index] = sNew;
    noteMissing(index, false);
    SetList(index, app::SplitPathName(sNew, 2));
}

QString PictureList::GetSelectedFiles() const
{
    QString files;
    for (const RowRange& range : m_selection) {
        for (int row = range.first; row <= range.last; ++row)
            files += m_files.at(row) + u';';
    }
    return files;
}

void PictureList::pick(int index)
{
    if (m_closed || !holds(index))
        return;
    m_index = index;
    if (text(index).isEmpty())
        return;
    const QString file = m_files.at(index); // whoever hears of it may have the list rebuilt
    NotifyOpenFile(file);
}

void PictureList::NotifyOpenFile(const QString& sFile)
{
    if (sFile != m_currentFile())
        Q_EMIT OpenFile(sFile);
}

void PictureList::notePress(int index)
{
    const QString before = text(index);
    if (const QString after = pressedText(before); after != before)
        SetList(index, after);
}

void PictureList::RefreshPlaylist()
{
    if (!m_closed)
        m_tFolder.start();
}

void PictureList::SetUpdateInterval(int milliseconds)
{
    if (!m_closed && milliseconds > 0 && milliseconds != m_tAutoUpdate.interval())
        m_tAutoUpdate.setInterval(milliseconds);
}

void PictureList::finishRebuild()
{
    if (m_tFolder.isActive())
        rebuild();
}

void PictureList::CloseDown()
{
    if (m_closed)
        return;
    platform::LongWork::cancelAll(); // nobody waits for it any more
    m_playlist->closeDown();
    app::letPendingEventsRun();
    m_closed = true;
    m_tFolder.stop();
    m_tAutoUpdate.stop();
    m_walk->stop();
}

void PictureList::rebuild()
{
    m_tFolder.stop(); // at the begin: what is asked for by those who hear of this rebuild is not lost
    const QScopedValueRollback rebuilding(m_rebuilding, true);
    m_walk->stop();
    if (m_folderMode)
        listFolder();
    else
        listPlaylist();
    Q_EMIT ListLoaded();
    Q_EMIT ListChanged();
}

void PictureList::forgetEntries()
{
    m_missing.assign(std::size_t(m_files.size()), false);
    m_texts.clear();
    m_selection.clear();
    m_index = -1;
}

void PictureList::listFolder()
{
    m_listedFolder = m_path;
    m_files = sortedFolderFiles(m_listedFolder, m_pattern);
    forgetEntries();
    if (!m_files.isEmpty())
        app::save(app::setting::SelectedPath, m_listedFolder);
}

void PictureList::listPlaylist()
{
    std::vector<bool> known;
    if (m_files == m_playlist->PlaylistFiles())
        known = m_missing; // so that nothing flickers until they have been looked at again
    m_files = m_playlist->PlaylistFiles();
    forgetEntries();
    if (!known.empty())
        m_missing = std::move(known);
    m_walk->begin(m_files, [this](int index, bool isThere) {
        noteMissing(index, !isThere);
        return true;
    });
    m_playlist->saveSoon();
}

void PictureList::noteMissing(int index, bool missing)
{
    if (!holds(index) || isMissing(index) == missing)
        return;
    m_missing[std::size_t(index)] = missing;
    if (!m_rebuilding)
        Q_EMIT textChanged(index);
}

void PictureList::lookForVanished()
{
    if (!IsReady() || m_walk->isUnderWay())
        return;
    if (m_folderMode) {
        if (anyHasVanished(m_listedFolder, m_files))
            RefreshPlaylist();
        return;
    }
    m_walk->begin(m_files, [this](int index, bool isThere) {
        const bool isAsKnown = isThere != isMissing(index);
        if (!isAsKnown)
            RefreshPlaylist();
        return isAsKnown;
    });
}

} // namespace quorvia::collections
