// A fresh home directory for a test: HOME, the XDG directories and the program's roots point into it while it
// lives.
#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <utility>
#include <vector>

namespace quorvia::test {

class ScratchHome
{
  public:
    ScratchHome();
    ~ScratchHome();
    ScratchHome(const ScratchHome&) = delete;
    ScratchHome& operator=(const ScratchHome&) = delete;

    /// Path of `name` inside the home directory.
    QString path(const QString& name) const;
    /// Writes `bytes` to `name` inside the home directory, making its directories; returns the full path.
    QString write(const QString& name, const QByteArray& bytes) const;

  private:
    void set(const char* variable, const QString& value);

    QTemporaryDir m_directory;
    std::vector<std::pair<QByteArray, QByteArray>> m_before; ///< null value: the variable was not set
};

} // namespace quorvia::test
