#include "engine/ReadAhead.h"
#include "engine/Resample.h"
#include "FakePictures.h"

#include <QtTest>

using namespace quorvia::engine;
using quorvia::test::graded;
using quorvia::test::plain;

namespace {

/// A page named by one letter whose shown picture takes `shown` x 4 bytes and its full one, when there is
/// one, `full` x 4.
ReadyPage pageOf(QChar name, int shown, int full = 0)
{
    const QSize size(std::max(shown, full) + 1, 1);
    ReadyPage page{PageKey{name, 1, 100, 1}, PageHeader{size, 24},
                   Picture{plain(shown, 1, Qt::red), size, 24}};
    if (full > 0)
        page.full = Picture{plain(full, 1, Qt::red), size, 24};
    return page;
}

/// Runs a script of steps over a cache of 100 pixels: "aN" inserts page a with N pixels, "aN+M" with a full
/// picture of M beside it, "a" uses it, "-a" tells that its file has changed; "|xy" behind an insert spares x
/// and y.
QString played(const QString& script)
{
    ReadAheadCache cache;
    cache.setCap(400);
    for (const QString& step : script.split(u' ', Qt::SkipEmptyParts)) {
        const QStringList parts = step.split(u'|');
        const QString what = parts[0];
        if (what[0] == u'-') {
            cache.dropOutdated(PageKey{what.mid(1), 1, 100, 2});
        } else if (what.size() == 1) {
            cache.find(PageKey{what, 1, 100, 1}, QSize());
            cache.find(PageKey{what, 1, 100, 1}, QSize(1, 1));
        } else {
            QStringList spared;
            for (const QChar path : parts.value(1))
                spared.append(path);
            const QStringList numbers = what.mid(1).split(u'+');
            cache.insert(pageOf(what[0], numbers[0].toInt(), numbers.value(1).toInt()), spared);
        }
    }
    QString kept;
    for (char name = 'a'; name <= 'z'; ++name) {
        const ReadyPage* page = cache.find(PageKey{QString(QLatin1Char(name)), 1, 100, 1}, QSize(1, 1));
        if (page)
            kept += QLatin1Char(name) + QString::fromLatin1(page->full ? "+" : "");
    }
    return kept + QStringLiteral(" %1").arg(cache.bytes() / 4);
}

} // namespace

