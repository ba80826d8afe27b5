#include "engine/Bands.h"

#include <QtTest>

#include <atomic>
#include <new>
#include <thread>
#include <vector>

using namespace quorvia::engine;

class tst_Bands : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void everyRowOnce_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("count");
        QTest::newRow("no rows") << 0 << 1;
        QTest::newRow("one row") << 1 << 1;
        QTest::newRow("one band") << 17 << 1;
        QTest::newRow("uneven") << 17 << 4;
        QTest::newRow("more bands than rows") << 3 << 5;
        QTest::newRow("tall") << 65535 << 16;
    }

    void everyRowOnce()
    {
        QFETCH(int, rows);
        QFETCH(int, count);
        std::vector<std::atomic<int>> seen(static_cast<size_t>(rows));
        std::vector<std::atomic<int>> bands(static_cast<size_t>(count));
        inBands(rows, count, [&](int index, int from, int to) {
            ++bands[static_cast<size_t>(index)];
            for (int row = from; row < to; ++row)
                ++seen[static_cast<size_t>(row)];
        });
        QVERIFY(std::all_of(seen.begin(), seen.end(), [](int times) { return times == 1; }));
        QVERIFY(std::all_of(bands.begin(), bands.end(), [](int times) { return times == 1; }));
    }

    void whatABandThrowsComesOut_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("thrower");
        QTest::newRow("on the caller's thread") << 1 << 0;
        QTest::newRow("on another") << 4 << 1;
        QTest::newRow("the last of several") << 4 << 3;
    }

    void whatABandThrowsComesOut()
    {
        QFETCH(int, count);
        QFETCH(int, thrower);
        std::atomic<int> done = 0;
        const auto band = [&](int index, int, int) {
            if (index == thrower)
                throw std::bad_alloc();
            ++done;
        };
        QVERIFY_THROWS_EXCEPTION(std::bad_alloc, inBands(100, count, band));
        QCOMPARE(done, count - 1); // the others were not left alone
    }

    void bandCounts()
    {
        const int cores = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 16);
        QCOMPARE(bandCount(1000, 1000), 1);
        QCOMPARE(bandCount(0, qint64(1) << 40), 1);
        QCOMPARE(bandCount(1, qint64(1) << 40), 1);
        QCOMPARE(bandCount(65535, qint64(1) << 40), cores);
    }
};

QTEST_APPLESS_MAIN(tst_Bands)
#include "tst_bands.moc"
