// ICC profiles for the tests, written by lcms2, and what their colours are in sRGB by the published formulas.
#pragma once

#include <QByteArray>
#include <QColor>

#include <array>

namespace quorvia::test {

/// An RGB colour space: chromaticities (x, y) of its primaries and its white, and one gamma.
struct RgbSpace
{
    using Xy = std::array<double, 2>;
    Xy red;
    Xy green;
    Xy blue;
    Xy white;
    double gamma;
};

constexpr RgbSpace::Xy whiteD65 = {0.3127, 0.3290};
constexpr RgbSpace::Xy whiteD50 = {0.34567, 0.35850};
constexpr RgbSpace adobeRgb = {{0.64, 0.33}, {0.21, 0.71}, {0.15, 0.06}, whiteD65, 2.19921875};
constexpr RgbSpace wideGamut = {{0.7347, 0.2653}, {0.1596, 0.8404}, {0.0366, 0.0001}, whiteD50, 1.8};
constexpr RgbSpace displayP3 = {{0.68, 0.32}, {0.265, 0.69}, {0.15, 0.06}, whiteD65, 2.2};
/// sRGB's primaries with red and blue changed over: nobody overlooks that.
constexpr RgbSpace swappedRgb = {{0.15, 0.06}, {0.30, 0.60}, {0.64, 0.33}, whiteD65, 2.2};

QByteArray rgbProfile(const RgbSpace& space);
/// `color` of `space` in sRGB: curve, primaries to XYZ, Bradford adaptation to D50, and all the way back. The
/// alpha stays.
QRgb inSrgb(QRgb color, const RgbSpace& space);

QByteArray srgbProfile();
QByteArray grayProfile(double gamma);
/// The grey of sRGB that has the light of `value` to the power of `gamma`.
int grayInSrgb(int value, double gamma);
/// A grey profile that prints in sepia: its middle is far from neutral.
QByteArray tintedGrayProfile();

/// An RGB profile that holds `space` as a table of Lab, 17 nodes a side: no matrix tells its colours.
QByteArray tableProfile(const RgbSpace& space);
/// A four-ink profile: a table of 16 nodes a side over the colours of inkInSrgb().
QByteArray cmykProfile();
/// What four inks (255 is full) look like through cmykProfile(): cyan, magenta and yellow each take three
/// quarters of what they stand for and a tenth of the two others, black takes all of its share.
QRgb inkInSrgb(int cyan, int magenta, int yellow, int black);

/// A profile of `space` that bears a float pipeline as well, which makes everything black.
QByteArray floatProfile(const RgbSpace& space);

/// A profile that leads from one device to another; of no use for pictures.
QByteArray linkProfile();
/// A profile whose device colours are Lab.
QByteArray labProfile();

/// `profile` without an error that is told from outside: its tag table says `length` bytes at `offset` are
/// the data of each tag.
QByteArray withTagsAt(QByteArray profile, quint32 offset, quint32 length);

/// The largest difference of a channel of two colours; alpha does not count.
int distance(QRgb one, QRgb other);

} // namespace quorvia::test
