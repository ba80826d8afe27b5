#include "engine/codecs/JxlLibrary.h"

#include <QByteArray>

#include <dlfcn.h>
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

/// Looks "JxlDecoder" + `name` up in `library`; false when it is not there.
template <class Function>
bool find(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(library, (QByteArray("JxlDecoder") + name).constData()));
    return function != nullptr;
}

std::optional<JxlLibrary> load()
{
    void* library = dlopen(libraryName().constData(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return std::nullopt;
    JxlLibrary found;
    const bool all = find(library, "Create", found.Create) && find(library, "Destroy", found.Destroy) &&
                     find(library, "SubscribeEvents", found.SubscribeEvents) &&
                     find(library, "SetUnpremultiplyAlpha", found.SetUnpremultiplyAlpha) &&
                     find(library, "SetInput", found.SetInput) &&
                     find(library, "ReleaseInput", found.ReleaseInput) &&
                     find(library, "ProcessInput", found.ProcessInput) &&
                     find(library, "GetBasicInfo", found.GetBasicInfo) &&
                     find(library, "GetExtraChannelInfo", found.GetExtraChannelInfo) &&
                     find(library, "GetColorAsEncodedProfile", found.GetColorAsEncodedProfile) &&
                     find(library, "GetICCProfileSize", found.GetICCProfileSize) &&
                     find(library, "GetColorAsICCProfile", found.GetColorAsICCProfile) &&
                     find(library, "SetPreferredColorProfile", found.SetPreferredColorProfile) &&
                     find(library, "ImageOutBufferSize", found.ImageOutBufferSize) &&
                     find(library, "SetImageOutBuffer", found.SetImageOutBuffer) &&
                     find(library, "FlushImage", found.FlushImage);
    if (!all) {
        dlclose(library);
        return std::nullopt;
    }
    return found;
}

} // namespace

const JxlLibrary* JxlLibrary::get()
{
    static const std::optional<JxlLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace quorvia::engine
