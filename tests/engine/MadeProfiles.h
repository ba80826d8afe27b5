// Colour profiles for the tests, made by the colour library.
#pragma once

#include <QByteArray>

namespace quorvia::test {

/// RGB with primaries far from those of sRGB and gamma 1.8.
QByteArray rgbProfile();
/// Grey with gamma 1.
QByteArray grayProfile();
/// CMYK whose colours are darker than those of the plain formula.
QByteArray cmykProfile();

} // namespace quorvia::test
