// The count of the thumbnails between the events, and the end of those that it found.
#include "app/SettingsHome.h"
#include "collections/ThumbnailTally.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimer>

#include <memory>
#include <optional>

using namespace quorvia;
using collections::ThumbnailCount;
using collections::ThumbnailTally;

namespace {

constexpr int kilobyte = 1024;

} // namespace

class TestThumbnailTally : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<test::SettingsHome> m_home;
    QString m_cache;

    QString thumbnail(int number, int size = kilobyte) const
    {
        return m_home->write(QStringLiteral("cache/%1.thb").arg(number), QByteArray(size, 'x'));
    }
    QStringList inTheCache() const { return QDir(m_cache).entryList(QDir::Files, QDir::Name); }
    /// What `tally` tells, once it does.
    static std::optional<ThumbnailCount> counted(ThumbnailTally& tally, const QString& directory)
    {
        std::optional<ThumbnailCount> told;
        tally.begin(directory, [&told](const ThumbnailCount& count) { told = count; });
        return QTest::qWaitFor([&told] { return told.has_value(); }) ? told : std::nullopt;
    }

  private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<test::SettingsHome>();
        m_cache = m_home->path(QStringLiteral("cache"));
    }
    void cleanup() { m_home.reset(); }

    void itCountsAsTheWholeDoes()
    {
        thumbnail(1, 3 * kilobyte);
        thumbnail(2, 5 * kilobyte);
        m_home->write(QStringLiteral("cache/other.jpg"), "x");
        m_home->write(QStringLiteral("cache/below/3.thb"), "x");
        ThumbnailTally tally;
        const auto count = counted(tally, m_cache);
        QVERIFY(count);
        QStringList files = count->files;
        files.sort();
        QCOMPARE(files,
                 QStringList({m_cache + QStringLiteral("/1.thb"), m_cache + QStringLiteral("/2.thb")}));
        QCOMPARE(count->megabytes, 8.0 / 1024);
        QVERIFY(!tally.isUnderWay());
    }

    void whereThereAreNoneItTellsToo()
    {
        ThumbnailTally tally;
        for (const char* folder : {"nowhere", "."}) {
            const auto count = counted(tally, m_home->path(QLatin1String(folder)));
            QVERIFY(count);
            QCOMPARE(count->files.size(), 0);
            QCOMPARE(count->megabytes, 0.0);
        }
    }

    void nothingIsLookedAtBeforeTheEventsRun()
    {
        thumbnail(1);
        ThumbnailTally tally;
        bool told = false;
        tally.begin(m_cache, [&told](const ThumbnailCount&) { told = true; });
        QVERIFY(!told);
        QVERIFY(tally.isUnderWay());
        QTRY_VERIFY(told);
    }

    void manyAreCountedBetweenTheEvents()
    {
        constexpr int many = 10'000;
        QVERIFY(QDir().mkpath(m_cache));
        for (int i = 0; i < many; ++i) {
            QFile file(m_cache + QStringLiteral("/%1.thb").arg(i));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        constexpr int fewest = 3; // the list and two slices: a look at a file takes a microsecond at least
        int turns = 0;
        QTimer beside;
        connect(&beside, &QTimer::timeout, this, [&turns] { ++turns; });
        beside.start(0);
        ThumbnailTally tally;
        const auto count = counted(tally, m_cache);
        QVERIFY(count);
        QCOMPARE(count->files.size(), many);
        QVERIFY2(turns >= fewest, qPrintable(QString::number(turns)));
    }

    void aNewCountTakesTheOldOnesPlace()
    {
        thumbnail(1);
        ThumbnailTally tally;
        bool toldOld = false;
        tally.begin(m_cache, [&toldOld](const ThumbnailCount&) { toldOld = true; });
        const auto count = counted(tally, m_home->path(QStringLiteral("nowhere")));
        QVERIFY(count);
        QCOMPARE(count->files.size(), 0);
        QVERIFY(!toldOld);
    }

    void onlyTheCountedOnesAreDeleted()
    {
        thumbnail(1);
        thumbnail(2);
        ThumbnailTally tally;
        QVERIFY(counted(tally, m_cache));
        thumbnail(3);
        tally.clear(nullptr);
        QCOMPARE(inTheCache(), QStringList({QStringLiteral("3.thb")}));
    }

    void aCountUnderWayComesToItsEndFirst()
    {
        thumbnail(1);
        ThumbnailTally tally;
        int told = -1;
        tally.begin(m_cache, [&told](const ThumbnailCount& count) { told = int(count.files.size()); });
        tally.clear(nullptr);
        QCOMPARE(told, 1);
        QCOMPARE(inTheCache(), QStringList());
        QVERIFY(!tally.isUnderWay());
    }

    void whatCannotBeDeletedStays()
    {
        thumbnail(1);
        thumbnail(2);
        ThumbnailTally tally;
        QVERIFY(counted(tally, m_cache));
        QVERIFY(QFile::remove(m_cache + QStringLiteral("/1.thb")));
        QVERIFY(QDir().mkpath(m_cache + QStringLiteral("/1.thb"))); // no file any more
        tally.clear(nullptr);
        QVERIFY(QDir(m_cache + QStringLiteral("/1.thb")).exists());
        QCOMPARE(inTheCache(), QStringList());
    }

    void theTellerMayBeginTheNextCount()
    {
        thumbnail(1);
        ThumbnailTally tally;
        int second = -1;
        tally.begin(m_cache, [&](const ThumbnailCount&) {
            thumbnail(2);
            tally.begin(m_cache,
                        [&second](const ThumbnailCount& count) { second = int(count.files.size()); });
        });
        QTRY_COMPARE(second, 2);
    }
};

QTEST_MAIN(TestThumbnailTally)
#include "tst_thumbnailtally.moc"
