#include "platform/WallpaperPlasma.h"

#include "platform/GioParts.h"
#include "platform/Reason.h"

#include <array>

namespace quorvia::platform {

namespace {

constexpr int patience = 2000; // milliseconds

/// The fill modes of an image of Qt Quick, by style: stretched, tiled, padded.
constexpr std::array<int, 3> fillModes = {0, 3, 6};

bool failAs(QString* why, GError* raw)
{
    const gio::Error error(raw);
    return fail(why, QStringLiteral("Plasma: ") +
                         (error ? QString::fromUtf8(error->message).simplified() : QString()));
}

/// A connection of our own. The one that GIO shares ends the program together with the bus.
gio::Object<GDBusConnection> sessionBus(GError** error)
{
    const gio::Text address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, error));
    if (!address)
        return nullptr;
    const auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                            G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return gio::Object<GDBusConnection>(
        g_dbus_connection_new_for_address_sync(address.get(), flags, nullptr, nullptr, error));
}

} // namespace

QString javaScriptText(const QString& text)
{
    QString quoted = QStringLiteral("\"");
    for (const QChar sign : text) {
        const bool plain = sign.isPrint() && sign != u'"' && sign != u'\\' && sign.unicode() < 0x7f;
        quoted += plain ? QString(sign)
                        : QStringLiteral("\\u%1").arg(uint(sign.unicode()), 4, 16, QLatin1Char('0'));
    }
    return quoted + u'"';
}

QString plasmaScript(const QString& path, WallpaperStyle style)
{
    // A value that stays the same is no change to Plasma: see otherSpelling().
    return QStringLiteral(
               "var picture = %1, again = %2;\n"
               "desktops().forEach(function (desktop) {\n"
               "    desktop.wallpaperPlugin = \"org.kde.image\";\n"
               "    desktop.currentConfigGroup = [\"Wallpaper\", \"org.kde.image\", \"General\"];\n"
               "    var shown = String(desktop.readConfig(\"Image\"));\n"
               "    desktop.writeConfig(\"FillMode\", %3);\n"
               "    desktop.writeConfig(\"Image\", shown === picture ? again : picture);\n"
               "});\n")
        .arg(javaScriptText(fileAddress(path)), javaScriptText(fileAddress(otherSpelling(path))),
             QString::number(fillModes[size_t(style)]));
}

bool setPlasmaWallpaper(const QString& path, WallpaperStyle style, QString* why)
{
    GError* error = nullptr;
    const gio::Object<GDBusConnection> bus = sessionBus(&error);
    if (!bus)
        return failAs(why, error);
    const QByteArray script = plasmaScript(path, style).toUtf8();
    GVariant* const answer =
        g_dbus_connection_call_sync(bus.get(), "org.kde.plasmashell", "/PlasmaShell", "org.kde.PlasmaShell",
                                    "evaluateScript", g_variant_new("(s)", script.constData()), nullptr,
                                    G_DBUS_CALL_FLAGS_NO_AUTO_START, patience, nullptr, &error);
    if (!answer)
        return failAs(why, error);
    g_variant_unref(answer);
    return true;
}

} // namespace quorvia::platform
