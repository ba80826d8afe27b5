#include "output/ConversionFiles.h"

#include "app/Log.h"
#include "app/mFile.h"
#include "platform/FileStatus.h"
#include "platform/Trash.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace quorvia::output {

QString conversionCaption(const QString& source, const QString& target)
{
    const QString extension = app::GetExtension(target);
    return extension + QStringLiteral("Conversion Preview: ") + app::SplitPathName(source, 2) +
           QStringLiteral(" > ") + extension;
}

QString overwriteQuestion(const QString& target)
{
    return QStringLiteral("The image '") + app::SplitPathName(target, 2) +
           QStringLiteral("' already exists. Would you like to overwrite this file?");
}

bool writesTheSameAgain(const QString& extension, int bitsPerPixel)
{
    struct ExactFormat
    {
        QLatin1String extension;
        int leastBits;
    };
    constexpr int deep = 24; // a smaller one of this format gets its palette filled up
    static constexpr std::array exact = {
        ExactFormat{QLatin1String("bmp"), deep}, ExactFormat{QLatin1String("pcx"), 1},
        ExactFormat{QLatin1String("pic"), 1},    ExactFormat{QLatin1String("png"), 1},
        ExactFormat{QLatin1String("tga"), 1},    ExactFormat{QLatin1String("tif"), 1}};
    const QString folded = extension.toLower();
    return std::any_of(exact.begin(), exact.end(), [&](const ExactFormat& one) {
        return folded == one.extension && bitsPerPixel >= one.leastBits;
    });
}

bool isOneFile(const QString& path, const QString& other)
{
    struct stat first = {};
    struct stat second = {};
    return platform::fileStatus(path, first) == 0 && platform::fileStatus(other, second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool hasSameContent(const QString& path, const QString& other)
{
    QFile first(path);
    QFile second(other);
    return first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) &&
           first.size() == second.size() && first.readAll() == second.readAll();
}

bool keepReplaced(const QString& target)
{
    QString why;
    if (!platform::isFile(target) || platform::keepInTrash(target, &why))
        return true;
    app::WriteLog(QStringLiteral("Not kept in the trash: %1: %2").arg(target, why));
    return false;
}

void trashSource(const engine::PageKey& read, int pages, const QString& target)
{
    const auto log = [&read](const QString& what) {
        app::WriteLog(QStringLiteral("Converted original %1: ").arg(what) + read.path);
    };
    if (isOneFile(read.path, target))
        return log(QStringLiteral("stays, since it is the result"));
    if (engine::PageKey::of(read.path, read.page) != read)
        return log(QStringLiteral("stays, since it has changed meanwhile"));
    QString why;
    if (!platform::trashUnlessReadOnly(read.path, &why))
        return log(QStringLiteral("stays (%1)").arg(why));
    if (pages > 1)
        log(QStringLiteral("is in the trash with %1 pages, of which only the first was converted")
                .arg(pages));
}

} // namespace quorvia::output
