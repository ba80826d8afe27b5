#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/tiff/TiffLayout.h"
#include "engine/codecs/tiff/TiffPages.h"
#include "engine/codecs/tiff/TiffStriles.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"
#include "ProfileFixtures.h"
#include "TiffMaker.h"

#include <QBuffer>
#include <QTemporaryFile>
#include <QtTest>

#include <lcms2.h>
#include <unistd.h>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

/// A file that ImageMagick reads without a second thought about depth and colours.
QByteArray inputOf(const QImage& image)
{
    if (!image.hasAlphaChannel())
        return writePnm(image);
    QBuffer buffer;
    image.save(&buffer, "PNG");
    return buffer.data();
}

/// `picture` as a TIFF by ImageMagick, then taken through tiffcp with `options`.
QByteArray madeByTools(const QImage& picture, const QStringList& convertOptions, const QStringList& options)
{
    const QByteArray first =
        fileMadeBy(QStringLiteral("convert"),
                   QStringList{QStringLiteral("@in")} + convertOptions +
                       QStringList{QStringLiteral("-compress"), QStringLiteral("none"), QStringLiteral("@")},
                   QStringLiteral("tif"), inputOf(picture));
    if (options.isEmpty())
        return first;
    return fileMadeBy(QStringLiteral("tiffcp"), options + words("@in @"), QStringLiteral("tif"), first);
}

QByteArray encoded(const QImage& image)
{
    const auto bytes = tiffCodec().encode(image, QStringLiteral("tif"), {});
    return bytes ? *bytes : QByteArray();
}

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

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

/// A page in YCbCr whose chroma is stored once for a block of pixels, in two strips.
QByteArray blockYCbCr(QSize blocks)
{
    const QSize across(20 / blocks.width(), 8 / blocks.height());
    const int count = across.width() * across.height() * (blocks.width() * blocks.height() + 2);
    const QImage noise = greyPicture(QSize(count, 1));
    const QByteArray data(reinterpret_cast<const char*>(noise.constScanLine(0)), count);
    TiffMaker tiff;
    tiff.page(20, 16, 8, 3, 6, {});
    tiff.set(278, 4, {8});
    tiff.set(530, 3, {quint32(blocks.width()), quint32(blocks.height())});
    tiff.strips = {data, data};
    return tiff.bytes();
}

using Pixels = QList<QRgb>;

Pixels greys(std::initializer_list<int> values)
{
    Pixels pixels;
    for (const int value : values)
        pixels.append(qRgb(value, value, value));
    return pixels;
}

} // namespace

class TestTiffCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs();
    void readsFilesOfTools_data();
    void readsFilesOfTools();
    void agreesWithOtherReaders_data();
    void agreesWithOtherReaders();
    void readsLab_data();
    void readsLab();
    void showsWhatACutStripHolds_data();
    void showsWhatACutStripHolds();
    void readsVariants_data();
    void readsVariants();
    void turnsUpright_data();
    void turnsUpright();
    void countsPages_data();
    void countsPages();
    void readsEveryPage();
    void refuses_data();
    void refuses();
    void tellsWhatIsWrong_data();
    void tellsWhatIsWrong();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void refusesToWriteNothing();
    void printsNothing();
    void stopsWhenCancelled();
    void stopsLookingForABreak();
    void looksForABreakAFewTimes();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffCodec::sniffs()
{
    QVERIFY(m_codec.sniff(hex("49492a0008000000"), QString()));
    QVERIFY(m_codec.sniff(hex("4d4d002a00000008"), QStringLiteral("jpg")));
    QVERIFY(m_codec.sniff(hex("49492b0008000000"), QString()));
    QVERIFY(m_codec.sniff(hex("4d4d002b00080000"), QString()));
    QVERIFY(!m_codec.sniff(hex("49492c00"), QStringLiteral("tif")));
    QVERIFY(!m_codec.sniff("II", QStringLiteral("tif")));
    QVERIFY(!m_codec.sniff(QByteArray(), QStringLiteral("tif")));
}

