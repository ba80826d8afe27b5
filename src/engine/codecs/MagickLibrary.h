// GraphicsMagick, loaded when the first picture needs it: it brings forty libraries with it, which take
// longer to load than the whole program. The first call costs that load, the others nothing.
#pragma once

#include <magick/api.h>
#include <magick/confirm_access.h>

namespace quorvia::engine {

/// The functions of the library that are used, by their names there.
struct MagickLibrary
{
    decltype(&::InitializeMagickEx) InitializeMagickEx = nullptr;
    decltype(&::SetLogEventMask) SetLogEventMask = nullptr;
    decltype(&::SetLogMethod) SetLogMethod = nullptr;
    decltype(&::SetWarningHandler) SetWarningHandler = nullptr;
    decltype(&::SetErrorHandler) SetErrorHandler = nullptr;
    decltype(&::SetFatalErrorHandler) SetFatalErrorHandler = nullptr;
    decltype(&::SetMonitorHandler) SetMonitorHandler = nullptr;
    decltype(&::MagickSetConfirmAccessHandler) MagickSetConfirmAccessHandler = nullptr;
    decltype(&::SetMagickResourceLimit) SetMagickResourceLimit = nullptr;
    decltype(&::GetExceptionInfo) GetExceptionInfo = nullptr;
    decltype(&::DestroyExceptionInfo) DestroyExceptionInfo = nullptr;
    decltype(&::CloneImageInfo) CloneImageInfo = nullptr;
    decltype(&::DestroyImageInfo) DestroyImageInfo = nullptr;
    decltype(&::AddDefinitions) AddDefinitions = nullptr;
    decltype(&::PingBlob) PingBlob = nullptr;
    decltype(&::BlobToImage) BlobToImage = nullptr;
    decltype(&::DestroyImageList) DestroyImageList = nullptr;
    decltype(&::AcquireImagePixels) AcquireImagePixels = nullptr;
    decltype(&::GetImageProfile) GetImageProfile = nullptr;

    /// The library, loaded and set up once: no signal handlers, no messages, no access to files or programs,
    /// limits by Limits::machine(). Null when it is not there. Safe from any thread.
    static const MagickLibrary* get();

    /// What the library calls back for fatal errors and for progress, on the thread of the call under way.
    struct Callbacks
    {
        FatalErrorHandler fatal;
        MonitorHandler progress;
    };
    static Callbacks callbacks();
};

} // namespace quorvia::engine
