#include "platform/WallpaperDesktop.h"

#include "platform/GioParts.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace quorvia::platform {

namespace {

struct NamedDesktop
{
    QLatin1String name;
    WallpaperDesktop desktop;
};

constexpr NamedDesktop namedDesktops[] = {
    {QLatin1String("GNOME"), WallpaperDesktop::Gnome},
    {QLatin1String("GNOME-Classic"), WallpaperDesktop::Gnome},
    {QLatin1String("GNOME-Flashback"), WallpaperDesktop::Gnome},
    {QLatin1String("Unity"), WallpaperDesktop::Gnome},
    {QLatin1String("Budgie"), WallpaperDesktop::Gnome},
    {QLatin1String("Pantheon"), WallpaperDesktop::Gnome},
    {QLatin1String("Cinnamon"), WallpaperDesktop::Cinnamon},
    {QLatin1String("X-Cinnamon"), WallpaperDesktop::Cinnamon},
    {QLatin1String("MATE"), WallpaperDesktop::Mate},
    {QLatin1String("XFCE"), WallpaperDesktop::Xfce},
    {QLatin1String("KDE"), WallpaperDesktop::Plasma},
};

} // namespace

WallpaperDesktop wallpaperDesktop(const QString& names, bool isX, bool isWayland)
{
    const QStringList list = names.split(u':', Qt::SkipEmptyParts);
    for (const QString& name : list) {
        const auto* const found = std::find_if(
            std::begin(namedDesktops), std::end(namedDesktops),
            [&name](const NamedDesktop& row) { return name.compare(row.name, Qt::CaseInsensitive) == 0; });
        if (found != std::end(namedDesktops))
            return found->desktop;
    }
    return isX && !isWayland ? WallpaperDesktop::Root : WallpaperDesktop::Unknown;
}

QString fileAddress(const QString& path)
{
    const gio::Text address(g_filename_to_uri(QFile::encodeName(path).constData(), nullptr, nullptr));
    return address ? QString::fromUtf8(address.get()) : QString();
}

QString otherSpelling(const QString& path)
{
    QString other = path;
    return other.insert(other.lastIndexOf(u'/') + 1, QStringLiteral("./"));
}

QString changedPath(const QString& path, const QString& present)
{
    return present == path ? otherSpelling(path) : path;
}

QString changedAddress(const QString& path, const QString& present)
{
    const QString address = fileAddress(path);
    return present == address ? fileAddress(otherSpelling(path)) : address;
}

} // namespace quorvia::platform
