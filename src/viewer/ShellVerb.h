// Hands a file, folder or address to the program that the desktop has for it.
#pragma once

#include <QString>

namespace quorvia::viewer {

/// Runs `verb` ("open", "edit") on `path`, a native path or an address. A failure leaves a line in the log.
void runShellVerb(const QString& path, const char* verb);

} // namespace quorvia::viewer
