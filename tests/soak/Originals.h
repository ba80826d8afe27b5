// The user's files by what they hold: whatever happened to a folder, the bytes of each must still be
// somewhere.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvia::test {

/// The fingerprint of what the file at `path` holds; empty when it is no regular file or cannot be read.
QByteArray fingerprint(const QString& path);
QByteArray fingerprintOf(const QByteArray& bytes);

class Originals
{
  public:
    /// Takes all regular files below `folder` for originals.
    void add(const QString& folder);
    /// Those that were written by save().
    static Originals load(const QString& path);
    bool save(const QString& path) const;

    bool contains(const QByteArray& print) const { return m_names.contains(print); }
    int count() const { return int(m_names.size()); }
    /// The names of those that no file below one of `folders` holds any more, sorted.
    QStringList lost(const QStringList& folders) const;

  private:
    QMap<QByteArray, QString> m_names; ///< the first path by fingerprint
};

} // namespace quorvia::test