void TestTiffCodec::readsFilesOfTools_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bits");
    const auto deep = int(QImage::Format_RGB32);
    const auto add = [](const QString& name, const QImage& picture, const char* first, const char* options,
                        int format, int bits) {
        const auto list = [](const char* text) { return *text ? words(text) : QStringList(); };
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

void TestTiffCodec::readsFilesOfTools()
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

void TestTiffCodec::agreesWithOtherReaders_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reader");
    const QString magick = QStringLiteral("convert");
    const QString netpbm = QStringLiteral("tifftopnm");
    const QImage picture = colorPicture(QSize(37, 21)).scaled(QSize(74, 42));
    const auto tiff = [&](const char* convertOptions) {
        return fileMadeBy(QStringLiteral("convert"),
                          QStringList{QStringLiteral("@in")} + words(convertOptions), QStringLiteral("tif"),
                          inputOf(picture));
    };
    const QByteArray plain = madeByTools(picture, words("-type TrueColor"), {});
    const auto copied = [&](const char* options) {
        return fileMadeBy(QStringLiteral("tiffcp"), words(options) + words("@in @"), QStringLiteral("tif"),
                          plain);
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

void TestTiffCodec::agreesWithOtherReaders()
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
        other = readPnm(outputOf(reader, {QStringLiteral("-byrow")}, bytes));
    else
        other = readByMagick(fileMadeBy(reader, words("-n -c none @in @"), QStringLiteral("tif"), bytes),
                             QStringLiteral("tiff"));
    // libtiff's own conversion of YCbCr rounds down in places.
    const int tolerance = reader == libtiff && result->bitsPerPixel == 24 ? 1 : 0;
    QCOMPARE(firstDifference(rgbaOf(result->image), rgbaOf(other), tolerance), QString());
}

void TestTiffCodec::readsLab_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("photometric");
    QTest::addColumn<bool>("planar");
    QTest::newRow("CIE, 8 bits") << 8 << 8 << false;
    QTest::newRow("CIE, 16 bits") << 16 << 8 << false;
    QTest::newRow("CIE, in planes") << 8 << 8 << true;
    QTest::newRow("ICC, 8 bits") << 8 << 9 << false;
    QTest::newRow("ICC, 16 bits") << 16 << 9 << false;
}

/// Against lcms2's own profile of Lab under D50.
void TestTiffCodec::readsLab()
{
    QFETCH(int, bits);
    QFETCH(int, photometric);
    QFETCH(bool, planar);
    const bool deep = bits == 16;
    const bool icc = photometric == 9;
    QList<cmsCIELab> colors;
    for (int lightness = 0; lightness <= 100; lightness += 10) {
        for (int a = -80; a <= 80; a += 20) {
            for (int b = -80; b <= 80; b += 20)
                colors.append({double(lightness), double(a), double(b)});
        }
    }
    QList<QByteArray> planes(planar ? 3 : 1);
    for (cmsCIELab& color : colors) {
        const double full = !deep ? 255 : icc ? 65280 : 65535;
        const int lightness = qRound(color.L * full / 100);
        color.L = lightness * 100 / full;
        const int offset = icc ? (deep ? 32768 : 128) : 0;
        const int scale = deep ? 256 : 1;
        const int values[] = {lightness, int(color.a) * scale + offset, int(color.b) * scale + offset};
        for (int i = 0; i < 3; ++i) {
            planes[planar ? i : 0] += char(values[i]);
            if (deep)
                planes[planar ? i : 0] += char(values[i] >> 8);
        }
    }
    TiffMaker tiff;
    tiff.page(int(colors.size()), 1, bits, 3, photometric, {});
    if (planar)
        tiff.set(284, 3, {2});
    tiff.strips = planes;
    const auto result = decoded(m_codec, tiff.bytes());
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete);

    const cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
    const cmsHPROFILE srgb = cmsCreate_sRGBProfile();
    const cmsHTRANSFORM transform = cmsCreateTransform(lab, TYPE_Lab_DBL, srgb, TYPE_RGB_8,
                                                       INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE);
    QByteArray wanted(3 * colors.size(), '\0');
    cmsDoTransform(transform, colors.constData(), wanted.data(), cmsUInt32Number(colors.size()));
    cmsDeleteTransform(transform);
    cmsCloseProfile(lab);
    cmsCloseProfile(srgb);
    for (int i = 0; i < int(colors.size()); ++i) {
        const auto* bytes = reinterpret_cast<const uchar*>(wanted.constData()) + 3 * i;
        const QRgb color = qRgb(bytes[0], bytes[1], bytes[2]);
        const QRgb got = result->image.pixel(i, 0);
        const auto text = QStringLiteral("%1 instead of %2 for %3 %4 %5")
                              .arg(got, 0, 16)
                              .arg(color, 0, 16)
                              .arg(colors[i].L)
                              .arg(colors[i].a)
                              .arg(colors[i].b);
        QVERIFY2(distance(got, color) <= 2, qPrintable(text));
    }
    const QRgb white = result->image.pixel(int(colors.size()) - 81 + 40, 0);
    QCOMPARE(white, qRgb(255, 255, 255));
}

