// What the wallpaper command stores, writes and hands to the desktop, and what a failure leaves out.
#include "../app/SettingsHome.h"
#include "../support/FullDisk.h"
#include "app/Paths.h"
#include "app/Settings.h"
#include "commands/WallpaperCommand.h"
#include "engine/ImageEngine.h"

#include <QDir>
#include <QTimer>
#include <QtTest>

using namespace quorvia;
using commands::SetWallpaperType;
using engine::ImageEngine;
using Style = platform::WallpaperStyle;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperStyle)

class TestWallpaperCommand : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::SettingsHome>();
        m_engine = std::make_unique<ImageEngine>(std::make_shared<engine::ImageLoader>());
        m_calls.clear();
        m_why.clear();
    }
    void cleanup()
    {
        m_engine.reset();
        m_home.reset();
    }

    void styles_data()
    {
        QTest::addColumn<Style>("style");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("tiled");
        QTest::newRow("stretch") << Style::Stretch << 0 << "2"
                                 << "0";
        QTest::newRow("tile") << Style::Tile << 1 << "0"
                              << "1";
        QTest::newRow("centre") << Style::Centre << 2 << "0"
                                << "0";
    }
    void styles()
    {
        QFETCH(Style, style);
        QFETCH(int, number);
        QCOMPARE(int(style), number);
        const QString source = open();
        QVERIFY(SetWallpaperType(*m_engine, style, setter()));
        QTEST(stored("WallpaperStyle").toString(), "stored");
        QTEST(stored("TileWallpaper").toString(), "tiled");
        QCOMPARE(stored("WallpaperStyle").metaType(), QMetaType::fromType<QString>());
        QTEST(app::read(app::desktop::WallpaperStyle), "stored");
        QTEST(app::read(app::desktop::TileWallpaper), "tiled");
        QCOMPARE(m_calls, QStringList{QString("%1 %2").arg(number).arg(target())});
        QCOMPARE(QImage(target()).convertToFormat(QImage::Format_RGB32), picture());
        QCOMPARE(bytesOf(target()).left(2), QByteArray("BM"));
        QCOMPARE(m_engine->FileName(), source);
        QVERIFY(log().isEmpty());
    }

    void theFirstTwoStepsComeBeforeTheDesktop()
    {
        open();
        QStringList order;
        QTimer::singleShot(0, [this, &order] {
            order << "events";
            QVERIFY(QFile::exists(target()));
            QCOMPARE(app::read(app::desktop::TileWallpaper), QString("1"));
        });
        SetWallpaperType(*m_engine, Style::Tile, [&order](const QString&, Style, QString*) {
            order << "desktop";
            return true;
        });
        QCOMPARE(order, QStringList({"events", "desktop"}));
    }

    void theEngineMayGoWhileEventsRun()
    {
        open();
        QTimer::singleShot(0, [this] { m_engine.reset(); });
        QVERIFY(SetWallpaperType(*m_engine, Style::Tile, setter()));
        QVERIFY(!m_engine);
        QCOMPARE(m_calls.size(), 1);
    }

    void aSecondPictureTakesTheFile()
    {
        open();
        QVERIFY(SetWallpaperType(*m_engine, Style::Tile, setter()));
        QImage second(7, 5, QImage::Format_RGB32);
        second.fill(Qt::yellow);
        m_engine->SetPicture(second);
        QVERIFY(SetWallpaperType(*m_engine, Style::Centre, setter()));
        QCOMPARE(QImage(target()).convertToFormat(QImage::Format_RGB32), second);
        QCOMPARE(m_engine->FileName(), QString());
        QCOMPARE(m_calls.size(), 2);
    }

    void withoutAnImageTheDesktopIsLeftAlone()
    {
        QVERIFY(!SetWallpaperType(*m_engine, Style::Tile, setter()));
        QCOMPARE(m_calls, QStringList());
        QVERIFY(!QFile::exists(target()));
        QCOMPARE(log(), QStringList{"Wallpaper not set: there is no image"});
        QCOMPARE(app::read(app::desktop::TileWallpaper), QString("1"));
    }

    void aSaveThatFailsLeavesTheDesktopAlone()
    {
        m_home->write("root", "a file where the directory should be");
        const QString source = open();
        QVERIFY(!SetWallpaperType(*m_engine, Style::Tile, setter()));
        QCOMPARE(m_calls, QStringList());
        QCOMPARE(m_engine->FileName(), source);
        QCOMPARE(log().size(), 1);
        QVERIFY2(log().constFirst().startsWith("Wallpaper not set: " + target() + ": "),
                 qPrintable(log().constFirst()));
    }

    void aFullDiskLeavesTheFormerFile()
    {
        open();
        QVERIFY(SetWallpaperType(*m_engine, Style::Tile, setter()));
        const QByteArray before = bytesOf(target());
        QImage large(300, 300, QImage::Format_RGB32);
        large.fill(Qt::yellow);
        m_engine->SetPicture(large);
        {
            const test::FullDisk disk(100'000);
            QVERIFY(disk.isFull());
            QVERIFY(!SetWallpaperType(*m_engine, Style::Tile, setter()));
        }
        QCOMPARE(m_calls.size(), 1);
        QCOMPARE(bytesOf(target()), before);
    }

    void whatTheDesktopSaysGoesToTheLog()
    {
        open();
        m_why = "no desktop here";
        QVERIFY(!SetWallpaperType(*m_engine, Style::Tile, setter()));
        QCOMPARE(log(), QStringList{"Wallpaper not set: no desktop here"});
    }

    void aStoreThatIsClosedCostsOnlyTheStyle()
    {
        open();
        app::closeSettings();
        QVERIFY(SetWallpaperType(*m_engine, Style::Tile, setter()));
        QCOMPARE(m_calls.size(), 1);
        QCOMPARE(log(), QStringList{"Wallpaper: its style cannot be stored"});
    }

  private:
    static QImage picture()
    {
        QImage image(40, 30, QImage::Format_RGB32);
        image.fill(QColor(10, 200, 30));
        image.setPixelColor(0, 0, Qt::red);
        image.setPixelColor(39, 29, Qt::blue);
        return image;
    }

    /// Has the engine hold the picture; gives its file.
    QString open()
    {
        const QString path = m_home->path("a.png");
        picture().save(path);
        m_engine->SetFileName(path);
        return m_engine->FileName();
    }

    /// Notes each call; says no with m_why when that is not empty.
    commands::WallpaperSetter setter()
    {
        return [this](const QString& path, Style style, QString* why) {
            m_calls.append(QString("%1 %2").arg(int(style)).arg(path));
            *why = m_why;
            return m_why.isEmpty();
        };
    }

    static QVariant stored(const QString& name)
    {
        return app::RegReadValue(app::Root::CurrentUser, "Control Panel\\Desktop", name, "absent");
    }
    QString target() const { return m_home->path("root/Quorvia.bmp"); }
    static QByteArray bytesOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// The log's lines without date and time.
    static QStringList log()
    {
        QStringList lines;
        for (const QByteArray& line : bytesOf(app::logPath()).split('\n')) {
            if (!line.isEmpty())
                lines.append(QString::fromUtf8(line).mid(int(qstrlen("mm-dd-yyyy - hh:mm:ss"))));
        }
        return lines;
    }

    std::unique_ptr<test::SettingsHome> m_home;
    std::unique_ptr<ImageEngine> m_engine;
    QStringList m_calls;
    QString m_why;
};

QTEST_MAIN(TestWallpaperCommand)
#include "tst_wallpapercommand.moc"