class tst_ReadAhead : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void cap_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("kept");
        QTest::newRow("nothing") << ""
                                 << " 0";
        QTest::newRow("two that fit") << "a50 b50"
                                      << "ab 100";
        QTest::newRow("the oldest goes") << "a50 b50 c10"
                                         << "bc 60";
        QTest::newRow("a used one is no longer the oldest") << "a50 b50 a c10"
                                                            << "ac 60";
        QTest::newRow("as many go as needed") << "a30 b30 c30 d60"
                                              << "cd 90";
        QTest::newRow("just at the cap") << "a100"
                                         << "a 100";
        QTest::newRow("larger than the cap is not kept") << "a50 b101"
                                                         << "a 50";
        QTest::newRow("the same page again takes its own place") << "a50 b50 a40"
                                                                 << "ab 90";
        QTest::newRow("a full picture where there is room") << "a10+80"
                                                            << "a+ 90";
        QTest::newRow("none where there is not") << "a50 b10+80"
                                                 << "ab 60";
        QTest::newRow("full pictures go before pages") << "a10+80 b50"
                                                       << "ab 60";
        QTest::newRow("full pictures go oldest first") << "a10+30 b10+30 c40"
                                                       << "ab+c 90";
        QTest::newRow("spared pages stay") << "a50 b50 c30|a"
                                           << "ac 80";
        QTest::newRow("no room beside spared pages") << "a50 b50 c30|ab"
                                                     << "ab 100";
        QTest::newRow("nothing goes in vain") << "a50+20 b20 c60|a"
                                              << "a+b 90";
        QTest::newRow("full pictures of spared pages go") << "a10+80 c60|a"
                                                          << "ac 70";
        QTest::newRow("a changed file") << "a50 b50 -a"
                                        << "b 50";
    }

    void cap()
    {
        QFETCH(QString, script);
        QFETCH(QString, kept);
        QCOMPARE(played(script), kept);
    }

    void aLowerCapPushesOut()
    {
        ReadAheadCache cache;
        QCOMPARE(cache.cap(), qint64(512) << 20);
        QVERIFY(cache.insert(pageOf(u'a', 50)).empty());
        QVERIFY(cache.insert(pageOf(u'b', 50)).empty());
        const auto gone = cache.setCap(399);
        QCOMPARE(gone.size(), size_t(1));
        QCOMPARE(gone[0].key.path, QStringLiteral("a"));
        QCOMPARE(cache.bytes(), 200);
        QCOMPARE(cache.setCap(0).size(), size_t(1));
        QCOMPARE(cache.bytes(), 0);
        QCOMPARE(cache.insert(pageOf(u'a', 1)).size(), size_t(1));
    }

    void onlyTheVeryFileIsFound_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("modified");
        QTest::addColumn<bool>("found");
        QTest::newRow("itself") << "a" << 1 << 100 << 1 << true;
        QTest::newRow("other path") << "b" << 1 << 100 << 1 << false;
        QTest::newRow("other page") << "a" << 2 << 100 << 1 << false;
        QTest::newRow("other size") << "a" << 1 << 101 << 1 << false;
        QTest::newRow("written again") << "a" << 1 << 100 << 2 << false;
    }

    void onlyTheVeryFileIsFound()
    {
        QFETCH(QString, path);
        QFETCH(int, page);
        QFETCH(int, size);
        QFETCH(int, modified);
        QFETCH(bool, found);
        ReadAheadCache cache;
        cache.insert(pageOf(u'a', 50));
        QCOMPARE(cache.find(PageKey{path, page, size, modified}, QSize(10, 10)) != nullptr, found);
    }

    void serves_data()
    {
        QTest::addColumn<QSize>("shown");
        QTest::addColumn<bool>("full");
        QTest::addColumn<QSize>("box");
        QTest::addColumn<bool>("serves");
        QTest::addColumn<bool>("firstIsFull");
        QTest::addColumn<bool>("madeForIt");
        const QSize page(600, 400);
        QTest::newRow("made for this box")
            << QSize(60, 40) << false << QSize(60, 60) << true << false << true;
        QTest::newRow("smaller box") << QSize(60, 40) << false << QSize(30, 30) << true << false << false;
        QTest::newRow("larger box") << QSize(60, 40) << false << QSize(61, 61) << false << false << false;
        QTest::newRow("every pixel") << QSize(60, 40) << false << QSize() << false << false << false;
        QTest::newRow("every pixel, full there") << QSize(60, 40) << true << QSize() << true << true << true;
        QTest::newRow("larger box, full there")
            << QSize(60, 40) << true << QSize(99, 99) << true << true << false;
        QTest::newRow("its box, full there")
            << QSize(60, 40) << true << QSize(60, 60) << true << false << true;
        QTest::newRow("a page smaller than the box")
            << page << false << QSize(999, 999) << true << true << true;
    }

    void serves()
    {
        QFETCH(QSize, shown);
        QFETCH(bool, full);
        QFETCH(QSize, box);
        QFETCH(bool, serves);
        QFETCH(bool, firstIsFull);
        QFETCH(bool, madeForIt);
        const QSize size(600, 400);
        ReadyPage page{PageKey{QStringLiteral("a")}, PageHeader{size, 24},
                       Picture{plain(shown.width(), shown.height(), Qt::red), size, 24}};
        if (full)
            page.full = Picture{plain(600, 400, Qt::red), size, 24};
        QCOMPARE(page.serves(box), serves);
        QCOMPARE(page.firstFor(box).isFull(), firstIsFull);
        QCOMPARE(page.isMadeFor(box), madeForIt);
    }

    void sharedPixelsCountOnce()
    {
        ReadyPage page = pageOf(u'a', 50);
        page.shown.profile = QByteArray(30, 'p');
        QCOMPARE(page.bytes(), 230);
        page.full = page.shown;
        QCOMPARE(page.bytes(), 230);
        page.full->image = page.shown.image.copy();
        QCOMPARE(page.bytes(), 460);
    }

    void shownSize_data()
    {
        QTest::addColumn<QSize>("decoded");
        QTest::addColumn<QSize>("full");
        QTest::addColumn<QSize>("box");
        QTest::addColumn<QSize>("size");
        QTest::newRow("a scaled decode")
            << QSize(300, 200) << QSize(600, 400) << QSize(160, 100) << QSize(150, 100);
        QTest::newRow("a full one") << QSize(600, 400) << QSize(600, 400) << QSize(133, 300)
                                    << QSize(133, 88);
        QTest::newRow("of that size already")
            << QSize(150, 100) << QSize(600, 400) << QSize(160, 100) << QSize(150, 100);
        QTest::newRow("smaller than the box")
            << QSize(60, 40) << QSize(60, 40) << QSize(160, 100) << QSize(60, 40);
        QTest::newRow("every pixel") << QSize(60, 40) << QSize(60, 40) << QSize() << QSize(60, 40);
        QTest::newRow("high") << QSize(20, 4000) << QSize(20, 4000) << QSize(100, 700) << QSize(3, 700);
    }

    void shownSize()
    {
        QFETCH(QSize, decoded);
        QFETCH(QSize, full);
        QFETCH(QSize, box);
        QFETCH(QSize, size);
        const QImage image = graded(decoded.width(), decoded.height());
        const auto shown = atShownSize(Picture{image, full, 24, false, "profile"}, box, CancelFlag(false));
        QVERIFY(shown);
        QCOMPARE(shown->image, resampled(image, size, QRect(QPoint(), size), Filter::Area, Filter::Area));
        QCOMPARE(shown->fullSize, full);
        QCOMPARE(shown->bitsPerPixel, 24);
        QCOMPARE(shown->complete, false);
        QCOMPARE(shown->profile, QByteArray("profile"));
    }

    void shownFormat_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("shown");
        QTest::newRow("deep") << int(QImage::Format_RGB32) << int(QImage::Format_RGB32);
        QTest::newRow("alpha") << int(QImage::Format_ARGB32) << int(QImage::Format_ARGB32);
        QTest::newRow("grey") << int(QImage::Format_Grayscale8) << int(QImage::Format_Grayscale8);
        QTest::newRow("black and white") << int(QImage::Format_Mono) << int(QImage::Format_RGB32);
        QTest::newRow("palette") << int(QImage::Format_Indexed8) << int(QImage::Format_RGB32);
    }

    void shownFormat()
    {
        QFETCH(int, format);
        QFETCH(int, shown);
        const QImage image = graded(200, 200).convertToFormat(QImage::Format(format));
        const auto made = atShownSize(Picture{image, image.size(), 24}, QSize(100, 100), CancelFlag(false));
        QVERIFY(made);
        QCOMPARE(int(made->image.format()), shown);
        const QSize half(100, 100);
        const QImage expected = resampled(image, half, QRect(QPoint(), half), Filter::Area, Filter::Area);
        QCOMPARE(made->image, expected.convertToFormat(QImage::Format(shown)));
    }

    void cancelEndsTheWork()
    {
        const QImage image = graded(200, 200);
        QVERIFY(!atShownSize(Picture{image, image.size(), 24}, QSize(100, 100), CancelFlag(true)));
    }
};

QTEST_GUILESS_MAIN(tst_ReadAhead)
#include "tst_readahead.moc"
