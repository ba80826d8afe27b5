#include "platform/TextFile.h"

#include "platform/FileStatus.h"
#include "platform/Reason.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace quorvia::platform {

namespace {

constexpr qint64 largestText = 4 * 1024 * 1024;
constexpr int mostLinks = 40; // as many as the system follows

/// Where a write to `path` ends: behind its links, be the last one's target there or not. Empty for a ring.
QString endOfLinks(QString path)
{
    for (int i = 0; i < mostLinks; ++i) {
        const QFileInfo info(path);
        if (!info.isSymLink())
            return path;
        path = info.symLinkTarget();
    }
    return {};
}

} // namespace

TextRead readTextFile(const QString& path, QByteArray& text)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return errno == ENOENT ? TextRead::Missing : TextRead::Refused;
    struct stat status = {};
    QFile file;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > largestText ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) {
        ::close(descriptor);
        return TextRead::Refused;
    }
    const QByteArray content = file.read(largestText + 1);
    const bool whole = file.error() == QFileDevice::NoError && content.size() <= largestText;
    file.close();
    ::close(descriptor);
    if (!whole)
        return TextRead::Refused;
    text = content;
    return TextRead::Done;
}

bool replaceTextFile(const QString& path, const QByteArray& text, QString* why)
{
    const QString target = endOfLinks(path);
    if (target.isEmpty())
        return fail(why, QStringLiteral("the links lead nowhere"));
    if (isReadOnly(target))
        return fail(why, QStringLiteral("the file is read only"));
    if (!QDir().mkpath(QFileInfo(target).path()))
        return fail(why, QStringLiteral("its directory cannot be made"));
    QSaveFile file(target);
    // commit() alone would not see that the last bytes found no room.
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush() ||
        !file.commit())
        return fail(why, file.errorString());
    return true;
}

bool removeTextFile(const QString& path, QString* why)
{
    if (QFileInfo(path).isSymLink())
        return replaceTextFile(path, QByteArray(), why);
    QFile file(path);
    return file.remove() || !file.exists() || fail(why, file.errorString());
}

} // namespace quorvia::platform
