// What the control shows: placement, zoom, colours, held back paints.
#include "EngineStage.h"
#include "PureColors.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_EnginePainting : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void ratioIsTheOneAskedFor()
    {
        const QByteArray asked = qgetenv("QT_SCALE_FACTOR");
        QCOMPARE(ratio(), asked.isEmpty() ? 1.0 : asked.toDouble());
    }

    void bestFitKeepsProportions()
    {
        QImage image = plain(60, 30, red);
        m_engine->SetPicture(image);
        m_engine->SetScaleMode(4);
        m_engine->SetScaleOption(0);
        QImage expected = plain(120, 120, back);
        paste(expected, plain(120, 60, red), QPoint(0, 30));
        QCOMPARE(shot(), expected);
    }

    void bestFitReduces()
    {
        m_engine->SetPicture(plain(600, 1200, red));
        m_engine->SetScaleMode(4);
        QImage expected = plain(120, 120, back);
        paste(expected, plain(60, 120, red), QPoint(30, 0));
        QCOMPARE(shot(), expected);
    }

    void anotherOptionFillsBothAxes()
    {
        m_engine->SetPicture(plain(60, 30, red));
        m_engine->SetScaleMode(4);
        m_engine->SetScaleOption(1);
        QCOMPARE(shot(), plain(120, 120, red));
    }

    void reducingAverages()
    {
        QImage checks(240, 240, QImage::Format_RGB32);
        for (int y = 0; y < 240; ++y) {
            for (int x = 0; x < 240; ++x)
                checks.setPixel(x, y, (x + y) % 2 ? qRgb(200, 200, 200) : qRgb(100, 100, 100));
        }
        m_engine->SetPicture(checks);
        m_engine->SetScaleMode(4);
        QCOMPARE(shot(), plain(120, 120, qRgb(150, 150, 150)));
    }

    void onePixelIsOneDevicePixel()
    {
        m_engine->SetPicture(graded(60, 30));
        QImage expected = plain(120, 120, back);
        paste(expected, graded(60, 30), QPoint(0, 0));
        QCOMPARE(shot(), expected);
    }

    void zooms_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QSize>("covered");
        QTest::newRow("20%") << 0.2 << QSize(12, 6);
        QTest::newRow("50%") << 0.5 << QSize(30, 15);
        QTest::newRow("200%") << 2.0 << QSize(120, 60);
        QTest::newRow("400%, larger than the control") << 4.0 << QSize(120, 120);
    }

    void zooms()
    {
        QFETCH(double, zoom);
        QFETCH(QSize, covered);
        m_engine->SetPicture(plain(60, 30, red));
        m_engine->Zoom(zoom);
        QCOMPARE(m_engine->ZoomFactor(), zoom);
        QImage expected = plain(120, 120, back);
        paste(expected, plain(covered.width(), covered.height(), red), QPoint(0, 0));
        QCOMPARE(shot(), expected);
    }

    void zoomIgnoresNonsense()
    {
        m_engine->Zoom(2.0);
        for (const double factor : {0.0, -1.0, double(NAN), double(INFINITY)})
            m_engine->Zoom(factor);
        QCOMPARE(m_engine->ZoomFactor(), 2.0);
    }

    void crispAbove300()
    {
        m_engine->SetPicture(graded(60, 30));
        m_engine->Zoom(4.0);
        const QImage shown = shot();
        for (int y = 0; y < 120; ++y) {
            for (int x = 0; x < 120; ++x)
                QCOMPARE(shown.pixel(x, y), graded(60, 30).pixel(x / 4, y / 4));
        }
    }

    void smoothUpTo300()
    {
        QImage edge = plain(60, 30, qRgb(0, 0, 0));
        paste(edge, plain(30, 30, qRgb(255, 255, 255)), QPoint(30, 0));
        m_engine->SetPicture(edge);
        m_engine->Zoom(3.0);
        const int between = qRed(shot().pixel(90, 10));
        QVERIFY(between > 0 && between < 255);
        m_engine->Zoom(3.1);
        const QImage crisp = shot();
        for (int x = 0; x < 120; ++x)
            QVERIFY(crisp.pixel(x, 10) == qRgb(0, 0, 0) || crisp.pixel(x, 10) == qRgb(255, 255, 255));
    }

    void palettesAndGrey()
    {
        QImage mono = plain(60, 30, 0, QImage::Format_Mono);
        mono.setColorTable({red, green});
        mono.setPixel(5, 5, 1);
        m_engine->SetPicture(mono);
        QCOMPARE(shot().pixel(0, 0), red);
        QCOMPARE(shot().pixel(5, 5), green);
        m_engine->SetPicture(plain(60, 30, 77, QImage::Format_Grayscale8));
        QCOMPARE(shot().pixel(5, 5), qRgb(77, 77, 77));
    }

    void transparencyShowsTheBack()
    {
        QImage image = plain(120, 120, qRgba(255, 0, 0, 0), QImage::Format_ARGB32);
        image.setPixel(3, 3, qRgba(255, 0, 0, 255));
        m_engine->SetPicture(image);
        QCOMPARE(shot().pixel(2, 2), back);
        QCOMPARE(shot().pixel(3, 3), red);
        m_engine->SetBackColor(QColor(green));
        QCOMPARE(m_engine->BackColor(), QColor(green));
        QCOMPARE(shot().pixel(2, 2), green);
        QCOMPARE(shot().pixel(3, 3), red);
    }

    void paintHeldBack()
    {
        m_engine->SetPicture(plain(60, 30, blue));
        const QImage before = shot();
        m_engine->SetPaintEnabled(false);
        QVERIFY(!m_engine->PaintEnabled());
        m_engine->SetFileName(small);
        m_engine->Zoom(2.0);
        QCOMPARE(shot(), before);
        m_engine->SetFileName(QString());
        QCOMPARE(shot(), before);
        m_engine->SetFileName(small);
        m_engine->Zoom(1.0);
        m_engine->SetPaintEnabled(true);
        QCOMPARE(shot().copy(0, 0, 60, 30), graded(60, 30));
    }

    void paintHeldBackBeforeALoadWasPainted()
    {
        m_engine->SetPicture(plain(60, 30, blue));
        const QImage before = shot();
        m_engine->SetPicture(plain(60, 30, red)); // not on the screen yet
        m_engine->SetPaintEnabled(false);
        m_engine->SetPicture(plain(60, 30, green));
        QCOMPARE(shot(), before);
    }

    void paintHeldBackStaysAtItsPlace()
    {
        QWidget window;
        window.setPalette(QPalette(Qt::black));
        m_engine->setParent(&window);
        window.resize(logical(240, 240));
        m_engine->SetPicture(graded(60, 30));
        size(60, 30);
        m_engine->move(logical(12, 24).width(), logical(12, 24).height());
        const QImage before = shotOf(window);
        QCOMPARE(before.copy(12, 24, 60, 30), graded(60, 30));
        m_engine->SetPaintEnabled(false);
        m_engine->move(0, 0);
        size(180, 180);
        const QImage during = shotOf(window);
        QCOMPARE(during.copy(12, 24, 60, 30), graded(60, 30));
        QCOMPARE(during.pixel(0, 0), back);
        m_engine->setParent(nullptr);
    }

    void scrolledByItsOwner()
    {
        QWidget window;
        m_engine->setParent(&window);
        window.resize(logical(120, 120));
        m_engine->SetPicture(graded(1200, 600));
        size(1200, 600);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(shotOf(window), graded(1200, 600).copy(0, 0, 120, 120));
        for (const QPoint at : {QPoint(0, 12), QPoint(60, 12), QPoint(42, 48), QPoint(1080, 480)}) {
            const QSize moved = logical(at.x(), at.y());
            m_engine->move(-moved.width(), -moved.height());
            QCoreApplication::processEvents();
            QCOMPARE(shotOf(window), graded(1200, 600).copy(at.x(), at.y(), 120, 120));
        }
        m_engine->setParent(nullptr);
    }

    void largerThanAnyScreen()
    {
        m_engine->SetPicture(graded(1200, 600));
        m_engine->Zoom(8.0); // 9600 x 4800 pixels, painted in bands
        size(9600, 4800);
        const QImage shown = shot();
        for (const QPoint at : {QPoint(0, 0), QPoint(9599, 4799), QPoint(4000, 255), QPoint(4000, 256)})
            QCOMPARE(shown.pixel(at), graded(1200, 600).pixel(at.x() / 8, at.y() / 8));
    }
};

QTEST_MAIN(tst_EnginePainting)
#include "tst_enginepainting.moc"
