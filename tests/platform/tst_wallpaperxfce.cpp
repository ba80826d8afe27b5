// The wallpaper of Xfce, against an xfconf-query of the test's own that records how it was called.
#include "../support/ScratchHome.h"
#include "platform/WallpaperXfce.h"

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

#include <algorithm>

using namespace quorvia::platform;
using Style = WallpaperStyle;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperStyle)

namespace {

const QString path = "/home/a 'b/Quorvia.bmp";

QStringList change(const QString& property, const QString& type, const QString& value)
{
    return {"--channel", "xfce4-desktop", "--property", property, "--create", "--type", type, "--set", value};
}

} // namespace

class TestWallpaperXfce : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { m_path = qgetenv("PATH"); }
    void init()
    {
        QDir(m_home.path("runs")).removeRecursively();
        QVERIFY(QDir().mkpath(m_home.path("runs")));
        m_home.write("listing", "");
    }
    void cleanup() { qputenv("PATH", m_path); }

    void changes_data()
    {
        QTest::addColumn<QString>("listing");
        QTest::addColumn<Style>("style");
        QTest::addColumn<QList<QStringList>>("expected");
        const QString first = "/backdrop/screen0/monitorHDMI-1/workspace0/";
        const QString second = "/backdrop/screen0/monitorDP-1/workspace1/";
        const auto both = [](const QString& stem, const QString& style, const QString& value = path) {
            return QList<QStringList>{change(stem + "image-style", "int", style),
                                      change(stem + "last-image", "string", value)};
        };
        QTest::newRow("stretch") << first + "last-image  /usr/a.png" << Style::Stretch << both(first, "3");
        QTest::newRow("tile") << first + "last-image  /usr/a.png" << Style::Tile << both(first, "2");
        QTest::newRow("centre") << first + "last-image  /usr/a.png" << Style::Centre << both(first, "1");
        QTest::newRow("no value") << first + "last-image" << Style::Centre << both(first, "1");
        QTest::newRow("empty value") << first + "last-image   " << Style::Centre << both(first, "1");
        QTest::newRow("two among others")
            << "/backdrop/screen0/monitorHDMI-1/workspace0/color-style  0\n" + first +
                   "image-style                5\n" + first + "last-image     /usr/share/a last-image\n" +
                   second + "last-image     /usr/b.png\n/desktop-icons/style   2\n"
            << Style::Tile << both(first, "2") + both(second, "2");
        QTest::newRow("the same picture")
            << first + "last-image   " + path << Style::Tile << both(first, "2", "/home/a 'b/./Quorvia.bmp");
        QTest::newRow("other properties")
            << "/other/last-image  a\n/backdrop/screen0/not-last-image  b\n" + first + "last-image-style  c"
            << Style::Tile << both("/backdrop/screen0/monitorDP-2/workspace0/", "2");
        QTest::newRow("none yet") << "" << Style::Tile
                                  << both("/backdrop/screen0/monitorDP-2/workspace0/", "2");
    }
    void changes()
    {
        QFETCH(QString, listing);
        QFETCH(Style, style);
        QTEST(xfceChanges(listing, path, style, {"DP-2"}), "expected");
    }

    void callsTheDesktop()
    {
        const QString stem = "/backdrop/screen0/monitorHDMI-1/workspace0/";
        install("");
        m_home.write("listing", (stem + "last-image   /a.png\n").toUtf8());
        QString why = "untouched";
        QVERIFY2(setXfceWallpaper(path, Style::Centre, {}, &why), qPrintable(why));
        QCOMPARE(why, QString("untouched"));
        QList<QStringList> expected = {{"--channel", "xfce4-desktop", "--list", "--verbose"},
                                       change(stem + "image-style", "int", "1"),
                                       change(stem + "last-image", "string", path)};
        std::sort(expected.begin(), expected.end());
        QCOMPARE(runs(), expected);
    }

    void failures_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("listing");
        QTest::addColumn<QString>("reason");
        const QString listing = "/backdrop/s/last-image a\n";
        QTest::newRow("no list") << "echo 'no  channel' >&2; exit 1" << listing << "xfconf-query: no channel";
        QTest::newRow("no write") << "case \"$*\" in *--set*) echo locked >&2; exit 1;; esac" << listing
                                  << "xfconf-query: locked";
        QTest::newRow("no screens") << ""
                                    << ""
                                    << "Xfce knows no screen";
        QTest::newRow("no answer") << "exec sleep 60" << listing << "xfconf-query does not answer";
        QTest::newRow("a write without an answer")
            << "case \"$*\" in *int*) exec sleep 60;; esac" << listing << "xfconf-query does not answer";
    }
    void failures()
    {
        QFETCH(QString, script);
        QFETCH(QString, listing);
        install(script.toUtf8());
        m_home.write("listing", listing.toUtf8());
        QElapsedTimer clock;
        clock.start();
        QString why;
        QVERIFY(!setXfceWallpaper(path, Style::Tile, {}, &why));
        QTEST(why, "reason");
        QVERIFY(clock.elapsed() < 30'000);
    }

    void withoutTheProgram()
    {
        qputenv("PATH", m_home.path("nowhere").toUtf8());
        QString why;
        QVERIFY(!setXfceWallpaper(path, Style::Tile, {"DP-2"}, &why));
        QVERIFY2(why.startsWith("xfconf-query: ") && why.size() > 20, qPrintable(why));
        QVERIFY(!setXfceWallpaper(path, Style::Tile, {"DP-2"}));
    }

  private:
    /// Puts an xfconf-query first on PATH: it records its arguments, runs `script`, and lists what the file
    /// "listing" holds.
    void install(const QByteArray& script)
    {
        const QString program = m_home.write(
            "bin/xfconf-query", "#!/bin/sh\nprintf '%s\\n' \"$@\" >'" + m_home.path("runs").toUtf8() +
                                    "'/$$\n" + script + "\ncase \"$*\" in *--list*) cat '" +
                                    m_home.path("listing").toUtf8() + "';; esac\n");
        QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        qputenv("PATH", m_home.path("bin").toUtf8() + ':' + m_path);
    }

    /// The arguments of all runs, sorted.
    QList<QStringList> runs() const
    {
        QList<QStringList> all;
        const QDir folder(m_home.path("runs"));
        for (const QString& name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                all.append(QString::fromUtf8(file.readAll()).chopped(1).split('\n'));
        }
        std::sort(all.begin(), all.end());
        return all;
    }

    quorvia::test::ScratchHome m_home;
    QByteArray m_path;
};

QTEST_GUILESS_MAIN(TestWallpaperXfce)
#include "tst_wallpaperxfce.moc"
