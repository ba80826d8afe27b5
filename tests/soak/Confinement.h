// Keeps a process, and all that it starts, within one folder: a program that is driven by chance deletes and
// writes what it comes across.
#pragma once

#include <QString>

namespace quorvia::test {

/// From now on nothing outside of `folder` can be written, and there is no network. It takes name spaces of
/// the kernel, which root has and most users are given; where root has none, the process goes on as the user
/// "nobody", to whom `folder` is given. Empty when it holds, else why not. To be called while the process has
/// one thread.
QString confineTo(const QString& folder);

} // namespace quorvia::test
