// Decodes a JPEG file through libjpeg-turbo's scanline interface. The header costs a few reads. A picture for
// a box is scaled inside the inverse transform and costs a fraction of the full one. A file of several scans
// (progressive) needs all its coefficients in memory, two bytes each, beside the picture.
#pragma once

#include "engine/codecs/jpeg/JpegHeader.h"
#include "engine/codecs/OnePage.h"

namespace quorvia::engine {

class JpegDecoder final : public OnePageDecoder
{
  public:
    /// `frame` is what readJpegFrame() gave for `source`.
    JpegDecoder(std::shared_ptr<ByteSource> source, const JpegFrame& frame);

    bool scales() const override { return true; }

  private:
    Result<PageHeader> facts() override;
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;

    std::shared_ptr<ByteSource> m_source;
    JpegFrame m_frame;
};

/// The smallest of 1, 2, 3, 4 and 8 eighths at which a page of `page` pixels, each side times eighths / 8
/// rounded up, still covers fittedSize(page, box). The library has 5, 6 and 7 too, but their transforms are
/// slower than the full one (24 megapixels: 182, 185 and 248 ms against 143).
int eighthsFor(QSize page, QSize box);

} // namespace quorvia::engine
