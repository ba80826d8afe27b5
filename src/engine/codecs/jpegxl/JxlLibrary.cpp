#include "engine/codecs/jpegxl/JxlLibrary.h"

#include "engine/codecs/SharedLibrary.h"

#include <QByteArray>

#include <jxl/version.h>

#include <optional>

namespace quorvia::engine {

namespace {

/// The library of the headers' version: functions change their arguments from one to the next.
QByteArray libraryName()
{
    return "libjxl.so." + QByteArray::number(JPEGXL_MAJOR_VERSION) + '.' +
           QByteArray::number(JPEGXL_MINOR_VERSION);
}

std::optional<JxlLibrary> load()
{
    SharedLibrary library(libraryName(), "JxlDecoder");
    JxlLibrary found;
    library.find("Create", found.Create);
    library.find("Destroy", found.Destroy);
    library.find("SubscribeEvents", found.SubscribeEvents);
    library.find("SetCoalescing", found.SetCoalescing);
    library.find("SetUnpremultiplyAlpha", found.SetUnpremultiplyAlpha);
    library.find("SetInput", found.SetInput);
    library.find("ReleaseInput", found.ReleaseInput);
    library.find("ProcessInput", found.ProcessInput);
    library.find("GetBasicInfo", found.GetBasicInfo);
    library.find("GetExtraChannelInfo", found.GetExtraChannelInfo);
    library.find("GetFrameHeader", found.GetFrameHeader);
    library.find("GetColorAsEncodedProfile", found.GetColorAsEncodedProfile);
    library.find("GetICCProfileSize", found.GetICCProfileSize);
    library.find("GetColorAsICCProfile", found.GetColorAsICCProfile);
    library.find("SetPreferredColorProfile", found.SetPreferredColorProfile);
    library.find("ImageOutBufferSize", found.ImageOutBufferSize);
    library.find("SetImageOutBuffer", found.SetImageOutBuffer);
    library.find("FlushImage", found.FlushImage);
    if (!library.isWhole())
        return std::nullopt;
    return found;
}

} // namespace

const JxlLibrary* JxlLibrary::get()
{
    static const std::optional<JxlLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace quorvia::engine
