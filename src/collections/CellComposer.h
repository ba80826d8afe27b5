// Puts the cells of the filmstrip together: an image in the frame of a back colour. Composes in device
// pixels; costs the scaling of a small image.
#pragma once

#include "engine/SmallPictures.h"

#include <QColor>

namespace quorvia::collections {

/// What the engine is asked for so that the image of the file `path` fills a cell on a screen of device pixel
/// ratio `ratio`; the scaled image is put under the name `saveTo`, if that is not empty.
engine::SmallPicture cellPicture(const QString& path, const QString& saveTo, double ratio);

/// A cell of `size` device pixels, at most as large as the working canvas at `ratio`: `picture`, as it was
/// read for cellPicture(), on `color`. Only the colour where nothing could be read.
QImage composeCell(const engine::SmallImage& picture, const QColor& color, QSize size, double ratio);

} // namespace quorvia::collections
