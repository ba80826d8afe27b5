#include "collections/ThumbnailTally.h"

#include "platform/LongWork.h"
#include "platform/WaitCursor.h"

#include <QElapsedTimer>

#include <limits>
#include <utility>

namespace quorvia::collections {

namespace {

constexpr qint64 sliceTime = 5; // milliseconds, some thousand files on a disk of this machine
constexpr qint64 toTheEnd = std::numeric_limits<qint64>::max();

} // namespace

ThumbnailTally::ThumbnailTally(QObject* parent) : QObject(parent)
{
    m_next.setInterval(0);
    connect(&m_next, &QTimer::timeout, this, &ThumbnailTally::countOn);
}

void ThumbnailTally::begin(const QString& directory, Told told)
{
    m_directory = directory;
    m_told = std::move(told);
    m_count = {};
    m_isListed = false;
    m_looked = 0;
    m_next.start();
}

void ThumbnailTally::countOn()
{
    countFor(sliceTime);
    if (m_isListed && m_looked == m_count.files.size())
        end();
}

void ThumbnailTally::countFor(qint64 time)
{
    if (!std::exchange(m_isListed, true)) {
        m_count.files = listThumbnails(m_directory);
        if (time != toTheEnd)
            return; // a slice of its own
    }
    QElapsedTimer passed;
    passed.start();
    while (m_looked < m_count.files.size() && passed.elapsed() < time)
        m_count.megabytes += megabytesOf(m_count.files.at(m_looked++));
}

void ThumbnailTally::end()
{
    m_next.stop();
    const Told told = std::exchange(m_told, {}); // which may begin the next count
    if (told)
        told(ThumbnailCount(m_count));
}

void ThumbnailTally::clear(QWidget* owner)
{
    if (isUnderWay()) {
        const platform::WaitCursor waiting;
        countFor(toTheEnd);
        end();
    }
    platform::LongWork work(owner, tr("Deleting the thumbnails"));
    const QStringList files = m_count.files;
    deleteThumbnails(files, [&](int done) { return work.goOn(done, int(files.size())); });
}

} // namespace quorvia::collections
