#include "engine/WholeFile.h"

#include <QFileInfo>
#include <QSaveFile>

namespace quorvia::engine {

Status writeWholeFile(const QString& path, const QByteArray& bytes)
{
    const QFileInfo there(path);
    const QString resolved = there.canonicalFilePath(); // empty for what does not exist
    if (there.exists() && !there.isFile())
        return Error{ErrorKind::WriteFailed, QStringLiteral("the target is not a regular file")};
    QSaveFile file(resolved.isEmpty() ? path : resolved);
    if (!file.open(QIODevice::WriteOnly)) {
        const bool fileTakesIt = there.exists() && there.isWritable();
        return Error{ErrorKind::WriteFailed,
                     fileTakesIt
                         ? QStringLiteral("the directory does not take a new file beside the old one: %1")
                               .arg(file.errorString())
                         : file.errorString()};
    }
    // commit() writes what is buffered too, but puts the file in place all the same when that fails.
    if (file.write(bytes) != bytes.size() || !file.flush() || !file.commit())
        return Error{ErrorKind::WriteFailed, file.errorString()};
    return ok();
}

} // namespace quorvia::engine
