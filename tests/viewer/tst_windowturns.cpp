// Turning the picture in the main window: what is seen of it, what the file and the strip have of it, and
// what it costs when the file cannot be written.
#include "app/Product.h"
#include "collections/Filmstrip.h"
#include "collections/ThumbnailCache.h"
#include "EditStage.h"
#include "platform/NextDialog.h"
#include "support/FileContent.h"
#include "support/FullDisk.h"
#include "viewer/PageNavigator.h"

#include <QTest>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quorvia;
using namespace quorvia::test;

class TestWindowTurns : public QObject, private EditStage
{
    Q_OBJECT

  private:
    QString caption() const { return m_window->windowTitle(); }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void rotating_data()
    {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<QColor>("above");
        QTest::newRow("clockwise") << QByteArray("miRotateClock") << QColor(Qt::red);
        QTest::newRow("counter-clockwise") << QByteArray("miRotateCounter") << QColor(Qt::blue);
    }

    void rotating()
    {
        QFETCH(QByteArray, command);
        QFETCH(QColor, above);
        const QString path = open();
        const QByteArray old = contentOf(path);
        QCOMPARE(seen(-6, 0), QColor(Qt::red));
        run(command.constData());
        QCOMPARE(QImage(path).size(), QSize(20, 40));
        QCOMPARE(QImage(path).pixelColor(10, 5), above);
        QCOMPARE(seen(0, -6), above);
        QVERIFY(seen(0, 6) != above);
        QCOMPARE(m_window->currentFile(), path);
        QCOMPARE(caption(), app::GetAppDisplayName()); // it was loaded anew
        QCOMPARE(m_trash.names(), QStringList{"a (replaced).png"});
        QCOMPARE(m_trash.content("a (replaced).png"), old);
        QVERIFY(failures().isEmpty() && m_bench->boxes.empty());
    }

    void eachTurnIsSeenHoweverFastTheyFollow()
    {
        const QString path = open(QStringLiteral("pics/a.bmp"), {40, 40}); // its size never changes
        const QList<QColor> upperLeft{Qt::red, Qt::blue, Qt::blue, Qt::red};
        for (int turn = 0; turn < 8; ++turn) {
            run("miRotateClock");
            QCOMPARE(seen(-6, -6), upperLeft.at(turn % 4));
            QCOMPARE(QImage(path).pixelColor(10, 10), upperLeft.at(turn % 4));
        }
        QCOMPARE(m_trash.names().size(), 1); // what the program wrote itself is not kept
    }

    void aWriteWithinTheClocksTickIsSeen()
    {
        const QString path = write(QStringLiteral("pics/a.bmp"), halves({40, 40}));
        const auto setTime = [&path] {
            const timespec times[2] = {{1'700'000'000, 0}, {1'700'000'000, 0}};
            QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
        };
        setTime();
        open(); // a.png, whose neighbours are read ahead
        QTRY_VERIFY(m_bench->loader().readAheadBytes() >= 40 * 40 * 4 + 40 * 30 * 4);
        run("miLoadFirst");
        QCOMPARE(m_window->currentFile(), path);
        QCOMPARE(seen(-6, 0), QColor(Qt::red));
        ix1().Rotate(180);
        ix1().SetSaveFileName(path);
        QVERIFY(ix1().SaveFile());
        setTime(); // as on a disk with coarse times
        run("miRefresh");
        QCOMPARE(seen(-6, 0), QColor(Qt::blue));
    }

    void aReadOnlyFileStays()
    {
        const QString path = open();
        const QByteArray old = contentOf(path);
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
        run("miRotateClock");
        QCOMPARE(contentOf(path), old);
        QCOMPARE(size(), QSize(40, 20)); // the refresh has read it again
        QCOMPARE(seen(-6, 0), QColor(Qt::red));
        QCOMPARE(failures().size(), 1);
        QVERIFY(logged("; the old file is read-only and stays"));
        QVERIFY(m_trash.names().isEmpty());
    }

