#include "platform/WallpaperXfce.h"

#include "platform/Reason.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QRegularExpression>

#include <array>
#include <memory>
#include <vector>

namespace quorvia::platform {

namespace {

constexpr int patience = 3000; // milliseconds, for all of it

/// The numbers of image-style, by style.
constexpr std::array<int, 3> styleNumbers = {3, 2, 1};

/// One property that names a picture, and what it holds.
struct Backdrop
{
    QString stem; ///< the property without "last-image"
    QString present;
};

QList<Backdrop> backdropsOf(const QString& listing, const QStringList& screens)
{
    // The values stand behind as many blanks as the longest name asks for.
    static const QRegularExpression row(QStringLiteral("^(/backdrop/.*?)last-image(?:\\s+(.*))?$"));
    QList<Backdrop> backdrops;
    const QStringList lines = listing.split(u'\n');
    for (const QString& line : lines) {
        const QRegularExpressionMatch match = row.match(line);
        if (match.hasMatch() && match.captured(1).endsWith(u'/'))
            backdrops.append({match.captured(1), match.captured(2)});
    }
    if (!backdrops.isEmpty())
        return backdrops;
    // A desktop on which nobody has chosen a wallpaper yet has no such property.
    for (const QString& screen : screens)
        backdrops.append({QStringLiteral("/backdrop/screen0/monitor%1/workspace0/").arg(screen), QString()});
    return backdrops;
}

QStringList setting(const QString& property, const QString& type, const QString& value)
{
    return {QStringLiteral("--channel"),
            QStringLiteral("xfce4-desktop"),
            QStringLiteral("--property"),
            property,
            QStringLiteral("--create"),
            QStringLiteral("--type"),
            type,
            QStringLiteral("--set"),
            value};
}

std::unique_ptr<QProcess> query(const QStringList& arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setStandardInputFile(QProcess::nullDevice());
    process->start(QStringLiteral("xfconf-query"), arguments, QIODevice::ReadOnly);
    return process;
}

/// Waits for the end of a run; empty, or why it did not do its work.
QString outcome(QProcess& process, const QDeadlineTimer& deadline)
{
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(int(deadline.remainingTime()))) {
        const bool hangs = process.state() != QProcess::NotRunning;
        process.kill();
        process.waitForFinished();
        if (hangs)
            return QStringLiteral("xfconf-query does not answer");
    }
    if (process.error() == QProcess::FailedToStart)
        return QStringLiteral("xfconf-query: ") + process.errorString();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return QStringLiteral("xfconf-query: ") +
               QString::fromLocal8Bit(process.readAllStandardError()).simplified();
    return {};
}

} // namespace

QList<QStringList> xfceChanges(const QString& listing, const QString& path, WallpaperStyle style,
                               const QStringList& screens)
{
    QList<QStringList> changes;
    const QList<Backdrop> backdrops = backdropsOf(listing, screens);
    for (const Backdrop& backdrop : backdrops) {
        changes.append(setting(backdrop.stem + QStringLiteral("image-style"), QStringLiteral("int"),
                               QString::number(styleNumbers[size_t(style)])));
        changes.append(setting(backdrop.stem + QStringLiteral("last-image"), QStringLiteral("string"),
                               changedPath(path, backdrop.present)));
    }
    return changes;
}

bool setXfceWallpaper(const QString& path, WallpaperStyle style, const QStringList& screens, QString* why)
{
    const QDeadlineTimer deadline(patience);
    const auto list = query({QStringLiteral("--channel"), QStringLiteral("xfce4-desktop"),
                             QStringLiteral("--list"), QStringLiteral("--verbose")});
    QString obstacle = outcome(*list, deadline);
    if (!obstacle.isEmpty())
        return fail(why, obstacle);
    std::vector<std::unique_ptr<QProcess>> runs; // side by side: the wait is that for the slowest
    const QString listing = QString::fromUtf8(list->readAllStandardOutput());
    for (const QStringList& arguments : xfceChanges(listing, path, style, screens))
        runs.push_back(query(arguments));
    if (runs.empty())
        return fail(why, QStringLiteral("Xfce knows no screen"));
    for (const auto& run : runs) {
        const QString failure = outcome(*run, deadline);
        if (obstacle.isEmpty())
            obstacle = failure;
    }
    return obstacle.isEmpty() || fail(why, obstacle);
}

} // namespace quorvia::platform
