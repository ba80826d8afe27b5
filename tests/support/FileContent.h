// What a test finds in a file.
#pragma once

#include <QByteArray>
#include <QFile>

namespace quorvia::test {

/// The bytes of the file at `path`; a text that no test writes when it cannot be read.
inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not to be read");
}

} // namespace quorvia::test
