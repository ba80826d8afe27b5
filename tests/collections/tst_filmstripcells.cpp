// What the cells of the filmstrip show, and what is kept of them on the disk.
#include "collections/CellComposer.h"
#include "collections/ThumbnailCache.h"
#include "FilmBench.h"
#include "support/FullDisk.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>

#include <sys/stat.h>

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);
const QColor green(20, 160, 60);

void touch(const QString& path, const QDateTime& time)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A green picture as the bytes of a JPEG.
QByteArray greenJpeg()
{
    QImage image(193, 126, QImage::Format_RGB32);
    image.fill(green);
    QBuffer buffer;
    image.save(&buffer, "JPEG", 95);
    return buffer.data();
}

/// The same with another size, in pixels, in its frame header.
QByteArray endlessJpeg()
{
    QByteArray bytes = greenJpeg();
    const qsizetype frame = bytes.indexOf("\xFF\xC0"); // marker, length, precision, height, width
    return frame < 0 ? QByteArray() : bytes.replace(frame + 5, 4, "\xFF\xDC\xFF\xDC");
}

} // namespace

class TestFilmstripCells : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<FilmBench>(); }
    void cleanup() { m_bench.reset(); }

    void aMissStoresAThumbnail()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red, QSize(300, 200));
        strip().add(file);
        QVERIFY(m_bench->draws());
        const QString thumbnail = collections::thumbnailFor(file);
        QCOMPARE(m_bench->thumbnails(), QStringList(QFileInfo(thumbnail).fileName()));
        const QByteArray bytes = contentOf(thumbnail);
        QVERIFY(bytes.startsWith("\xFF\xD8"));
        QVERIFY(bytes.endsWith("\xFF\xD9"));
        const QImage image = QImage::fromData(bytes, "JPEG");
        const double ratio = strip().devicePixelRatioF();
        QCOMPARE(image.size(), QSize(qRound(2892.5 / 15 * ratio), int(std::nearbyint(1895 / 15.0 * ratio))));
        QVERIFY(isNear(QColor(image.pixel(0, 0)), red)); // no frame
    }

    void aHitReadsTheThumbnail()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        putThumbnail(file, greenJpeg());
        strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), green));
        QCOMPARE(m_bench->thumbnails().size(), 1);
    }

    void aSelectedCellReadsTheImage()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        putThumbnail(file, greenJpeg());
        strip().add(file);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("0"));
        QVERIFY(m_bench->settles());
        QVERIFY(isNear(m_bench->middle(0), red));
    }

    void aSelectedCellStoresNothing()
    {
        strip().add(m_bench->picture(QStringLiteral("beach.png"), red));
        QVERIFY(m_bench->draws());
        QVERIFY(QFile::remove(m_bench->cache() + m_bench->thumbnails().constFirst()));
        strip().SetSelectedImages(QStringLiteral("0"));
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->thumbnails(), QStringList());
    }

    void aTouchedFileGetsASecondThumbnail()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        touch(file, QDateTime(QDate(2003, 3, 2), QTime(14, 5, 9)));
        strip().add(file);
        QVERIFY(m_bench->draws());
        m_bench->picture(QStringLiteral("beach.png"), green);
        touch(file, QDateTime(QDate(2003, 3, 2), QTime(14, 5, 10)));
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->thumbnails(), QStringList({QStringLiteral("03022003140509_beach.thb"),
                                                     QStringLiteral("03022003140510_beach.thb")}));
        QVERIFY(isNear(m_bench->middle(0), green));
    }

    void aRenamedFileGetsAThumbnailOnceForEachName()
    {
        const QString beach = m_bench->picture(QStringLiteral("beach.png"), red);
        const QString shore = m_bench->home.path(QStringLiteral("pics/shore.png"));
        strip().add(beach);
        QVERIFY(m_bench->draws());
        QVERIFY(QFile::rename(beach, shore));
        strip().Clear();
        strip().add(shore);
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->thumbnails().size(), 2);
        QVERIFY(QFile::rename(shore, beach));
        putThumbnail(beach, greenJpeg()); // to be told from the image
        strip().Clear();
        strip().add(beach);
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->thumbnails().size(), 2);
        QVERIFY(isNear(m_bench->middle(0), green));
    }

    void anotherPathIsAnotherCache()
    {
        strip().add(m_bench->picture(QStringLiteral("beach.png"), red));
        QVERIFY(m_bench->draws());
        const QString moved = m_bench->home.path(QStringLiteral("moved/"));
        QVERIFY(QDir().mkdir(moved));
        QVERIFY(app::save(app::common::ThumbnailPath, moved));
        QCOMPARE(collections::listThumbnails(collections::thumbnailDirectory()).size(), 0);
        QVERIFY(m_bench->draws());
        QCOMPARE(QDir(moved).entryList(QDir::Files), m_bench->thumbnails());
        QCOMPARE(m_bench->thumbnails().size(), 1);
    }

    void twoStripsShareTheirThumbnails()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        collections::Filmstrip other;
        other.add(file);
        other.DrawStrip();
        strip().add(file);
        QVERIFY(m_bench->draws());
        const auto* const tDraw = other.findChild<QTimer*>(QStringLiteral("tDraw"));
        QTRY_VERIFY(!tDraw->isActive());
        QCOMPARE(m_bench->thumbnails(), QStringList(QFileInfo(collections::thumbnailFor(file)).fileName()));
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), red));
    }

    void aStripMayEndWhileItFills()
    {
        const QString large = m_bench->picture(QStringLiteral("large.png"), red, QSize(3000, 2000));
        for (int i = 0; i < 8; ++i) {
            const QString copy = m_bench->home.path(QStringLiteral("pics/p%1.png").arg(i));
            QVERIFY(QFile::copy(large, copy));
            strip().add(copy);
        }
        m_bench->laysOut();
        strip().SetSelectedImages(QStringLiteral("7"));
        QTRY_VERIFY(!m_bench->thumbnails().isEmpty());
        m_bench->strip.reset();
        for (const QString& name : m_bench->thumbnails()) // all of them whole
            QVERIFY(contentOf(m_bench->cache() + name).endsWith("\xFF\xD9"));
        QVERIFY(m_bench->thumbnails().size() < 8);
    }

    void aShortNameIsShownAndNotStored()
    {
        const QString file = m_bench->picture(QStringLiteral("abc"), red);
        strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), red));
        QCOMPARE(m_bench->thumbnails(), QStringList());
    }

    void aNameTooLongForAThumbnailIsShownAndNotStored()
    {
        const QString file = m_bench->picture(QString(250, u'a') + QStringLiteral(".png"), red);
        QVERIFY(QFile::exists(file));
        strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), red));
        QCOMPARE(m_bench->thumbnails(), QStringList());
    }

    void aNameWithWildcardsFindsNoOther()
    {
        const QString file = m_bench->picture(QStringLiteral("b*h.png"), red);
        const QString other = m_bench->picture(QStringLiteral("beach.png"), green);
        for (const QString& path : {file, other})
            touch(path, QDateTime(QDate(2003, 3, 2), QTime(14, 5, 9)));
        strip().add(other);
        strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), green));
        QVERIFY(isNear(m_bench->middle(1), red));
    }

    void neighboursOfOneNameAndSecondShareTheirThumbnail()
    {
        const QString raw = m_bench->picture(QStringLiteral("beach.jpg"), red, QSize(1200, 800));
        const QString other = m_bench->picture(QStringLiteral("beach.png"), green);
        for (const QString& path : {raw, other})
            touch(path, QDateTime(QDate(2003, 3, 2), QTime(14, 5, 9)));
        strip().add(raw);
        strip().add(other);
        QByteArray before;
        for (int pass = 0; pass < 2; ++pass) {
            QVERIFY(m_bench->draws());
            QCOMPARE(m_bench->thumbnails(), QStringList(QStringLiteral("03022003140509_beach.thb")));
            const QByteArray bytes = contentOf(m_bench->cache() + m_bench->thumbnails().constFirst());
            QVERIFY(isNear(QColor(QImage::fromData(bytes, "JPEG").pixel(5, 5)), red));
            if (pass > 0)
                QCOMPARE(bytes, before);
            before = bytes;
            QVERIFY(isNear(m_bench->middle(0), red));
            QVERIFY(isNear(m_bench->middle(1), red));
        }
    }

    void aThumbnailIsNotWrittenAgain()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        strip().add(file);
        QVERIFY(m_bench->draws());
        const QString thumbnail = m_bench->cache() + m_bench->thumbnails().constFirst();
        const QDateTime early(QDate(2003, 3, 2), QTime(14, 5, 9));
        touch(thumbnail, early);
        QVERIFY(m_bench->draws());
        QCOMPARE(QFileInfo(thumbnail).lastModified(), early);
    }

    void badFilesDoNotStopAPass()
    {
        strip().add(m_bench->home.write(QStringLiteral("pics/text.jpg"), "no image at all"));
        strip().add(m_bench->home.path(QStringLiteral("pics/gone.jpg")));
        strip().add(m_bench->home.path(QStringLiteral("pics")));
        strip().add(QString());
        const QString pipe = m_bench->home.path(QStringLiteral("pics/pipe.jpg")); // nobody writes to it
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        strip().add(pipe);
        strip().add(m_bench->home.write(QStringLiteral("pics/endless.jpg"), endlessJpeg()));
        strip().add(m_bench->picture(QStringLiteral("beach.png"), red));
        strip().resize(1200, 120);
        QVERIFY(m_bench->draws());
        for (int i = 0; i < 6; ++i)
            QCOMPARE(m_bench->middle(i), m_bench->corner(i)); // nothing but the back colour
        QVERIFY(isNear(m_bench->middle(6), red));
        QCOMPARE(m_bench->thumbnails().size(), 1);
    }

    void aCutFileIsShownAndNotStored()
    {
        QImage image(400, 300, QImage::Format_RGB32);
        for (int y = 0; y < 300; ++y) {
            for (int x = 0; x < 400; ++x)
                image.setPixel(x, y, qRgb(200, (x * 7 + y * 13) % 60, (x * y) % 60));
        }
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QVERIFY(image.save(&buffer, "PNG"));
        strip().add(m_bench->home.write(QStringLiteral("pics/cut.png"), bytes.left(bytes.size() * 3 / 4)));
        QVERIFY(m_bench->draws());
        QVERIFY(m_bench->middle(0) != m_bench->corner(0));
        QCOMPARE(m_bench->thumbnails(), QStringList());
    }

    void aDamagedThumbnailStays_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isEmpty"); // the cell
        QTest::newRow("no image") << QByteArray("damaged") << true;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("cut") << greenJpeg().chopped(40) << false;
        QTest::newRow("larger than may be") << endlessJpeg() << true;
    }

    void aDamagedThumbnailStays()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isEmpty);
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        const QByteArray image = contentOf(file);
        putThumbnail(file, bytes);
        strip().add(file);
        strip().add(m_bench->picture(QStringLiteral("shore.png"), red));
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->middle(0) == m_bench->corner(0), isEmpty);
        QVERIFY(isNear(m_bench->middle(1), red));
        QCOMPARE(contentOf(collections::thumbnailFor(file)), bytes);
        QCOMPARE(contentOf(file), image);
        strip().SetSelectedImages(QStringLiteral("0")); // which looks past it
        QVERIFY(m_bench->settles());
        QVERIFY(isNear(m_bench->middle(0), red));
        QCOMPARE(contentOf(collections::thumbnailFor(file)), bytes);
    }

    void withoutACacheTheStripFillsAllTheSame_data()
    {
        QTest::addColumn<QString>("place");
        QTest::newRow("missing") << "nowhere/";
        QTest::newRow("a file in its place") << "blocked/";
        QTest::newRow("no end to the name") << "nowhere/at/all";
    }

    void withoutACacheTheStripFillsAllTheSame()
    {
        QFETCH(QString, place);
        m_bench->home.write(QStringLiteral("blocked"), "a file");
        QVERIFY(app::save(app::common::ThumbnailPath, m_bench->home.path(place)));
        strip().add(m_bench->picture(QStringLiteral("beach.png"), red));
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), red));
        QVERIFY(!QFileInfo::exists(m_bench->home.path(QStringLiteral("nowhere"))));
    }

    void aCacheThatTakesNoFilesCostsNothingElse()
    {
        QVERIFY(app::save(app::common::ThumbnailPath, QStringLiteral("/proc/"))); // not root's either
        strip().add(m_bench->picture(QStringLiteral("beach.png"), red));
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), red));
    }

    void aFullDiskCostsOnlyTheThumbnail_data()
    {
        QTest::addColumn<int>("bytes"); // that a file may have
        QTest::newRow("nothing") << 0;
        QTest::newRow("a part") << 300;
    }

    void aFullDiskCostsOnlyTheThumbnail()
    {
        QFETCH(int, bytes);
        strip().add(m_bench->picture(QStringLiteral("beach.png"), red));
        strip().add(m_bench->picture(QStringLiteral("shore.png"), green));
        bool drew = false;
        {
            const FullDisk disk{rlim_t(bytes)}; // for the test's own output too
            drew = disk.isFull() && m_bench->draws();
        }
        QVERIFY(drew);
        QVERIFY(isNear(m_bench->middle(0), red));
        QVERIFY(isNear(m_bench->middle(1), green));
        QCOMPARE(m_bench->thumbnails(), QStringList());
        QVERIFY(m_bench->draws()); // there is room again
        QCOMPARE(m_bench->thumbnails().size(), 2);
    }

    void aDirectoryInTheThumbnailsPlaceStays()
    {
        const QString file = m_bench->picture(QStringLiteral("beach.png"), red);
        QVERIFY(QDir().mkdir(collections::thumbnailFor(file)));
        strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), red));
        QVERIFY(QFileInfo(collections::thumbnailFor(file)).isDir());
        QCOMPARE(m_bench->thumbnails(), QStringList()); // nor is anything else left behind
    }

    void nothingElseInTheCacheIsTouched()
    {
        m_bench->home.write(QStringLiteral("cache/letter.txt"), "dear");
        m_bench->home.write(QStringLiteral("cache/12301899000000_old.thb"), "old");
        m_bench->addMany(5, red);
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->thumbnails().size(), 7);
        QCOMPARE(contentOf(m_bench->cache() + QStringLiteral("letter.txt")), QByteArray("dear"));
    }

    void transparencyIsWhiteOnAMissAndOnAHit()
    {
        QImage image(60, 40, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        const QString file = m_bench->home.path(QStringLiteral("pics/clear.png"));
        QVERIFY(image.save(file, "PNG"));
        for (int i = 0; i < 3; ++i) // one of the two passes at least stands on grey
            strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(m_bench->middle(0) == QColor(Qt::white));
        QVERIFY(m_bench->draws());
        for (int i = 0; i < 3; ++i)
            QVERIFY(isNear(m_bench->middle(i), Qt::white));
    }

    void profilesCount()
    {
        QImage image(60, 40, QImage::Format_RGB32);
        image.fill(QColor(60, 200, 60));
        image.setColorSpace(QColorSpace::AdobeRgb);
        const QString file = m_bench->home.path(QStringLiteral("pics/wide.png"));
        QVERIFY(image.save(file, "PNG"));
        const QColor expected(image.convertedToColorSpace(QColorSpace::SRgb).pixel(5, 5));
        QVERIFY(!isNear(expected, QColor(60, 200, 60)));
        strip().add(file);
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), expected));
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), expected)); // from its thumbnail
    }

    void theFrameLooksTheSameInCellsOfAnySize_data()
    {
        QTest::addColumn<QSize>("cell");
        QTest::addColumn<double>("ratio");
        QTest::newRow("small") << QSize(80, 60) << 1.0;
        QTest::newRow("as the canvas") << QSize(200, 150) << 1.0;
        QTest::newRow("dense") << QSize(399, 300) << 2.0;
        QTest::newRow("between") << QSize(160, 120) << 1.5;
    }

    void theFrameLooksTheSameInCellsOfAnySize()
    {
        QFETCH(QSize, cell);
        QFETCH(double, ratio);
        QImage square(400, 400, QImage::Format_RGB32);
        square.fill(red);
        const QImage composed =
            collections::composeCell({square, QSize(400, 400)}, QColor(Qt::blue), cell, ratio);
        QCOMPARE(composed.size(), cell);
        const int left = qRound(50 * cell.width() / 2992.5);
        const int top = qRound(50 * cell.height() / 2250.0);
        QCOMPARE(QColor(composed.pixel(left - 1, cell.height() / 2)), QColor(Qt::blue));
        QCOMPARE(QColor(composed.pixel(left, cell.height() / 2)), red);
        QCOMPARE(QColor(composed.pixel(cell.width() - 1 - left, cell.height() / 2)), red);
        QCOMPARE(QColor(composed.pixel(cell.width() - left, cell.height() / 2)), QColor(Qt::blue));
        QCOMPARE(QColor(composed.pixel(cell.width() / 2, top - 1)), QColor(Qt::blue));
        QCOMPARE(QColor(composed.pixel(cell.width() / 2, top)), red);
    }

    void aCellIsNoLargerThanTheCanvas()
    {
        const QImage cell = collections::composeCell({}, QColor(Qt::blue), QSize(4000, 3000), 2);
        QCOMPARE(cell.size(), QSize(399, 300));
        QCOMPARE(QColor(cell.pixel(200, 150)), QColor(Qt::blue));
    }

  private:
    collections::Filmstrip& strip() const { return *m_bench->strip; }
    /// Puts `bytes` where the thumbnail of `file` is looked for.
    void putThumbnail(const QString& file, const QByteArray& bytes) const
    {
        const QString name = QFileInfo(collections::thumbnailFor(file)).fileName();
        m_bench->home.write(QStringLiteral("cache/") + name, bytes);
    }
    std::unique_ptr<FilmBench> m_bench;
};

QTEST_MAIN(TestFilmstripCells)
#include "tst_filmstripcells.moc"
