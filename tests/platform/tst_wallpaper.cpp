// The way from the running desktop to its wallpaper; each way of its own is tested beside it.
#include "../support/ScratchHome.h"
#include "platform/Wallpaper.h"

#include <QDir>
#include <QtTest>

using namespace quorvia::platform;
using Style = WallpaperStyle;

class TestWallpaper : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        qputenv("GSETTINGS_BACKEND", "memory");
        qputenv("XDG_DATA_DIRS", m_home.path("nothing").toUtf8());
        qunsetenv("GSETTINGS_SCHEMA_DIR");
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + m_home.path("nothing").toUtf8());
        qputenv("PATH", m_home.path("nothing").toUtf8());
        qputenv("DISPLAY", ":not-to-be-opened");
        qunsetenv("WAYLAND_DISPLAY");
        m_path = m_home.write("Quorvia.bmp", "never looked into");
    }

    void eachDesktopHasItsWay_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<QString>("reason"); // begins so
        QTest::newRow("GNOME") << "ubuntu:GNOME"
                               << "the settings org.gnome.desktop.background are not installed";
        QTest::newRow("Cinnamon") << "X-Cinnamon"
                                  << "the settings org.cinnamon.desktop.background are not";
        QTest::newRow("MATE") << "MATE"
                              << "the settings org.mate.background are not installed";
        QTest::newRow("Xfce") << "XFCE"
                              << "xfconf-query: ";
        QTest::newRow("Plasma") << "KDE"
                                << "Plasma: ";
        QTest::newRow("another, without X") << "sway"
                                            << "no way is known to set the wallpaper of the desktop \"sway\"";
        QTest::newRow("none, without X") << ""
                                         << "no way is known to set the wallpaper of the desktop \"\"";
    }
    void eachDesktopHasItsWay()
    {
        QFETCH(QString, names);
        QFETCH(QString, reason);
        qputenv("XDG_CURRENT_DESKTOP", names.toUtf8());
        QString why;
        QVERIFY(!setWallpaper(m_path, Style::Tile, &why));
        QVERIFY2(why.startsWith(reason), qPrintable(why));
        QVERIFY(!setWallpaper(m_path, Style::Tile));
    }

    void theFileHasToBeThere_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << m_home.path("none.bmp");
        QTest::newRow("a folder") << m_home.path(".");
        QTest::newRow("empty") << "";
        QTest::newRow("relative") << "Quorvia.bmp";
    }
    void theFileHasToBeThere()
    {
        QFETCH(QString, path);
        QVERIFY(QDir::setCurrent(m_home.path(".")));
        qputenv("XDG_CURRENT_DESKTOP", "sway");
        QString why;
        QVERIFY(!setWallpaper(path, Style::Tile, &why));
        QCOMPARE(why, "there is no file " + path);
    }

  private:
    quorvia::test::ScratchHome m_home;
    QString m_path;
};

QTEST_MAIN(TestWallpaper)
#include "tst_wallpaper.moc"