void TestTiffCodec::showsWhatACutStripHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QSize size(96, 64);
    const auto tiff = [&](const char* options) {
        return directoryFirst(fileMadeBy(QStringLiteral("convert"),
                                         QStringList{QStringLiteral("@in")} + words(options) +
                                             words("-define tiff:rows-per-strip=64 @"),
                                         QStringLiteral("tif"), inputOf(colorPicture(size))));
    };
    QTest::newRow("Lab") << tiff("-colorspace Lab -depth 8 -compress none");
    QTest::newRow("Lab, deflate") << tiff("-colorspace Lab -depth 8 -compress zip");
    QTest::newRow("YCbCr") << tiff("-colorspace YCbCr -compress none");
    QTest::newRow("YCbCr, LZW") << tiff("-colorspace YCbCr -compress lzw");
    TiffMaker blocks;
    QByteArray noise;
    for (int i = 0; i < 48 * 32 * 6; ++i)
        noise += char(i * i / 7);
    blocks.page(96, 64, 8, 3, 6, noise);
    blocks.set(530, 3, {2, 2});
    QTest::newRow("YCbCr in blocks") << directoryFirst(blocks.bytes());
}

void TestTiffCodec::showsWhatACutStripHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY(whole && whole->complete);
    const auto part = decoded(m_codec, bytes.left(bytes.size() * 6 / 10));
    QVERIFY2(part, part ? "" : qPrintable(part.error().text));
    QVERIFY(!part->complete);
    const int rows = 64 * 5 / 10;
    QCOMPARE(part->image.copy(0, 0, 96, rows), whole->image.copy(0, 0, 96, rows));
}

