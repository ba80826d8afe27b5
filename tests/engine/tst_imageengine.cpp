#include "engine/ImageEngine.h"
#include "FakePictures.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QtTest>

using namespace quorvia::engine;
using quorvia::test::FakePictures;
using quorvia::test::graded;
using quorvia::test::plain;

namespace {

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb green = qRgb(0, 255, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb back = qRgb(40, 50, 60);

const QString small = QStringLiteral("small"); // 60 x 30, and a second page of 30 x 60
const QString large = QStringLiteral("large"); // 1200 x 600
const QString broken = QStringLiteral("broken");
const QString missing = QStringLiteral("missing");

} // namespace

/// Sizes of the control and all pixels are device pixels, multiples of 6, so that the tests hold at the
/// device pixel ratios 1, 1.5 and 2.
class tst_ImageEngine : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_pictures = std::make_unique<FakePictures>();
        (*m_pictures)[small].pages = {graded(60, 30), plain(30, 60, green)};
        (*m_pictures)[large].pages = {graded(1200, 600)};
        (*m_pictures)[broken].pages = {graded(90, 90)};
        (*m_pictures)[broken].badPixels = true;
        m_loader = std::make_shared<ImageLoader>(m_pictures->opener());
        m_engine = std::make_unique<ImageEngine>(m_loader);
        m_engine->SetBackColor(QColor(back));
        size(120, 120);
    }

    void cleanup()
    {
        m_engine.reset();
        m_loader.reset();
        m_pictures.reset();
    }

    // --- what is held

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

    void ratioIsTheOneAskedFor()
    {
        const QByteArray asked = qgetenv("QT_SCALE_FACTOR");
        QCOMPARE(ratio(), asked.isEmpty() ? 1.0 : asked.toDouble());
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

    // --- what is shown

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

    // --- first and full pictures

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

    void firstPaintedIsNotForAReplacedPicture()
    {
        QSignalSpy spy(m_engine.get(), &ImageEngine::FirstPainted);
        m_engine->SetFileName(small);
        shot();
        m_engine->SetFileName(large);
        QCoreApplication::processEvents();
        QCOMPARE(spy.size(), 0);
    }

    // --- transforms

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

    void copiesToTheClipboard()
    {
        m_engine->SetFileName(small);
        m_engine->CopyToClipboard();
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), graded(60, 30));
    }

    // --- saving

    // --- the widget

    void pointers_data()
    {
        QTest::addColumn<int>("pointer");
        QTest::addColumn<Qt::CursorShape>("shape");
        QTest::newRow("default") << 0 << Qt::ArrowCursor;
        QTest::newRow("pan") << 25 << Qt::OpenHandCursor;
        QTest::newRow("selection") << 30 << Qt::CrossCursor;
        QTest::newRow("other") << 7 << Qt::ArrowCursor;
    }

    void pointers()
    {
        QFETCH(int, pointer);
        QFETCH(Qt::CursorShape, shape);
        m_engine->SetMousePointer(30);
        m_engine->SetMousePointer(pointer);
        QCOMPARE(m_engine->MousePointer(), pointer);
        QCOMPARE(m_engine->cursor().shape(), shape);
    }

    void aHandThatHoldsIsClosed()
    {
        m_engine->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_engine.get()));
        QTest::mousePress(m_engine->windowHandle(), Qt::LeftButton);
        m_engine->SetMousePointer(25);
        QCOMPARE(m_engine->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mouseRelease(m_engine->windowHandle(), Qt::LeftButton);
    }

    void neutralAndOpaque()
    {
        QCOMPARE(m_engine->focusPolicy(), Qt::NoFocus);
        QVERIFY(m_engine->testAttribute(Qt::WA_OpaquePaintEvent));
    }

  private:
    double ratio() const { return m_engine->devicePixelRatioF(); }
    QSize logical(int width, int height) const { return (QSizeF(width, height) / ratio()).toSize(); }
    void size(int width, int height) { m_engine->resize(logical(width, height)); }
    QImage shot() const { return shotOf(*m_engine); }

    static QImage shotOf(QWidget& widget)
    {
        QImage image = widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }

    static void paste(QImage& image, const QImage& part, QPoint at)
    {
        for (int y = 0; y < part.height(); ++y) {
            for (int x = 0; x < part.width(); ++x)
                image.setPixel(at.x() + x, at.y() + y, part.pixel(x, y));
        }
    }

    std::unique_ptr<FakePictures> m_pictures;
    std::shared_ptr<ImageLoader> m_loader;
    std::unique_ptr<ImageEngine> m_engine;
};

QTEST_MAIN(tst_ImageEngine)
#include "tst_imageengine.moc"
