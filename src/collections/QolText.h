// What stands in a playlist file: plain functions between its bytes and a list of paths. A line is a path or
// a comment; nothing is quoted or escaped.
#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>
#include <QStringList>

namespace quorvia::collections {

/// The content of a playlist file of `files`, in their order, written on `date`. UTF-8, lines end with CR LF.
QByteArray qolText(const QStringList& files, QDate date);

/// The lines of `bytes` that are no comments, in their order and letter for letter. A line ends with LF, CR
/// LF or CR. Bytes that cannot be UTF-8 make their line Latin-1, as other tools write it.
QStringList qolPaths(const QByteArray& bytes);

/// `bytes` without a comment on the first line, which holds a date: two files that differ in nothing else are
/// of one content.
QByteArray qolContent(const QByteArray& bytes);

/// Whether `file` can stand on a line of a playlist file and come back from it: it is an absolute path
/// without line ends in it.
bool fitsOnALine(const QString& file);

/// The name of the playlist in the file at `path`: what follows the last "/", less every ".qol" in it.
QString playlistName(const QString& path);

} // namespace quorvia::collections