    void aFullDiskCostsNoContent()
    {
        const QString path = open(QStringLiteral("pics/a.bmp"), {400, 300});
        const QByteArray old = contentOf(path);
        {
            const test::FullDisk disk(50'000);
            run("miRotateClock");
        }
        QVERIFY(!QFile::exists(path));
        QVERIFY(m_trash.names().contains(QStringLiteral("a.bmp")));
        QCOMPARE(m_trash.content(QStringLiteral("a.bmp")), old);
        QCOMPARE(QDir(in("pics")).entryList(QDir::Files | QDir::Hidden),
                 (QStringList{"a.png", "b.png", "two words.png"}));
        QCOMPARE(caption(), app::GetAppDisplayName());
        QCOMPARE(size(), QSize(300, 400)); // what was turned can still be saved elsewhere
        QVERIFY(logged("; the old file is in the trash"));
        QVERIFY(m_bench->boxes.empty());
    }

    void aTypeThatIsOnlyReadIsTurnedInMemory()
    {
        const QString path = in("pics/a.avif");
        QVERIFY(QFile::rename(open(), path));
        m_window->OpenX(path);
        const QByteArray old = contentOf(path);
        run("miRotateClock");
        QCOMPARE(contentOf(path), old);
        QCOMPARE(seen(0, -6), QColor(Qt::red));
        QVERIFY(caption().startsWith(QStringLiteral("a.avif [20x40] - 2 Colors | Quorvia v")));
        QVERIFY(failures().isEmpty());
    }

    void aPageIsTurnedAndTheOthersAreInTheTrash()
    {
        const QString path = m_bench->document(QStringLiteral("pics/pages.tif"), {Qt::red, Qt::blue});
        const QByteArray pages = contentOf(path);
        m_window = &m_bench->load({path});
        auto* const pTiff = m_window->findChild<viewer::PageNavigator*>();
        QVERIFY(pTiff && !pTiff->isHidden());
        Q_EMIT pTiff->nextClicked();
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
        run("miRotateClock");
        QCOMPARE(size(), QSize(30, 40));
        QCOMPARE(m_bench->middle(), QColor(Qt::blue));
        QVERIFY(pTiff->isHidden());
        QCOMPARE(m_trash.content(QStringLiteral("pages (replaced).tif")), pages);
    }

    void theStripShowsWhatWasTurned_data()
    {
        QTest::addColumn<bool>("inSight");
        QTest::addColumn<bool>("inHaste"); // before the strip has marked the image
        QTest::newRow("in sight") << true << false;
        QTest::newRow("in sight, in haste") << true << true;
        QTest::newRow("out of sight") << false << true;
    }

    void theStripShowsWhatWasTurned()
    {
        QFETCH(bool, inSight);
        QFETCH(bool, inHaste);
        write(QStringLiteral("pics/b.png"), halves({200, 200}));
        m_window = &m_bench->load({in("pics")});
        m_window->OpenMenuX(true);
        m_window->resize(900, 700);
        run("miViewFilmstrip");
        QVERIFY(stripSettles());
        QVERIFY(cellPixel(-20, 0).red() > 200);
        if (!inSight)
            run("miViewNormal");
        run("miNext");
        QVERIFY(inHaste || stripSettles());
        auto* const tDraw = m_window->filmstrip()->Filmstrip1()->findChild<QTimer*>("tDraw");
        run("miRotateClock"); // within the second in which the picture was written, mostly
        QCOMPARE(tDraw->isActive(), inSight && inHaste); // else there is no need to draw all of it
        run("miNext");
        run("miViewFilmstrip");
        QVERIFY(stripSettles());
        QVERIFY(cellPixel(0, -20).red() > 200 && cellPixel(0, -20).blue() < 60);
        QVERIFY(cellPixel(-20, 20).blue() > 200);
        m_window->filmstrip()->Filmstrip1()->DrawStrip(); // by the stored thumbnails
        QVERIFY(stripSettles());
        QVERIFY(cellPixel(0, -20).red() > 200 && cellPixel(0, -20).blue() < 60);
    }

    void aThumbnailOfTheFormerContentGoes()
    {
        const QString path = open();
        const QString thumbnail = collections::thumbnailFor(path);
        m_bench->home.write(QStringLiteral("root/Thumbs/other.thb"), "must stay");
        m_bench->home.write(QStringLiteral("root/Thumbs/") + thumbnail.section(u'/', -1), "of a second");
        QVERIFY(collections::hasThumbnail(thumbnail));
        m_window->filmstrip()->refreshEntry(path); // written within that second
        QVERIFY(!collections::hasThumbnail(thumbnail));
        QVERIFY(QFile::exists(in("root/Thumbs/other.thb")));
    }

  private:
    bool stripSettles() const
    {
        const auto* const strip = m_window->filmstrip()->Filmstrip1();
        return QTest::qWaitFor(
            [strip] {
                for (const char* timer : {"tResize", "tDraw", "tSelectionChange", "tDrawSelected"}) {
                    if (strip->findChild<QTimer*>(QLatin1String(timer))->isActive())
                        return false;
                }
                return true;
            },
            10000);
    }

    /// The colour in the second of the strip's three cells, so far from its middle.
    QColor cellPixel(int across, int down) const
    {
        auto* const pImages =
            m_window->filmstrip()->Filmstrip1()->findChild<QWidget*>(QStringLiteral("pImages"));
        const QImage shot = pImages->grab().toImage();
        return shot.pixelColor(shot.width() / 2 + across, shot.height() / 2 + down);
    }
};

QTEST_MAIN(TestWindowTurns)
#include "tst_windowturns.moc"
