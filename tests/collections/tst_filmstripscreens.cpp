// The filmstrip that comes to a screen with finer pixels.
#include "FilmBench.h"

#include <QScreen>
#include <QWindow>

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);

} // namespace

class TestFilmstripScreens : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QCOMPARE(QGuiApplication::screens().at(1)->devicePixelRatio(), 2.0);
    }

    void itsCellsAreComposedInThesePixels_data()
    {
        QTest::addColumn<bool>("isPainted"); // before it comes there
        QTest::newRow("painted") << true;
        QTest::newRow("in mid-pass") << false;
    }

    void itsCellsAreComposedInThesePixels()
    {
        QFETCH(bool, isPainted);
        const FilmBench bench;
        bench.strip->move(QGuiApplication::primaryScreen()->geometry().topLeft());
        QTRY_COMPARE(bench.strip->devicePixelRatioF(), 1.0);
        bench.addMany(12, red);
        bench.strip->DrawStrip();
        if (isPainted)
            QVERIFY(bench.settles());
        else
            QVERIFY(QTest::qWaitFor([&] { return isNear(bench.middle(3), red); }, 5000));
        bench.strip->windowHandle()->setScreen(QGuiApplication::screens().at(1));
        QTRY_COMPARE(bench.strip->devicePixelRatioF(), 2.0);
        QTRY_VERIFY(bench.timer("tResize").isActive());
        QTRY_VERIFY(!bench.timer("tResize").isActive());
        QVERIFY(bench.settles());
        const QImage shot = bench.surface().grab().toImage();
        QCOMPARE(shot.devicePixelRatio(), 2.0);
        for (int x = 0; x < shot.width(); ++x) {
            const QColor seen(shot.pixel(x, shot.height() / 2)); // frame or picture, nothing between
            QVERIFY2(seen.saturation() == 0 || isNear(seen, red), qPrintable(seen.name()));
        }
        bench.surface().repaint();
        QVERIFY(!bench.timer("tResize").isActive());
    }
};

QTEST_MAIN(TestFilmstripScreens)
#include "tst_filmstripscreens.moc"
