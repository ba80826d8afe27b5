#include "controls/PaintCount.h"
#include "controls/ScrollBar.h"
#include "controls/ScrollSkin.h"

#include <QSignalSpy>
#include <QTest>

#include <climits>

using namespace quorvia::controls;
using quorvia::test::PaintCount;

namespace {

constexpr int barLength = 370; // pixels: 5550 twips, with a track of 5010

QWidget* childOf(const ScrollBar& bar, const char* name)
{
    return bar.findChild<QWidget*>(QLatin1String(name));
}

} // namespace

class TestScrollBar : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void asMade();
    void names();
    void values_data();
    void values();
    void equalValueIsAChange();
    void thumbStandsBeforeTheChange();
    void maximums_data();
    void maximums();
    void alights_data();
    void alights();
    void turningKeepsTheThickness();
    void thumbs_data();
    void thumbs();
    void thicknessIsForced_data();
    void thicknessIsForced();
    void resizing();
    void steps_data();
    void steps();
    void stepsOfTheLargestMaximum();
    void smallChange();
    void comesToRest();
    void painting();
    void aNewLengthPaintsTheThumb_data();
    void aNewLengthPaintsTheThumb();
    void burstDrawsNoPictureAnew_data();
    void burstDrawsNoPictureAnew();
};

void TestScrollBar::asMade()
{
    ScrollBar bar;
    QCOMPARE(bar.Value(), 0);
    QCOMPARE(bar.Max(), 1);
    QCOMPARE(bar.Alight(), 2);
    QCOMPARE(bar.Vertical(), false);
    QCOMPARE(bar.Dragging(), false);
    QCOMPARE(bar.SmallChange(), 1);
    QCOMPARE(bar.focusPolicy(), Qt::NoFocus);
    QCOMPARE(bar.size(), QSize(133, 18));
    QCOMPARE(bar.size(), bar.sizeHint());
}

void TestScrollBar::names()
{
    ScrollBar bar;
    QWidget* const pScroll = childOf(bar, "pScroll");
    QWidget* const pSelecter = childOf(bar, "pSelecter");
    QWidget* const holder = childOf(bar, "holder");
    QVERIFY(pScroll && pSelecter && holder);
    QCOMPARE(pSelecter->parentWidget(), pScroll);
    const auto* const tMove = bar.findChild<QTimer*>(QStringLiteral("tMove"));
    QVERIFY(tMove);
    QCOMPARE(tMove->interval(), 50);
    QVERIFY(!tMove->isActive());
}

void TestScrollBar::values_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("taken");
    QTest::newRow("within") << 100 << 40 << 40;
    QTest::newRow("lowest") << 100 << 0 << 0;
    QTest::newRow("highest") << 100 << 100 << 100;
    QTest::newRow("negative") << 100 << -1 << 0;
    QTest::newRow("above") << 100 << 101 << 100;
    QTest::newRow("least of all") << 100 << INT_MIN << 0;
    QTest::newRow("most of all") << 100 << INT_MAX << 100;
    QTest::newRow("maximum 1, 0") << 1 << 0 << 0;
    QTest::newRow("maximum 1, 1") << 1 << 1 << 1;
    QTest::newRow("maximum 1, 2") << 1 << 2 << 1;
    QTest::newRow("maximum 0 is 1") << 0 << 2 << 1;
    QTest::newRow("largest maximum") << INT_MAX << INT_MAX << INT_MAX;
}

void TestScrollBar::values()
{
    QFETCH(int, maximum);
    QFETCH(int, given);
    QFETCH(int, taken);
    ScrollBar bar;
    bar.SetMax(maximum);
    QSignalSpy changes(&bar, &ScrollBar::Change);
    bar.SetValue(given);
    QCOMPARE(bar.Value(), taken);
    QCOMPARE(changes, QList<QVariantList>{{taken}});
}

void TestScrollBar::equalValueIsAChange()
{
    ScrollBar bar;
    bar.SetMax(10);
    bar.SetValue(4);
    QSignalSpy changes(&bar, &ScrollBar::Change);
    bar.SetValue(4);
    bar.SetValue(4);
    QCOMPARE(changes, (QList<QVariantList>{{4}, {4}}));
}

void TestScrollBar::thumbStandsBeforeTheChange()
{
    ScrollBar bar;
    bar.resize(barLength, 18);
    bar.SetMax(50);
    int seen = -1;
    connect(&bar, &ScrollBar::Change, &bar, [&] { seen = childOf(bar, "pSelecter")->x(); });
    bar.SetValue(12);
    QCOMPARE(seen, 18 + 12 * 20 / 15);
}