void TestTiffCodec::readsVariants_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Pixels>("pixels");
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bits");
    const auto add = [](const char* name, const TiffMaker& tiff, const Pixels& pixels, QImage::Format format,
                        int bits) { QTest::newRow(name) << tiff.bytes() << pixels << int(format) << bits; };
    const auto grey8 = QImage::Format_Grayscale8;
    const auto page = [](int width, int height, int bits, int samples, int photometric, const char* pixels) {
        TiffMaker tiff;
        tiff.page(width, height, bits, samples, photometric, hex(pixels));
        return tiff;
    };
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    add("bits, 0 is black", page(3, 2, 1, 1, 1, "40 a0"), {black, white, black, white, black, white},
        QImage::Format_Mono, 1);
    add("bits, 0 is white", page(3, 2, 1, 1, 0, "40 a0"), {white, black, white, black, white, black},
        QImage::Format_Mono, 1);
    add("grey of 2 bits", page(5, 1, 2, 1, 1, "1b00"), greys({0, 85, 170, 255, 0}), grey8, 2);
    add("grey of 4 bits", page(3, 1, 4, 1, 1, "07f0"), greys({0, 119, 255}), grey8, 4);
    add("grey of 4 bits, 0 is white", page(3, 1, 4, 1, 0, "07f0"), greys({255, 136, 0}), grey8, 4);
    add("grey of 8 bits, 0 is white", page(3, 1, 8, 1, 0, "0064ff"), greys({255, 155, 0}), grey8, 8);
    add("grey of 12 bits", page(3, 1, 12, 1, 1, "000 800 fff 0"), greys({0, 128, 255}), grey8, 12);
    add("grey of 16 bits, rounded", page(4, 1, 16, 1, 1, "0000 8000 8100 ffff"), greys({0, 0, 1, 255}), grey8,
        16);
    TiffMaker big = page(4, 1, 16, 1, 1, "0080 8000 0081 ff80");
    big.bigEndian = true;
    add("grey of 16 bits, high byte first", big, greys({0, 128, 1, 255}), grey8, 16);
    add("grey of 32 bits", page(3, 1, 32, 1, 1, "00000000 00000080 ffffffff"), greys({0, 128, 255}), grey8,
        32);
    TiffMaker number = page(3, 1, 8, 1, 1, "80007f");
    number.set(339, 3, {2});
    add("said to be signed", number, greys({128, 0, 127}), grey8, 8);
    TiffMaker real =
        page(5, 1, 32, 1, 1, "00000000 0000003f 0000803f 000000c0 0000c07f"); // 0 .5 1 -2 not a number
    real.set(339, 3, {3});
    add("float", real, greys({0, 128, 255, 0, 0}), grey8, 32);
    TiffMaker half = page(3, 1, 16, 1, 1, "0000 0038 003c");
    half.set(339, 3, {3});
    add("half float", half, greys({0, 128, 255}), grey8, 16);
    TiffMaker twice = page(2, 1, 64, 1, 1, "000000000000e03f 000000000000f03f");
    twice.set(339, 3, {3});
    add("double", twice, greys({128, 255}), grey8, 64);

    const Pixels three = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(1, 2, 3)};
    add("RGB", page(3, 1, 8, 3, 2, "ff0000 00ff00 010203"), three, QImage::Format_RGB32, 24);
    add("RGB of 16 bits", page(3, 1, 16, 3, 2, "ffff00000000 0000ffff0000 010102020303"), three,
        QImage::Format_RGB32, 48);
    add("RGB of 4 bits", page(2, 1, 4, 3, 2, "f00 0f7"), {qRgb(255, 0, 0), qRgb(0, 255, 119)},
        QImage::Format_RGB32, 12);
    TiffMaker infrared = page(2, 1, 8, 4, 2, "ff000000 00ff0080");
    infrared.set(338, 3, {0});
    add("RGB and something", infrared, {qRgb(255, 0, 0), qRgb(0, 255, 0)}, QImage::Format_RGB32, 32);
    TiffMaker loose = page(3, 1, 8, 4, 2, "ff000000 00ff0080 010203ff");
    loose.set(338, 3, {2});
    add("alpha on its own", loose, {qRgba(255, 0, 0, 0), qRgba(0, 255, 0, 128), qRgb(1, 2, 3)},
        QImage::Format_ARGB32, 32);
    TiffMaker bound = page(4, 1, 8, 4, 2, "00000000 00400080 010203ff ff000080");
    bound.set(338, 3, {1});
    add("alpha multiplied in", bound,
        {qRgba(0, 0, 0, 0), qRgba(0, 128, 0, 128), qRgb(1, 2, 3), qRgba(255, 0, 0, 128)},
        QImage::Format_ARGB32, 32);
    TiffMaker wide = page(1, 1, 16, 4, 2, "0040 0000 0020 0080");
    wide.set(338, 3, {1});
    add("alpha multiplied in, 16 bits", wide, {qRgba(128, 0, 64, 128)}, QImage::Format_ARGB32, 64);
    TiffMaker greyAlpha = page(2, 1, 8, 2, 1, "6400 c880");
    greyAlpha.set(338, 3, {2});
    add("grey with alpha", greyAlpha, {qRgba(100, 100, 100, 0), qRgba(200, 200, 200, 128)},
        QImage::Format_ARGB32, 16);
    add("CMYK", page(4, 1, 8, 4, 5, "00000000 ff000000 000000ff 00ff3380"),
        {white, qRgb(0, 255, 255), black, qRgb(127, 0, 102)}, QImage::Format_RGB32, 32);

    const QByteArray maps = hex("ffff 0000 0000 ffff   0000 ffff 0000 ffff   0000 0000 ffff ffff");
    const Pixels four = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), white};
    TiffMaker palette = page(4, 1, 2, 1, 3, "1b");
    palette.setShorts(320, maps);
    add("palette of 2 bits", palette, four, QImage::Format_Indexed8, 2);
    TiffMaker narrowMap = page(4, 1, 2, 1, 3, "1b");
    narrowMap.setShorts(320, hex("ff00 0000 0000 ff00   0000 ff00 0000 ff00   0000 0000 ff00 ff00"));
    add("palette with values of 8 bits", narrowMap, four, QImage::Format_Indexed8, 2);
    TiffMaker spread = page(2, 1, 1, 1, 3, "40");
    spread.setShorts(320, hex("8100 8000 0000 ffff ff7f 0080")); // 129 is nearer to 257 than to 0
    add("palette of 1 bit, values of 16 bits", spread, {qRgb(1, 0, 127), qRgb(0, 255, 128)},
        QImage::Format_Mono, 1);
    TiffMaker shifted = page(2, 1, 1, 1, 3, "40");
    shifted.setShorts(320, hex("0064 00c8 0000 00ff 0011 0000"));
    add("palette of 1 bit, values shifted", shifted, {qRgb(0x64, 0, 0x11), qRgb(0xC8, 255, 0)},
        QImage::Format_Mono, 1);

    TiffMaker planes;
    planes.page(3, 1, 8, 3, 2, {});
    planes.set(284, 3, {2});
    planes.strips = {hex("ff0001"), hex("00ff02"), hex("000003")};
    add("planes", planes, three, QImage::Format_RGB32, 24);
    TiffMaker tiles;
    tiles.page(5, 3, 8, 1, 1, {});
    tiles.tile(4, 2);
    tiles.strips = {hex("01020304 06070809"), hex("05000000 0a000000"), hex("0b0c0d0e 00000000"),
                    hex("0f000000 00000000")};
    add("tiles of 4 x 2", tiles, greys({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}), grey8, 8);
    TiffMaker bitTiles;
    bitTiles.page(5, 1, 1, 1, 1, {});
    bitTiles.tile(3, 1);
    bitTiles.strips = {hex("a0"), hex("40")};
    add("tiles of bits, not whole bytes", bitTiles, {white, black, white, black, white}, QImage::Format_Mono,
        1);
    TiffMaker noCount = page(3, 1, 8, 3, 2, "ff0000 00ff00 010203");
    noCount.set(279, 4, {1});
    add("a byte count that is too small", noCount, three, QImage::Format_RGB32, 24);
}

void TestTiffCodec::readsVariants()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Pixels, pixels);
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete);
    Pixels seen;
    for (int i = 0; i < result->image.width() * result->image.height(); ++i)
        seen.append(result->image.pixel(i % result->image.width(), i / result->image.width()));
    QCOMPARE(seen, pixels);
    QTEST(int(result->image.format()), "format");
    QTEST(result->bitsPerPixel, "bits");
}

