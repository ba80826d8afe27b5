#include "app/DirectoryReader.h"

#include <QFile>
#include <QStringDecoder>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>
#include <memory>
#include <optional>

namespace quorvia::app {

namespace {

struct CloseDirectory
{
    void operator()(DIR* directory) const { ::closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

EntryKind lookAt(DIR* directory, const char* name)
{
    struct stat status = {};
    if (::fstatat(::dirfd(directory), name, &status, 0) != 0)
        return EntryKind::Other;
    if (S_ISREG(status.st_mode))
        return EntryKind::File;
    return S_ISDIR(status.st_mode) ? EntryKind::Directory : EntryKind::Other;
}

EntryKind kindOf(DIR* directory, const dirent& entry)
{
    switch (entry.d_type) {
    case DT_REG:
        return EntryKind::File;
    case DT_DIR:
        return EntryKind::Directory;
    case DT_LNK:
    case DT_UNKNOWN:
        return lookAt(directory, entry.d_name);
    default:
        return EntryKind::Other;
    }
}

std::optional<QString> decoded(const char* name)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(QByteArrayView(name, static_cast<qsizetype>(std::strlen(name))));
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace

std::vector<DirectoryEntry> readDirectory(const QString& directory)
{
    std::vector<DirectoryEntry> entries;
    if (directory.isEmpty() || directory.contains(QChar(u'\0')))
        return entries;
    const OpenDirectory open(::opendir(QFile::encodeName(directory).constData()));
    if (!open)
        return entries;
    while (const dirent* entry = ::readdir(open.get())) {
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        if (std::optional<QString> name = decoded(entry->d_name))
            entries.push_back({std::move(*name), kindOf(open.get(), *entry)});
    }
    return entries;
}

} // namespace quorvia::app
