// Brings colours from the space of an ICC profile to sRGB. Making a conversion costs milliseconds (a profile
// with colour tables up to some tens); the last few are kept, so asking again is a comparison of bytes.
// Converting costs a few nanoseconds a pixel. No conversion is made for sRGB itself.
#pragma once

#include "engine/Codec.h"

#include <QByteArray>
#include <QImage>
#include <QList>

#include <memory>
#include <optional>

namespace quorvia::engine {

/// What a profile's colours are made of.
enum class ColorModel { Gray, Rgb, Cmyk };

/// The longest profile that is looked at, bytes.
constexpr qsizetype maxProfileBytes = 4 << 20;

/// The model that the header of `profile` tells, without looking further. Empty when the bytes are no ICC
/// profile, are more than maxProfileBytes, or describe no device (links between devices, named colours) or
/// one with other colours. For codecs: a profile whose model is not that of the file's pixels is to be
/// ignored. Format: ICC.1:2010, 7.2.
std::optional<ColorModel> colorModelOf(const QByteArray& profile);

/// A conversion to sRGB with perceptual intent and black point compensation. Immutable: one object serves any
/// number of threads at a time.
class ColorConversion
{
  public:
    /// The conversion from `profile`. Null when there is nothing to convert: no profile, a broken or unsuited
    /// one, or one whose colours are those of sRGB within one of 255 steps. Safe from any thread.
    static std::shared_ptr<const ColorConversion> of(const QByteArray& profile);

    virtual ~ColorConversion();

    ColorModel model() const { return m_model; }

    /// Converts `count` pixels of RGB32 or ARGB32 (not premultiplied) in place; the fourth byte stays. A grey
    /// profile acts on each channel. Leaves pixels as they are when model() is Cmyk.
    virtual void convert(QRgb* pixels, qsizetype count) const;
    /// What each of the 256 steps of Grayscale8 becomes, opaque. Not for Cmyk.
    QList<QRgb> grayTable() const;
    /// The entries of a palette, alpha kept. Not for Cmyk.
    QList<QRgb> converted(QList<QRgb> palette) const;
    /// Converts `count` pixels of four bytes (C, M, Y, K) to RGB32. 255 is full ink, or none when `inverted`
    /// (as Adobe's JPEG files have it). `inks` and `out` may be the same memory. Does nothing unless model()
    /// is Cmyk.
    virtual void convertInks(const uchar* inks, QRgb* out, qsizetype count, bool inverted) const;

  protected:
    explicit ColorConversion(ColorModel model) : m_model(model) {}

  private:
    const ColorModel m_model;
};

/// `image` (Mono, Indexed8, Grayscale8, RGB32 or ARGB32) in sRGB, on all cores. A palette image stays one,
/// with its palette converted; Grayscale8 stays so, or becomes Indexed8 where its profile tints the greys.
/// Pass it by move: pixels that nobody else holds are converted in place. Null without memory.
QImage converted(QImage image, const ColorConversion& conversion);

/// The same from the bytes of a profile. Comes back as it is, pixels untouched and shared, when there is
/// nothing to convert.
QImage toSrgb(QImage image, const QByteArray& profile);

/// Converts the first `rows` rows of a decoder's four-ink pixels, which lie in `image` (RGB32) for the time
/// being, in place on all cores. False when `cancel` was set: then not all are converted.
bool convertInks(QImage& image, int rows, const ColorConversion& conversion, bool inverted,
                 const CancelFlag& cancel);

} // namespace quorvia::engine
