// Colours, greys and whole pictures brought to sRGB, against the formulas and lcms2.
#include "ColorFixtures.h"
#include "DisplayImage.h"
#include "ProfileFixtures.h"

#include <QtTest>

#include <lcms2.h>

#include <cstring>

using namespace quorvia::engine;
using namespace quorvia::test;

Q_DECLARE_METATYPE(RgbSpace)

namespace {

/// As lcms2 converts them itself, without any table of its own.
std::vector<QRgb> byLcms(const QByteArray& profile, const std::vector<QRgb>& colors)
{
    const cmsHPROFILE from = cmsOpenProfileFromMem(profile.constData(), cmsUInt32Number(profile.size()));
    const cmsHPROFILE to = cmsCreate_sRGBProfile();
    const cmsHTRANSFORM transform =
        cmsCreateTransform(from, TYPE_BGRA_8, to, TYPE_BGRA_8, INTENT_PERCEPTUAL,
                           cmsFLAGS_NOOPTIMIZE | cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_COPY_ALPHA);
    std::vector<QRgb> result(colors.size());
    cmsDoTransform(transform, colors.data(), result.data(), cmsUInt32Number(colors.size()));
    cmsDeleteTransform(transform);
    cmsCloseProfile(from);
    cmsCloseProfile(to);
    return result;
}

} // namespace

