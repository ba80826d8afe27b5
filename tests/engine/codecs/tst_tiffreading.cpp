// TIFF files that programs write, against the pictures they were made of and what other readers see.
#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "TiffMaker.h"
#include "TiffTools.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// Where pixel `at` of a stored picture of `size` stands when it is turned upright, straight from the tag's
/// definition: which side of the picture the first stored row and column are.
QPoint uprightPlace(QPoint at, QSize size, int orientation)
{
    const int right = size.width() - 1 - at.x();
    const int down = size.height() - 1 - at.y();
    switch (orientation) {
    case 2:
        return {right, at.y()};
    case 3:
        return {right, down};
    case 4:
        return {at.x(), down};
    case 5:
        return {at.y(), at.x()};
    case 6:
        return {down, at.x()};
    case 7:
        return {down, right};
    case 8:
        return {at.y(), right};
    default:
        return at;
    }
}

const QString libtiff = QStringLiteral("tiff2rgba");

} // namespace

class TestTiffReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs();
    void readsFilesOfTools_data();
    void readsFilesOfTools();
    void agreesWithOtherReaders_data();
    void agreesWithOtherReaders();
    void turnsUpright_data();
    void turnsUpright();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffReading::sniffs()
{
    QVERIFY(m_codec.sniff(hex("49492a0008000000"), QString()));
    QVERIFY(m_codec.sniff(hex("4d4d002a00000008"), QStringLiteral("jpg")));
    QVERIFY(m_codec.sniff(hex("49492b0008000000"), QString()));
    QVERIFY(m_codec.sniff(hex("4d4d002b00080000"), QString()));
    QVERIFY(!m_codec.sniff(hex("49492c00"), QStringLiteral("tif")));
    QVERIFY(!m_codec.sniff("II", QStringLiteral("tif")));
    QVERIFY(!m_codec.sniff(QByteArray(), QStringLiteral("tif")));
}

void TestTiffReading::readsFilesOfTools_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bits");
    const auto deep = int(QImage::Format_RGB32);
    const auto add = [](const QString& name, const QImage& picture, const char* first, const char* options,
                        int format, int bits) {
        const auto list = [](const char* text) { return *text ? arguments(text) : QStringList(); };
        QTest::newRow(qPrintable(name)) << picture << list(first) << list(options) << format << bits;
    };
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 50)}) {
        const QString at = QStringLiteral(" %1x%2").arg(size.width()).arg(size.height());
        add(QStringLiteral("colour") + at, colorPicture(size), "-type TrueColor", "-c lzw:2 -r 5", deep, 24);
        add(QStringLiteral("alpha") + at, alphaPicture(size), "-type TrueColorMatte", "-c zip:2 -r 3",
            QImage::Format_ARGB32, 32);
        add(QStringLiteral("palette") + at, palettePicture(size, 99).convertToFormat(QImage::Format_RGB32),
            "-type Palette", "-c packbits", QImage::Format_Indexed8, 8);
        add(QStringLiteral("grey") + at, greyPicture(size), "-type Grayscale -depth 8", "-c zip",
            QImage::Format_Grayscale8, 8);
        add(QStringLiteral("bits") + at, dotPicture(size), "-monochrome", "-c g4", QImage::Format_Mono, 1);
        add(QStringLiteral("tiles") + at, colorPicture(size), "-type TrueColor", "-c lzw -t -w 16 -l 32",
            deep, 24);
        add(QStringLiteral("tiles of bits") + at, dotPicture(size), "-monochrome",
            "-c packbits -t -w 16 -l 16", QImage::Format_Mono, 1);
    }
    const QImage picture = colorPicture(QSize(61, 33));
    for (const char* options :
         {"", "-c none -r 4", "-c none -B", "-c none -8", "-c lzw -B -8", "-c none -t -w 32 -l 16",
          "-c packbits", "-c zip:1", "-c lzma", "-c zstd:2", "-c none -p separate",
          "-c lzw:2 -p separate -r 4", "-c zip -p separate -t -w 16 -l 16", "-c lzw -f lsb2msb"})
        add(QStringLiteral("colour ") + QLatin1String(options), picture, "-type TrueColor", options, deep,
            24);
    const QImage dots = dotPicture(QSize(1001, 30));
    for (const char* options :
         {"-c none", "-c packbits", "-c lzw", "-c zip", "-c g3:1d", "-c g3:2d", "-c g3:2d:fill", "-c g4 -r 7",
          "-c g4 -f lsb2msb", "-c none -f lsb2msb -B", "-c jbig", "-c g4 -t -w 64 -l 16"})
        add(QStringLiteral("bits ") + QLatin1String(options), dots, "-monochrome", options,
            QImage::Format_Mono, 1);
    add(QStringLiteral("16 colours"), palettePicture(QSize(31, 9), 13).convertToFormat(QImage::Format_RGB32),
        "-type Palette", "-c lzw", QImage::Format_Indexed8, 8);
}

void TestTiffReading::readsFilesOfTools()
{
    QFETCH(QImage, picture);
    QFETCH(QStringList, first);
    QFETCH(QStringList, options);
    QFETCH(int, bits);
    const QByteArray bytes = madeByTools(picture, first, options);
    QVERIFY(m_codec.sniff(bytes.left(512), QString()));
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(difference(result->image, picture), QString());
    QVERIFY(result->complete && result->isFull());
    // One pixel of grey is made a palette or bits by the tools as they like.
    if (picture.width() > 1) {
        QTEST(int(result->image.format()), "format");
        QVERIFY2(result->bitsPerPixel == bits || bits == 8,
                 qPrintable(QString::number(result->bitsPerPixel)));
    }
}

