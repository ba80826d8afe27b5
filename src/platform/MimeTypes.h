// The content types that the desktop knows.
#pragma once

#include <QString>

namespace quorvia::platform {

/// The content type of files with `extension` ("jpg", with or without its point), by the name alone, as in
/// "image/jpeg"; empty when the desktop knows none. The first call reads the desktop's tables, some
/// milliseconds.
QString mimeTypeOf(const QString& extension);

} // namespace quorvia::platform
