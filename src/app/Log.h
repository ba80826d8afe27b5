// The log: one dated line a call, in a file that is opened and closed for each line. No levels, no rotation.
#pragma once

#include <QString>

namespace quorvia::app {

/// Appends the date as "mm-dd-yyyy", " - ", the time as "hh:mm:ss" and `text` to logPath(). Line ends within
/// `text` are written as blanks. A log that cannot be written is passed over.
void WriteLog(const QString& text);

} // namespace quorvia::app
