// PNG files for the tests: made by netpbm and ImageMagick, or put together chunk by chunk.
#pragma once

#include "CodecFixtures.h"

namespace quorvia::test {

/// The pixels as netpbm reads them: it too leaves gamma alone.
Rgba readWithNetpbm(const QByteArray& file);
/// A PNG of `pnm`; netpbm chooses the colour type from the colours in use.
QByteArray netpbmFile(const QByteArray& pnm, const QStringList& options = {});
/// A PNG of `picture` in just this colour type and depth, made by ImageMagick. At 16 bits the samples have
/// low bytes of their own.
QByteArray magickFile(const Rgba& picture, int colors, int depth, bool interlaced);
/// `value` as four bytes, the highest first.
QByteArray bigEndian(quint32 value);
/// A chunk with its length and check sum.
QByteArray pngChunk(const char* type, const QByteArray& content);
/// The signature and the header chunk; no argument is checked.
QByteArray pngHeader(quint32 width, quint32 height, int depth, int colors, int interlace = 0);
/// The content of the data chunk for `rows`, each with its filter byte.
QByteArray zlibStream(const QByteArray& rows);
/// Offset of the first chunk of `type`; -1 when there is none.
qsizetype pngChunkAt(const QByteArray& file, const QByteArray& type);
/// `file` with a further chunk before its pixels.
QByteArray withChunk(QByteArray file, const QByteArray& further);
/// `picture` with at most `levels` values a channel.
Rgba coarse(Rgba picture, int levels);

} // namespace quorvia::test
