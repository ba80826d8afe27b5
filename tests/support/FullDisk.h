// Makes writes fail as a full disk does, for root too. A program that does not look out gets the signal of
// it, and ends.
#pragma once

#include <sys/resource.h>

namespace quorvia::test {

/// While it lives no file of this process grows beyond `bytes`; what is longer already may be read as before.
class FullDisk
{
  public:
    explicit FullDisk(rlim_t bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        m_isFull = ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

    bool isFull() const { return m_isFull; }

  private:
    rlimit m_before = {};
    bool m_isFull = false;
};

} // namespace quorvia::test
