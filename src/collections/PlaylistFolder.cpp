#include "collections/PlaylistFolder.h"

#include "app/DirectoryReader.h"
#include "app/mFile.h"
#include "app/Paths.h"
#include "collections/QolText.h"

#include <QFile>

#include <algorithm>

namespace quorvia::collections {

QString playlistFolder()
{
    return app::InstallPath() + QStringLiteral("Playlist/");
}

QString namedPlaylistPath(const QString& name)
{
    return playlistFolder() + name + u'.' + QLatin1String(playlistExtension);
}

bool canBePlaylistName(const QString& name)
{
    constexpr qsizetype longest = 255 - 4 - 8; // bytes: a name's, less ".qol" and what a save adds meanwhile
    return !name.isEmpty() && !name.contains(u'/') && !name.contains(QChar(0)) &&
           QFile::encodeName(name).size() <= longest;
}

QString typedPlaylistName(const QString& text)
{
    const QString extension = u'.' + QLatin1String(playlistExtension);
    QString name = text.trimmed();
    while (name.endsWith(extension, Qt::CaseInsensitive))
        name.chop(extension.size());
    return name;
}

QStringList namedPlaylists()
{
    QStringList names;
    for (const app::DirectoryEntry& entry : app::readDirectory(playlistFolder())) {
        const QString name = playlistName(entry.name);
        const bool isPlaylist = entry.kind == app::EntryKind::File &&
                                app::MatchesWildcard(entry.name, QStringLiteral("*.qol")) && !name.isEmpty();
        if (isPlaylist)
            names.append(name);
    }
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) {
        const int order = a.compare(b, Qt::CaseInsensitive);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

} // namespace quorvia::collections
