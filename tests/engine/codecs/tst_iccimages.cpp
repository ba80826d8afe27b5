// Colour profiles from a file to the screen, the clipboard and another file.
#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/JpegEncode.h"
#include "engine/ColorConversion.h"
#include "engine/ImageEngine.h"
#include "HostileBytes.h"
#include "JpegFixtures.h"
#include "Mutator.h"
#include "ProfileFixtures.h"

#include <QClipboard>
#include <QColorSpace>
#include <QGuiApplication>
#include <QtTest>

#include <functional>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegCodec();
const QSize usual(61, 47);
constexpr QRgb back = qRgb(40, 50, 60);

/// One APP2 segment with a piece of a profile.
QByteArray piece(const QByteArray& bytes, int number, int count)
{
    QByteArray content("ICC_PROFILE\0", 12);
    content += char(number);
    content += char(count);
    content += bytes;
    const auto length = content.size() + 2;
    return QByteArray("\xff\xe2", 2) + char(length >> 8) + char(length & 255) + content;
}

/// `jpeg` with `segments` before its first other segment.
QByteArray withSegments(QByteArray jpeg, const QByteArray& segments)
{
    return jpeg.insert(2, segments);
}

QByteArray withProfile(const QByteArray& jpeg, const QByteArray& profile)
{
    constexpr qsizetype longest = 65519;
    const auto count = int((profile.size() + longest - 1) / longest);
    QByteArray segments;
    for (int i = 0; i < count; ++i)
        segments += piece(profile.mid(i * longest, longest), i + 1, count);
    return withSegments(jpeg, segments);
}

/// The profile in a file as ImageMagick extracts it; empty, and no failed test, when there is none.
QByteArray profileIn(const QString& path)
{
    QProcess process;
    process.start(QStringLiteral("convert"), {path, QStringLiteral("icc:-")});
    process.waitForFinished();
    return process.readAllStandardOutput();
}

QByteArray grayJpeg()
{
    return cjpeg(pgmOf(samplePicture(usual)), {});
}

/// Every colour of `image` by inSrgb().
QImage byFormula(const QImage& image, const RgbSpace& space)
{
    QImage result =
        image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x)
            result.setPixel(x, y, inSrgb(image.pixel(x, y), space));
    }
    return result;
}

QString differs(const QImage& got, const QImage& wanted, int tolerance)
{
    return firstDifference(rgbaOf(got), rgbaOf(wanted), tolerance);
}

/// What ImageMagick makes of an image file by its profile and that of sRGB.
Rgba inSrgbByMagick(const QByteArray& file, const QString& extension, const ScratchFiles& files)
{
    const QString srgb = files.write(QStringLiteral("srgb.icc"), srgbProfile());
    return readWithMagick(file, extension,
                          {QStringLiteral("-black-point-compensation"), QStringLiteral("-profile"), srgb});
}

} // namespace

