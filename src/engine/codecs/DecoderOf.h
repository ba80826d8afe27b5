// How a codec opens a file: it reads the layout, and hands it with the bytes to a decoder of its own.
#pragma once

#include "engine/Codec.h"

#include <memory>

namespace quorvia::engine {

/// A `DecoderClass` of `source` and `layout`; the layout's error when it could not be read.
template <class DecoderClass, class Layout>
Result<std::unique_ptr<Decoder>> decoderOf(const std::shared_ptr<ByteSource>& source, Result<Layout> layout)
{
    if (!layout)
        return layout.error();
    return std::unique_ptr<Decoder>(std::make_unique<DecoderClass>(source, *std::move(layout)));
}

} // namespace quorvia::engine
