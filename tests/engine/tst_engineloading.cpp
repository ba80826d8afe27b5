// What the control holds: loads and their facts, pages, reloads, pictures that are given to it.
#include "EngineStage.h"
#include "PureColors.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_EngineLoading : public QObject, protected EngineStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void emptyControl()
    {
        QCOMPARE(m_engine->FileName(), QString());
        QVERIFY(m_engine->Picture().isNull());
        QCOMPARE(m_engine->ImagePixelWidth(), 0);
        QCOMPARE(m_engine->ImageHeightTwips(), 0);
        QCOMPARE(m_engine->BitsPerPixel(), 0);
        QVERIFY(m_engine->UniqueColors() < 2);
        QCOMPARE(m_engine->ZoomFactor(), 1.0);
        QCOMPARE(m_engine->PageNumber(), 1);
        QCOMPARE(shot(), plain(120, 120, back));
        m_engine->Rotate(90);
        m_engine->Resize(5, 5);
        m_engine->Bevel(1, 10, 10);
        m_engine->CopyToClipboard();
        QVERIFY(m_engine->Picture().isNull());
        QVERIFY(!m_engine->SaveFile());
        QVERIFY(!m_engine->LastError().isEmpty());
    }

    void factsOfALoad()
    {
        (*m_pictures)[small].bitsPerPixel = 4;
        m_engine->SetFileName(small);
        QCOMPARE(m_engine->ImagePixelWidth(), 60);
        QCOMPARE(m_engine->ImagePixelHeight(), 30);
        QCOMPARE(m_engine->BitsPerPixel(), 4);
        QCOMPARE(m_engine->ImageWidthTwips(), qRound(60 * 15 / ratio()));
        QCOMPARE(m_engine->ImageHeightTwips(), qRound(30 * 15 / ratio()));
        QCOMPARE(m_engine->FileName(), small);
        QCOMPARE(m_engine->Picture(), graded(60, 30));
        QCOMPARE(m_engine->UniqueColors(), 60 * 30);
        QCOMPARE(m_engine->LastError(), QString());
    }

    void aLoadWaitsForTheHeaderOnly()
    {
        auto& gate = *(*m_pictures)[large].firstGate;
        gate.close();
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large); // returns though no pixel can come
        QCOMPARE(m_engine->ImagePixelWidth(), 1200);
        QVERIFY(gate.sawArrivals(1));
        gate.open();
        QCOMPARE(m_engine->FileName(), large);
    }

    void theNameWaitsForTheFirstPictureOnly()
    {
        (*m_pictures)[large].fullGate->close(); // never opened
        m_engine->SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        QCOMPARE(m_engine->FileName(), large);
    }

    void emptyNameClears()
    {
        m_engine->SetFileName(small);
        m_engine->SetFileName(QString());
        QCOMPARE(m_engine->FileName(), QString());
        QVERIFY(m_engine->Picture().isNull());
        QCOMPARE(m_engine->ImagePixelHeight(), 0);
        QCOMPARE(shot(), plain(120, 120, back));
    }

    void clearDoesNotWait()
    {
        (*m_pictures)[large].fullGate->close(); // never opened: waiting would hang
        m_engine->SetFileName(large);
        m_engine->SetFileName(QString());
        QCOMPARE(m_engine->FileName(), QString());
    }

    void pages()
    {
        m_engine->SetFileName(small);
        m_engine->SetPageNumber(2);
        QCOMPARE(m_engine->PageNumber(), 2);
        QCOMPARE(m_engine->ImagePixelWidth(), 60); // takes effect with the next load
        m_engine->SetFileName(m_engine->FileName());
        QCOMPARE(m_engine->ImagePixelWidth(), 30);
        QCOMPARE(m_engine->Picture(), plain(30, 60, green));
        QCOMPARE(m_engine->PageCount(missing), 0);
    }

    void reloadUndoesATransform()
    {
        m_engine->SetFileName(small);
        m_engine->Rotate(90);
        QCOMPARE(m_engine->ImagePixelWidth(), 30);
        m_engine->SetFileName(small);
        QCOMPARE(m_engine->Picture(), graded(60, 30));
    }

    void reloadOfAnUnchangedPageReusesIt()
    {
        m_engine->SetFileName(small);
        QCOMPARE(m_engine->FileName(), small);
        m_engine->SetFileName(small);
        QCOMPARE(m_engine->Picture(), graded(60, 30));
        QCOMPARE(m_pictures->order().size(), 1);
    }

    void changedFileOnDisk()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("a.bmp"));
        QVERIFY(plain(12, 12, red).save(path));
        ImageEngine engine(std::make_shared<ImageLoader>());
        engine.SetFileName(path);
        QCOMPARE(engine.Picture().pixel(0, 0), red);
        QCOMPARE(engine.PageCount(path), 1);
        QCOMPARE(engine.PageNumber(), 1);
        QVERIFY(plain(18, 12, green).save(path));
        QCOMPARE(engine.Picture().pixel(0, 0), red); // what is held stays
        engine.SetFileName(path);
        QCOMPARE(engine.Picture().pixel(0, 0), green);
        QCOMPARE(engine.ImagePixelWidth(), 18);
        QVERIFY(QFile::remove(path));
        engine.SetFileName(path);
        QCOMPARE(engine.FileName(), path);
        QCOMPARE(engine.Picture().pixel(0, 0), green);
    }

    void twoControlsShareALoader()
    {
        ImageEngine second(m_loader);
        m_engine->SetLoadBox(QSize(120, 120));
        second.SetLoadBox(QSize(120, 120));
        m_engine->SetFileName(large);
        second.SetFileName(large);
        m_engine->SetFileName(QString()); // does not take the picture from the other one
        QCOMPARE(second.FileName(), large);
        QCOMPARE(second.Picture(), graded(1200, 600));
    }

    void givenPicture_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<int>("bits");
        QTest::newRow("RGB32") << plain(12, 6, blue) << 24;
        QTest::newRow("ARGB32") << plain(12, 6, blue, QImage::Format_ARGB32) << 32;
        QTest::newRow("grey") << plain(12, 6, 7, QImage::Format_Grayscale8) << 8;
        QTest::newRow("mono") << plain(12, 6, 1, QImage::Format_Mono) << 1;
        QTest::newRow("RGB888") << plain(12, 6, blue).convertToFormat(QImage::Format_RGB888) << 24;
    }

    void givenPicture()
    {
        QFETCH(QImage, image);
        QFETCH(int, bits);
        m_engine->SetFileName(small);
        m_engine->SetPicture(image);
        QCOMPARE(m_engine->FileName(), QString());
        QCOMPARE(m_engine->ImagePixelWidth(), 12);
        QCOMPARE(m_engine->BitsPerPixel(), bits);
        QCOMPARE(m_engine->UniqueColors(), 1);
        QCOMPARE(m_engine->Picture().convertToFormat(QImage::Format_RGB32),
                 image.convertToFormat(QImage::Format_RGB32));
        m_engine->SetPicture(QImage());
        QVERIFY(m_engine->Picture().isNull());
        QCOMPARE(m_engine->BitsPerPixel(), 0);
    }
};

QTEST_MAIN(tst_EngineLoading)
#include "tst_engineloading.moc"