void TestScrollBar::maximums_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("valueAfter");
    QTest::addColumn<int>("maximumAfter");
    QTest::newRow("above the value") << 5 << 20 << 5 << 20;
    QTest::newRow("at the value") << 5 << 5 << 5 << 5;
    QTest::newRow("under the value") << 5 << 3 << 3 << 3;
    QTest::newRow("1") << 5 << 1 << 1 << 1;
    QTest::newRow("0") << 5 << 0 << 0 << 1;
    QTest::newRow("0 at 0") << 0 << 0 << 0 << 1;
    QTest::newRow("negative") << 5 << -7 << 0 << 1;
}

void TestScrollBar::maximums()
{
    QFETCH(int, value);
    QFETCH(int, maximum);
    ScrollBar bar;
    bar.resize(barLength, 18);
    bar.SetMax(10);
    bar.SetValue(value);
    QSignalSpy changes(&bar, &ScrollBar::Change);
    bar.SetMax(maximum);
    QTEST(bar.Value(), "valueAfter");
    QTEST(bar.Max(), "maximumAfter");
    QVERIFY(changes.isEmpty());
    const ScrollThumb thumb = thumbAt({barLength * 15, 270, 270, bar.Max()}, bar.Value());
    QCOMPARE(childOf(bar, "pSelecter")->x(), thumb.start / 15);
    QCOMPARE(bar.ThumbLength(), thumb.length);
}

void TestScrollBar::alights_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("taken");
    QTest::addColumn<QSize>("size");
    QTest::newRow("1") << 1 << 1 << QSize(18, 133);
    QTest::newRow("2") << 2 << 2 << QSize(133, 18);
    QTest::newRow("0") << 0 << 2 << QSize(133, 18);
    QTest::newRow("3") << 3 << 2 << QSize(133, 18);
    QTest::newRow("-1") << -1 << 2 << QSize(133, 18);
}

void TestScrollBar::alights()
{
    QFETCH(int, given);
    QFETCH(int, taken);
    QFETCH(QSize, size);
    ScrollBar bar;
    bar.resize(400, 300);
    bar.SetAlight(given);
    QCOMPARE(bar.Alight(), taken);
    QCOMPARE(bar.Vertical(), taken == 1);
    QCOMPARE(bar.size(), size);
    QCOMPARE(childOf(bar, "pScroll")->geometry(), QRect(QPoint(), size));
    QCOMPARE(childOf(bar, "holder")->geometry(), QRect(QPoint(), size));
}

void TestScrollBar::turningKeepsTheThickness()
{
    ScrollBar bar;
    bar.show();
    bar.resize(400, 18);
    bar.SetAlight(1);
    QCOMPARE(bar.size(), QSize(18, 133));
    bar.SetAlight(2);
    QCOMPARE(bar.size(), QSize(133, 18));
}

void TestScrollBar::thumbs_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("thumb");
    // In pixels; the arrows have 18 each.
    QTest::newRow("long, at 0") << 370 << 50 << 0 << 18 << 134;
    QTest::newRow("long, at 7") << 370 << 50 << 7 << 27 << 134;
    QTest::newRow("long, at its end") << 370 << 50 << 50 << 84 << 134;
    QTest::newRow("maximum 1, at 1") << 370 << 1 << 1 << 19 << 167;
    QTest::newRow("short, at 0") << 370 << 1000 << 0 << 18 << 14;
    QTest::newRow("short, half way") << 370 << 1000 << 500 << 171 << 14;
    QTest::newRow("short, 200 twips before the end") << 370 << 1000 << 1000 << 325 << 14;
    QTest::newRow("very short control") << 40 << 10 << 10 << 18 << 14;
    QTest::newRow("shorter than its arrows") << 10 << 10 << 5 << 18 << 14;
}

void TestScrollBar::thumbs()
{
    QFETCH(int, length);
    QFETCH(int, maximum);
    QFETCH(int, value);
    QFETCH(int, start);
    QFETCH(int, thumb);
    ScrollBar bar;
    bar.SetMax(maximum);
    bar.resize(length, 18);
    bar.SetValue(value);
    QCOMPARE(childOf(bar, "pSelecter")->geometry(), QRect(start, 0, thumb, 18));
    bar.SetAlight(1);
    bar.resize(18, length);
    bar.SetValue(value);
    QCOMPARE(childOf(bar, "pSelecter")->geometry(), QRect(0, start, 18, thumb));
}

