#include "collections/FolderFiles.h"

#include "app/DirectoryReader.h"
#include "app/mFile.h"

#include <QSet>

#include <algorithm>

namespace quorvia::collections {

QStringList sortedFolderFiles(const QString& folder, const QString& pattern)
{
    QStringList files;
    if (folder.isEmpty())
        return files;
    app::ListFiles(folder, pattern, false, files);
    // All paths begin alike, so that their names alone decide.
    const qsizetype nameAt = app::AddBackslash(folder).size();
    std::sort(files.begin(), files.end(), [nameAt](const QString& a, const QString& b) {
        const QStringView nameA = QStringView(a).mid(nameAt);
        const QStringView nameB = QStringView(b).mid(nameAt);
        const int order = nameA.compare(nameB, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : nameA < nameB;
    });
    return files;
}

bool anyHasVanished(const QString& folder, const QStringList& files)
{
    if (files.isEmpty())
        return false;
    const std::vector<app::DirectoryEntry> entries = app::readDirectory(folder);
    QSet<QStringView> present;
    present.reserve(qsizetype(entries.size()));
    for (const app::DirectoryEntry& entry : entries) {
        if (entry.kind == app::EntryKind::File)
            present.insert(entry.name);
    }
    const qsizetype nameAt = app::AddBackslash(folder).size();
    return std::any_of(files.begin(), files.end(), [&present, nameAt](const QString& file) {
        return !present.contains(QStringView(file).mid(nameAt));
    });
}

} // namespace quorvia::collections
