#include "commands/WallpaperCommand.h"

#include "app/Log.h"
#include "app/Paths.h"
#include "app/PendingEvents.h"
#include "app/Settings.h"
#include "engine/ImageEngine.h"

#include <QDir>

#include <array>

namespace quorvia::commands {

namespace {

/// What is stored of a style.
struct StoredStyle
{
    QLatin1String style;
    QLatin1String tile;
};

constexpr std::array<StoredStyle, 3> storedStyles = {{
    {QLatin1String("2"), QLatin1String("0")}, // stretch
    {QLatin1String("0"), QLatin1String("1")}, // tile
    {QLatin1String("0"), QLatin1String("0")}, // centre
}};

void storeStyle(platform::WallpaperStyle style)
{
    const StoredStyle& stored = storedStyles[size_t(style)];
    const bool first = app::save(app::desktop::WallpaperStyle, stored.style);
    const bool second = app::save(app::desktop::TileWallpaper, stored.tile);
    if (!first || !second)
        app::WriteLog(QStringLiteral("Wallpaper: its style cannot be stored"));
}

/// Empty when written, else why not.
QString saveTo(engine::ImageEngine& ix1, const QString& path)
{
    if (ix1.ImagePixelWidth() == 0)
        return QStringLiteral("there is no image");
    QDir().mkpath(app::InstallPath());
    ix1.SetSaveFileName(path);
    return ix1.SaveFile() ? QString() : path + QStringLiteral(": ") + ix1.LastError();
}

bool fail(const QString& reason)
{
    app::WriteLog(QStringLiteral("Wallpaper not set: ") + reason);
    return false;
}

} // namespace

bool SetWallpaperType(engine::ImageEngine& ix1, platform::WallpaperStyle style, const WallpaperSetter& setter)
{
    storeStyle(style);
    const QString path = QDir::current().absoluteFilePath(app::InstallPath() + QStringLiteral("Quorvia.bmp"));
    const QString obstacle = saveTo(ix1, path);
    if (!obstacle.isEmpty())
        return fail(obstacle);
    app::letPendingEventsRun();
    QString why;
    return setter(path, style, &why) || fail(why);
}

} // namespace quorvia::commands
