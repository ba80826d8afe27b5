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
    /// what was loaded or saved. A copy of what stands there goes to the trash first, as far as there is one,
    /// when it is from somebody else (another program, or a playlist of the same name that was not read) or
    /// has entries whose files were not there when it was read. A file that cannot be read is not replaced.
    Saved save(const QString& path, const QStringList& files, bool changed);

    /// The file at path() has been moved to `path`.
    void renamed(const QString& path) { m_path = path; }

    /// Forgets which file the list came from: what is saved next is a list of its own.
    void forget() { *this = QolFile(); }

  private:
    void remember(const QString& path, const QByteArray& bytes, bool entriesAreMissing);

    QString m_path;
    QByteArray m_content;             ///< of the file as it was read or written last, without its dated line
    bool m_entriesAreMissing = false; ///< it had some whose files were not there: what is saved lacks them
};

} // namespace quorvia::collections
