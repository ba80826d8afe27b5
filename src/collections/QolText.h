// What stands in a playlist file: plain functions between its bytes and a list of paths. A line is a path or
// a comment; nothing is quoted or escaped.
#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvia::collections {

/// The content of a playlist file of `files`, in their order, written on `date`. UTF-8, lines end with CR LF.
QByteArray qolText(const QStringList& files, QDate date);

/// The lines of a playlist file one after the other. A line ends with LF, CR LF or CR.
class QolLines
{
  public:
    /// Of `bytes`, which outlive this.
    explicit QolLines(const QByteArray& bytes);

    /// The next line that is neither empty nor a comment, letter for letter; nothing behind the last.
    std::optional<QByteArrayView> next();
    /// How many bytes have not been looked at yet.
    qsizetype left() const { return m_rest.size(); }

  private:
    QByteArrayView m_rest;
};

/// What `line` of a playlist file says: UTF-8, or Latin-1 when it cannot be that, as other tools write it.
QString qolLine(QByteArrayView line);

/// `bytes` without a comment on the first line, which holds a date: two files that differ in nothing else are
/// of one content.
QByteArray qolContent(const QByteArray& bytes);

/// Whether `file` can stand on a line of a playlist file and come back from it: it is an absolute path
/// without line ends in it.
bool fitsOnALine(const QString& file);

/// The name of the playlist in the file at `path`: what follows the last "/", less every ".qol" in it.
QString playlistName(const QString& path);

} // namespace quorvia::collections
