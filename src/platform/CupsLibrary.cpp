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
#define QUORVIA_CUPS_FIND(name) find(#name, found.name);
    QUORVIA_CUPS_FUNCTIONS(QUORVIA_CUPS_FIND)
#undef QUORVIA_CUPS_FIND
    return isWhole ? std::optional(found) : std::nullopt;
}

} // namespace

const CupsLibrary* CupsLibrary::get()
{
    static const std::optional<CupsLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace quorvia::platform
