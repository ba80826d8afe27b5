// TIFF pages of all depths and colour models, put together field by field, down to the single pixel.
#include "engine/codecs/Codecs.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "Pixels.h"
#include "ProfileFixtures.h"
#include "TiffMaker.h"

#include <QtTest>

#include <lcms2.h>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

Pixels greys(std::initializer_list<int> values)
{
    Pixels pixels;
    for (const int value : values)
        pixels.append(qRgb(value, value, value));
    return pixels;
}

} // namespace

class TestTiffVariants : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readsVariants_data();
    void readsVariants();
    void readsLab_data();
    void readsLab();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffVariants::readsVariants_data()
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

void TestTiffVariants::readsVariants()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Pixels, pixels);
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete);
    QCOMPARE(pixelFault(result->image, pixels), QString());
    QTEST(int(result->image.format()), "format");
    QTEST(result->bitsPerPixel, "bits");
}

void TestTiffVariants::readsLab_data()
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
void TestTiffVariants::readsLab()
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

QTEST_GUILESS_MAIN(TestTiffVariants)
#include "tst_tiffvariants.moc"
