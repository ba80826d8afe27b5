#include "engine/codecs/MagickLibrary.h"

#include "engine/Limits.h"

#include <dlfcn.h>

#include <optional>

namespace quorvia::engine {

namespace {

// The headers' samples and the library's must be of one width, which its name tells.
static_assert(QuantumDepth == 16);
constexpr const char* libraryName = "libGraphicsMagick-Q16.so.3";

/// Looks `name` up in `library`; false when it is not there.
template <class Function>
bool find(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(dlsym(library, name));
    return function != nullptr;
}

std::optional<MagickLibrary> load()
{
    void* library = dlopen(libraryName, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return std::nullopt;
    MagickLibrary found;
    const bool all = find(library, "InitializeMagickEx", found.InitializeMagickEx) &&
                     find(library, "SetLogEventMask", found.SetLogEventMask) &&
                     find(library, "SetLogMethod", found.SetLogMethod) &&
                     find(library, "SetWarningHandler", found.SetWarningHandler) &&
                     find(library, "SetErrorHandler", found.SetErrorHandler) &&
                     find(library, "SetFatalErrorHandler", found.SetFatalErrorHandler) &&
                     find(library, "SetMonitorHandler", found.SetMonitorHandler) &&
                     find(library, "MagickSetConfirmAccessHandler", found.MagickSetConfirmAccessHandler) &&
                     find(library, "SetMagickResourceLimit", found.SetMagickResourceLimit) &&
                     find(library, "GetExceptionInfo", found.GetExceptionInfo) &&
                     find(library, "DestroyExceptionInfo", found.DestroyExceptionInfo) &&
                     find(library, "CloneImageInfo", found.CloneImageInfo) &&
                     find(library, "DestroyImageInfo", found.DestroyImageInfo) &&
                     find(library, "AddDefinitions", found.AddDefinitions) &&
                     find(library, "PingBlob", found.PingBlob) &&
                     find(library, "BlobToImage", found.BlobToImage) &&
                     find(library, "DestroyImageList", found.DestroyImageList) &&
                     find(library, "AcquireImagePixels", found.AcquireImagePixels) &&
                     find(library, "GetImageProfile", found.GetImageProfile);
    if (!all) {
        dlclose(library);
        return std::nullopt;
    }
    return found;
}

void ignoreMessage(const ExceptionType, const char*, const char*) {}
void ignoreLog(const ExceptionType, const char*) {}

MagickPassFail refuseAccess(const ConfirmAccessMode, const char*, ExceptionInfo*)
{
    return MagickFail;
}

void setUp(const MagickLibrary& magick)
{
    magick.InitializeMagickEx(nullptr, MAGICK_OPT_NO_SIGNAL_HANDER, nullptr);
    magick.SetWarningHandler(ignoreMessage);
    magick.SetErrorHandler(ignoreMessage);
    magick.SetFatalErrorHandler(MagickLibrary::callbacks().fatal);
    magick.SetLogEventMask("None");
    magick.SetLogMethod(ignoreLog);
    magick.SetMonitorHandler(MagickLibrary::callbacks().progress);
    magick.MagickSetConfirmAccessHandler(refuseAccess);

    const Limits& limits = Limits::machine();
    constexpr qint64 bytesPerPixel = sizeof(PixelPacket);
    magick.SetMagickResourceLimit(WidthResource, limits.maxSide);
    magick.SetMagickResourceLimit(HeightResource, limits.maxSide);
    magick.SetMagickResourceLimit(PixelsResource, limits.maxBytes / bytesPerPixel);
    magick.SetMagickResourceLimit(MemoryResource, limits.maxBytes);
    magick.SetMagickResourceLimit(MapResource, 0); // pixels stay in memory
    magick.SetMagickResourceLimit(DiskResource, 0);
    magick.SetMagickResourceLimit(ThreadsResource, 1);
}

} // namespace

const MagickLibrary* MagickLibrary::get()
{
    static const std::optional<MagickLibrary> library = [] {
        std::optional<MagickLibrary> loaded = load();
        if (loaded)
            setUp(*loaded);
        return loaded;
    }();
    return library ? &*library : nullptr;
}

} // namespace quorvia::engine
