// Counts the thumbnails some at a time between the events, so that no window waits for it, and deletes those
// that it has counted: tens of thousands of them are usual after some years.
#pragma once

#include "collections/ThumbnailCache.h"

#include <QObject>
#include <QTimer>

#include <functional>

class QWidget;

namespace quorvia::collections {

class ThumbnailTally : public QObject
{
    Q_OBJECT

  public:
    using Told = std::function<void(const ThumbnailCount&)>;

    explicit ThumbnailTally(QObject* parent = nullptr);

    /// Begins to count in `directory`, between the events; a count that is under way ends untold. `told`
    /// hears of the result once.
    void begin(const QString& directory, Told told);
    bool isUnderWay() const { return m_next.isActive(); }
    /// Deletes what the last count found and nothing else; one that is under way is brought to its end
    /// first. `owner` (may be null) gets a box with Cancel when it takes long.
    void clear(QWidget* owner);

  private:
    /// Counts for so many milliseconds, or to the end.
    void countFor(qint64 time);
    void countOn();
    void end();

    QString m_directory;
    Told m_told;
    ThumbnailCount m_count;
    bool m_isListed = false;
    qsizetype m_looked = 0; ///< how many sizes are in
    QTimer m_next;
};

} // namespace quorvia::collections
