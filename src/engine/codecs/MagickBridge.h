// Reads AVIF and HEIF through GraphicsMagick, from memory only. The format is told to it and never guessed
// from the content; the library starts no program and opens no file for a picture. Dear: the first call loads
// the library, and it holds 8 bytes a pixel beside the picture.
#pragma once

#include "engine/Codec.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace quorvia::engine {

/// What the library tells without decoding.
struct MagickFacts
{
    QSize size;
    bool hasAlpha = false;
};

struct MagickPicture
{
    QImage image; ///< RGB32, or ARGB32 when the picture has alpha
    QByteArray profile;
    bool complete = true; ///< false when the library met an error and gave what it had
};

/// The facts of `file`. Damaged, Unsupported or TooLarge as the library says.
Result<MagickFacts> pingWithMagick(const QByteArray& file);

/// Decodes `file`, turned upright. Samples of 16 bits come to 8 by rounding. Cancelled when `cancel` was set,
/// which is looked at whenever the library tells of progress.
Result<MagickPicture> readWithMagick(const QByteArray& file, const CancelFlag& cancel);

/// Ok when a picture of `size` may be read: beside Limits it must leave room for the library's own pixels.
Status checkMagickSize(QSize size);

/// The bytes of `source` for the functions above; TooLarge when a picture's file cannot be that long.
Result<QByteArray> readForMagick(const ByteSource& source);

} // namespace quorvia::engine
