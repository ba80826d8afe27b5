// What must hold after a soak, each as a list of what does not.
#pragma once

#include "Journal.h"

#include <QString>
#include <QStringList>

namespace quorvia::test {

/// Memory in KiB: the resident one while it runs, and what is in use when a session has ended. 0 is "not
/// measured".
struct MemoryFigures
{
    int peak = 0;      ///< the highest that was ever seen
    int early = 0;     ///< median of the second quarter of the steps
    int late = 0;      ///< of the last quarter
    int heapEarly = 0; ///< the same medians of what is in use between sessions
    int heapLate = 0;
    int growth() const { return late - early; }
    int heapGrowth() const { return heapLate - heapEarly; }
};

/// What the lines of kind "memory", "peak" and "heap" say, of a run from the step `first` to the step `last`.
MemoryFigures memoryFigures(const QList<JournalLine>& lines, int last, int first = 1);

/// What may be, in KiB.
struct MemoryBounds
{
    int peak = 0;
    int growth = 0;
    int heapGrowth = 0;
    bool hasQuarters = true; ///< false for a run that is too short for them: the peak alone is judged
};
QStringList memoryFaults(const MemoryFigures& figures, const MemoryBounds& bounds);

/// The store at `path` is whole, and each row has a key that the catalogue knows and a value of its type.
QStringList storeFaults(const QString& path);

/// The log's lines of which nobody expects to be written here.
QStringList logFaults(const QString& path);

/// The toolkit's warnings among the journal's lines that mean a mistake of ours.
QStringList warningFaults(const QList<JournalLine>& lines);

} // namespace quorvia::test
