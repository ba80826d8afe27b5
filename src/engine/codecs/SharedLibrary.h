// A library that is loaded while the program runs, when the first picture needs it, so that the program
// starts without it. Dear: the load; looking up functions is cheap.
#pragma once

#include <QByteArray>

namespace quorvia::engine {

class SharedLibrary
{
  public:
    /// Loads `fileName`, as "libx.so.1"; the names of its functions begin with `prefix`.
    SharedLibrary(const QByteArray& fileName, QByteArray prefix);
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    /// Points `function` to the one called prefix + `name`; to null when it is not there.
    template <class Function>
    void find(const char* name, Function& function)
    {
        function = reinterpret_cast<Function>(symbol(name));
    }

    /// True when the library is there and every function that was looked for too. It stays loaded for as long
    /// as the program runs: a thread may be in it to the end.
    bool isWhole() const { return m_whole; }

  private:
    void* symbol(const char* name);

    void* m_library;
    QByteArray m_prefix;
    bool m_whole;
};

} // namespace quorvia::engine
