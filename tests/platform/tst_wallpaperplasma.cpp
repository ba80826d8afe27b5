// The wallpaper of Plasma, against a bus and a shell of the test's own.
#include "../support/ScratchHome.h"
#include "platform/GioParts.h"
#include "platform/WallpaperPlasma.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QtTest>

#include <future>
#include <mutex>
#include <thread>

using namespace quorvia::platform;
using Style = WallpaperStyle;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperStyle)

namespace {

const char interface[] =
    "<node><interface name='org.kde.PlasmaShell'><method name='evaluateScript'>"
    "<arg type='s' direction='in'/><arg type='s' direction='out'/></method></interface></node>";

/// A bus that ends with the object.
class Bus
{
  public:
    Bus()
    {
        m_daemon.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        if (m_daemon.waitForReadyRead(20'000))
            m_address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_address);
    }
    ~Bus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }
    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    QByteArray address() const { return m_address; }

  private:
    QProcess m_daemon;
    QByteArray m_address;
};

enum class Mood { Willing, Refusing, Silent };

/// The shell, on a thread of its own: the call under test waits for it.
class Shell
{
  public:
    Shell(const QByteArray& address, Mood mood) : m_mood(mood)
    {
        std::promise<void> ready;
        m_thread = std::thread([this, address, &ready] { run(address, ready); });
        ready.get_future().wait();
    }
    ~Shell()
    {
        g_main_loop_quit(m_loop);
        m_thread.join();
        g_main_loop_unref(m_loop);
    }
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    QStringList scripts()
    {
        const std::lock_guard lock(m_mutex);
        return m_scripts;
    }

  private:
    static void called(GDBusConnection*, const char*, const char*, const char*, const char*,
                       GVariant* parameters, GDBusMethodInvocation* invocation, gpointer self)
    {
        static_cast<Shell*>(self)->answer(parameters, invocation);
    }

    void answer(GVariant* parameters, GDBusMethodInvocation* invocation)
    {
        const char* script = nullptr;
        g_variant_get(parameters, "(&s)", &script);
        {
            const std::lock_guard lock(m_mutex);
            m_scripts.append(QString::fromUtf8(script));
        }
        if (m_mood == Mood::Willing)
            g_dbus_method_invocation_return_value(invocation, g_variant_new("(s)", ""));
        else if (m_mood == Mood::Refusing)
            g_dbus_method_invocation_return_dbus_error(invocation, "org.kde.Error", "Widgets are\nlocked");
        else
            g_object_unref(invocation);
    }

    void run(const QByteArray& address, std::promise<void>& ready)
    {
        GMainContext* const context = g_main_context_new();
        g_main_context_push_thread_default(context);
        m_loop = g_main_loop_new(context, FALSE);
        const gio::Object<GDBusConnection> bus(g_dbus_connection_new_for_address_sync(
            address.constData(),
            GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                 G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr));
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(interface, nullptr);
        const GDBusInterfaceVTable table = {&Shell::called, nullptr, nullptr, {}};
        g_dbus_connection_register_object(bus.get(), "/PlasmaShell", node->interfaces[0], &table, this,
                                          nullptr, nullptr);
        g_variant_unref(g_dbus_connection_call_sync(
            bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", "org.kde.plasmashell", 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
            nullptr));
        ready.set_value();
        g_main_loop_run(m_loop);
        g_dbus_connection_close_sync(bus.get(), nullptr, nullptr);
        g_dbus_node_info_unref(node);
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
    }

    Mood m_mood;
    std::mutex m_mutex;
    QStringList m_scripts;
    GMainLoop* m_loop = nullptr;
    std::thread m_thread;
};

} // namespace

