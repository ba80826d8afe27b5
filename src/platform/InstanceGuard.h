// Tells whether another instance of the program runs for this user. A lock on a file, which the kernel drops
// however the process ends.
#pragma once

#include <QString>

namespace quorvia::platform {

class InstanceGuard
{
  public:
    /// Joins the instances that hold the lock file `path`; the file and its directory are created when
    /// missing.
    explicit InstanceGuard(const QString& path);
    ~InstanceGuard();
    InstanceGuard(const InstanceGuard&) = delete;
    InstanceGuard& operator=(const InstanceGuard&) = delete;

    /// True when another instance held the lock when this one joined. False too when the lock file cannot be
    /// made.
    bool othersWereRunning() const { return m_others; }

  private:
    int m_descriptor = -1;
    bool m_others = false;
};

/// `$XDG_RUNTIME_DIR/quorvia.lock` when that directory stands, else `$XDG_STATE_HOME/quorvia/quorvia.lock`.
QString instanceLockPath();

} // namespace quorvia::platform
