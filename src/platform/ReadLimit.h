// The toolkit's own bound on the pictures that it reads.
#pragma once

#include <QImageReader>

namespace quorvia::platform {

/// While it lives, the toolkit reads pictures of up to so many MiB; 0: of any size. Not for several threads
/// at once: the bound is one for the whole program.
class ReadLimit
{
  public:
    explicit ReadLimit(int mebibytes) { QImageReader::setAllocationLimit(mebibytes); }
    ~ReadLimit() { QImageReader::setAllocationLimit(m_before); }
    ReadLimit(const ReadLimit&) = delete;
    ReadLimit& operator=(const ReadLimit&) = delete;

  private:
    const int m_before = QImageReader::allocationLimit();
};

} // namespace quorvia::platform