class tst_RgbConversion : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void curvesAndMatrix_data()
    {
        QTest::addColumn<RgbSpace>("space");
        QTest::newRow("Adobe RGB") << adobeRgb;
        QTest::newRow("P3") << displayP3;
        QTest::newRow("wide, D50") << wideGamut;
        QTest::newRow("changed over") << swappedRgb;
        RgbSpace space = adobeRgb;
        space.gamma = 1;
        QTest::newRow("straight") << space;
    }

    void curvesAndMatrix()
    {
        QFETCH(RgbSpace, space);
        const QByteArray profile = rgbProfile(space);
        const auto conversion = ColorConversion::of(profile);
        QVERIFY(conversion);
        QCOMPARE(conversion->model(), ColorModel::Rgb);
        const std::vector<QRgb> colors = colorsAllOver();
        const std::vector<QRgb> got = convertedBy(*conversion, colors);
        const std::vector<QRgb> exact = byLcms(profile, colors);
        for (size_t i = 0; i < colors.size(); ++i) {
            const QRgb wanted = inSrgb(colors[i], space);
            const QByteArray where = QByteArray::number(colors[i], 16) + " gives " +
                                     QByteArray::number(got[i], 16) + ", not " +
                                     QByteArray::number(wanted, 16);
            QVERIFY2(distance(got[i], wanted) <= 1 && distance(got[i], exact[i]) <= 1, where.constData());
            QCOMPARE(qAlpha(got[i]), qAlpha(colors[i]));
        }
    }

    void tables_data()
    {
        QTest::addColumn<RgbSpace>("space");
        QTest::newRow("Adobe RGB") << adobeRgb;
        QTest::newRow("P3") << displayP3;
    }

    void tables()
    {
        QFETCH(RgbSpace, space);
        const QByteArray profile = tableProfile(space);
        const auto conversion = ColorConversion::of(profile);
        QVERIFY(conversion);
        const std::vector<QRgb> colors = colorsAllOver();
        const std::vector<QRgb> got = convertedBy(*conversion, colors);
        const std::vector<QRgb> exact = byLcms(profile, colors);
        for (size_t i = 0; i < colors.size(); ++i) {
            QVERIFY2(distance(got[i], exact[i]) <= 1, QByteArray::number(colors[i], 16).constData());
            QCOMPARE(qAlpha(got[i]), qAlpha(colors[i]));
        }
        // The colours at the table's nodes are those of the formula.
        for (const QRgb color : {qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(255, 0, 0), qRgb(0, 0, 255)}) {
            const std::vector<QRgb> made = convertedBy(*conversion, {color});
            QVERIFY(distance(made[0], inSrgb(color, space)) <= 1);
        }
    }

    void floatPipelinesAreLeftAlone()
    {
        const QByteArray profile = floatProfile(adobeRgb);
        QVERIFY(profile.contains("mpet"));
        const std::vector<QRgb> colors = colorsAllOver();
        QCOMPARE(byLcms(profile, colors)[100] & 0xffffffU, 0U); // lcms2 does take it
        const auto conversion = ColorConversion::of(profile);
        QVERIFY(conversion);
        const auto plain = ColorConversion::of(rgbProfile(adobeRgb));
        QCOMPARE(convertedBy(*conversion, colors), convertedBy(*plain, colors));
    }

    void greys_data()
    {
        QTest::addColumn<double>("gamma");
        QTest::newRow("1.8") << 1.8;
        QTest::newRow("2.2") << 2.2;
        QTest::newRow("straight") << 1.0;
    }

    void greys()
    {
        QFETCH(double, gamma);
        const auto conversion = ColorConversion::of(grayProfile(gamma));
        QVERIFY(conversion);
        QCOMPARE(conversion->model(), ColorModel::Gray);
        const QList<QRgb> table = conversion->grayTable();
        QCOMPARE(table.size(), 256);
        QImage image(256, 1, QImage::Format_Grayscale8);
        for (int v = 0; v < 256; ++v)
            image.scanLine(0)[v] = uchar(v);
        const QImage made = converted(image, *conversion);
        QCOMPARE(made.format(), QImage::Format_Grayscale8);
        for (int v = 0; v < 256; ++v) {
            const int wanted = grayInSrgb(v, gamma);
            QVERIFY2(distance(table[v], qRgb(wanted, wanted, wanted)) <= 1,
                     QByteArray::number(v).constData());
            QCOMPARE(table[v], qRgb(qRed(table[v]), qRed(table[v]), qRed(table[v])));
            QCOMPARE(made.pixel(v, 0), table[v]);
            // A grey picture with alpha, as some codecs give it.
            const std::vector<QRgb> deep = convertedBy(*conversion, {qRgba(v, v, v, 99)});
            QCOMPARE(deep[0], (table[v] & 0xffffffU) | 99U << 24);
        }
    }

    void tintedGreysBecomeAPalette()
    {
        QImage image = sampleImage(QSize(50, 40), QImage::Format_Grayscale8);
        const QImage made = toSrgb(image, tintedGrayProfile());
        QCOMPARE(made.format(), QImage::Format_Indexed8);
        QCOMPARE(made.colorCount(), 256);
        const QRgb middle = made.color(128);
        QVERIFY(qRed(middle) > qGreen(middle) + 20 && qGreen(middle) > qBlue(middle) + 20);
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(made.pixelIndex(x, 17), qGray(image.pixel(x, 17)));
        QVERIFY(distance(made.color(0), qRgb(0, 0, 0)) <= 1);
        QVERIFY(distance(made.color(255), qRgb(255, 255, 255)) <= 1);
    }

    void wholeImages_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QSize>("size");
        const QSize usual(61, 47);
        const QSize large(1500, 900); // several bands
        QTest::newRow("1 bit") << QImage::Format_Mono << usual;
        QTest::newRow("palette") << QImage::Format_Indexed8 << usual;
        QTest::newRow("large palette") << QImage::Format_Indexed8 << large;
        QTest::newRow("RGB") << QImage::Format_RGB32 << usual;
        QTest::newRow("large RGB") << QImage::Format_RGB32 << large;
        QTest::newRow("alpha") << QImage::Format_ARGB32 << usual;
        QTest::newRow("large alpha") << QImage::Format_ARGB32 << large;
        QTest::newRow("one pixel") << QImage::Format_RGB32 << QSize(1, 1);
    }

    void wholeImages()
    {
        QFETCH(QImage::Format, format);
        QFETCH(QSize, size);
        const QImage image = sampleImage(size, format);
        const QImage before = image.copy();
        const Picture picture{image, size, image.depth(), true, rgbProfile(swappedRgb)};
        const QImage shown = displayImage(picture);
        QCOMPARE(image, before); // what others hold stays
        QCOMPARE(shown.format(), format);
        QCOMPARE(shown.size(), size);
        const auto conversion = ColorConversion::of(picture.profile);
        if (image.colorCount() > 0) {
            QCOMPARE(shown.colorTable(), conversion->converted(image.colorTable()));
            const auto bytes = qsizetype(size.width()) * image.depth() / 8;
            for (int y = 0; y < size.height(); ++y)
                QCOMPARE(memcmp(shown.constScanLine(y), image.constScanLine(y), size_t(bytes)), 0);
            return;
        }
        for (int y = 0; y < size.height(); ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            const std::vector<QRgb> wanted = convertedBy(*conversion, {row, row + size.width()});
            QCOMPARE(memcmp(shown.constScanLine(y), wanted.data(), wanted.size() * sizeof(QRgb)), 0);
        }
        QVERIFY(distance(shown.pixel(0, 0), inSrgb(image.pixel(0, 0), swappedRgb)) <= 1);
    }

    void pixelsOfOnesOwnAreConvertedInPlace()
    {
        const auto conversion = ColorConversion::of(rgbProfile(swappedRgb));
        QImage image = sampleImage(QSize(40, 30), QImage::Format_RGB32);
        const uchar* const bits = image.constBits();
        const QImage made = converted(std::move(image), *conversion);
        QCOMPARE(made.constBits(), bits);
    }

    void nullImages()
    {
        const auto conversion = ColorConversion::of(rgbProfile(swappedRgb));
        QVERIFY(converted(QImage(), *conversion).isNull());
        QVERIFY(toSrgb(QImage(), rgbProfile(adobeRgb)).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_RgbConversion)
#include "tst_rgbconversion.moc"
