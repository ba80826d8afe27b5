// Colour profiles that JPEG files bring with them, good and broken.
#include "CodecFixtures.h"
#include "DisplayImage.h"
#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "HostileBytes.h"
#include "JpegFixtures.h"
#include "Mutator.h"
#include "ProfiledFiles.h"

#include <QtTest>

#include <iterator>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegCodec();
const QSize usual(61, 47);

} // namespace

class tst_IccReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void jpegGivesItsProfile_data()
    {
        QTest::addColumn<QByteArray>("profile");
        QTest::addColumn<bool>("gray");
        QTest::addColumn<QStringList>("options");
        const QByteArray rgb = rgbProfile(adobeRgb);
        QTest::newRow("colour") << rgb << false << QStringList();
        QTest::newRow("progressive") << rgb << false << QStringList{QStringLiteral("-progressive")};
        QTest::newRow("sRGB's own") << srgbProfile() << false << QStringList();
        QTest::newRow("grey") << grayProfile(1.8) << true << QStringList();
        QTest::newRow("four pieces") << rgb + QByteArray(200'000, 'p') << false << QStringList();
        QTest::newRow("full pieces") << rgb + QByteArray(2 * 65519 - rgb.size(), 'p') << false
                                     << QStringList();
        QTest::newRow("as long as may be")
            << rgb + QByteArray(maxProfileBytes - rgb.size(), 'p') << false << QStringList();
    }

    void jpegGivesItsProfile()
    {
        QFETCH(QByteArray, profile);
        QFETCH(bool, gray);
        QFETCH(QStringList, options);
        const QByteArray plain = gray ? grayJpeg(usual) : colorJpeg(usual, options);
        const auto picture = decodeBytes(codec, withProfile(plain, profile));
        QVERIFY(picture);
        QVERIFY(picture->complete);
        QCOMPARE(picture->profile, profile);
        QCOMPARE(picture->image, decodeBytes(codec, plain)->image); // the decoder converts nothing
        const auto small = decodeBytes(codec, withProfile(plain, profile), QSize(8, 6));
        QVERIFY(small && !small->isFull());
        QCOMPARE(small->profile, profile);
    }

    void jpegOfAnotherProgram()
    {
        const ScratchFiles files;
        const QString profile = files.write(QStringLiteral("a.icc"), rgbProfile(adobeRgb));
        const QString in = files.write(QStringLiteral("in.ppm"), ppmOf(samplePicture(usual)));
        const QByteArray file = runTool(QStringLiteral("convert"),
                                        {in, QStringLiteral("-profile"), profile, QStringLiteral("jpg:-")});
        const auto picture = decodeBytes(codec, file);
        QVERIFY(picture);
        QCOMPARE(picture->profile, rgbProfile(adobeRgb));
        const Rgba wanted = inSrgbByMagick(file, QStringLiteral("jpg"));
        QCOMPARE(firstDifference(rgbaOf(displayImage(*picture)), wanted, 1), QString());
    }

    void piecesComeInAnyOrder()
    {
        const QByteArray good = rgbProfile(adobeRgb);
        const QByteArray segments = profilePiece(good.mid(400), 3, 3) + profilePiece(good.left(200), 1, 3) +
                                    profilePiece(good.mid(200, 200), 2, 3);
        const auto picture = decodeBytes(codec, withSegments(colorJpeg(usual), segments));
        QVERIFY(picture);
        QCOMPARE(picture->profile, good);
    }

    void unusableProfilesAreNoProfile_data()
    {
        QTest::addColumn<QByteArray>("segments");
        const QByteArray good = rgbProfile(adobeRgb);
        const QByteArray head = good.left(300);
        const QByteArray tail = good.mid(300);
        QTest::newRow("none") << QByteArray();
        QTest::newRow("empty") << profilePiece({}, 1, 1);
        QTest::newRow("grey in a colour file") << profilePiece(grayProfile(2.2), 1, 1);
        QTest::newRow("four inks in a colour file")
            << profilePiece(grayProfile(2.2).replace(16, 4, "CMYK"), 1, 1);
        QTest::newRow("first piece missing") << profilePiece(tail, 2, 2);
        QTest::newRow("last piece missing") << profilePiece(head, 1, 2);
        QTest::newRow("one piece twice")
            << profilePiece(head, 1, 2) + profilePiece(head, 1, 2) + profilePiece(tail, 2, 2);
        QTest::newRow("one too many") << profilePiece(good, 1, 1) + profilePiece(good, 2, 1);
        QTest::newRow("two counts") << profilePiece(head, 1, 2) + profilePiece(tail, 2, 3);
        QTest::newRow("numbered from 0") << profilePiece(head, 0, 2) + profilePiece(tail, 1, 2);
        QTest::newRow("garbage") << profilePiece(QByteArray(500, '\x5a'), 1, 1);
        QTest::newRow("a shorter mark") << QByteArray("\xff\xe2\x00\x0dICC_PROFILE", 15);
        QTest::newRow("another mark") << profilePiece(good, 1, 1).replace("ICC_", "ICD_");
        QTest::newRow("an empty segment") << QByteArray("\xff\xe2\x00\x02", 4);
        QByteArray many;
        for (int i = 1; i <= 100; ++i) // 6.5 megabytes
            many += profilePiece(
                i == 1 ? good + QByteArray(65519 - good.size(), 'p') : QByteArray(65519, 'p'), i, 100);
        QTest::newRow("too long") << many;
    }

    void unusableProfilesAreNoProfile()
    {
        QFETCH(QByteArray, segments);
        const QByteArray plain = colorJpeg(usual);
        const auto picture = decodeBytes(codec, withSegments(plain, segments));
        QVERIFY(picture);
        QVERIFY(picture->complete);
        QVERIFY(picture->profile.isEmpty());
        QCOMPARE(picture->image, decodeBytes(codec, plain)->image);
    }

    void otherSegmentsOfThatKindDoNotMatter()
    {
        const QByteArray other = QByteArray("\xff\xe2\x00\x30", 4) + "MPF" + QByteArray(43, '\0');
        const QByteArray good = rgbProfile(adobeRgb);
        const QByteArray segments =
            other + profilePiece(good.left(100), 1, 2) + other + profilePiece(good.mid(100), 2, 2);
        const auto picture = decodeBytes(codec, withSegments(colorJpeg(usual), segments));
        QVERIFY(picture);
        QCOMPARE(picture->profile, good);
    }

    void fourInksByTheirProfile_data()
    {
        QTest::addColumn<bool>("ycck");
        QTest::newRow("CMYK") << false;
        QTest::newRow("YCCK") << true;
    }

    void fourInksByTheirProfile()
    {
        QFETCH(bool, ycck);
        const QByteArray plain = fourInkJpeg(samplePicture(usual), ycck);
        const QByteArray file = withProfile(plain, cmykProfile());
        const auto picture = decodeBytes(codec, file);
        QVERIFY(picture);
        QVERIFY(picture->complete);
        QVERIFY(picture->profile.isEmpty());
        QCOMPARE(picture->image.format(), QImage::Format_RGB32);
        QVERIFY(picture->image != decodeBytes(codec, plain)->image);
        const Rgba wanted = inSrgbByMagick(file, QStringLiteral("jpg"));
        QCOMPARE(firstDifference(rgbaOf(picture->image), wanted, 3), QString());
        const auto small = decodeBytes(codec, file, QSize(30, 23));
        QVERIFY(small);
        QCOMPARE(small->image.size(), QSize(31, 24));
        const QRgb pixel = small->image.pixel(15, 12);
        QVERIFY(distance(pixel, picture->image.scaled(31, 24, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                    .pixel(15, 12)) < 20);
    }

    void fourInksWithoutMark()
    {
        Rgba samples{QSize(16, 16), {}};
        for (int i = 0; i < 256; ++i)
            samples.pixels.append("\x33\x66\x00\x40", 4);
        const QByteArray marked = withProfile(fourInkJpeg(samples, false), cmykProfile());
        const auto inverted = decodeBytes(codec, marked);
        const auto direct = decodeBytes(codec, withoutSegments(marked, 0xee));
        QVERIFY(inverted && direct);
        const int tolerance = 5; // the file is lossy
        QVERIFY(distance(inverted->image.pixel(8, 8), inkInSrgb(204, 153, 255, 191)) <= tolerance);
        QVERIFY(distance(direct->image.pixel(8, 8), inkInSrgb(51, 102, 0, 64)) <= tolerance);
    }

    void fourInksWithABrokenProfile()
    {
        const QByteArray plain = fourInkJpeg(samplePicture(usual), false);
        const QByteArray file = withProfile(plain, cmykProfile().left(2000));
        const auto picture = decodeBytes(codec, file);
        QVERIFY(picture);
        QCOMPARE(picture->image, decodeBytes(codec, plain)->image);
    }

    void fourInksCutShort()
    {
        const QByteArray file =
            withProfile(fourInkJpeg(samplePicture(QSize(200, 200)), false), cmykProfile());
        const auto whole = decodeBytes(codec, file);
        const auto cut = decodeBytes(codec, file.left(file.size() - 20'000));
        QVERIFY(whole && cut);
        QVERIFY(!cut->complete);
        QCOMPARE(cut->image.copy(0, 0, 200, 8), whole->image.copy(0, 0, 200, 8));
        QCOMPARE(cut->image.pixel(100, 199) & 0xffffffU, 0U); // blank, not converted
    }

    void brokenFilesDoNoHarm()
    {
        const QByteArray files[] = {
            withProfile(colorJpeg(QSize(24, 16)), rgbProfile(adobeRgb)),
            withProfile(colorJpeg(QSize(24, 16)), tableProfile(adobeRgb)),
            withProfile(fourInkJpeg(samplePicture(QSize(24, 16)), false), cmykProfile())};
        const int children[] = {150, 40, 20};
        for (size_t i = 0; i < std::size(files); ++i) {
            QCOMPARE(misbehaviour(codec, files[i]), QString());
            Mutator mutator(files[i], 11);
            for (int child = 0; child < children[i]; ++child) {
                const QByteArray broken = mutator.next();
                const QString fault = misbehaviour(codec, broken);
                QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("child %1: ").arg(child) + fault));
                if (const auto picture = decodeBytes(codec, broken))
                    QCOMPARE(displayImage(*picture).size(), picture->image.size());
            }
        }
    }

    /// Only the profile's own bytes are broken: the picture must still come, whole.
    void brokenProfilesInGoodFiles()
    {
        const QByteArray plain = colorJpeg(QSize(24, 16));
        const QImage image = decodeBytes(codec, plain)->image;
        Mutator mutator(rgbProfile(adobeRgb), 3);
        for (int child = 0; child < 200; ++child) {
            const QByteArray profile = mutator.next();
            const auto picture = decodeBytes(codec, withProfile(plain, profile));
            QVERIFY(picture && picture->complete);
            QCOMPARE(picture->image, image);
            QCOMPARE(displayImage(*picture).size(), image.size());
        }
    }
};

QTEST_GUILESS_MAIN(tst_IccReading)
#include "tst_iccreading.moc"
