#include "collections/ThumbnailCache.h"

#include "app/mFile.h"
#include "app/Paths.h"
#include "app/Settings.h"

#include <QFile>
#include <QFileInfo>

namespace quorvia::collections {

namespace {

constexpr int cutCharacters = 4; // a point and three letters, as most extensions have
constexpr auto extension = ".thb";
constexpr double bytesOfMegabyte = 1024.0 * 1024.0;

} // namespace

QString thumbnailName(const QString& name, const QDateTime& modified)
{
    if (name.size() < cutCharacters)
        return QString();
    const QDateTime dateZero(QDate(1899, 12, 30), QTime(0, 0));
    return app::KeyDate(modified.isValid() ? modified : dateZero) + u'_' + name.chopped(cutCharacters) +
           QLatin1String(extension);
}

QString thumbnailDirectory()
{
    return app::read(app::common::ThumbnailPath, app::InstallPath() + QStringLiteral("Thumbs/"));
}

QString thumbnailFor(const QString& path)
{
    const QString name = thumbnailName(app::SplitPathName(path, 2), app::GetFileModified(path));
    return name.isEmpty() ? QString() : thumbnailDirectory() + name;
}

bool hasThumbnail(const QString& thumbnail)
{
    return !thumbnail.isEmpty() && QFileInfo(thumbnail).isFile();
}

QStringList listThumbnails(const QString& directory)
{
    QStringList files;
    app::ListFiles(app::AddBackslash(directory), QStringLiteral("*.thb"), false, files);
    return files;
}

double megabytesOf(const QString& file)
{
    return double(QFileInfo(file).size()) / bytesOfMegabyte;
}

void deleteThumbnails(const QStringList& files, const std::function<bool(int done)>& goOn)
{
    int done = 0;
    for (const QString& file : files) {
        if (goOn && !goOn(done++))
            return;
        const QFileInfo there(file);
        if (file.endsWith(QLatin1String(extension), Qt::CaseInsensitive) &&
            (there.isSymLink() || there.isFile()))
            QFile::remove(file);
    }
}

} // namespace quorvia::collections
