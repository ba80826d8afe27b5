#include "viewer/InformationText.h"

#include "app/mFile.h"
#include "platform/FileStatus.h"

#include <QStringList>

namespace quorvia::viewer {

namespace {

QString dateLine(const char* label, const QDateTime& time)
{
    return QLatin1String(label) + app::DisplayDate(time);
}

} // namespace

std::optional<FileFacts> fileFacts(const QString& path)
{
    FileFacts facts;
    if (path.isEmpty())
        return facts;
    struct stat status = {};
    if (platform::fileStatus(path, status) != 0)
        return std::nullopt;
    if (!S_ISDIR(status.st_mode))
        facts.bytes = status.st_size;
    FileTimes times;
    if (app::GetFileTimes(path, times.created, times.modified, times.accessed))
        facts.times = times;
    facts.attributes = app::AttributeText(path);
    return facts;
}

QString fileInfoText(const FileFacts& facts)
{
    constexpr int megabytes = 2;
    QStringList sizes;
    for (int level = 0; level <= megabytes; ++level)
        sizes.append(app::FormatSize(facts.bytes, level, true));
    QStringList lines{QStringLiteral("File Size: ") + sizes.join(QStringLiteral("  "))};
    if (facts.times) {
        lines.append(QString());
        lines.append(dateLine("Created On: ", facts.times->created));
        lines.append(dateLine("Modified On: ", facts.times->modified));
        lines.append(dateLine("Last Accessed On: ", facts.times->accessed));
    }
    lines.append(QStringLiteral("Attributes: ") + facts.attributes);
    return lines.join(u'\n');
}

QString imageInfoText(const app::ImageFacts& facts, std::optional<int> colors)
{
    return QStringLiteral("Dimensions: %1x%2\nBits Per Pixel: \t%3\nUnique Colors:\t%4")
        .arg(QString::number(facts.pixels.width()), QString::number(facts.pixels.height()),
             QString::number(facts.bitsPerPixel), colors ? QString::number(*colors) : QString());
}

} // namespace quorvia::viewer
