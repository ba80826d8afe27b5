#include "platform/FontsAhead.h"

#include <dlfcn.h>

#include <clocale>
#include <string>
#include <system_error>

namespace quorvia::platform {

namespace {

bool readConfiguration(const std::string& library)
{
    // Never closed: what was read has to stay.
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return false;
    using Init = int (*)();
    const auto init = reinterpret_cast<Init>(dlsym(handle, "FcInit"));
    return init && init() != 0;
}

} // namespace

FontsAhead::FontsAhead(const char* library)
{
    // The toolkit does this too, and the decimal sign must not change in the middle of the read.
    std::setlocale(LC_ALL, "");
    try {
        m_thread = std::thread([this, name = std::string(library)] { m_stands = readConfiguration(name); });
    } catch (const std::system_error&) { // no thread to be had: the toolkit reads it as ever
    }
}

FontsAhead::~FontsAhead()
{
    wait();
}

bool FontsAhead::wait()
{
    if (m_thread.joinable())
        m_thread.join();
    return m_stands;
}

} // namespace quorvia::platform
