// Colour profiles in the files that are written.
#include "DisplayImage.h"
#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "JpegFixtures.h"
#include "ProfiledFiles.h"
#include "ProfileStage.h"

#include <QColorSpace>
#include <QtTest>

#include <functional>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegCodec();

} // namespace

class tst_IccSaving : public QObject, private ProfileStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { takeDown(); }

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
        const Rgba seen = inSrgbByMagick(m_files->read(QStringLiteral("out.jpg")), QStringLiteral("jpg"));
        QVERIFY(psnr(seen, rgbaOf(taken)) > 25);
    }

    void formatsWithoutProfilesAreConverted_data()
    {
        QTest::addColumn<QString>("extension");
        QTest::newRow("pcx") << QStringLiteral("pcx");
        QTest::newRow("ppm") << QStringLiteral("ppm");
    }

    void formatsWithoutProfilesAreConverted()
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
        QCOMPARE(imageDifference(m_engine->Picture(), byFormula(stored, adobeRgb), 1), QString());
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
        QVERIFY(imageDifference(shown, image, 3) != QString()); // the profile does something
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
        save(QStringLiteral("out.pcx"));
        const auto again =
            decodeBytes(*encoderFor(QStringLiteral("pcx")), m_files->read(QStringLiteral("out.pcx")));
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
        const QByteArray plain = grayJpeg(usual);
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
};

QTEST_MAIN(tst_IccSaving)
#include "tst_iccsaving.moc"