class TestWallpaperPlasma : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void texts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("quoted");
        QTest::newRow("plain") << "file:///a%20b/Q.bmp"
                               << "\"file:///a%20b/Q.bmp\"";
        QTest::newRow("empty") << ""
                               << "\"\"";
        QTest::newRow("blank and single quote") << "a 'b'"
                                                << "\"a 'b'\"";
        QTest::newRow("double quote") << "a\"; b(); \""
                                      << "\"a\\u0022; b(); \\u0022\"";
        QTest::newRow("backslash") << "a\\"
                                   << "\"a\\u005c\"";
        QTest::newRow("backslash and quote") << "\\\""
                                             << "\"\\u005c\\u0022\"";
        QTest::newRow("line ends") << "a\nb\r"
                                   << "\"a\\u000ab\\u000d\"";
        QTest::newRow("line ends of Unicode")
            << QString("a") + QChar(0x2028) + QChar(0x2029) << "\"a\\u2028\\u2029\"";
        QTest::newRow("zero") << QString(QChar(0)) << "\"\\u0000\"";
        QTest::newRow("umlaut") << QStringLiteral("ä") << "\"\\u00e4\"";
        QTest::newRow("beyond 16 bits") << QStringLiteral("😀") << "\"\\ud83d\\ude00\"";
        QTest::newRow("delete") << QString(QChar(0x7f)) << "\"\\u007f\"";
    }
    void texts()
    {
        QFETCH(QString, text);
        QTEST(javaScriptText(text), "quoted");
    }

    void styles_data()
    {
        QTest::addColumn<Style>("style");
        QTest::addColumn<QString>("line");
        QTest::newRow("stretch") << Style::Stretch << "desktop.writeConfig(\"FillMode\", 0);";
        QTest::newRow("tile") << Style::Tile << "desktop.writeConfig(\"FillMode\", 3);";
        QTest::newRow("centre") << Style::Centre << "desktop.writeConfig(\"FillMode\", 6);";
    }
    void styles()
    {
        QFETCH(Style, style);
        QFETCH(QString, line);
        const Bus bus;
        Shell shell(bus.address(), Mood::Willing);
        QString why = "untouched";
        QVERIFY2(setPlasmaWallpaper("/a\"b %1/Q.bmp", style, &why), qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        QCOMPARE(shell.scripts().size(), 1);
        const QString script = shell.scripts().constFirst();
        QVERIFY2(script.contains(line), qPrintable(script));
        QVERIFY2(script.startsWith("var picture = \"file:///a%22b%20%251/Q.bmp\", "
                                   "again = \"file:///a%22b%20%251/./Q.bmp\";"),
                 qPrintable(script));
        QCOMPARE(script, plasmaScript("/a\"b %1/Q.bmp", style));
    }

    void aShellThatRefuses()
    {
        const Bus bus;
        Shell shell(bus.address(), Mood::Refusing);
        QString why;
        QVERIFY(!setPlasmaWallpaper("/a/Q.bmp", Style::Tile, &why));
        QVERIFY2(why.startsWith("Plasma: ") && why.endsWith("Widgets are locked"), qPrintable(why));
        QVERIFY(!setPlasmaWallpaper("/a/Q.bmp", Style::Tile));
        QCOMPARE(shell.scripts().size(), 2);
    }

    void aShellThatIsSilent()
    {
        const Bus bus;
        Shell shell(bus.address(), Mood::Silent);
        QElapsedTimer clock;
        clock.start();
        QString why;
        QVERIFY(!setPlasmaWallpaper("/a/Q.bmp", Style::Tile, &why));
        QVERIFY(clock.elapsed() < 20'000); // the bus itself would wait longer
        QVERIFY(why.startsWith("Plasma: "));
        QCOMPARE(shell.scripts().size(), 1);
    }

    void withoutAShell()
    {
        const Bus bus;
        QString why;
        QVERIFY(!setPlasmaWallpaper("/a/Q.bmp", Style::Tile, &why));
        QVERIFY2(why.contains("org.kde.plasmashell"), qPrintable(why));
    }

    void withoutABus()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + m_home.path("nothing").toUtf8());
        QString why;
        QVERIFY(!setPlasmaWallpaper("/a/Q.bmp", Style::Tile, &why));
        QVERIFY(why.startsWith("Plasma: ") && why.size() > 12);
        QVERIFY(!setPlasmaWallpaper("/a/Q.bmp", Style::Tile));
    }

    void theProgramOutlivesTheBus()
    {
        {
            const Bus bus;
            Shell shell(bus.address(), Mood::Willing);
            QVERIFY(setPlasmaWallpaper("/a/Q.bmp", Style::Tile));
        }
        const Bus another;
        Shell shell(another.address(), Mood::Willing);
        QVERIFY(setPlasmaWallpaper("/a/Q.bmp", Style::Tile));
    }

  private:
    quorvia::test::ScratchHome m_home;
};

QTEST_GUILESS_MAIN(TestWallpaperPlasma)
#include "tst_wallpaperplasma.moc"
