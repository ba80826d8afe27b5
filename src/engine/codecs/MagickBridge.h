// Reads formats through GraphicsMagick, from memory only. The format is told by the caller and never guessed
// from the content; the library starts no program and opens no file for a picture. Dear: the first call loads
// the library, and it holds 8 bytes a pixel beside the picture.
#pragma once

#include "engine/Codec.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

namespace quorvia::engine {

/// The formats that the library is trusted with.
enum class MagickFormat { Heif, JpegXl };

/// What the library tells without decoding.
struct MagickFacts
{
    QSize size;
    bool hasAlpha = false;
    int depth = 8;       ///< bits a sample
    int orientation = 1; ///< of TIFF 6.0, not applied yet
};

struct MagickPicture
{
    QImage image; ///< RGB32, or ARGB32 when the picture has alpha
    QByteArray profile;
    int orientation = 1;
    bool complete = true; ///< false when the library met an error and gave what it had
};

/// The facts of `file` as `format`. `definitions` are options for the reader as "format:key=value", or null.
/// Damaged, Unsupported or TooLarge as the library says.
Result<MagickFacts> pingWithMagick(MagickFormat format, const QByteArray& file,
                                   const char* definitions = nullptr);

/// Decodes `file` as `format`. Samples of 16 bits come to 8 by rounding. Cancelled when `cancel` was set,
/// which is looked at whenever the library tells of progress.
Result<MagickPicture> readWithMagick(MagickFormat format, const QByteArray& file, const CancelFlag& cancel);

/// Ok when a picture of `size` may be read: beside Limits it must leave room for the library's own pixels.
Status checkMagickSize(QSize size);

/// The bytes of `source` for the functions above; TooLarge when a picture's file cannot be that long.
Result<QByteArray> readForMagick(const ByteSource& source);

} // namespace quorvia::engine