class tst_IccImages : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init()
    {
        m_files = std::make_unique<ScratchFiles>();
        m_loader = std::make_shared<ImageLoader>();
        m_engine = std::make_unique<ImageEngine>(m_loader);
        m_engine->SetBackColor(QColor(back));
        m_engine->resize(usual);
    }

    void cleanup()
    {
        m_engine.reset();
        m_loader.reset();
        m_files.reset();
    }

    // --- JPEG files

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
        const QByteArray plain = gray ? grayJpeg() : colorJpeg(usual, options);
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
        const QString profile = m_files->write(QStringLiteral("a.icc"), rgbProfile(adobeRgb));
        const QString in = m_files->write(QStringLiteral("in.ppm"), ppmOf(samplePicture(usual)));
        const QByteArray file = runTool(QStringLiteral("convert"),
                                        {in, QStringLiteral("-profile"), profile, QStringLiteral("jpg:-")});
        const auto picture = decodeBytes(codec, file);
        QVERIFY(picture);
        QCOMPARE(picture->profile, rgbProfile(adobeRgb));
        const Rgba wanted = inSrgbByMagick(file, QStringLiteral("jpg"), *m_files);
        QCOMPARE(firstDifference(rgbaOf(displayImage(*picture)), wanted, 1), QString());
    }

    void piecesComeInAnyOrder()
    {
        const QByteArray good = rgbProfile(adobeRgb);
        const QByteArray segments =
            piece(good.mid(400), 3, 3) + piece(good.left(200), 1, 3) + piece(good.mid(200, 200), 2, 3);
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
        QTest::newRow("empty") << piece({}, 1, 1);
        QTest::newRow("grey in a colour file") << piece(grayProfile(2.2), 1, 1);
        QTest::newRow("four inks in a colour file") << piece(grayProfile(2.2).replace(16, 4, "CMYK"), 1, 1);
        QTest::newRow("first piece missing") << piece(tail, 2, 2);
        QTest::newRow("last piece missing") << piece(head, 1, 2);
        QTest::newRow("one piece twice") << piece(head, 1, 2) + piece(head, 1, 2) + piece(tail, 2, 2);
        QTest::newRow("one too many") << piece(good, 1, 1) + piece(good, 2, 1);
        QTest::newRow("two counts") << piece(head, 1, 2) + piece(tail, 2, 3);
        QTest::newRow("numbered from 0") << piece(head, 0, 2) + piece(tail, 1, 2);
        QTest::newRow("garbage") << piece(QByteArray(500, '\x5a'), 1, 1);
        QTest::newRow("a shorter mark") << QByteArray("\xff\xe2\x00\x0dICC_PROFILE", 15);
        QTest::newRow("another mark") << piece(good, 1, 1).replace("ICC_", "ICD_");
        QTest::newRow("an empty segment") << QByteArray("\xff\xe2\x00\x02", 4);
        QByteArray many;
        for (int i = 1; i <= 100; ++i) // 6.5 megabytes
            many +=
                piece(i == 1 ? good + QByteArray(65519 - good.size(), 'p') : QByteArray(65519, 'p'), i, 100);
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
        const QByteArray segments = other + piece(good.left(100), 1, 2) + other + piece(good.mid(100), 2, 2);
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
        const Rgba wanted = inSrgbByMagick(file, QStringLiteral("jpg"), *m_files);
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

    // --- writing JPEG

    void jpegIsWrittenWithItsProfile_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QByteArray>("profile");
        QTest::addColumn<bool>("embedded");
        const QByteArray rgb = rgbProfile(adobeRgb);
        const QByteArray gray = grayProfile(1.8);
        QTest::newRow("colour") << QImage::Format_RGB32 << rgb << true;
        QTest::newRow("alpha") << QImage::Format_ARGB32 << rgb << true;
        QTest::newRow("palette") << QImage::Format_Indexed8 << rgb << true;
        QTest::newRow("grey pixels of a colour space") << QImage::Format_Grayscale8 << rgb << true;
        QTest::newRow("grey") << QImage::Format_Grayscale8 << gray << true;
        QTest::newRow("grey for colours") << QImage::Format_RGB32 << gray << false;
        QTest::newRow("long") << QImage::Format_RGB32 << rgb + QByteArray(300'000, 'p') << true;
        QTest::newRow("four inks") << QImage::Format_RGB32 << cmykProfile() << false;
        QTest::newRow("garbage") << QImage::Format_RGB32 << QByteArray(1000, 'p') << false;
        QTest::newRow("none") << QImage::Format_RGB32 << QByteArray() << false;
    }

    void jpegIsWrittenWithItsProfile()
    {
        QFETCH(QImage::Format, format);
        QFETCH(QByteArray, profile);
        QFETCH(bool, embedded);
        for (const ColorModel model : {ColorModel::Gray, ColorModel::Rgb}) {
            QVERIFY(codec.keepsProfile(QStringLiteral("jpg"), model) &&
                    codec.keepsProfile(QStringLiteral("jif"), model));
            QVERIFY(!codec.keepsProfile(QStringLiteral("png"), model));
        }
        const QImage image = imageOf(samplePicture(usual)).convertToFormat(format);
        EncodeOptions options;
        options.profile = profile;
        const auto file = codec.encode(image, QStringLiteral("jpg"), options);
        QVERIFY(file);
        const QString path = m_files->write(QStringLiteral("out.jpg"), *file);
        QCOMPARE(profileIn(path), embedded ? profile : QByteArray());
        const auto again = decodeBytes(codec, *file);
        QVERIFY(again);
        QCOMPARE(again->profile, embedded ? profile : QByteArray());
        const auto without = codec.encode(image, QStringLiteral("jpg"), {});
        const bool sameColors =
            format != QImage::Format_Grayscale8 || colorModelOf(profile) == ColorModel::Gray;
        if (sameColors)
            QCOMPARE(again->image, decodeBytes(codec, *without)->image);
    }

    void greyJpegOfAColorSpace()
    {
        QImage image(32, 32, QImage::Format_RGB32);
        image.fill(qRgb(60, 200, 90));
        EncodeOptions options;
        options.profile = rgbProfile(swappedRgb);
        options.jpeg.gray = true;
        options.jpeg.luminance = 0;
        const auto file = codec.encode(image, QStringLiteral("jpg"), options);
        QVERIFY(file);
        const auto again = decodeBytes(codec, *file);
        QVERIFY(again);
        QCOMPARE(again->image.format(), QImage::Format_Grayscale8);
        QVERIFY(again->profile.isEmpty());
        const QColor color = QColor(inSrgb(image.pixel(0, 0), swappedRgb));
        const int luma = qRound(0.299 * color.red() + 0.587 * color.green() + 0.114 * color.blue());
        QVERIFY(std::abs(qGray(again->image.pixel(5, 5)) - luma) <= 2);
    }

    // --- the control

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
            QCOMPARE(differs(shown, byFormula(stored, adobeRgb), profile.size() > 2000 ? 3 : 1), QString());
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
            QCOMPARE(differs(taken, byFormula(plain, adobeRgb), 1), QString());
        else
            QCOMPARE(taken, plain);
        QCOMPARE(m_engine->UniqueColors(), colorsOf(plain));
    }

    // --- transforms and saving

    void transformsKeepTheProfile_data()
    {
        using Change = std::function<void(ImageEngine&)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("nothing") << Change([](ImageEngine&) {});
        QTest::newRow("turned") << Change([](ImageEngine& engine) { engine.Rotate(90); });
        QTest::newRow("turned a little") << Change([](ImageEngine& engine) { engine.Rotate(10); });
        QTest::newRow("smaller") << Change([](ImageEngine& engine) { engine.Resize(20, 15); });
        QTest::newRow("bevelled") << Change([](ImageEngine& engine) { engine.Bevel(1, 5, 10); });
        QTest::newRow("several") << Change([](ImageEngine& engine) {
            engine.Rotate(-90);
            engine.Resize(30, 30);
            engine.Bevel(1, 5, 10);
        });
    }

    void transformsKeepTheProfile()
    {
        QFETCH(std::function<void(ImageEngine&)>, change);
        const QByteArray profile = rgbProfile(swappedRgb);
        open(withProfile(colorJpeg(usual), profile));
        change(*m_engine);
        const QImage taken = m_engine->Picture();
        const QString path = save(QStringLiteral("out.jpg"));
        QCOMPARE(profileIn(path), profile);
        // Another reader sees the same colours in the new file, but for what JPEG loses.
        const Rgba seen =
            inSrgbByMagick(m_files->read(QStringLiteral("out.jpg")), QStringLiteral("jpg"), *m_files);
        QVERIFY(psnr(seen, rgbaOf(taken)) > 25);
    }

    void sharedFormatsWithoutProfilesAreConverted_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::newRow("bmp") << QStringLiteral("bmp");
        QTest::newRow("dib") << QStringLiteral("dib");
    }

    void sharedFormatsWithoutProfilesAreConverted()
    {
        QFETCH(QString, extension);
        const QByteArray plain = colorJpeg(usual);
        open(withProfile(plain, rgbProfile(adobeRgb)));
        const QString name = QStringLiteral("out.") + extension;
        save(name);
        QVERIFY(!encoderFor(extension)->keepsProfile(extension, ColorModel::Rgb));
        const QImage stored = imageOf(djpeg(plain)).convertToFormat(QImage::Format_RGB32);
        const Rgba seen = readWithMagick(m_files->read(name), extension);
        QCOMPARE(firstDifference(seen, rgbaOf(byFormula(stored, adobeRgb)), 1), QString());
        m_engine->SetFileName(m_files->path(name));
        QCOMPARE(differs(m_engine->Picture(), byFormula(stored, adobeRgb), 1), QString());
    }

    void savedPicturesKeepTheirColors_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QImage>("image");
        QTest::addColumn<QByteArray>("profile");
        const QImage color = imageOf(samplePicture(usual)).convertToFormat(QImage::Format_RGB32);
        const QImage gray = color.convertToFormat(QImage::Format_Grayscale8);
        const QImage palette = color.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither);
        QImage bits = gray.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither);
        QImage greyBits = bits;
        bits.setColorTable({qRgb(90, 40, 30), qRgb(120, 180, 220)});
        greyBits.setColorTable({qRgb(60, 60, 60), qRgb(180, 180, 180)});
        for (const Codec* writer : codecTable()) {
            for (const QString& extension : writer->extensions()) {
                if (!writer->canEncode(extension))
                    continue;
                const auto row = [&](const char* name, const QImage& image, const QByteArray& profile) {
                    QTest::addRow("%s, %s", qPrintable(extension), name) << extension << image << profile;
                };
                row("grey", gray, grayProfile(1.2));
                row("RGB", color, rgbProfile(swappedRgb));
                row("palette", palette, rgbProfile(swappedRgb));
                row("two colours", bits, rgbProfile(swappedRgb));
                row("two greys", greyBits, rgbProfile(wideGamut));
            }
        }
    }

    void savedPicturesKeepTheirColors()
    {
        QFETCH(QString, extension);
        QFETCH(QImage, image);
        QFETCH(QByteArray, profile);
        // A PNG brings them in: it holds all of these as they are.
        const Codec& png = *encoderFor(QStringLiteral("png"));
        const auto file = png.encode(image, QStringLiteral("png"), EncodeOptions{{}, profile});
        QVERIFY(file);
        m_engine->SetFileName(m_files->write(QStringLiteral("in.png"), *file));
        const QImage shown = m_engine->Picture();
        QVERIFY(!shown.isNull());
        QVERIFY(differs(shown, image, 3) != QString()); // the profile does something
        m_engine->SetJPEGLuminance(0);
        m_engine->SetJPEGChrominance(0);
        m_engine->SetJPEGSubSampling(0);
        const QString path = save(QStringLiteral("out.") + extension);
        const auto source = ByteSource::open(path);
        QVERIFY(source);
        const auto decoder = openDecoder(*source, extension);
        QVERIFY(decoder);
        const auto again = (*decoder)->decode(1, QSize(), CancelFlag(false));
        QVERIFY(again);
        const QImage seen = displayImage(*again);
        QImage wanted = shown;
        if (extension == QLatin1String("pgm") || extension == QLatin1String("pbm")) { // grey by its own rule
            const Codec& writer = *encoderFor(extension);
            const auto plain = writer.encode(shown, extension, {});
            QVERIFY(plain);
            wanted = decodeBytes(writer, *plain)->image;
        }
        const double ratio = psnr(rgbaOf(seen), rgbaOf(wanted));
        QVERIFY2(ratio > 34, qPrintable(QString::number(ratio))); // some hold 256 colours
    }

    void palettesAreConvertedAsPalettes()
    {
        QImage image(20, 10, QImage::Format_Indexed8);
        image.setColorTable({qRgb(10, 20, 30), qRgb(200, 100, 50), qRgb(0, 255, 0)});
        for (int y = 0; y < 10; ++y) {
            for (int x = 0; x < 20; ++x)
                image.setPixel(x, y, uint((x + y) % 3));
        }
        QImage given = image;
        given.setColorSpace(QColorSpace::fromIccProfile(rgbProfile(swappedRgb)));
        m_engine->SetPicture(given);
        QCOMPARE(m_engine->BitsPerPixel(), 8);
        save(QStringLiteral("out.bmp"));
        const auto again =
            decodeBytes(*encoderFor(QStringLiteral("bmp")), m_files->read(QStringLiteral("out.bmp")));
        QVERIFY(again);
        QCOMPARE(again->bitsPerPixel, 8);
        for (int i = 0; i < 3; ++i)
            QVERIFY(distance(again->image.color(i), inSrgb(image.color(i), swappedRgb)) <= 1);
        for (int x = 0; x < 20; ++x)
            QCOMPARE(again->image.pixelIndex(x, 4), image.pixelIndex(x, 4));
    }

    void greyFilesKeepTheirGreyProfile()
    {
        const QByteArray profile = grayProfile(1.8);
        const QByteArray plain = grayJpeg();
        open(withProfile(plain, profile));
        const QImage stored = decodeBytes(codec, plain)->image;
        const QImage shown = shot();
        for (int x = 0; x < usual.width(); ++x) {
            const int wanted = grayInSrgb(qGray(stored.pixel(x, 20)), 1.8);
            QVERIFY(distance(shown.pixel(x, 20), qRgb(wanted, wanted, wanted)) <= 1);
        }
        QCOMPARE(m_engine->Picture().format(), QImage::Format_Grayscale8);
        QCOMPARE(profileIn(save(QStringLiteral("out.jpg"))), profile);
    }

    void greySaveOfAColorFile()
    {
        open(withProfile(colorJpeg(usual), rgbProfile(swappedRgb)));
        m_engine->SetJPEGGrayscale(true);
        m_engine->SetJPEGLuminance(0);
        QCOMPARE(profileIn(save(QStringLiteral("out.jpg"))), QByteArray());
        const QImage taken = m_engine->Picture();
        const auto again = decodeBytes(codec, m_files->read(QStringLiteral("out.jpg")));
        QVERIFY(again);
        QCOMPARE(again->image.format(), QImage::Format_Grayscale8);
        for (int x = 0; x < usual.width(); ++x) {
            const QRgb color = taken.pixel(x, 20);
            const double luma = 0.299 * qRed(color) + 0.587 * qGreen(color) + 0.114 * qBlue(color);
            QVERIFY(std::abs(qGray(again->image.pixel(x, 20)) - luma) <= 3);
        }
    }

  private:
    void open(const QByteArray& file)
    {
        m_engine->SetFileName(m_files->write(QStringLiteral("in.jpg"), file));
        QCOMPARE(m_engine->FileName(), m_files->path(QStringLiteral("in.jpg")));
    }

    /// Saves what is held; the path.
    QString save(const QString& name)
    {
        const QString path = m_files->path(name);
        m_engine->SetSaveFileName(path);
        [&] { QVERIFY2(m_engine->SaveFile(), qPrintable(m_engine->LastError())); }();
        return path;
    }

    QImage shot() const
    {
        QImage image = m_engine->grab().toImage().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }

    static int colorsOf(const QImage& image)
    {
        QSet<QRgb> colors;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                colors.insert(image.pixel(x, y));
        }
        return int(colors.size());
    }

    std::unique_ptr<ScratchFiles> m_files;
    std::shared_ptr<ImageLoader> m_loader;
    std::unique_ptr<ImageEngine> m_engine;
};

QTEST_MAIN(tst_IccImages)
#include "tst_iccimages.moc"
