// Finds the pages of a TIFF by walking its chain of directories. Reads a few bytes a page, decodes nothing.
#pragma once

#include "engine/ByteSource.h"

#include <vector>

namespace quorvia::engine {

/// Pages beyond this are not looked for: page numbers have 16 bits.
constexpr int mostTiffPages = 32767;

/// Offsets (bytes) of the directories in order, classic and BigTIFF, either byte order. Ends at a directory
/// seen before, at one that lies outside the file or holds no entry, and at mostTiffPages. Empty when there
/// is none. Source: TIFF 6.0, section 2; the BigTIFF design.
std::vector<quint64> tiffPageOffsets(const ByteSource& source);

} // namespace quorvia::engine
