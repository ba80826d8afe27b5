// Which files count as images.
#pragma once

#include <QString>

namespace quorvia::app {

/// The ";"-separated wildcard list of accepted image types.
inline constexpr char ImageExtensionList[] = "*.bmp;*.dib;*.gif;*.jpg;*.jpeg;*.tif;*.tiff;*.wmf;*.ico;*.dcx;*"
                                             ".jif;*.ljp;*.pbm;*.pcx;*.pgm;*.pic;*.png;*.ppm;"
                                             "*.rle;*.tga;*.wpg";

/// True when `extension` (no point) stands in `list`: a substring test that ignores case, so that the empty
/// extension stands in every list.
bool extensionStandsIn(const QString& extension, const QString& list);

/// The rows of the dialog that opens images, "caption|patterns" each, all joined by "|": all types in the
/// first, then one row a format.
QString imageFilters();

} // namespace quorvia::app