void TestScrollBar::thicknessIsForced_data()
{
    QTest::addColumn<int>("alight");
    QTest::addColumn<QSize>("given");
    QTest::addColumn<QSize>("taken");
    QTest::newRow("upright, too wide") << 1 << QSize(40, 200) << QSize(18, 200);
    QTest::newRow("upright, too narrow") << 1 << QSize(3, 200) << QSize(18, 200);
    QTest::newRow("lying, too high") << 2 << QSize(200, 40) << QSize(200, 18);
    QTest::newRow("lying, too low") << 2 << QSize(200, 3) << QSize(200, 18);
}

void TestScrollBar::thicknessIsForced()
{
    QFETCH(int, alight);
    QFETCH(QSize, given);
    QFETCH(QSize, taken);
    QWidget window;
    window.resize(300, 300);
    ScrollBar bar(&window);
    bar.SetAlight(alight);
    bar.resize(given);
    bar.SizeScroll();
    QCOMPARE(bar.size(), taken);
    window.show(); // from here on the resizes come by themselves
    bar.resize(given);
    QCOMPARE(bar.size(), taken);
    QCOMPARE(childOf(bar, "pScroll")->size(), taken);
    QCOMPARE(childOf(bar, "holder")->size(), taken);
}

void TestScrollBar::resizing()
{
    QWidget window;
    window.resize(500, 300);
    ScrollBar bar(&window);
    bar.SetMax(50);
    bar.resize(barLength, 18);
    bar.SetValue(7);
    window.show();
    QSignalSpy changes(&bar, &ScrollBar::Change);
    bar.resize(400, 18); // the track is 450 twips longer, the thumb half of that
    QCOMPARE(bar.ThumbLength(), 2005 + 225);
    QCOMPARE(childOf(bar, "pSelecter")->geometry(), QRect(27, 0, 149, 18));
    QCOMPARE(bar.Value(), 7);
    QVERIFY(changes.isEmpty());
}

void TestScrollBar::steps_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("afterUp");
    QTest::addColumn<int>("afterDown");
    QTest::newRow("1, at 0") << 1 << 0 << 1 << 0;
    QTest::newRow("1, at 1") << 1 << 1 << 1 << 0;
    QTest::newRow("150") << 150 << 50 << 51 << 49;
    QTest::newRow("151") << 151 << 50 << 52 << 48;
    QTest::newRow("1000") << 1000 << 500 << 510 << 490;
    QTest::newRow("250, a half to the even number") << 250 << 50 << 52 << 48;
    QTest::newRow("450") << 450 << 50 << 54 << 46;
    QTest::newRow("stops at 0") << 1000 << 3 << 13 << 0;
    QTest::newRow("stops at the maximum") << 1000 << 995 << 1000 << 985;
}

void TestScrollBar::steps()
{
    QFETCH(int, maximum);
    QFETCH(int, value);
    ScrollBar bar;
    bar.SetMax(maximum);
    bar.SetValue(value);
    QSignalSpy changes(&bar, &ScrollBar::Change);
    bar.UpArrowClick();
    QTEST(bar.Value(), "afterUp");
    bar.SetValue(value);
    bar.DownArrowClick();
    QTEST(bar.Value(), "afterDown");
    QCOMPARE(changes.size(), 3);
}

void TestScrollBar::stepsOfTheLargestMaximum()
{
    ScrollBar bar;
    bar.SetMax(INT_MAX);
    bar.SetValue(INT_MAX - 1);
    bar.UpArrowClick();
    QCOMPARE(bar.Value(), INT_MAX);
}

void TestScrollBar::smallChange()
{
    ScrollBar bar;
    bar.SetMax(100);
    bar.SetSmallChange(5);
    QCOMPARE(bar.SmallChange(), 5);
    bar.UpArrowClick();
    QCOMPARE(bar.Value(), 5);
    bar.SetMax(1000); // whose hundredth is more
    bar.UpArrowClick();
    QCOMPARE(bar.Value(), 15);
    bar.SetSmallChange(0);
    QCOMPARE(bar.SmallChange(), 1);
}

void TestScrollBar::comesToRest()
{
    ScrollBar bar;
    bar.SetMax(10);
    bar.SetValue(1);
    QSignalSpy changes(&bar, &ScrollBar::Change);
    for (int i = 0; i < 3; ++i)
        bar.DownArrowClick();
    QCOMPARE(changes, (QList<QVariantList>{{0}, {0}, {0}}));
}

