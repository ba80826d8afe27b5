#include "platform/Wallpaper.h"

#include "platform/FileStatus.h"
#include "platform/Reason.h"
#include "platform/WallpaperPlasma.h"
#include "platform/WallpaperRoot.h"
#include "platform/WallpaperSettings.h"
#include "platform/WallpaperXfce.h"

#include <QGuiApplication>
#include <QScreen>

namespace quorvia::platform {

namespace {

/// The screens in the pixels of the root window. The toolkit scales their sizes alone, not where they begin.
QList<QRect> screensOfRoot()
{
    QList<QRect> places;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        const QRect place = screen->geometry();
        places.append({place.topLeft(), (QSizeF(place.size()) * screen->devicePixelRatio()).toSize()});
    }
    return places;
}

QStringList screenNames()
{
    QStringList names;
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        names.append(screen->name());
    return names;
}

} // namespace

bool setWallpaper(const QString& path, WallpaperStyle style, QString* why)
{
    if (!path.startsWith(u'/') || !isRegularFile(path))
        return fail(why, QStringLiteral("there is no file ") + path);
    const QString names = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    const bool isX = QGuiApplication::platformName() == QLatin1String("xcb");
    const bool isWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    const WallpaperDesktop desktop = wallpaperDesktop(names, isX, isWayland);
    switch (desktop) {
    case WallpaperDesktop::Gnome:
    case WallpaperDesktop::Cinnamon:
    case WallpaperDesktop::Mate:
        return setSettingsWallpaper(desktop, path, style, why);
    case WallpaperDesktop::Xfce:
        return setXfceWallpaper(path, style, screenNames(), why);
    case WallpaperDesktop::Plasma:
        return setPlasmaWallpaper(path, style, why);
    case WallpaperDesktop::Root:
        return setRootWallpaper(path, style, screensOfRoot(), {}, why);
    case WallpaperDesktop::Unknown:
        break;
    }
    return fail(why, QStringLiteral("no way is known to set the wallpaper of the desktop \"%1\"").arg(names));
}

} // namespace quorvia::platform
