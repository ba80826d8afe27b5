#include "collections/PictureList.h"

#include "app/mFile.h"
#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "collections/EntryText.h"
#include "collections/FolderFiles.h"

#include <QDir>
#include <QScopedValueRollback>

#include <algorithm>

namespace quorvia::collections {

namespace {

constexpr int rebuildDelay = 10;       // milliseconds
constexpr int vanishedInterval = 3000; // milliseconds

} // namespace

PictureList::PictureList(std::function<QString()> currentFile, QObject* parent)
    : QObject(parent), m_currentFile(std::move(currentFile))
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
}

void PictureList::startUp(const std::function<void()>& loadStored)
{
    if (app::read(app::setting::cLoad) == 1)
        setPath(app::read(app::setting::SelectedPath, QString()));
    if (loadStored) {
        const QScopedValueRollback starting(m_starting, true);
        loadStored();
    }
    m_initialising = false;
    if (m_closed)
        return;
    m_tAutoUpdate.start();
    RefreshPlaylist();
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
    m_index = index;
    m_selection = normalised({{index, index}}, ListCount());
    Q_EMIT indexChanged(index);
    pick(index);
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
    return given != m_texts.constEnd() ? *given : entryText(index + 1, m_files.at(index));
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
    app::letPendingEventsRun();
    m_closed = true;
    m_tFolder.stop();
    m_tAutoUpdate.stop();
}

void PictureList::rebuild()
{
    m_tFolder.stop(); // at the begin: what is asked for by those who hear of this rebuild is not lost
    if (!m_folderMode)
        return;
    const QScopedValueRollback rebuilding(m_rebuilding, true);
    m_listedFolder = m_path;
    m_files = sortedFolderFiles(m_listedFolder, m_pattern);
    m_texts.clear();
    m_selection.clear();
    m_index = -1;
    if (!m_files.isEmpty())
        app::save(app::setting::SelectedPath, m_listedFolder);
    Q_EMIT ListLoaded();
    Q_EMIT ListChanged();
}

void PictureList::lookForVanished()
{
    if (IsReady() && anyHasVanished(m_listedFolder, m_files))
        RefreshPlaylist();
}

} // namespace quorvia::collections
