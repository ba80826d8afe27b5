// A lossless JPEG (SOF3): its decoder. Opening reads the frame header; decoding reads the whole file and
// costs some nanoseconds a sample.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"

namespace quorvia::engine {

class LosslessJpegDecoder final : public Decoder
{
  public:
    LosslessJpegDecoder(std::shared_ptr<ByteSource> source, LosslessFrame frame);

    int pageCount() override { return 1; }
    Result<PageHeader> header(int page) override;
    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) override;

  private:
    int bitsPerPixel() const;

    std::shared_ptr<ByteSource> m_source;
    LosslessFrame m_frame;
};

} // namespace quorvia::engine
