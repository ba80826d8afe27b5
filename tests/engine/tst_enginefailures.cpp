// Loads of the control that fail lead back to what was there before.
#include "EngineStage.h"
#include "PureColors.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_EngineFailures : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void badHeaderLeavesEverything()
    {
        m_engine->SetFileName(small);
        m_engine->SetFileName(missing);
        QVERIFY(!m_engine->LastError().isEmpty());
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->ImagePixelWidth(), 60);
        QCOMPARE(m_engine->Picture(), graded(60, 30));
        m_engine->SetPageNumber(7);
        m_engine->SetFileName(small);
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->ImagePixelWidth(), 60);
    }

    void badPixelsLeadBack_data()
    {
        QTest::addColumn<int>("question");
        QTest::newRow("name") << 0;
        QTest::newRow("picture") << 1;
        QTest::newRow("colours") << 2;
        QTest::newRow("paint") << 3;
        QTest::newRow("error") << 4;
        QTest::newRow("transform") << 5;
        QTest::newRow("next load") << 6;
    }

    void badPixelsLeadBack()
    {
        QFETCH(int, question);
        m_engine->SetFileName(small);
        m_engine->SetFileName(broken);
        QCOMPARE(m_engine->ImagePixelWidth(), 90); // nobody knows yet
        switch (question) {
        case 0:
            QCOMPARE(m_engine->FileName(), small);
            break;
        case 1:
            QCOMPARE(m_engine->Picture(), graded(60, 30));
            break;
        case 2:
            QCOMPARE(m_engine->UniqueColors(), 1800);
            break;
        case 3:
            QCOMPARE(shot().copy(0, 0, 60, 30), graded(60, 30));
            break;
        case 4:
            QVERIFY(!m_engine->LastError().isEmpty());
            break;
        case 5:
            m_engine->Rotate(180);
            QCOMPARE(m_engine->Picture(), graded(60, 30).mirrored(true, true));
            break;
        default:
            m_engine->SetFileName(missing);
            break;
        }
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->ImagePixelWidth(), 60);
        QCOMPARE(m_engine->ImagePixelHeight(), 30);
    }

    void badPixelsOfTheFirstLoad()
    {
        m_engine->SetFileName(broken);
        QCOMPARE(m_engine->FileName(), QString());
        QCOMPARE(m_engine->ImagePixelWidth(), 0);
        QVERIFY(m_engine->UniqueColors() < 2);
        QVERIFY(!m_engine->LastError().isEmpty());
        m_engine->SetFileName(small);
        QCOMPARE(m_engine->LastError(), QString());
    }

    void badPixelsAfterAnUnreadLoad()
    {
        m_engine->SetFileName(small);
        m_engine->SetFileName(large); // nobody waits for it
        m_engine->SetFileName(broken);
        QCOMPARE(m_engine->FileName(), large);
        m_engine->SetFileName(broken);
        m_engine->SetFileName(broken);
        QCOMPARE(m_engine->FileName(), large);
    }

    void badPixelsLeadBackToAGivenPicture()
    {
        m_engine->SetPicture(plain(12, 6, blue));
        m_engine->SetFileName(broken);
        QCOMPARE(m_engine->FileName(), QString());
        QCOMPARE(m_engine->Picture(), plain(12, 6, blue));
    }

    void failedFullDecode()
    {
        (*m_pictures)[large].badFull = true;
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        QCOMPARE(m_engine->FileName(), large);
        QVERIFY(m_engine->Picture().isNull());
        QVERIFY(!m_engine->LastError().isEmpty());
        m_engine->Rotate(90);
        QCOMPARE(m_engine->ImagePixelWidth(), 1200); // nothing happened
        m_engine->Zoom(1.0);
        QVERIFY(shot() != plain(120, 120, back)); // the first picture, enlarged, is better than nothing
        QCOMPARE(m_engine->UniqueColors(), 0);    // nobody knows
    }
};

QTEST_MAIN(tst_EngineFailures)
#include "tst_enginefailures.moc"
