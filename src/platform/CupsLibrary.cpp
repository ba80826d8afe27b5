#include "platform/CupsLibrary.h"

#include <dlfcn.h>

#include <optional>
#include <type_traits>

namespace quorvia::platform {

namespace {

std::optional<CupsLibrary> load()
{
    void* const library = dlopen("libcups.so.2", RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return std::nullopt;
    CupsLibrary found;
    bool isWhole = true;
    const auto find = [library, &isWhole](const char* name, auto& function) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
        isWhole = isWhole && function;
    };
    find("cupsAddOption", found.cupsAddOption);
    find("cupsCancelDestJob", found.cupsCancelDestJob);
    find("cupsCheckDestSupported", found.cupsCheckDestSupported);
    find("cupsCopyDest", found.cupsCopyDest);
    find("cupsCopyDestInfo", found.cupsCopyDestInfo);
    find("cupsCreateDestJob", found.cupsCreateDestJob);
    find("cupsEncryption", found.cupsEncryption);
    find("cupsFindDestDefault", found.cupsFindDestDefault);
    find("cupsFindDestSupported", found.cupsFindDestSupported);
    find("cupsFinishDestDocument", found.cupsFinishDestDocument);
    find("cupsFreeDestInfo", found.cupsFreeDestInfo);
    find("cupsFreeDests", found.cupsFreeDests);
    find("cupsFreeOptions", found.cupsFreeOptions);
    find("cupsGetDests2", found.cupsGetDests2);
    find("cupsGetNamedDest", found.cupsGetNamedDest);
    find("cupsGetOption", found.cupsGetOption);
    find("cupsLastError", found.cupsLastError);
    find("cupsLastErrorString", found.cupsLastErrorString);
    find("cupsServer", found.cupsServer);
    find("cupsSetPasswordCB2", found.cupsSetPasswordCB2);
    find("cupsStartDestDocument", found.cupsStartDestDocument);
    find("cupsWriteRequestData", found.cupsWriteRequestData);
    find("httpClose", found.httpClose);
    find("httpConnect2", found.httpConnect2);
    find("httpError", found.httpError);
    find("httpGetStatus", found.httpGetStatus);
    find("httpSetTimeout", found.httpSetTimeout);
    find("ippGetCount", found.ippGetCount);
    find("ippGetResolution", found.ippGetResolution);
    find("ippGetString", found.ippGetString);
    find("ippPort", found.ippPort);
    find("pwgMediaForLegacy", found.pwgMediaForLegacy);
    find("pwgMediaForPPD", found.pwgMediaForPPD);
    find("pwgMediaForPWG", found.pwgMediaForPWG);
    return isWhole ? std::optional(found) : std::nullopt;
}

} // namespace

const CupsLibrary* CupsLibrary::get()
{
    static const std::optional<CupsLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace quorvia::platform
