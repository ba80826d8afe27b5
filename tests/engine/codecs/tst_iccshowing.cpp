// Colour profiles from a file or a picture to the screen and the clipboard.
#include "engine/ColorConversion.h"
#include "JpegFixtures.h"
#include "ProfiledFiles.h"
#include "ProfileStage.h"

#include <QClipboard>
#include <QColorSpace>
#include <QGuiApplication>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class tst_IccShowing : public QObject, private ProfileStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

    void paintedInSrgb_data()
    {
        QTest::addColumn<QByteArray>("profile");
        QTest::addColumn<bool>("changes");
        QTest::newRow("Adobe RGB") << rgbProfile(adobeRgb) << true;
        QTest::newRow("table") << tableProfile(adobeRgb) << true;
        QTest::newRow("sRGB") << srgbProfile() << false;
        QTest::newRow("none") << QByteArray() << false;
        QTest::newRow("broken") << rgbProfile(adobeRgb).left(200) << false;
    }

    void paintedInSrgb()
    {
        QFETCH(QByteArray, profile);
        QFETCH(bool, changes);
        const QByteArray plain = colorJpeg(usual);
        const QByteArray file = profile.isEmpty() ? plain : withProfile(plain, profile);
        const QImage stored = imageOf(djpeg(plain)).convertToFormat(QImage::Format_RGB32);
        open(file);
        const QImage shown = shot();
        QCOMPARE(shown.size(), usual);
        if (!changes)
            QCOMPARE(shown, stored); // to the bit
        else
            QCOMPARE(imageDifference(shown, byFormula(stored, adobeRgb), profile.size() > 2000 ? 3 : 1),
                     QString());
        QCOMPARE(m_engine->UniqueColors(), colorsOf(stored)); // of the held pixels
        const QImage taken = m_engine->Picture();
        QCOMPARE(taken, shown);
        QCOMPARE(m_engine->Picture().constBits() == taken.constBits(), !changes); // no conversion, no copy
        m_engine->CopyToClipboard();
        QCOMPARE(QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32), shown);
    }

    void scaledAndScrolled()
    {
        open(withProfile(colorJpeg(QSize(400, 300)), rgbProfile(swappedRgb)));
        const QImage full = m_engine->Picture();
        m_engine->resize(400, 300);
        QCOMPARE(shot(), full);
        // Two exposures of one cache, the second one overlapping, meet without a seam.
        QImage left = m_engine->grab(QRect(0, 0, 250, 300)).toImage().convertToFormat(QImage::Format_RGB32);
        QImage right =
            m_engine->grab(QRect(150, 0, 250, 300)).toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(left, full.copy(0, 0, 250, 300));
        QCOMPARE(right, full.copy(150, 0, 250, 300));
        m_engine->SetScaleMode(4);
        m_engine->resize(100, 75);
        const QImage small = shot();
        const QImage about = full.scaled(100, 75, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QVERIFY(psnr(rgbaOf(small), rgbaOf(about)) > 25); // averaged before, not behind, the curve
    }

    void alphaIsLaidOverConvertedColors()
    {
        QImage image(usual, QImage::Format_ARGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, qRgba(4 * x, 5 * y, 200 - x, x % 2 ? 255 : (x * 4) % 256));
        }
        image.setColorSpace(QColorSpace::fromIccProfile(rgbProfile(swappedRgb)));
        QVERIFY(image.colorSpace().isValid());
        m_engine->SetPicture(image);
        const QImage shown = shot();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb color = inSrgb(image.pixel(x, y), swappedRgb);
                const int alpha = qAlpha(color);
                const auto over = [alpha](int front, int behind) {
                    return (front * alpha + behind * (255 - alpha)) / 255;
                };
                const QRgb wanted = qRgb(over(qRed(color), qRed(back)), over(qGreen(color), qGreen(back)),
                                         over(qBlue(color), qBlue(back)));
                // Colours of low alpha have few steps left when they are filtered as shares.
                const int tolerance = alpha == 255 ? 1 : alpha >= 64 ? 4 : 8;
                QVERIFY2(distance(shown.pixel(x, y), wanted) <= tolerance,
                         qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            }
        }
    }

    void givenPictures_data()
    {
        QTest::addColumn<QColorSpace>("space");
        QTest::addColumn<bool>("changes");
        QTest::newRow("none") << QColorSpace() << false;
        QTest::newRow("sRGB") << QColorSpace(QColorSpace::SRgb) << false;
        QTest::newRow("Adobe RGB") << QColorSpace(QColorSpace::AdobeRgb) << true;
    }

    void givenPictures()
    {
        QFETCH(QColorSpace, space);
        QFETCH(bool, changes);
        QImage image = imageOf(samplePicture(usual)).convertToFormat(QImage::Format_RGB32);
        const QImage plain = image.copy();
        if (space.isValid())
            image.setColorSpace(space);
        m_engine->SetPicture(image);
        const QImage taken = m_engine->Picture();
        if (changes)
            QCOMPARE(imageDifference(taken, byFormula(plain, adobeRgb), 1), QString());
        else
            QCOMPARE(taken, plain);
        QCOMPARE(m_engine->UniqueColors(), colorsOf(plain));
    }
};

QTEST_MAIN(tst_IccShowing)
#include "tst_iccshowing.moc"
