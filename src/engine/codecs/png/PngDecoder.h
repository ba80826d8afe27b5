// Decodes a PNG file: a whole one the short way (PngFast.h), any other by feeding libpng just the chunks that
// make pixels. The header costs one read; a decode always makes the full picture, since inflating cannot be
// cut down.
#pragma once

#include "engine/codecs/OnePage.h"
#include "engine/codecs/png/PngChunks.h"

namespace quorvia::engine {

/// Decodes the PNG in `source`, whose header is `header` and within the limits, with libpng, as far as it
/// goes.
Result<Picture> decodePngByLibrary(const ByteSource& source, const PngHeader& header,
                                   const CancelFlag& cancel);

class PngDecoder final : public OnePageDecoder
{
  public:
    /// `header` is what readPngHeader() gave for `source`.
    PngDecoder(std::shared_ptr<ByteSource> source, const PngHeader& header);

  private:
    Result<PageHeader> facts() override;
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;

    std::shared_ptr<ByteSource> m_source;
    PngHeader m_header;
};

} // namespace quorvia::engine
