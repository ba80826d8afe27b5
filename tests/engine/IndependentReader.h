// Tools from outside that make and read image files for the codec tests, and pictures to make them from.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QStringList>

namespace quorvia::test {

/// Standard output of `program`; the test fails when it cannot be run or ends with an error.
QByteArray outputOf(const QString& program, const QStringList& arguments, const QByteArray& input = {});

/// A file made by a tool that writes to a path: every "@" in `arguments` stands for the path of the new file
/// with `extension`, "@in" for a file with `input`.
QByteArray fileMadeBy(const QString& program, const QStringList& arguments, const QString& extension,
                      const QByteArray& input);

/// `bytes` as ImageMagick reads them, told the format (as "bmp") and the page from 0; ARGB32.
QImage readByMagick(const QByteArray& bytes, const QString& format, int page = 0);
/// `bytes` as a netpbm program (as "bmptopnm") reads them; RGB32.
QImage readByNetpbm(const QByteArray& bytes, const QString& program);

/// A binary PBM, PGM or PPM of up to 16 bits, rounded to 8; null when it is none.
QImage readPnm(const QByteArray& bytes);
/// `image` as binary PPM, or PGM when it is Grayscale8, or PBM when it is Mono (black and white).
QByteArray writePnm(const QImage& image);

/// Different colours all over, by a fixed rule; RGB32.
QImage colorPicture(QSize size);
/// The same with all grades of alpha, among them 0 and 255; ARGB32.
QImage alphaPicture(QSize size);
/// `colors` palette entries; Indexed8.
QImage palettePicture(QSize size, int colors);
/// Grades of grey; Grayscale8.
QImage greyPicture(QSize size);
/// Black and white dots; Mono with black as entry 0.
QImage dotPicture(QSize size);

/// Empty when both show the same colours and alpha, else what differs first. With `clearIsClear` the colour
/// of pixels with alpha 0 does not count.
QString difference(const QImage& actual, const QImage& expected, bool clearIsClear = false);

} // namespace quorvia::test
