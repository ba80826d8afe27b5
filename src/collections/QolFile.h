// The file of one playlist, and what is known of it: read with tolerance, written whole, and never over what
// somebody else has written there meanwhile.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

namespace quorvia::collections {

class QolFile
{
  public:
    /// The file that the present list came from or went to; empty when there is none.
    const QString& path() const { return m_path; }

    /// The entries of the file at `path` that name a file now, in their order; paths from elsewhere are made
    /// native. Of a file that cannot be read, with a line in the log, there are none. Nothing, and the
    /// file that was before stays, when the user broke off: long files show how far it is in a box over
    /// `owner` (may be null).
    std::optional<QStringList> load(const QString& path, QWidget* owner);

    enum class Saved {
        Written, ///< `files` stand in the file
        Left,    ///< somebody else has changed it, and here nothing has changed: it is to be read anew
        Failed   ///< it is as it was; the log has why
    };
    /// Writes `files` to the file at `path`, a link's target when it is one. `changed`: they are no longer
    /// what was loaded or saved; while they are, the file that they came from is left as it is, with the
    /// entries whose files are not there. A copy of what stands there goes to the trash first when it is from
    /// somebody else (another program, or a playlist of the same name that was not read) or when a save takes
    /// more from it than a date (entries whose files were not there, comments, another encoding). Without a
    /// trash the copy stays beside it; without a copy there is no save. A file that cannot be read is not
    /// replaced, and neither is one by what is empty because it could not be read.
    Saved save(const QString& path, const QStringList& files, bool changed);

    /// The file at path() has been moved to `path`.
    void renamed(const QString& path) { m_path = path; }

    /// Forgets which file the list came from: what is saved next is a list of its own.
    void forget() { *this = QolFile(); }

  private:
    void remember(const QString& path, const QByteArray& bytes, const QStringList& files);
    bool keepCopy(const QString& path, const QByteArray& present);

    QString m_path;
    QByteArray m_content;  ///< of the file as it was read or written last, without its dated line
    QByteArray m_kept;     ///< the same of what a copy was made of last
    bool m_loses = false;  ///< a save of what was read lacks something that stood there
    bool m_unread = false; ///< it could not be read
};

} // namespace quorvia::collections
