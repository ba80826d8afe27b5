// What a soak has done, one line each: written at once, so that it outlives a crash, and read by who judges.
#pragma once

#include <QString>
#include <QStringList>

#include <utility>

namespace quorvia::test {

/// One line: "step<tab>kind<tab>detail".
struct JournalLine
{
    int step = 0;
    QString kind;
    QString detail;
};

class Journal
{
  public:
    /// Lines go to the end of the file at `path`, which is made when it is missing.
    explicit Journal(const QString& path);
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    void write(const JournalLine& line) const;

    static QList<JournalLine> read(const QString& path);

  private:
    int m_descriptor;
};

/// Follows a journal that is being written.
class StepTail
{
  public:
    explicit StepTail(QString path) : m_path(std::move(path)) {}

    /// The number of the last step so far; lines of other kinds that a step leaves behind do not change it. 0
    /// when there is none.
    int last();

  private:
    QString m_path;
    qint64 m_read = 0; ///< bytes of whole lines
    int m_last = 0;
};

/// The resident memory of this process in KiB; 0 when it cannot be told.
int residentMemory();

/// The highest resident memory that this process ever had, in KiB; 0 when it cannot be told.
int peakMemory();

/// What this process has allocated and not given back, in KiB: without what the allocator keeps for later. 0
/// when it cannot be told.
int heapInUse();

/// The middle one; the lower of the two middle ones of an even count; 0 of none.
int median(QList<int> values);

} // namespace quorvia::test
