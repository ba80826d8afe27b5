#include "SoakHome.h"

#include "MixedFolder.h"
#include "Originals.h"
#include "support/ScratchDesktop.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>

#include <pwd.h>
#include <unistd.h>

#include <utility>

namespace quorvia::test {

namespace {

/// False when there is none.
bool copyAll(const QString& from, const QString& to)
{
    const QStringList names = QDir(from).entryList(QDir::Files);
    if (!QDir().mkpath(to))
        return false;
    for (const QString& name : names) {
        if (!QFile::copy(from + u'/' + name, to + u'/' + name))
            return false;
    }
    return !names.isEmpty();
}

} // namespace

void furnish(ScratchHome& home, ScratchDesktop& desktop)
{
    desktop.addType(QStringLiteral("image/png"), QStringLiteral("*.png"));
    desktop.addType(QStringLiteral("image/jpeg"), QStringLiteral("*.jpg"));
    desktop.addType(QStringLiteral("text/html"), QStringLiteral("*.htm"));
    desktop.addApplication(QStringLiteral("editor"),
                           {QStringLiteral("image/png"), QStringLiteral("image/jpeg")},
                           QStringLiteral("Graphics;RasterGraphics;"));
    desktop.addApplication(QStringLiteral("browser"),
                           {QStringLiteral("x-scheme-handler/http"), QStringLiteral("x-scheme-handler/https"),
                            QStringLiteral("text/html")},
                           QStringLiteral("Network;"), QStringLiteral("%u"));
    for (const char* name : {"xdg-open", "xdg-email", "xdg-mime", "xfconf-query", "feh", "gsettings"})
        desktop.makeProgram(QLatin1String(name));
    QDir().mkpath(home.path(QStringLiteral("tmp")));
    qputenv("PATH", home.path(QStringLiteral("bin")).toLocal8Bit() + ":/usr/bin:/bin");
    qputenv("TMPDIR", home.path(QStringLiteral("tmp")).toLocal8Bit());
    qputenv("CUPS_SERVER", home.path(QStringLiteral("no-print-server")).toLocal8Bit());
    qputenv("QUORVIA_SCAN_HELPER", home.path(QStringLiteral("bin/no-helper")).toLocal8Bit());
    qputenv("GSETTINGS_BACKEND", "memory");
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "disabled:");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "BROWSER"})
        qunsetenv(variable);
}

QStringList outsidePlaces()
{
    QStringList places{QStringLiteral(QUORVIA_SOURCE)};
    QStringList homes{QFile::decodeName(qgetenv("HOME"))};
    if (const passwd* const user = ::getpwuid(::getuid()))
        homes.append(QFile::decodeName(user->pw_dir));
    for (const QString& home : std::as_const(homes)) {
        if (!home.isEmpty())
            places.append({home, QDir::cleanPath(home + QStringLiteral("/.."))});
    }
    places.removeDuplicates();
    return places;
}

int fillHome(const SoakPlaces& places)
{
    const QString root = QStringLiteral(QUORVIA_SOURCE);
    const QString extra = QFile::decodeName(qgetenv("QUORVIA_SAMPLES"));
    const MixedFolder folder{.samples = root + QStringLiteral("/samples"),
                             .findings = root + QStringLiteral("/tests/engine/codecs/findings"),
                             .extra = extra};
    if (!QDir().mkpath(places.notes()) || !folder.fill(places.pictures(), places.sources()) ||
        !copyAll(folder.samples, places.templates()))
        return 0;
    Originals originals;
    originals.add(places.pictures());
    originals.add(places.sources());
    return originals.save(places.originals()) ? originals.count() : 0;
}

} // namespace quorvia::test
