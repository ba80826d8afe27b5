#include "platform/FontsAhead.h"

#include <dlfcn.h>

#include <string>

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
    : m_thread([this, name = std::string(library)] { m_stands = readConfiguration(name); })
{
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
