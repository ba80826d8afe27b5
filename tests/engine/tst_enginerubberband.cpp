// The rubber band over the picture of the control.
#include "EngineStage.h"
#include "PureColors.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_EngineRubberBand : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void rubberBand_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QRect>("outline");
        QTest::newRow("100%") << 1.0 << QRect(6, 3, 10, 8);
        QTest::newRow("400%") << 4.0 << QRect(24, 12, 40, 32);
        QTest::newRow("50%") << 0.5 << QRect(3, 1, 5, 4);
    }

    void rubberBand()
    {
        QFETCH(double, zoom);
        QFETCH(QRect, outline);
        m_engine->SetPicture(plain(60, 30, blue));
        m_engine->Zoom(zoom);
        const QImage without = shot();
        m_engine->DrawRubberBand(15, 10, 6, 3, QColor(red), true); // any order of the corners
        QImage expected = without;
        paste(expected, plain(outline.width(), outline.height(), red), outline.topLeft());
        const QRect inside = outline.adjusted(1, 1, -1, -1);
        paste(expected, plain(inside.width(), inside.height(), blue), inside.topLeft());
        QCOMPARE(shot(), expected);
        QCOMPARE(shot(), expected); // it stays
        m_engine->ClearRubberBand();
        QCOMPARE(shot(), without);
    }

    void rubberBandOnce()
    {
        m_engine->SetPicture(plain(60, 30, blue));
        m_engine->DrawRubberBand(6, 3, 15, 10, QColor(red), false);
        QCOMPARE(shot().pixel(6, 3), red);
        QCOMPARE(shot().pixel(6, 3), blue);
    }

    void rubberBandGoesWithItsImage()
    {
        m_engine->SetPicture(plain(60, 30, blue));
        m_engine->DrawRubberBand(6, 3, 15, 10, QColor(red), true);
        m_engine->SetPicture(plain(60, 30, green));
        QCOMPARE(shot().pixel(6, 3), green);
    }

    void rubberBandOutlivesAFailedLoad()
    {
        m_engine->SetPicture(plain(60, 30, green));
        m_engine->DrawRubberBand(6, 3, 15, 10, QColor(red), true);
        m_engine->SetFileName(missing);
        QCOMPARE(shot().pixel(6, 3), red);
        m_engine->SetFileName(broken);
        QCOMPARE(shot().pixel(6, 3), red);
    }

    void rubberBandWithoutImage()
    {
        m_engine->DrawRubberBand(6, 3, 15, 10, QColor(red), true);
        QCOMPARE(shot(), plain(120, 120, back));
    }
};

QTEST_MAIN(tst_EngineRubberBand)
#include "tst_enginerubberband.moc"
