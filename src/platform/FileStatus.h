// What the system says of a path, asked in one call. Cheap: nothing is opened.
#pragma once

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

namespace quorvia::platform {

enum class Links { Follow, Keep };

/// Fills `status` and gives 0, or leaves it alone and gives the system's error number. The empty path and a
/// path with a zero character, which no name can hold, give ENOENT.
int fileStatus(const QString& path, struct stat& status, Links links = Links::Follow);

/// True when `path`, taken letter for letter, names anything; a link counts by what it leads to.
bool pathExists(const QString& path);
bool isDirectory(const QString& path);
bool isRegularFile(const QString& path);
/// True when `path` names anything but a directory.
bool isFile(const QString& path);
/// True when the user may not write what `path` names, or nobody may: the super-user keeps to that too. False
/// for what is not there.
bool isReadOnly(const QString& path);

} // namespace quorvia::platform
