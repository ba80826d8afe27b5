// libjxl, loaded when the first JPEG XL picture comes: the program starts without it. The first call costs
// that load, the others nothing.
#pragma once

#include <jxl/decode.h>

namespace quorvia::engine {

/// The functions of the library that are used, by their names there without "JxlDecoder".
struct JxlLibrary
{
    decltype(&::JxlDecoderCreate) Create = nullptr;
    decltype(&::JxlDecoderDestroy) Destroy = nullptr;
    decltype(&::JxlDecoderSubscribeEvents) SubscribeEvents = nullptr;
    decltype(&::JxlDecoderSetCoalescing) SetCoalescing = nullptr;
    decltype(&::JxlDecoderSetUnpremultiplyAlpha) SetUnpremultiplyAlpha = nullptr;
    decltype(&::JxlDecoderSetInput) SetInput = nullptr;
    decltype(&::JxlDecoderReleaseInput) ReleaseInput = nullptr;
    decltype(&::JxlDecoderProcessInput) ProcessInput = nullptr;
    decltype(&::JxlDecoderGetBasicInfo) GetBasicInfo = nullptr;
    decltype(&::JxlDecoderGetExtraChannelInfo) GetExtraChannelInfo = nullptr;
    decltype(&::JxlDecoderGetFrameHeader) GetFrameHeader = nullptr;
    decltype(&::JxlDecoderGetColorAsEncodedProfile) GetColorAsEncodedProfile = nullptr;
    decltype(&::JxlDecoderGetICCProfileSize) GetICCProfileSize = nullptr;
    decltype(&::JxlDecoderGetColorAsICCProfile) GetColorAsICCProfile = nullptr;
    decltype(&::JxlDecoderSetPreferredColorProfile) SetPreferredColorProfile = nullptr;
    decltype(&::JxlDecoderImageOutBufferSize) ImageOutBufferSize = nullptr;
    decltype(&::JxlDecoderSetImageOutBuffer) SetImageOutBuffer = nullptr;
    decltype(&::JxlDecoderFlushImage) FlushImage = nullptr;

    /// The library; null when it is not there. Safe from any thread.
    static const JxlLibrary* get();
};

} // namespace quorvia::engine