void TestTiffCodec::turnsUpright_data()
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

void TestTiffCodec::turnsUpright()
{
    QFETCH(QImage, picture);
    QFETCH(int, orientation);
    const QByteArray bytes = withOrientation(encoded(picture), orientation);
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
        fileMadeBy(QStringLiteral("convert"), words("tiff:@in -auto-orient -depth 8 ppm:@"),
                   QStringLiteral("ppm"), bytes);
    QCOMPARE(difference(result->image, readPnm(turned)), QString());
}

void TestTiffCodec::countsPages_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("pages");
    TiffMaker one;
    one.page(1, 1, 8, 1, 1, "a");
    QTest::newRow("one") << one.bytes() << 1;
    one.next = 8;
    QTest::newRow("a page that follows itself") << one.bytes() << 1;
    one.next = 0x7FFFFFFF;
    QTest::newRow("a next page past the end") << one.bytes() << 1;
    one.next = 0xFFFFFFFF;
    QTest::newRow("a next page at the far end") << one.bytes() << 1;
    const QByteArray single = one.bytes();
    // Directories without end: each of them one entry, each one followed by the next.
    QByteArray many = hex("49492a0008000000");
    for (int i = 0; i < 40000; ++i) {
        many += hex("0100 000103000100000001000000");
        const quint32 next = quint32(many.size()) + 4;
        many += QByteArray(reinterpret_cast<const char*>(&next), 4);
    }
    QTest::newRow("more than page numbers can name") << many << mostTiffPages;
    QTest::newRow("a loop of two") << hex("49492a0008000000 0100 000103000100000001000000 1a000000"
                                          "0100 000103000100000001000000 08000000")
                                   << 2;
    QTest::newRow("a directory without entries") << hex("49492a0008000000 0000 00000000") << 0;
    QTest::newRow("no directory") << hex("49492a0000000000") << 0;
    QTest::newRow("mark only") << hex("49492a00") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
}

void TestTiffCodec::countsPages()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, pages);
    QCOMPARE(int(tiffPageOffsets(*ByteSource::fromBytes(bytes)).size()), pages);
    const auto decoder = m_codec.open(ByteSource::fromBytes(bytes));
    QCOMPARE(bool(decoder), pages > 0);
    if (decoder)
        QCOMPARE((*decoder)->pageCount(), pages);
    else
        QCOMPARE(decoder.error().kind, ErrorKind::Damaged);
}

