// The pixels of a Targa file: packets taken apart, stored pixels turned into rows of an image.
#pragma once

#include "engine/codecs/SourceReader.h"
#include "engine/codecs/tga/TgaLayout.h"

#include <QImage>

#include <array>

namespace quorvia::engine {

/// Reads pixels in the order of the file. Packets may cross the ends of rows.
class TgaPixels
{
  public:
    TgaPixels(const ByteSource& source, const TgaLayout& layout);

    /// The next `count` pixels as stored, into `out`; how many there were before the file ended.
    int read(uchar* out, int count);

  private:
    bool nextPacket();

    SourceReader m_reader;
    int m_bytes; ///< a pixel
    bool m_runs;
    bool m_repeats = false;            ///< the packet under way is one pixel many times
    int m_left = 0;                    ///< pixels of it still to come
    std::array<uchar, 4> m_pixel = {}; ///< of a run
};

/// Indexed8 for 8-bit palette values, Grayscale8 for grey, ARGB32 when there is alpha, else RGB32.
QImage::Format tgaImageFormat(const TgaLayout& layout);

/// Turns `count` stored pixels into pixels of tgaImageFormat() at `out`. Premultiplied colours are divided by
/// their alpha.
void convertTgaRow(const TgaLayout& layout, const uchar* stored, int count, uchar* out);

/// The row from the top (from 0) in which each stored row stands.
class TgaRowOrder
{
  public:
    explicit TgaRowOrder(const TgaLayout& layout);
    /// The place of the next stored row.
    int next();

  private:
    int m_height;
    int m_step;
    bool m_topDown;
    int m_pass = 0;
    int m_row = 0;
};

} // namespace quorvia::engine
