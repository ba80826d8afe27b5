// A lossless JPEG (SOF3): its decoder. Opening reads the frame header; decoding reads the whole file and
// costs some nanoseconds a sample.
#pragma once

#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"
#include "engine/codecs/OnePage.h"

namespace quorvia::engine {

class LosslessJpegDecoder final : public OnePageDecoder
{
  public:
    LosslessJpegDecoder(std::shared_ptr<ByteSource> source, LosslessFrame frame);

  private:
    Result<PageHeader> facts() override;
    Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) override;
    int bitsPerPixel() const;

    std::shared_ptr<ByteSource> m_source;
    LosslessFrame m_frame;
};

} // namespace quorvia::engine