void TestTiffReading::agreesWithOtherReaders_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reader");
    const QString magick = QStringLiteral("convert");
    const QString netpbm = QStringLiteral("tifftopnm");
    const QImage picture = colorPicture(QSize(37, 21)).scaled(QSize(74, 42));
    const auto tiff = [&](const char* convertOptions) {
        return fileMadeBy(QStringLiteral("convert"),
                          QStringList{QStringLiteral("@in")} + arguments(convertOptions),
                          QStringLiteral("tif"), inputOf(picture));
    };
    const QByteArray plain = madeByTools(picture, arguments("-type TrueColor"), {});
    const auto copied = [&](const char* options) {
        return fileMadeBy(QStringLiteral("tiffcp"), arguments(options) + arguments("@in @"),
                          QStringLiteral("tif"), plain);
    };
    QTest::newRow("JPEG in RGB") << copied("-c jpeg:raw:90 -r 16") << magick;
    QTest::newRow("JPEG in YCbCr") << copied("-c jpeg:90 -r 32") << magick;
    QTest::newRow("JPEG in YCbCr, strips of 16") << copied("-c jpeg:75 -r 16") << magick;
    QTest::newRow("JPEG in YCbCr, tiles") << copied("-c jpeg:75 -t -w 16 -l 16") << magick;
    QTest::newRow("WebP") << copied("-c webp") << magick;
    QTest::newRow("LERC") << copied("-c lerc") << magick;
    TiffMaker real;
    real.page(2, 1, 32, 3, 2, hex("00000000 8180803e c0bf3f3f  0000803f 8180803e 00000000"));
    real.set(339, 3, {3, 3, 3});
    QTest::newRow("float") << real.bytes() << magick;
    // Of 16 bits the other readers' own 16 are taken and rounded here: some drop the lower half.
    QTest::newRow("16 bits") << tiff("-depth 16 -evaluate Multiply 0.77 @") << netpbm;
    QTest::newRow("16 bits grey") << tiff("-colorspace Gray -depth 16 -evaluate Multiply 0.77 @") << netpbm;
    QTest::newRow("signed") << tiff("-define quantum:format=signed -depth 8 @") << libtiff;
    QTest::newRow("signed, 16 bits") << tiff("-define quantum:format=signed -depth 16 @") << magick;
    for (const QSize blocks : {QSize(1, 1), QSize(2, 1), QSize(2, 2), QSize(4, 2)})
        QTest::addRow("YCbCr in blocks of %d x %d", blocks.width(), blocks.height())
            << blockYCbCr(blocks) << libtiff;
}

void TestTiffReading::agreesWithOtherReaders()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reader);
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete);
    QImage other;
    if (reader == QLatin1String("convert"))
        other = readByMagick(bytes, QStringLiteral("tiff"));
    else if (reader == QLatin1String("tifftopnm"))
        other = readPnm(runTool(reader, {QStringLiteral("-byrow")}, bytes));
    else
        other = readByMagick(fileMadeBy(reader, arguments("-n -c none @in @"), QStringLiteral("tif"), bytes),
                             QStringLiteral("tiff"));
    // libtiff's own conversion of YCbCr rounds down in places.
    const int tolerance = reader == libtiff && result->bitsPerPixel == 24 ? 1 : 0;
    QCOMPARE(firstDifference(rgbaOf(result->image), rgbaOf(other), tolerance), QString());
}

void TestTiffReading::turnsUpright_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("orientation");
    for (int orientation = 1; orientation <= 8; ++orientation) {
        QTest::addRow("colour %d", orientation) << colorPicture(QSize(13, 70)) << orientation;
        QTest::addRow("grey %d", orientation) << greyPicture(QSize(7, 5)) << orientation;
        QTest::addRow("bits %d", orientation) << dotPicture(QSize(13, 9)) << orientation;
        QTest::addRow("palette %d", orientation) << palettePicture(QSize(1, 9), 20) << orientation;
    }
}

void TestTiffReading::turnsUpright()
{
    QFETCH(QImage, picture);
    QFETCH(int, orientation);
    const QByteArray bytes = withOrientation(encodeBytes(m_codec, picture, "tif"), orientation);
    const auto decoder = m_codec.open(ByteSource::fromBytes(bytes));
    QVERIFY(decoder);
    QImage expected(orientation > 4 ? picture.size().transposed() : picture.size(), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            expected.setPixel(uprightPlace(QPoint(x, y), picture.size(), orientation), picture.pixel(x, y));
    }
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    QCOMPARE(header->size, expected.size());
    const CancelFlag go = false;
    const auto result = (*decoder)->decode(1, QSize(), go);
    QVERIFY(result);
    QCOMPARE(result->fullSize, expected.size());
    QCOMPARE(result->image.format(), picture.format());
    QCOMPARE(difference(result->image, expected), QString());
    const QByteArray turned =
        fileMadeBy(QStringLiteral("convert"), arguments("tiff:@in -auto-orient -depth 8 ppm:@"),
                   QStringLiteral("ppm"), bytes);
    QCOMPARE(difference(result->image, readPnm(turned)), QString());
}

QTEST_GUILESS_MAIN(TestTiffReading)
#include "tst_tiffreading.moc"
