// Keeps a process, and all that it starts, within one folder: a program that is driven by chance deletes and
// writes what it comes across.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::test {

struct Confinement
{
    bool holds = false;
    bool isWhole = false; ///< not even what all users may write can be written
    QString how;          ///< in words; why not where it does not hold
};

/// From now on nothing outside of `folder` can be written, and there is no network: by name spaces of the
/// kernel, which root has and most users are given. Where root has none, or may not mount in them, the
/// process goes on as confineAsNobody(). To be called while the process has one thread.
Confinement confineTo(const QString& folder);

/// The process goes on as the user "nobody", to whom `folder` is given: for root alone, who must not come to
/// harm. What all users may write, /tmp first of all, stays open to it, and so does the network.
Confinement confineAsNobody(const QString& folder);

/// The first of `folders` in which this process can make a file, which it removes again; empty when there is
/// none.
QString firstWritable(const QStringList& folders);

} // namespace quorvia::test
