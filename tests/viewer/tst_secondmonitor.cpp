// Full screen for a main window on the primary screen, and on the one right of it.
#include "app/Settings.h"
#include "output/frmImageViewFull.h"
#include "viewer/ViewerBench.h"

#include <QPainter>
#include <QScreen>
#include <QTest>

using namespace quorvia;
using output::frmImageViewFull;
using test::ViewerBench;
using viewer::frmImageView;

class TestSecondMonitor : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<ViewerBench> m_bench;

    frmImageViewFull& shown(frmImageView& window, QPoint corner)
    {
        window.move(corner);
        window.RunTool(QStringLiteral("miFullScreen"));
        return *window.findChild<frmImageViewFull*>();
    }

  private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QCOMPARE(QGuiApplication::primaryScreen()->geometry(), QRect(0, 0, 1280, 800));
    }
    void init() { m_bench = std::make_unique<ViewerBench>(); }
    void cleanup() { m_bench.reset(); }

    void where_data()
    {
        QTest::addColumn<int>("left");
        QTest::addColumn<QRect>("place");
        QTest::newRow("on the primary screen") << 100 << QRect(0, 0, 1280, 800);
        QTest::newRow("at its right edge") << 1280 << QRect(0, 0, 1280, 800);
        QTest::newRow("right of it") << 1281 << QRect(1280, 0, 1024, 768);
        QTest::newRow("well on the other one") << 1500 << QRect(1280, 0, 1024, 768);
    }

    void where()
    {
        QFETCH(int, left);
        QFETCH(QRect, place);
        frmImageView& window = m_bench->load({m_bench->picture(QStringLiteral("a.png"), Qt::red)});
        const frmImageViewFull& full = shown(window, QPoint(left, 50));
        QCOMPARE(full.geometry(), place);
        QCOMPARE(full.minimumSize() == full.maximumSize(), place.left() > 0);
        // And back: nothing of the fixed size stays.
        window.full().close();
        QCOMPARE(shown(window, QPoint(0, 0)).geometry(), QRect(0, 0, 1280, 800));
    }

    /// Its height is the primary screen's, its width goes by the window's, so it runs over the lower edge.
    void aHighPictureOverrunsTheSmallWindow()
    {
        app::save(app::setting::cFView, 1);
        const QString path = m_bench->in("high.png");
        QImage halves(300, 600, QImage::Format_RGB32);
        halves.fill(Qt::red);
        QPainter(&halves).fillRect(0, 300, 300, 300, Qt::blue);
        QVERIFY(halves.save(path));
        frmImageView& window = m_bench->load({path});
        const QImage shot = shown(window, QPoint(1500, 50)).grab().toImage();
        QCOMPARE(shot.size(), QSize(1024, 768));
        const auto color = [&shot](int x, int y) { return shot.pixelColor(x, y); };
        QCOMPARE(color(512, 392), QColor(Qt::red)); // the middle lies at 400, not at 384
        QCOMPARE(color(512, 408), QColor(Qt::blue));
        QCOMPARE(color(512, 767), QColor(Qt::blue));
        QCOMPARE(color(318, 100), QColor(Qt::black)); // 384 wide
        QCOMPARE(color(322, 100), QColor(Qt::red));
        QCOMPARE(color(701, 100), QColor(Qt::red));
        QCOMPARE(color(705, 100), QColor(Qt::black));
    }
};

QTEST_MAIN(TestSecondMonitor)
#include "tst_secondmonitor.moc"