void TestTiffCodec::readsEveryPage()
{
    const QList<QImage> pictures = {colorPicture(QSize(7, 13)), dotPicture(QSize(19, 4)),
                                    greyPicture(QSize(3, 30)), alphaPicture(QSize(5, 5))};
    QTemporaryDir directory;
    QStringList paths;
    for (const QImage& picture : pictures) {
        paths << directory.filePath(QStringLiteral("%1.tif").arg(paths.size()));
        QFile file(paths.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(encoded(picture));
    }
    for (const char* options : {"-c lzw", "-8 -c none", "-B -c zip"}) {
        const QString target = directory.filePath(QStringLiteral("all.tif"));
        outputOf(QStringLiteral("tiffcp"), words(options) + paths + QStringList{target});
        QFile all(target);
        QVERIFY(all.open(QIODevice::ReadOnly));
        const QByteArray bytes = all.readAll();
        const auto decoder = m_codec.open(ByteSource::fromBytes(bytes));
        QVERIFY(decoder);
        QCOMPARE((*decoder)->pageCount(), int(pictures.size()));
        const CancelFlag go = false;
        for (int page : {4, 1, 3, 2, 2}) { // in any order, again and again
            const QImage& picture = pictures[page - 1];
            const auto header = (*decoder)->header(page);
            QVERIFY(header);
            QCOMPARE(header->size, picture.size());
            const auto result = (*decoder)->decode(page, QSize(), go);
            QVERIFY(result);
            QCOMPARE(difference(result->image, picture), QString());
            QCOMPARE(difference(readByMagick(bytes, QStringLiteral("tiff"), page - 1), picture), QString());
        }
        QVERIFY(!(*decoder)->header(5));
        QVERIFY(!(*decoder)->decode(0, QSize(), go));
    }
}

void TestTiffCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    const auto row = [](const char* name, const TiffMaker& tiff, ErrorKind kind) {
        QTest::newRow(name) << tiff.bytes() << int(kind);
    };
    const auto page = [](int width, int height, int bits, int samples, int photometric) {
        TiffMaker tiff;
        tiff.page(width, height, bits, samples, photometric, "pixels");
        return tiff;
    };
    row("too wide", page(70000, 1, 8, 1, 1), ErrorKind::TooLarge);
    row("no height", page(1, 0, 8, 1, 1), ErrorKind::Damaged);
    row("too few samples", page(1, 1, 8, 1, 2), ErrorKind::Damaged);
    TiffMaker longMap = page(1, 1, 16, 1, 3);
    longMap.setShorts(320, QByteArray(3 * 65536 * 2, '\1'));
    row("palette of 16 bits", longMap, ErrorKind::Unsupported);
    row("a palette that is not there", page(1, 1, 4, 1, 3), ErrorKind::Damaged);
    row("colour filter array", page(1, 1, 8, 1, 32803), ErrorKind::Unsupported);
    row("24 bits in a sample", page(1, 1, 24, 1, 1), ErrorKind::Unsupported);
    TiffMaker strange = page(2, 2, 8, 1, 1);
    strange.set(259, 3, {40000});
    row("unknown compression", strange, ErrorKind::Unsupported);
    TiffMaker complex = page(2, 2, 32, 1, 1);
    complex.set(339, 3, {5});
    row("complex numbers", complex, ErrorKind::Unsupported);
    TiffMaker inks = page(1, 1, 8, 4, 5);
    inks.set(332, 3, {2});
    row("inks other than CMYK", inks, ErrorKind::Unsupported);
    TiffMaker hugeTile = page(1, 1, 8, 1, 1);
    hugeTile.tile(1 << 20, 1 << 20);
    row("a tile beyond the limits", hugeTile, ErrorKind::TooLarge);
    TiffMaker largeTile = page(1, 1, 8, 1, 1);
    largeTile.tile(4096, 4096);
    row("a tile far larger than its page", largeTile, ErrorKind::TooLarge);
    // Each plane fits into the limit, and so does the picture; all of them together do not.
    const qint64 most = Limits::machine().maxBytes;
    constexpr int wide = 60000;
    const auto high = int(std::min<qint64>(most / 4 / wide, 60000));
    if (qint64(wide) * high * (4 + 3 * 2) > most) {
        TiffMaker planes = page(wide, high, 16, 3, 2);
        planes.set(284, 3, {2});
        planes.set(259, 3, {8});
        planes.set(273, 4, {0x7FFFFFF0, 0x7FFFFFF0, 0x7FFFFFF0});
        planes.set(279, 4, {8, 8, 8});
        row("planes beyond the limits", planes, ErrorKind::TooLarge);
        TiffMaker chroma = page(wide, high, 8, 3, 6);
        chroma.set(273, 4, {0x7FFFFFF0});
        chroma.set(530, 3, {1, 1});
        row("a strip for the library beyond the limits", chroma, ErrorKind::TooLarge);
    }
    TiffMaker away = page(4, 4, 8, 1, 1);
    away.set(273, 4, {0x7FFFFFF0});
    row("pixels past the end", away, ErrorKind::Damaged);
    TiffMaker jbig = page(4, 4, 1, 1, 1);
    jbig.set(259, 3, {34661});
    jbig.set(266, 3, {2}); // the lowest bit first: the header below stands as it is
    jbig.strips = {hex("00000100 7fffffff 7fffffff 00000001 00000000 0000")};
    row("JBIG that asks for more than its page", jbig, ErrorKind::Damaged);
    TiffMaker garbage = page(4, 4, 8, 1, 1);
    garbage.set(259, 3, {8});
    row("pixels that are no deflate", garbage, ErrorKind::Damaged);
}

void TestTiffCodec::tellsWhatIsWrong_data()
{
    QTest::addColumn<bool>("tiled");
    QTest::addColumn<int>("compression");
    QTest::addColumn<QString>("text");
    const QString packed = QStringLiteral("no row of any %1 could be unpacked");
    const QString plain = QStringLiteral("no row of any %1 is within the file");
    const QString strip = QStringLiteral("strip");
    const QString tile = QStringLiteral("tile");
    QTest::newRow("deflate") << false << 8 << packed.arg(strip);
    QTest::newRow("LZW") << false << 5 << packed.arg(strip);
    QTest::newRow("deflate in a tile") << true << 8 << packed.arg(tile);
    QTest::newRow("cut tile") << true << 1 << plain.arg(tile);
    QTest::newRow("cut strip") << false << 1 << plain.arg(strip);
}

/// In our own words: libtiff's numbers of lines mean nothing where strips are decoded one by one.
void TestTiffCodec::tellsWhatIsWrong()
{
    QFETCH(bool, tiled);
    QFETCH(int, compression);
    TiffMaker tiff;
    tiff.page(16, 16, 8, 1, 1, "pixels");
    tiff.set(259, 3, {quint32(compression)});
    if (tiled)
        tiff.tile(16, 16);
    const auto result = decoded(m_codec, tiff.bytes());
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Damaged);
    QTEST(result.error().text, "text");
}

