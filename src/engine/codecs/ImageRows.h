// What codecs do with rows of pixels. Takes an image apart into strips of rows in the format that an encoder
// wants, so that saving never holds a second whole picture. No copy is made where the format is right
// already.
#pragma once

#include <QImage>
#include <QList>

namespace quorvia::engine {

/// Rows that an encoder converts at a time.
constexpr int stripRows = 64;

/// Rows `first` to `first + count - 1` (from 0) of `image` in `format`. The result may share the pixels of
/// `image`, which must outlive it.
QImage rowsAs(const QImage& image, int first, int count, QImage::Format format);

/// The whole of `image` in `format`, one of 8 or 32 bits a pixel without a palette; null when there is no
/// memory. By strips: the toolkit converts whole pictures on threads, which end the program where memory is
/// short. No copy is made where the format is right already.
QImage inFormat(const QImage& image, QImage::Format format);

/// Writes `count` (at least 1) pixels of three bytes (red, green, blue) as RGB32.
void rgbToRgb32(const uchar* in, QRgb* out, int count);

/// Lays the pixels of `rows` (ARGB32) over white and gives them back as RGB32:
/// c' = (c * a + 255 * (255 - a)) / 255, rounded. A null image when there is no memory.
QImage overWhite(QImage rows);

/// Watches the pixels of a picture with alpha for those of writers that leave room for alpha and never fill
/// it.
class AlphaWatch
{
  public:
    /// Looks at `count` pixels (ARGB32).
    void look(const QRgb* pixels, int count);
    /// True when there are colours, but alpha is 0 throughout: the picture is opaque, once it is whole. One
    /// without any colour is as clear as it says.
    bool isUnfilled() const { return m_clear && m_colored; }

  private:
    bool m_clear = true;
    bool m_colored = false;
};

/// `image` itself, or without its colours when it is ARGB32 and clear all over: readers take alpha 0
/// throughout for alpha that nobody filled, unless the colours are 0 too.
QImage blankIfClear(QImage image);

/// Extends `table` with opaque black until it holds the largest pixel value used in `image` (Indexed8 or
/// Mono). A damaged file may use entries that its palette does not have.
void coverUsedEntries(QList<QRgb>& table, const QImage& image);

} // namespace quorvia::engine
