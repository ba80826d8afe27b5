// The small first picture of a load, the full one behind it, and the signal of the first paint.
#include "EngineStage.h"
#include "PureColors.h"

#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_EngineFirstPicture : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void theFirstPictureIsEnoughForItsBox()
    {
        (*m_pictures)[large].fullGate->close(); // never opened
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetScaleMode(4);
        m_engine->SetFileName(large);
        const QImage shown = shot();
        QCOMPARE(shown.copy(0, 30, 120, 60), graded(1200, 600).scaled(120, 60));
        QCOMPARE(shown.pixel(5, 5), back);
    }

    void theFullOneFollowsTheFirstPaint()
    {
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetScaleMode(4);
        m_engine->SetFileName(large);
        QCOMPARE(m_engine->FileName(), large);
        QCOMPARE(m_pictures->order(), QStringList(large)); // not before it is shown
        const QImage before = shot();
        QTRY_COMPARE(m_pictures->order(), QStringList({large, large + '+'}));
        QCOMPARE(m_engine->Picture(), graded(1200, 600));
        QCOMPARE(shot(), before); // what stands on the screen does not flicker
    }

    void aZoomThatNeedsMoreWaits()
    {
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        QCOMPARE(shot(), graded(1200, 600).copy(0, 0, 120, 120)); // at 100%
        QCOMPARE(m_pictures->order(), QStringList({large, large + '+'}));
    }

    void firstPaintedOncePerLoad()
    {
        QSignalSpy spy(m_engine.get(), &ImageEngine::FirstPainted);
        shot();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 0); // nothing was held
        m_engine->SetFileName(small);
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 0); // nothing was painted
        shot();
        QCOMPARE(spy.size(), 0); // not from inside the paint
        QTRY_COMPARE(spy.size(), 1);
        shot();
        m_engine->Zoom(2.0);
        shot();
        m_engine->Rotate(90);
        shot();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 1);
        m_engine->SetFileName(small);
        shot();
        QTRY_COMPARE(spy.size(), 2);
        m_engine->SetPicture(plain(6, 6, red));
        m_engine->SetPaintEnabled(false);
        shot();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 2);
        m_engine->SetPaintEnabled(true);
        shot();
        QTRY_COMPARE(spy.size(), 3);
    }

    void firstPaintedComesForATurnedPicture_data()
    {
        QTest::addColumn<bool>("paintedBefore");
        QTest::newRow("turned before the first paint") << false;
        QTest::newRow("turned before the signal") << true;
    }

    void firstPaintedComesForATurnedPicture()
    {
        QFETCH(bool, paintedBefore);
        QSignalSpy spy(m_engine.get(), &ImageEngine::FirstPainted);
        m_engine->SetFileName(small);
        if (paintedBefore)
            shot();
        m_engine->Rotate(90);
        shot();
        QTRY_COMPARE(spy.size(), 1);
        m_engine->Rotate(90);
        shot();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 1);
    }

    void firstPaintedComesForAPictureThatIsPutBack_data()
    {
        QTest::addColumn<bool>("signalIsDue");
        QTest::newRow("after the signal was due") << true;
        QTest::newRow("before the signal is due") << false;
    }

    /// Another load takes the place of a picture that was painted, fails, and gives the place back.
    void firstPaintedComesForAPictureThatIsPutBack()
    {
        QFETCH(bool, signalIsDue);
        QSignalSpy spy(m_engine.get(), &ImageEngine::FirstPainted);
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetScaleMode(4);
        m_engine->SetFileName(large);
        shot();
        m_engine->SetFileName(broken);
        if (signalIsDue)
            QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 0);
        QCOMPARE(m_engine->FileName(), large);
        shot();
        QTRY_COMPARE(spy.size(), 1);
        QTRY_COMPARE(m_pictures->order().count(large + '+'), 1);
        shot();
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 1);
    }

    void firstPaintedIsNotForAReplacedPicture()
    {
        QSignalSpy spy(m_engine.get(), &ImageEngine::FirstPainted);
        m_engine->SetFileName(small);
        shot();
        m_engine->SetFileName(large);
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 0);
    }
};

QTEST_MAIN(tst_EngineFirstPicture)
#include "tst_enginefirstpicture.moc"
