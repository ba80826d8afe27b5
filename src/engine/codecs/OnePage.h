// What the decoders of files with one page share: the page's number, the limits and the empty picture.
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

class OnePageDecoder : public Decoder
{
  public:
    int pageCount() final { return 1; }
    Result<PageHeader> header(int page) final;
    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) final;

  protected:
    /// What the file says of its page; its size is not checked yet.
    virtual Result<PageHeader> facts() = 0;
    /// decode() of the page, whose `facts` are within the limits.
    virtual Result<Picture> decodePage(const PageHeader& facts, QSize box, const CancelFlag& cancel) = 0;

    /// A zeroed picture of all of the page; its image is null when there is no memory left.
    static Picture blank(const PageHeader& facts, QImage::Format format);
};

} // namespace quorvia::engine
