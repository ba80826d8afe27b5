#include "collections/BatchConversion.h"

#include "app/Log.h"
#include "app/PendingEvents.h"
#include "collections/PictureList.h"
#include "collections/PlaylistKeeper.h"
#include "platform/FileStatus.h"
#include "platform/LongWork.h"

#include <optional>
#include <utility>

namespace quorvia::collections {

namespace {

const QLatin1String yes("Yes");
const QLatin1String yesToAll("Yes to all");
const QLatin1String cancel("Cancel");

} // namespace

BatchConversion::BatchConversion(PictureList* list, BatchServices services, std::vector<BatchEntry> entries)
    : m_list(list), m_alive(list), m_services(std::move(services)), m_entries(std::move(entries)),
      m_isPlaylist(!list->FolderMode()), m_playlist(list->playlist()->ActivePlaylist())
{
}

void BatchConversion::run(const QString& ext)
{
    m_services.setUpdate(false);
    m_current = m_services.currentFile();
    if (!m_current.isEmpty()) // a picture without a file is in nobody's way, and could not be shown again
        m_services.releaseImage();
    m_services.beginBatch();
    app::letPendingEventsRunButInput(); // the menu goes off the screen: the first image may take long
    convertAll(ext);
    if (m_alive) // else the window has gone too
        m_services.endBatch();
    showAgain();
    if (m_alive)
        m_services.setUpdate(true);
}

void BatchConversion::convertAll(const QString& ext)
{
    std::optional<platform::LongWork> work; // once there are no more questions
    const int count = int(m_entries.size());
    for (int i = 0; i < count; ++i) {
        if (isOver() || (work && !work->goOn(i, count)) || isOver())
            return;
        m_services.expectNext(work && i + 1 < count ? m_entries[std::size_t(i) + 1].file : QString());
        const QString answer = convert(m_entries[std::size_t(i)], ext, work.has_value());
        if (isOver() || answer == cancel)
            return;
        if (answer == yesToAll && !work)
            work.emplace(m_list->playlist()->dialogOwner(), QObject::tr("Converting images..."));
    }
}

/// Gives the answer.
QString BatchConversion::convert(const BatchEntry& entry, const QString& ext, bool all)
{
    if (const auto done = m_converted.constFind(entry.file); done != m_converted.constEnd()) {
        noteConverted(entry, *done); // it stands twice in the playlist
        return {};
    }
    if (!platform::isFile(entry.file)) {
        app::WriteLog(QStringLiteral("Not converted, since it is not there: ") + entry.file);
        return {};
    }
    const QString sNew = convertedName(entry.file, ext);
    QString answer = m_services.loadConversion(entry.file, sNew, all);
    if (!isOver() && (answer == yes || answer == yesToAll) && platform::isFile(sNew)) {
        m_converted.insert(entry.file, sNew);
        noteConverted(entry, sNew);
    }
    return answer;
}

void BatchConversion::noteConverted(const BatchEntry& entry, const QString& sNew)
{
    if (entry.file.compare(m_current, Qt::CaseInsensitive) == 0)
        m_current = sNew;
    // Another list may have been opened meanwhile, whose entry of that number is none of ours.
    if (m_isPlaylist && m_list->playlist()->ActivePlaylist() == m_playlist)
        m_list->replaceFile(entry.row, entry.file, sNew);
}

void BatchConversion::showAgain()
{
    if (isOver())
        return;
    if (m_isPlaylist)
        m_list->playlist()->saveOpen();
    app::letPendingEventsRun();
    if (isOver())
        return;
    m_list->RefreshPlaylist();
    if (!m_current.isEmpty())
        m_services.openFile(m_current);
}

/// Whether the list has been closed or destroyed.
bool BatchConversion::isOver() const
{
    return !m_alive || m_list->isClosed();
}

} // namespace quorvia::collections
