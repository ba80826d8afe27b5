// JPEG files for the tests: made by libjpeg-turbo's own tools, or changed in a byte that matters.
#pragma once

#include "CodecFixtures.h"

namespace quorvia::test {

/// What libjpeg-turbo's writer makes of `pnm` (PGM or PPM).
QByteArray cjpeg(const QByteArray& pnm, const QStringList& options);
/// A JPEG of samplePicture(size).
QByteArray colorJpeg(QSize size, const QStringList& options = {});
/// The pixels as libjpeg-turbo's reader gives them; a file cut short is read as far as it goes.
Rgba djpeg(const QByteArray& file, const QStringList& options = {});
/// A file of four inks, as Adobe's programs write them (255 - ink), made from `picture` with its alpha as
/// black.
QByteArray fourInkJpeg(const Rgba& picture, bool ycck);

/// Offset of the first marker `code` at or behind offset `from` in the header; -1 when there is none.
qsizetype markerAt(const QByteArray& file, uchar code, qsizetype from = 2);
/// Offset of the frame header's marker; -1 when there is none.
qsizetype frameAt(const QByteArray& file);
/// `file` with another size in its frame header.
QByteArray withSize(QByteArray file, int width, int height);
/// The file without its segments of marker `code`.
QByteArray withoutSegments(QByteArray file, uchar code);

} // namespace quorvia::test
