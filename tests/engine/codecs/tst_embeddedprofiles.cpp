#include "engine/codecs/Codecs.h"
#include "engine/ColorConversion.h"
#include "PngFixtures.h"
#include "ProfileFixtures.h"
#include "TiffMaker.h"

#include <QTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray profileChunk(const QByteArray& profile, const QByteArray& name = "a profile", char method = 0)
{
    return pngChunk("iCCP", name + QByteArray(1, '\0') + QByteArray(1, method) + zlibStream(profile));
}

/// A PNG of 4 x 3 pixels with `further` before them.
QByteArray pngWith(int colors, const QByteArray& further, int interlace = 0)
{
    if (interlace)
        return withChunk(magickFile(samplePicture(QSize(4, 3)), colors, 8, true), further);
    const int channels = colors == 2 ? 3 : colors == 4 ? 2 : colors == 6 ? 4 : 1;
    QByteArray file = pngHeader(4, 3, 8, colors) + further;
    if (colors == 3)
        file += pngChunk("PLTE", QByteArray(12, '\x40'));
    QByteArray rows;
    for (int y = 0; y < 3; ++y)
        rows += '\0' + QByteArray(4 * channels, '\2');
    return file + pngChunk("IDAT", zlibStream(rows)) + pngChunk("IEND", QByteArray());
}

/// A TIFF of 2 x 2 pixels with `profile` in its tag.
TiffMaker tiffWith(int photometric, int samples, const QByteArray& profile, const QByteArray& pixels)
{
    constexpr int profileTag = 34675;
    constexpr int undefined = 7;
    TiffMaker tiff;
    tiff.page(2, 2, 8, samples, photometric, pixels);
    QList<quint32> bytes;
    for (const char byte : profile)
        bytes.append(uchar(byte));
    tiff.set(profileTag, undefined, bytes);
    return tiff;
}

/// What ImageMagick finds in `file`.
QByteArray extracted(const QByteArray& file, const char* extension)
{
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("in.%1").arg(QLatin1String(extension)), file);
    runTool(QStringLiteral("convert"), {path, files.path(QStringLiteral("out.icc"))});
    return files.read(QStringLiteral("out.icc"));
}

} // namespace

class TestEmbeddedProfiles : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readsPng_data();
    void readsPng();
    void readsOtherPrograms_data();
    void readsOtherPrograms();
    void readsTiff_data();
    void readsTiff();
    void convertsInks();
    void writes_data();
    void writes();
};

void TestEmbeddedProfiles::readsPng_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("profile");
    const QByteArray rgb = rgbProfile(wideGamut);
    const QByteArray gray = grayProfile(1);
    const QByteArray none;
    QTest::newRow("RGB") << pngWith(2, profileChunk(rgb)) << rgb;
    QTest::newRow("RGBA") << pngWith(6, profileChunk(rgb)) << rgb;
    QTest::newRow("palette") << pngWith(3, profileChunk(rgb)) << rgb;
    QTest::newRow("grey") << pngWith(0, profileChunk(gray)) << gray;
    QTest::newRow("grey and alpha") << pngWith(4, profileChunk(gray)) << gray;
    QTest::newRow("interlaced") << pngWith(2, profileChunk(rgb), 1) << rgb;
    QTest::newRow("without") << pngWith(2, {}) << none;
    QTest::newRow("RGB in a grey file") << pngWith(0, profileChunk(rgb)) << none;
    QTest::newRow("grey in an RGB file") << pngWith(2, profileChunk(gray)) << none;
    QTest::newRow("CMYK in an RGB file") << pngWith(2, profileChunk(cmykProfile())) << none;
    QTest::newRow("sRGB before it") << pngWith(2, pngChunk("sRGB", QByteArray(1, '\0')) + profileChunk(rgb))
                                    << none;
    QTest::newRow("sRGB behind it") << pngWith(2, profileChunk(rgb) + pngChunk("sRGB", QByteArray(1, '\0')))
                                    << none;
    QTest::newRow("behind the pixels")
        << pngWith(2, {}).chopped(12) + profileChunk(rgb) + pngChunk("IEND", QByteArray()) << none;
    QTest::newRow("two of them") << pngWith(2, profileChunk(rgb) + profileChunk(rgb + "more")) << rgb;
    QTest::newRow("the longest name") << pngWith(2, profileChunk(rgb, QByteArray(79, 'n'))) << rgb;
    QTest::newRow("a longer name") << pngWith(2, profileChunk(rgb, QByteArray(80, 'n'))) << none;
    QTest::newRow("no name") << pngWith(2, profileChunk(rgb, {})) << none;
    QTest::newRow("method 1") << pngWith(2, profileChunk(rgb, "a", 1)) << none;
    QByteArray wrongSum = profileChunk(rgb);
    wrongSum.back() = char(wrongSum.back() ^ 1);
    QTest::newRow("wrong check sum") << pngWith(2, wrongSum) << none;
    QTest::newRow("no stream") << pngWith(2, pngChunk("iCCP", QByteArray("a\0\0xxxxxxxxxx", 13))) << none;
    QTest::newRow("nothing") << pngWith(2, pngChunk("iCCP", QByteArray())) << none;
    QTest::newRow("no profile in it") << pngWith(2, profileChunk(QByteArray(500, 'x'))) << none;
    const QByteArray greatest = rgb + QByteArray(maxProfileBytes - rgb.size(), '\0');
    QTest::newRow("4 MB") << pngWith(2, profileChunk(greatest)) << greatest;
    QTest::newRow("over 4 MB") << pngWith(2, profileChunk(greatest + '\0')) << none;
    QTest::newRow("400 MB") << pngWith(2, profileChunk(QByteArray(400 << 20, '\0'))) << none;
}

