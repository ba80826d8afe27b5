#include "engine/codecs/SharedLibrary.h"

#include <dlfcn.h>

#include <utility>

namespace quorvia::engine {

SharedLibrary::SharedLibrary(const QByteArray& fileName, QByteArray prefix)
    : m_library(dlopen(fileName.constData(), RTLD_NOW | RTLD_LOCAL)), m_prefix(std::move(prefix)),
      m_whole(m_library != nullptr)
{
}

void* SharedLibrary::symbol(const char* name)
{
    void* found = m_library ? dlsym(m_library, (m_prefix + name).constData()) : nullptr;
    m_whole = m_whole && found;
    return found;
}

} // namespace quorvia::engine
