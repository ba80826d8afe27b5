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
#include <climits>
#include <cstdlib>
#include <memory>

namespace quorvia::platform {

namespace {

constexpr qint64 largestText = 4 * 1024 * 1024;
constexpr int mostLinks = 40; // as many as the system follows

/// The directory as the system finds it, "..", links and all; what of it is not there yet stays as named.
/// Empty when that leads nowhere.
QByteArray realDirectory(const QByteArray& path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.constData(), nullptr), &std::free);
    if (real)
        return real.get();
    const qsizetype slash = path.lastIndexOf('/');
    const QByteArray name = path.mid(slash + 1);
    if (slash < 0 || name == "." || name == "..")
        return {};
    const QByteArray above = realDirectory(slash == 0 ? QByteArray("/") : path.left(slash));
    return above.isEmpty() ? above : above + '/' + name;
}

/// What the link at `path` says; empty when it is none.
QByteArray linkText(const QByteArray& path)
{
    QByteArray text(PATH_MAX, Qt::Uninitialized);
    const ssize_t length = ::readlink(path.constData(), text.data(), size_t(text.size()));
    text.truncate(length < 0 ? 0 : length);
    return text;
}

/// In bytes, as names are the system's: read as letters, another file could be meant.
QByteArray endOfLinks(QByteArray path)
{
    for (int i = 0; i < mostLinks; ++i) {
        const qsizetype slash = path.lastIndexOf('/');
        const QByteArray directory =
            realDirectory(slash < 0 ? QByteArray(".") : path.left(qMax(slash, qsizetype(1))));
        if (directory.isEmpty())
            return {};
        path = directory + '/' + path.mid(slash + 1);
        const QByteArray text = linkText(path);
        if (text.isEmpty())
            return path;
        path = text.startsWith('/') ? text : directory + '/' + text;
    }
    return {};
}

/// The file that replaces the one at `target` gets its owner; its group where that is allowed.
bool keepOwner(const QString& target, int descriptor)
{
    struct stat before = {};
    struct stat now = {};
    if (fileStatus(target, before) != 0)
        return true;
    if (::fstat(descriptor, &now) != 0)
        return false;
    if (now.st_gid != before.st_gid)
        static_cast<void>(::fchown(descriptor, uid_t(-1), before.st_gid) == 0);
    return now.st_uid == before.st_uid || ::fchown(descriptor, before.st_uid, gid_t(-1)) == 0;
}

} // namespace

QString endOfLinks(const QString& path)
{
    const QByteArray target = endOfLinks(QFile::encodeName(path));
    QString name = QFile::decodeName(target);
    return QFile::encodeName(name) == target ? name : QString();
}

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
        return fail(why, QStringLiteral("its links lead nowhere, or to a name that cannot be spelled"));
    if (text.size() > largestText)
        return fail(why, QStringLiteral("it would become too large"));
    if (isReadOnly(target))
        return fail(why, QStringLiteral("the file is read only"));
    if (!QDir().mkpath(QFileInfo(target).path()))
        return fail(why, QStringLiteral("its directory cannot be made"));
    QSaveFile file(target);
    // commit() alone would not see that the last bytes found no room.
    if (!file.open(QIODevice::WriteOnly))
        return fail(why, file.errorString());
    if (!keepOwner(target, file.handle())) {
        file.cancelWriting();
        return fail(why, QStringLiteral("it would change its owner"));
    }
    if (file.write(text) != text.size() || !file.flush() || !file.commit())
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