void TestEmbeddedProfiles::readsPng()
{
    QFETCH(QByteArray, file);
    const auto picture = decodeBytes(pngCodec(), file);
    QVERIFY(picture && picture->complete);
    QTEST(picture->profile, "profile");
}

void TestEmbeddedProfiles::readsOtherPrograms_data()
{
    QTest::addColumn<QString>("extension");
    QTest::newRow("PNG") << QStringLiteral("png");
    QTest::newRow("TIFF") << QStringLiteral("tif");
    QTest::newRow("BMP") << QStringLiteral("bmp");
}

void TestEmbeddedProfiles::readsOtherPrograms()
{
    QFETCH(QString, extension);
    const ScratchFiles files;
    const QByteArray profile = rgbProfile(wideGamut);
    const QString path = files.write(QStringLiteral("some.icc"), profile);
    const QString out = files.path(QStringLiteral("out.") + extension);
    runTool(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("-profile"), path, out},
            ppmOf(samplePicture(QSize(9, 7))));
    const auto source = ByteSource::fromBytes(files.read(QStringLiteral("out.") + extension));
    auto decoder = openDecoder(source, extension);
    QVERIFY(decoder);
    const CancelFlag goOn{false};
    const auto picture = (*decoder)->decode(1, {}, goOn);
    QVERIFY(picture);
    QCOMPARE(picture->profile, profile);
}

void TestEmbeddedProfiles::readsTiff_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("profile");
    const QByteArray rgb = rgbProfile(wideGamut);
    const QByteArray gray = grayProfile(1);
    const QByteArray none;
    const QByteArray pixels(16, '\x55');
    constexpr int whiteIsZero = 0;
    constexpr int blackIsZero = 1;
    constexpr int color = 2;
    constexpr int palette = 3;
    constexpr int inks = 5;
    constexpr int lab = 8;
    QTest::newRow("RGB") << tiffWith(color, 3, rgb, pixels.left(12)).bytes() << rgb;
    QTest::newRow("grey") << tiffWith(blackIsZero, 1, gray, pixels.left(4)).bytes() << gray;
    QTest::newRow("grey, 0 is white") << tiffWith(whiteIsZero, 1, gray, pixels.left(4)).bytes() << gray;
    TiffMaker indexed = tiffWith(palette, 1, rgb, pixels.left(4));
    indexed.setShorts(320, QByteArray(2 * 3 * 256, '\x11'));
    QTest::newRow("palette") << indexed.bytes() << rgb;
    QTest::newRow("RGB in a grey file") << tiffWith(blackIsZero, 1, rgb, pixels.left(4)).bytes() << none;
    QTest::newRow("grey in an RGB file") << tiffWith(color, 3, gray, pixels.left(12)).bytes() << none;
    QTest::newRow("CMYK is used up") << tiffWith(inks, 4, cmykProfile(), pixels).bytes() << none;
    QTest::newRow("RGB in a CIELab file") << tiffWith(lab, 3, rgb, pixels.left(12)).bytes() << none;
    QTest::newRow("no profile") << tiffWith(color, 3, QByteArray(300, 'x'), pixels.left(12)).bytes() << none;
}

