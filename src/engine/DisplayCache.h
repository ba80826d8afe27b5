// The picture as it stands on the screen: the visible part of the image at its present magnification, so that
// a repaint is a blit. As large as what was asked for, never as the whole image. Dear to fill, cheap to draw.
#pragma once

#include "engine/ColorConversion.h"

#include <QColor>
#include <QImage>
#include <QRect>

namespace quorvia::engine {

/// What decides how the pixels on the screen look.
struct DisplayView
{
    quint64 content = 0; ///< number of the image held; another number is another image
    QRect target;        ///< where the whole image lies, device pixels from the control's corner
    QRgb back = 0;       ///< behind transparent pixels
    bool operator==(const DisplayView&) const = default;
};

/// The pixels of `part` (device pixels from the control's corner, inside view.target) of `source`, which is
/// the view's image at any size, brought to sRGB by `conversion` (null for none) before it is laid over
/// view.back. RGB32; null without memory.
QImage renderedPart(const QImage& source, const DisplayView& view, QRect part,
                    const ColorConversion* conversion = nullptr);

class DisplayCache
{
  public:
    /// True when the pixels of `part` stand ready for `view`, from whatever picture they were made.
    bool covers(const DisplayView& view, QRect part) const;
    /// Makes `part` stand ready from `source`, by the `conversion` of the view's image. What stands already
    /// from the same source is kept, the rest is computed. True when pixels that stood before were made anew
    /// from a better source, and therefore look a trace different from what is on the screen.
    bool fill(const QImage& source, const DisplayView& view, QRect part,
              const ColorConversion* conversion = nullptr);
    /// Forgets everything.
    void clear();

    /// RGB32; null when nothing stands ready.
    const QImage& pixels() const { return m_pixels; }
    /// Where pixels() lies in the control, device pixels.
    QRect part() const { return m_part; }

  private:
    QImage m_pixels;
    QRect m_part;
    DisplayView m_view;
    QSize m_sourceSize; ///< tells a screen-sized picture from the full one
};

} // namespace quorvia::engine