void TestTiffCodec::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    const auto result = decoded(m_codec, bytes);
    QVERIFY(!result);
    QVERIFY2(int(result.error().kind) == kind, qPrintable(result.error().text));
    QVERIFY(!result.error().text.isEmpty());
}

void TestTiffCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    // The directory must stand in front of the pixels, or a cut takes it first.
    const auto row = [](const char* name, const QImage& picture, const char* first, const char* options) {
        const QByteArray bytes = madeByTools(picture, words(first), words(options));
        QTest::newRow(name) << directoryFirst(bytes);
    };
    row("rows", colorPicture(QSize(7, 12)), "-type TrueColor", "-c none");
    row("LZW with differences, one strip",
        palettePicture(QSize(40, 30), 20).convertToFormat(QImage::Format_RGB32), "-type TrueColor",
        "-c lzw:2 -r 30");
    row("deflate with differences, strips", colorPicture(QSize(7, 12)), "-type TrueColor", "-c zip:2 -r 4");
    row("packbits", greyPicture(QSize(9, 14)), "-type Grayscale -depth 8", "-c packbits -r 14");
    row("tiles", greyPicture(QSize(33, 20)), "-type Grayscale -depth 8", "-c none -t -w 16 -l 16");
    row("group 4", dotPicture(QSize(40, 30)), "-monochrome", "-c g4");
    row("group 3", dotPicture(QSize(40, 30)), "-monochrome", "-c g3:1d");
    row("planes", colorPicture(QSize(7, 12)), "-type TrueColor", "-c lzw -p separate -r 4");
}

void TestTiffCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY2(whole, whole ? "" : qPrintable(whole.error().text));
    QVERIFY(whole->complete);
    int before = 0;
    int steps = 0;
    for (int length = 0; length < bytes.size(); ++length) {
        const auto part = decoded(m_codec, bytes.left(length));
        if (!part) {
            QCOMPARE(before, 0);
            continue;
        }
        QCOMPARE(part->image.size(), whole->image.size());
        int equal = 0;
        while (equal < part->image.height() &&
               difference(part->image.copy(0, equal, part->image.width(), 1),
                          whole->image.copy(0, equal, whole->image.width(), 1))
                   .isEmpty())
            ++equal;
        QVERIFY2(equal >= before,
                 qPrintable(QStringLiteral("%1: %2 of %3").arg(length).arg(equal).arg(before)));
        QVERIFY2(!part->complete || equal == part->image.height(), qPrintable(QString::number(length)));
        steps += equal > before ? 1 : 0;
        before = equal;
    }
    QVERIFY2(steps > 1, qPrintable(QString::number(steps)));
}

void TestTiffCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("format");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(700, 400)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        QImage white = dotPicture(size);
        white.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
        QImage tinted = dotPicture(size);
        tinted.setColorTable({qRgb(255, 200, 0), qRgb(0, 0, 99)});
        QTest::newRow(name("black first").constData()) << dotPicture(size) << int(QImage::Format_Mono);
        QTest::newRow(name("white first").constData()) << white << int(QImage::Format_Mono);
        QTest::newRow(name("two colours").constData()) << tinted << int(QImage::Format_Mono);
        QTest::newRow(name("palette").constData())
            << palettePicture(size, 200) << int(QImage::Format_Indexed8);
        QTest::newRow(name("grey").constData()) << greyPicture(size) << int(QImage::Format_Grayscale8);
        QTest::newRow(name("colour").constData()) << colorPicture(size) << int(QImage::Format_RGB32);
        QTest::newRow(name("alpha").constData()) << alphaPicture(size) << int(QImage::Format_ARGB32);
    }
    QTest::newRow("888") << colorPicture(QSize(5, 5)).convertToFormat(QImage::Format_RGB888)
                         << int(QImage::Format_RGB32);
    QImage clear = palettePicture(QSize(5, 5), 9);
    clear.setColor(3, qRgba(1, 2, 3, 0));
    QTest::newRow("palette with a clear entry") << clear << int(QImage::Format_ARGB32);
}

void TestTiffCodec::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("tiff"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("tiff")), picture), QString());
    if (!picture.hasAlphaChannel())
        QCOMPARE(difference(readByNetpbm(*bytes, QStringLiteral("tifftopnm")), picture), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QTEST(int(own->image.format()), "format");
    QCOMPARE(difference(own->image, picture), QString());
    if (picture.format() == QImage::Format_Mono)
        QCOMPARE(own->image.colorTable(), picture.colorTable());
}

void TestTiffCodec::refusesToWriteNothing()
{
    const auto bytes = m_codec.encode(QImage(), QStringLiteral("tif"), {});
    QVERIFY(!bytes);
    QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
    QVERIFY(m_codec.canEncode(QStringLiteral("tif")) && m_codec.canEncode(QStringLiteral("tiff")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("bmp")));
}

