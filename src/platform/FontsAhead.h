// Reads the desktop's font configuration on a thread of its own while the toolkit comes up, which would read
// it when the first text is measured. Dear: the read, a tenth of all that the user-interface thread does up
// to the first picture.
#pragma once

#include <QtGlobal>

#include <thread>

namespace quorvia::platform {

class FontsAhead
{
  public:
    /// Begins to read, and takes the user's locale for the process. `library` is the one with the
    /// configuration, which the toolkit's own reading shares. The environment must not be changed before the
    /// end.
    explicit FontsAhead(const char* library = "libfontconfig.so.1");
    /// Waits for the end of the read.
    ~FontsAhead();
    Q_DISABLE_COPY_MOVE(FontsAhead)

    /// Waits for the end of the read, and must have been called before the first text is measured: both would
    /// read otherwise. False when there is no such library or no configuration; the toolkit then finds its
    /// fonts by itself.
    bool wait();

  private:
    bool m_stands = false; // the thread's until it has ended
    std::thread m_thread;
};

} // namespace quorvia::platform