void TestScrollBar::painting()
{
    ScrollBar bar;
    bar.SetAlight(1);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    PaintCount track(childOf(bar, "pScroll"));
    PaintCount thumb(childOf(bar, "pSelecter"));
    bar.DrawSelecter();
    QTRY_COMPARE(thumb.paints, 1);
    QCOMPARE(track.paints, 0);
    bar.DrawScroll();
    QTRY_VERIFY(track.paints >= 1);

    const QImage shown = bar.grab().toImage().convertToFormat(QImage::Format_RGB32);
    std::shared_ptr<ScrollSkin> skin = ScrollSkin::forRatio(1);
    const QImage space = skin->picture(SkinRole::vspace).toImage();
    QCOMPARE(shown.pixel(0, 100), space.pixel(0, 0));
    QCOMPARE(shown.pixel(9, 110), space.pixel(9, 0));
    const QRect place = childOf(bar, "pSelecter")->geometry();
    const QImage end = skin->picture(SkinRole::vseptop).toImage();
    QCOMPARE(shown.pixel(9, place.top()), end.pixel(9, 0));
    QCOMPARE(shown.pixel(9, place.bottom()), end.pixel(9, 0)); // the other end is its mirror image
}

void TestScrollBar::aNewLengthPaintsTheThumb_data()
{
    QTest::addColumn<int>("alight");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("newMaximum"); // the thumb gets another length, the control does not
    for (const int alight : {1, 2}) {
        QTest::addRow("longer, %d", alight) << alight << 50 << 20;
        QTest::addRow("shorter, %d", alight) << alight << 20 << 50;
    }
}

void TestScrollBar::aNewLengthPaintsTheThumb()
{
    QFETCH(int, alight);
    QFETCH(int, maximum);
    QFETCH(int, newMaximum);
    QWidget window;
    window.resize(400, 400);
    ScrollBar bar(&window);
    bar.SetAlight(alight);
    bar.resize(alight == 1 ? QSize(18, barLength) : QSize(barLength, 18));
    bar.SetMax(maximum);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCoreApplication::processEvents();
    PaintCount thumb(childOf(bar, "pSelecter"));
    bar.SetMax(newMaximum);
    QCOMPARE(bar.ThumbLength(), (5010 - 20 * newMaximum) / 2);
    QTRY_VERIFY(thumb.paints > 0);
    const QImage shown = bar.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const auto pixelAlong = [&](int along) {
        return alight == 1 ? shown.pixel(9, along) : shown.pixel(along, 9);
    };
    const QRect place = childOf(bar, "pSelecter")->geometry();
    const int begin = alight == 1 ? place.top() : place.left();
    const int end = alight == 1 ? place.bottom() : place.right();
    QCOMPARE(pixelAlong(end), pixelAlong(begin)); // the border closes the thumb at both ends
    QVERIFY(pixelAlong(end) != pixelAlong(end + 1));
}

void TestScrollBar::burstDrawsNoPictureAnew_data()
{
    QTest::addColumn<int>("maximum");
    QTest::newRow("long thumb") << 20;
    QTest::newRow("short thumb") << 3000;
}

void TestScrollBar::burstDrawsNoPictureAnew()
{
    QFETCH(int, maximum);
    QWidget window;
    window.resize(60, 400);
    ScrollBar bar(&window);
    bar.SetAlight(1);
    bar.resize(18, barLength);
    bar.SetMax(maximum);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const std::weak_ptr<ScrollSkin> skin = ScrollSkin::forRatio(bar.devicePixelRatioF());
    const auto drawnPictures = [&skin] {
        const std::shared_ptr<ScrollSkin> kept = skin.lock(); // by the bar alone
        return kept ? kept->drawnPictures() : -1;
    };
    const int drawn = drawnPictures();
    QCOMPARE(drawn, 7); // all of an upright bar's
    PaintCount track(childOf(bar, "pScroll"));
    PaintCount thumb(childOf(bar, "pSelecter"));

    for (int i = 0; i < 1000; ++i) {
        bar.SetValue(i * 7 % (maximum + 1));
        QCoreApplication::processEvents();
    }
    QVERIFY(track.paints > 0); // where the thumb was
    QCOMPARE(thumb.paints, 0); // it only moves
    QCOMPARE(drawnPictures(), drawn);
}

QTEST_MAIN(TestScrollBar)
#include "tst_scrollbar.moc"
