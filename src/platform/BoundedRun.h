// A tool of the desktop that is waited for, but not for ever.
#pragma once

#include <QString>
#include <QStringList>

namespace quorvia::platform {

/// Runs `program`, looked up in PATH, with `arguments`, its input and output nowhere, and waits for its end
/// for at most `patience` milliseconds; then it runs on alone. True when it ended well; else `why` (may be
/// null) says what went wrong.
bool runBounded(const QString& program, const QStringList& arguments, int patience, QString* why);

} // namespace quorvia::platform
