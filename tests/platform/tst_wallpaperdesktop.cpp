// Which desktop is taken for running, and how one file is named so that a desktop sees a change.
#include "platform/WallpaperDesktop.h"

#include <QFileInfo>
#include <QtTest>
#include <QUrl>

using namespace quorvia::platform;
using Desktop = WallpaperDesktop;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperDesktop)

class TestWallpaperDesktop : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void desktops_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<bool>("isX");
        QTest::addColumn<bool>("isWayland");
        QTest::addColumn<Desktop>("desktop");
        const auto row = [](const char* names, Desktop desktop) {
            QTest::newRow(names) << QString::fromLatin1(names) << false << true << desktop;
        };
        row("GNOME", Desktop::Gnome);
        row("ubuntu:GNOME", Desktop::Gnome);
        row("pop:GNOME", Desktop::Gnome);
        row("GNOME-Classic:GNOME", Desktop::Gnome);
        row("GNOME-Flashback", Desktop::Gnome);
        row("Unity:Unity7:ubuntu", Desktop::Gnome);
        row("Budgie:GNOME", Desktop::Gnome);
        row("Budgie", Desktop::Gnome);
        row("Pantheon", Desktop::Gnome);
        row("X-Cinnamon", Desktop::Cinnamon);
        row("Cinnamon", Desktop::Cinnamon);
        row("MATE", Desktop::Mate);
        row("mate", Desktop::Mate);
        row("XFCE", Desktop::Xfce);
        row("KDE", Desktop::Plasma);
        row("KDE:GNOME", Desktop::Plasma);
        row(":XFCE:", Desktop::Xfce);
        row("sway", Desktop::Unknown);
        row("GNOMEish", Desktop::Unknown);
        QTest::newRow("none on X") << QString() << true << false << Desktop::Root;
        QTest::newRow("unknown on X") << "openbox" << true << false << Desktop::Root;
        QTest::newRow("known on X") << "XFCE" << true << false << Desktop::Xfce;
        QTest::newRow("none on Wayland") << QString() << false << true << Desktop::Unknown;
        QTest::newRow("X within Wayland") << QString() << true << true << Desktop::Unknown;
        QTest::newRow("no display") << QString() << false << false << Desktop::Unknown;
    }
    void desktops()
    {
        QFETCH(QString, names);
        QFETCH(bool, isX);
        QFETCH(bool, isWayland);
        QTEST(wallpaperDesktop(names, isX, isWayland), "desktop");
    }

    void addresses_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("address");
        QTest::newRow("plain") << "/a/Quorvia.bmp"
                               << "file:///a/Quorvia.bmp";
        QTest::newRow("blank") << "/a b/c.bmp"
                               << "file:///a%20b/c.bmp";
        QTest::newRow("percent") << "/a%20b/c.bmp"
                                 << "file:///a%2520b/c.bmp";
        QTest::newRow("signs") << "/a#?\"\\/c.bmp"
                               << "file:///a%23%3F%22%5C/c.bmp";
        QTest::newRow("letters") << QStringLiteral("/ä/c.bmp") << "file:///%C3%A4/c.bmp";
        QTest::newRow("other spelling") << "/a/./c.bmp"
                                        << "file:///a/./c.bmp";
        QTest::newRow("relative") << "a.bmp"
                                  << "";
    }
    void addresses()
    {
        QFETCH(QString, path);
        QTEST(fileAddress(path), "address");
    }

    void theOtherSpellingNamesTheSameFile()
    {
        QTemporaryDir home;
        const QString path = home.filePath("Quorvia.bmp");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QString other = otherSpelling(path);
        QVERIFY(other != path);
        QCOMPARE(QFileInfo(other).canonicalFilePath(), QFileInfo(path).canonicalFilePath());
        QCOMPARE(otherSpelling("/a.bmp"), QString("/./a.bmp"));
    }

    void whatIsStoredChangesEachTime()
    {
        const QString path = "/a b/Quorvia.bmp";
        QCOMPARE(changedPath(path, "/other.png"), path);
        QCOMPARE(changedPath(path, path), QString("/a b/./Quorvia.bmp"));
        QCOMPARE(changedPath(path, "/a b/./Quorvia.bmp"), path);
        QCOMPARE(changedAddress(path, ""), QString("file:///a%20b/Quorvia.bmp"));
        QCOMPARE(changedAddress(path, "file:///a%20b/Quorvia.bmp"), QString("file:///a%20b/./Quorvia.bmp"));
        QCOMPARE(changedAddress(path, "file:///a%20b/./Quorvia.bmp"), QString("file:///a%20b/Quorvia.bmp"));
    }
};

QTEST_GUILESS_MAIN(TestWallpaperDesktop)
#include "tst_wallpaperdesktop.moc"
