// What the helper writes: lines about devices, and the picture as a portable map.
#pragma once

#include "scan/FrameRows.h"

#include <string>
#include <string_view>

namespace quorvia::scan {

/// `text` as a field of a line: a backslash, a tab and the ends of lines as "\\", "\t", "\n" and "\r".
std::string escaped(std::string_view text);

/// What stands before the bytes of `picture` in its file.
std::string pnmHeader(const RawPicture& picture);
/// Writes `picture` to the file `path` in place of what was there. Why not; empty when it stands. A file that
/// could not be written to its end is removed.
std::string writePnm(const RawPicture& picture, const std::string& path);

} // namespace quorvia::scan
