#include "engine/DisplayCache.h"
#include "FakePictures.h"

#include <QtTest>

using namespace quorvia::engine;
using quorvia::test::graded;
using quorvia::test::plain;

namespace {

DisplayView viewAt(const QRect& target, quint64 content = 1)
{
    return {content, target, qRgb(0, 0, 255)};
}

} // namespace

class tst_DisplayCache : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void emptyCoversNothing()
    {
        const DisplayCache cache;
        QVERIFY(!cache.covers(viewAt(QRect(0, 0, 10, 10)), QRect(0, 0, 1, 1)));
        QVERIFY(cache.pixels().isNull());
    }

    void coversWhatWasFilled()
    {
        DisplayCache cache;
        const QImage image = graded(100, 80);
        const DisplayView view = viewAt(QRect(5, 7, 100, 80));
        QVERIFY(!cache.fill(image, view, QRect(10, 10, 20, 20)));
        QCOMPARE(cache.part(), QRect(10, 10, 20, 20));
        QCOMPARE(cache.pixels(), image.copy(5, 3, 20, 20));
        QVERIFY(cache.covers(view, QRect(12, 12, 5, 5)));
        QVERIFY(!cache.covers(view, QRect(12, 12, 30, 5)));
        QVERIFY(!cache.covers(viewAt(view.target, 2), QRect(12, 12, 5, 5)));
        QVERIFY(!cache.covers(viewAt(QRect(5, 7, 50, 40)), QRect(12, 12, 5, 5)));
        DisplayView otherBack = view;
        otherBack.back = qRgb(1, 1, 1);
        QVERIFY(!cache.covers(otherBack, QRect(12, 12, 5, 5)));
    }

    void scrollingKeepsTheOverlap_data()
    {
        QTest::addColumn<QRect>("next");
        QTest::newRow("down") << QRect(30, 45, 40, 40);
        QTest::newRow("right") << QRect(42, 30, 40, 40);
        QTest::newRow("up and left") << QRect(23, 21, 40, 40);
        QTest::newRow("larger") << QRect(10, 10, 100, 90);
        QTest::newRow("smaller") << QRect(40, 40, 10, 10);
        QTest::newRow("elsewhere") << QRect(100, 100, 40, 40);
    }

    void scrollingKeepsTheOverlap()
    {
        QFETCH(QRect, next);
        const QImage image = graded(300, 300);
        const DisplayView view = viewAt(QRect(0, 0, 157, 143));
        DisplayCache cache;
        cache.fill(image, view, QRect(30, 30, 40, 40));
        QVERIFY(!cache.fill(image, view, next));
        QCOMPARE(cache.part(), next);
        QCOMPARE(cache.pixels(), renderedPart(image, view, next)); // no seam
    }

    void overlapIsNotComputedAgain()
    {
        const DisplayView view = viewAt(QRect(0, 0, 50, 50));
        DisplayCache cache;
        cache.fill(plain(100, 100, qRgb(255, 0, 0)), view, QRect(0, 0, 50, 20));
        cache.fill(plain(100, 100, qRgb(0, 255, 0)), view, QRect(0, 10, 50, 20)); // same size: same source
        QCOMPARE(cache.pixels().pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(cache.pixels().pixel(0, 10), qRgb(0, 255, 0));
    }

    void aBetterSourceReplacesAll()
    {
        const DisplayView view = viewAt(QRect(0, 0, 50, 50));
        DisplayCache cache;
        cache.fill(plain(60, 60, qRgb(255, 0, 0)), view, QRect(0, 0, 50, 20));
        QVERIFY(cache.covers(view, QRect(0, 0, 50, 20))); // what stands is good enough for a repaint
        QVERIFY(cache.fill(plain(100, 100, qRgb(0, 255, 0)), view, QRect(0, 10, 50, 20)));
        QCOMPARE(cache.pixels(), plain(50, 20, qRgb(0, 255, 0)));
    }

    void transparentPixelsShowTheBack()
    {
        QImage image = plain(4, 4, qRgba(255, 0, 0, 0), QImage::Format_ARGB32);
        image.setPixel(1, 1, qRgba(255, 0, 0, 255));
        image.setPixel(2, 2, qRgba(255, 0, 0, 128));
        const QImage shown = renderedPart(image, viewAt(QRect(0, 0, 4, 4)), QRect(0, 0, 4, 4));
        QCOMPARE(shown.format(), QImage::Format_RGB32);
        QCOMPARE(shown.pixel(0, 0), qRgb(0, 0, 255));
        QCOMPARE(shown.pixel(1, 1), qRgb(255, 0, 0));
        QVERIFY(std::abs(qRed(shown.pixel(2, 2)) - 128) <= 1);
        QVERIFY(std::abs(qBlue(shown.pixel(2, 2)) - 127) <= 1);
    }

    void clearForgets()
    {
        DisplayCache cache;
        const DisplayView view = viewAt(QRect(0, 0, 50, 50));
        cache.fill(graded(50, 50), view, QRect(0, 0, 50, 50));
        cache.clear();
        QVERIFY(cache.pixels().isNull());
        QVERIFY(!cache.covers(view, QRect(0, 0, 1, 1)));
    }

    void noSource()
    {
        DisplayCache cache;
        const DisplayView view = viewAt(QRect(0, 0, 50, 50));
        cache.fill(QImage(), view, QRect(0, 0, 50, 50));
        QVERIFY(cache.pixels().isNull());
        QVERIFY(!cache.covers(view, QRect(0, 0, 50, 50)));
    }
};

QTEST_APPLESS_MAIN(tst_DisplayCache)
#include "tst_displaycache.moc"