void TestTiffCodec::printsNothing()
{
    const QByteArray good = encoded(colorPicture(QSize(30, 30)));
    QTemporaryFile caught;
    QVERIFY(caught.open());
    const int before = ::dup(STDERR_FILENO);
    ::dup2(caught.handle(), STDERR_FILENO);
    for (int at = 8; at < good.size(); at += 7) {
        QByteArray bad = good;
        bad[at] = char(bad[at] ^ 0x55);
        const auto result = decoded(m_codec, bad);
        Q_UNUSED(result);
    }
    ::dup2(before, STDERR_FILENO);
    ::close(before);
    QCOMPARE(caught.size(), 0);
}

void TestTiffCodec::stopsWhenCancelled()
{
    const QByteArray lab = fileMadeBy(QStringLiteral("convert"), words("@in -colorspace Lab -depth 8 @"),
                                      QStringLiteral("tif"), inputOf(colorPicture(QSize(50, 50))));
    for (const QByteArray& bytes : {encoded(colorPicture(QSize(50, 50))), lab}) {
        const auto decoder = m_codec.open(ByteSource::fromBytes(bytes));
        QVERIFY(decoder);
        CancelFlag cancel = true;
        const auto result = (*decoder)->decode(1, QSize(), cancel);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
        cancel = false;
        QVERIFY((*decoder)->decode(1, QSize(), cancel));
    }
}

namespace {

/// One strip of deflate data that is the whole page and breaks in its middle.
TiffMaker brokenStrip(int height)
{
    const QByteArray rows(16 * height, '\x33');
    QByteArray packed = qCompress(rows).mid(4); // without Qt's own length
    const QByteArray noise(reinterpret_cast<const char*>(greyPicture(QSize(16, 1)).constScanLine(0)), 16);
    packed.replace(packed.size() / 2, 8, noise.left(8));
    TiffMaker tiff;
    tiff.page(16, height, 8, 1, 1, packed);
    tiff.set(259, 3, {8});
    return tiff;
}

} // namespace

void TestTiffCodec::stopsLookingForABreak()
{
    const TiffMaker tiff = brokenStrip(60000);
    const QByteArray bytes = tiff.bytes();
    const qint64 stripAt = bytes.size() - tiff.strips[0].size();
    CancelFlag cancel = false;
    bool armed = false;
    const auto source = std::make_shared<WatchedSource>(bytes, [&](qint64 offset) {
        if (armed && offset == stripAt)
            cancel = true; // the strip is read just before it is decoded for the first time
    });
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder);
    const auto found = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(found);
    QVERIFY(!found->complete);
    armed = true;
    const auto result = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
}

void TestTiffCodec::looksForABreakAFewTimes()
{
    TiffMaker tiff = brokenStrip(60000);
    const auto errorsOf = [&tiff](bool cancelled) {
        const auto source = ByteSource::fromBytes(tiff.bytes());
        const auto handle = TiffHandle::reading(source);
        TIFFSetSubDirectory(handle->get(), 8);
        const auto layout = readTiffLayout(handle->get());
        TiffStriles striles(*handle, source, *layout);
        const TiffBuffer rows = striles.allocate(60000);
        const CancelFlag cancel = cancelled;
        striles.decode(0, 0, 60000, rows.get(), cancel);
        return handle->errorCount();
    };
    tiff.strips[0].fill('\xFF'); // broken from its first byte: every try fails
    const int once = errorsOf(true);
    QVERIFY(once > 0);
    const int tries = errorsOf(false) / once;
    QVERIFY2(tries > 1 && tries <= 9, qPrintable(QString::number(tries)));
}

void TestTiffCodec::survivesBrokenFiles()
{
    const QImage small = colorPicture(QSize(19, 11));
    QList<QByteArray> parents = {encoded(small), encoded(dotPicture(QSize(33, 9))),
                                 encoded(palettePicture(QSize(9, 9), 30))};
    for (const char* options : {"-c none -r 4", "-c zip:2 -p separate", "-c jpeg:75 -r 16",
                                "-c lzw -t -w 16 -l 16", "-c packbits -B", "-c none -8"})
        parents += madeByTools(small, words("-type TrueColor"), words(options));
    parents += madeByTools(dotPicture(QSize(33, 9)), words("-monochrome"), words("-c g3:2d"));
    parents += blockYCbCr(QSize(2, 2));
    for (QByteArray& parent : parents)
        parent = directoryFirst(parent); // where the mutator strikes most
    for (quint32 seed = 1; seed <= 352; ++seed) {
        const QString fault =
            misbehaviour(m_codec, Mutator(parents[seed % quint32(parents.size())], seed).next());
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

QTEST_GUILESS_MAIN(TestTiffCodec)
#include "tst_tiffcodec.moc"
