#include "app/mFile.h"

#include "app/DirectoryReader.h"
#include "platform/Dialogs.h"
#include "platform/FileStatus.h"

#include <QFile>

#include <sys/stat.h>

namespace quorvia::app {

namespace {

/// Position of the point that begins the extension of `path`, or -1.
qsizetype extensionPoint(const QString& path)
{
    for (qsizetype at = path.size() - 1; at >= 0; --at) {
        if (path[at] == u'.')
            return at;
        if (path[at] == u'/' || path[at] == u':')
            break;
    }
    return -1;
}

/// Length of the directory part of `path`, the last "/" included.
qsizetype directoryLength(const QString& path)
{
    return path.lastIndexOf(u'/') + 1;
}

/// "C:" and the like, which stands for a drive and is never a directory to create.
bool isDrive(const QString& prefix)
{
    return prefix.size() == 2 && prefix[0].isLetter() && prefix[1] == u':';
}

/// True when the first match of the pattern `path`, in the order of names, is not a directory.
bool firstMatchIsFile(const QString& path)
{
    const QString directory = path.left(directoryLength(path));
    const QString pattern = path.mid(directoryLength(path));
    if (!pattern.contains(u'*') && !pattern.contains(u'?'))
        return false;
    const DirectoryEntry* first = nullptr;
    const std::vector<DirectoryEntry> entries =
        readDirectory(directory.isEmpty() ? QStringLiteral(".") : directory);
    for (const DirectoryEntry& entry : entries) {
        if (entry.isHidden() && !pattern.startsWith(u'.'))
            continue;
        if (MatchesWildcard(entry.name, pattern) && (!first || entry.name < first->name))
            first = &entry;
    }
    return first && first->kind != EntryKind::Directory;
}

} // namespace

QString AddBackslash(const QString& path)
{
    return path.endsWith(u'/') ? path : path + u'/';
}

bool FolderExists(const QString& path)
{
    return platform::isDirectory(path);
}

bool FileExists(const QString& path)
{
    struct stat status = {};
    if (platform::fileStatus(path, status) == 0)
        return !S_ISDIR(status.st_mode);
    return firstMatchIsFile(path);
}

void MakePath(const QString& path)
{
    for (qsizetype at = path.indexOf(u'/'); at >= 0; at = path.indexOf(u'/', at + 1)) {
        const QString prefix = path.left(at);
        if (prefix.isEmpty() || isDrive(prefix) || platform::pathExists(prefix))
            continue;
        if (prefix.contains(QChar(u'\0')) || ::mkdir(QFile::encodeName(prefix).constData(), 0777) != 0)
            return; // nothing can be created below it
    }
}

QString SplitPathName(const QString& path, int part)
{
    switch (part) {
    case 1:
        return path.left(directoryLength(path));
    case 2:
        return path.mid(directoryLength(path));
    default:
        platform::showMessage(
            nullptr,
            {.title = QStringLiteral("Quorvia"),
             .text = QStringLiteral(
                 "There was an error, please contact Halvexa as to reagrad a 0026 error. Thank You")});
        return QString();
    }
}

QString GetExtension(const QString& path)
{
    const qsizetype point = extensionPoint(path);
    return point < 0 ? QString() : path.mid(point + 1);
}

QString GetBaseName(const QString& path, bool keepDirectory)
{
    const qsizetype point = extensionPoint(path);
    const QString whole = point < 0 ? path : path.left(point);
    return keepDirectory ? whole : whole.mid(directoryLength(whole));
}

QString GetShortPath(const QString& path)
{
    return platform::pathExists(path) ? path : QString();
}

} // namespace quorvia::app
