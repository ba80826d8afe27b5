// How JPEGs are written: as the settings have it.
#pragma once

#include <QString>

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::app {

/// True when `path` is named like a JPEG: its last four characters are ".jpg" or "jpeg", in any case.
bool isJpegName(const QString& path);

/// Sets the four properties of a JPEG that `image` is to save. Reads the settings.
void takeJpegSettings(engine::ImageEngine& image);

} // namespace quorvia::app
