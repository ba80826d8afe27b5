// The trash of a test whose homes come and go. The desktop asks for the user's directories once a process, so
// that the first home, which is this one, serves all of it. Make it before anything else.
#pragma once

#include "platform/Trash.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace quorvia::test {

class ScratchTrash
{
  public:
    ScratchTrash()
    {
        const bool works = platform::moveToTrash(m_home.write(QStringLiteral("first"), "first"));
        Q_ASSERT(works);
        Q_UNUSED(works);
        clear();
    }

    void clear() const { QDir(folder()).removeRecursively(); }
    /// What lies in it, sorted.
    QStringList names() const
    {
        return QDir(folder() + QStringLiteral("/files"))
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// Full path of `name` in it.
    QString path(const QString& name) const { return folder() + QStringLiteral("/files/") + name; }
    QByteArray content(const QString& name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not to be read");
    }
    /// While it lives nothing goes into the trash.
    class Closed
    {
      public:
        explicit Closed(const ScratchTrash& trash) : m_trash(trash)
        {
            trash.clear();
            m_trash.m_home.write(QStringLiteral(".local/share/Trash"), "in its place");
        }
        ~Closed() { QFile::remove(m_trash.folder()); }
        Closed(const Closed&) = delete;
        Closed& operator=(const Closed&) = delete;

      private:
        const ScratchTrash& m_trash;
    };

  private:
    QString folder() const { return m_home.path(QStringLiteral(".local/share/Trash")); }

    ScratchHome m_home;
};

} // namespace quorvia::test
