// What transforms do to the picture of the control and to its facts.
#include "EngineStage.h"
#include "PureColors.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_EngineTransforms : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void rotateTurnsInPlace()
    {
        (*m_pictures)[small].bitsPerPixel = 48;
        m_engine->SetFileName(small);
        m_engine->Rotate(-90); // clockwise
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->ImagePixelWidth(), 30);
        QCOMPARE(m_engine->ImagePixelHeight(), 60);
        QCOMPARE(m_engine->BitsPerPixel(), 48);
        QCOMPARE(m_engine->Picture().pixel(29, 0), graded(60, 30).pixel(0, 0));
        QCOMPARE(shot().pixel(29, 0), graded(60, 30).pixel(0, 0));
        m_engine->Rotate(90);
        QCOMPARE(m_engine->Picture(), graded(60, 30));
    }

    void rotateFillsWithTheBack()
    {
        m_engine->SetPicture(plain(60, 60, red));
        m_engine->Rotate(45);
        QCOMPARE(m_engine->ImagePixelWidth(), 85);
        QCOMPARE(m_engine->Picture().pixel(0, 0), back);
    }

    void tooLargeATransform()
    {
        QImage line = plain(60000, 1, 0, QImage::Format_Mono);
        m_engine->SetPicture(line);
        m_engine->Resize(65536, 10);
        QCOMPARE(m_engine->ImagePixelWidth(), 60000);
        QVERIFY(!m_engine->LastError().isEmpty());
        m_engine->Rotate(std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(m_engine->ImagePixelWidth(), 60000);
    }

    void resizeScalesInPlace()
    {
        m_engine->SetFileName(small);
        m_engine->Resize(30, 12);
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->ImagePixelWidth(), 30);
        QCOMPARE(m_engine->ImageHeightTwips(), qRound(12 * 15 / ratio()));
        QCOMPARE(m_engine->Picture().size(), QSize(30, 12));
        for (const QSize size : {QSize(0, 5), QSize(5, 0), QSize(-1, 5)})
            m_engine->Resize(size.width(), size.height());
        QCOMPARE(m_engine->ImagePixelWidth(), 30);
        const QImage before = m_engine->Picture();
        m_engine->Resample(12, 6);
        const QImage resampled = m_engine->Picture();
        m_engine->SetPicture(before);
        m_engine->Resize(12, 6);
        QCOMPARE(m_engine->Picture(), resampled);
    }

    void bevelDrawsAnEdge()
    {
        m_engine->SetPicture(plain(60, 30, 1, QImage::Format_Mono));
        QCOMPARE(m_engine->BitsPerPixel(), 1);
        m_engine->SetPicture(plain(60, 30, qRgb(100, 100, 100)));
        QCOMPARE(m_engine->UniqueColors(), 1);
        m_engine->Bevel(1, 10, 10);
        QVERIFY(qRed(m_engine->Picture().pixel(30, 0)) > 100);
        QVERIFY(qRed(m_engine->Picture().pixel(30, 29)) < 100);
        QCOMPARE(m_engine->Picture().pixel(30, 15), qRgb(100, 100, 100));
        QVERIFY(m_engine->UniqueColors() > 1); // counted anew
    }

    void depthFollowsATransform()
    {
        QImage mono = plain(60, 30, 1, QImage::Format_Mono);
        m_engine->SetPicture(mono);
        m_engine->Rotate(90);
        QCOMPARE(m_engine->BitsPerPixel(), 1);
        m_engine->Resize(12, 12);
        QCOMPARE(m_engine->BitsPerPixel(), 8);
    }
};

QTEST_MAIN(tst_EngineTransforms)
#include "tst_enginetransforms.moc"