void TestEmbeddedProfiles::readsTiff()
{
    QFETCH(QByteArray, file);
    const auto picture = decodeBytes(tiffCodec(), file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QTEST(picture->profile, "profile");
}

void TestEmbeddedProfiles::convertsInks()
{
    const QByteArray inks = QByteArray::fromHex("00000000 ff000000 00ff8040 000000ff");
    const QByteArray profile = cmykProfile();
    const auto conversion = ColorConversion::of(profile);
    QVERIFY(conversion);
    QRgb wanted[4];
    conversion->convertInks(reinterpret_cast<const uchar*>(inks.constData()), wanted, 4, false);
    const auto picture = decodeBytes(tiffCodec(), tiffWith(5, 4, profile, inks).bytes());
    const auto plain = decodeBytes(tiffCodec(), tiffWith(5, 4, rgbProfile(wideGamut), inks).bytes());
    QVERIFY(picture && plain);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(picture->image.pixel(i % 2, i / 2), wanted[i]);
    QCOMPARE(plain->image.pixel(1, 0), qRgb(0, 255, 255)); // that profile does not fit
    QVERIFY(picture->image.pixel(1, 0) != plain->image.pixel(1, 0));

    TiffMaker clear =
        tiffWith(5, 5, profile, QByteArray::fromHex("0000000010 ff00000020 00ff804030 000000ff40"));
    clear.set(338, 3, {2});
    const auto other = decodeBytes(tiffCodec(), clear.bytes());
    QVERIFY(other);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(qAlpha(other->image.pixel(i % 2, i / 2)), 16 * (i + 1));
        QCOMPARE(other->image.pixel(i % 2, i / 2) | 0xff000000U, wanted[i]);
    }
}

void TestEmbeddedProfiles::writes_data()
{
    QTest::addColumn<bool>("tiff");
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArray>("profile");
    QTest::addColumn<bool>("kept");
    const QImage color = imageOf(samplePicture(QSize(20, 10))).convertToFormat(QImage::Format_RGB32);
    const QImage alpha = imageOf(samplePicture(QSize(20, 10))).convertToFormat(QImage::Format_ARGB32);
    const QImage gray = color.convertToFormat(QImage::Format_Grayscale8);
    const QImage indexed = color.convertToFormat(QImage::Format_Indexed8);
    for (const bool tiff : {false, true}) {
        const char* name = tiff ? "TIFF" : "PNG";
        QTest::addRow("%s RGB", name) << tiff << color << rgbProfile(wideGamut) << true;
        QTest::addRow("%s RGBA", name) << tiff << alpha << rgbProfile(wideGamut) << true;
        QTest::addRow("%s palette", name) << tiff << indexed << rgbProfile(wideGamut) << true;
        QTest::addRow("%s grey", name) << tiff << gray << grayProfile(1) << true;
        QTest::addRow("%s grey with RGB", name) << tiff << gray << rgbProfile(wideGamut) << false;
        QTest::addRow("%s RGB with grey", name) << tiff << color << grayProfile(1) << false;
        QTest::addRow("%s RGB with CMYK", name) << tiff << color << cmykProfile() << false;
        QTest::addRow("%s with something else", name) << tiff << color << QByteArray(300, 'x') << false;
        QTest::addRow("%s without", name) << tiff << color << QByteArray() << false;
    }
}

void TestEmbeddedProfiles::writes()
{
    QFETCH(bool, tiff);
    QFETCH(QImage, image);
    QFETCH(QByteArray, profile);
    QFETCH(bool, kept);
    const Codec& codec = tiff ? tiffCodec() : pngCodec();
    const char* extension = tiff ? "tif" : "png";
    QVERIFY(codec.keepsProfile(QLatin1String(extension), ColorModel::Gray));
    QVERIFY(!codec.keepsProfile(QStringLiteral("gif"), ColorModel::Rgb));
    const auto file = codec.encode(image, QLatin1String(extension), EncodeOptions{{}, profile});
    const auto plain = codec.encode(image, QLatin1String(extension), {});
    QVERIFY(file && plain);
    const auto picture = decodeBytes(codec, *file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->profile, kept ? profile : QByteArray());
    QCOMPARE(picture->image, decodeBytes(codec, *plain)->image);
    if (kept)
        QCOMPARE(extracted(*file, extension), profile);
    else
        QCOMPARE(*file, *plain);
}

QTEST_GUILESS_MAIN(TestEmbeddedProfiles)
#include "tst_embeddedprofiles.moc"
