#include "CodecFixtures.h"
#include "engine/ColorConversion.h"
#include "Mutator.h"
#include "ProfileFixtures.h"

#include <QtTest>

#include <lcms2.h>

#include <cstring>
#include <random>
#include <thread>
#include <vector>

using namespace quorvia::engine;
using namespace quorvia::test;

Q_DECLARE_METATYPE(RgbSpace)

namespace {

/// Colours all over the cube, with all grades of alpha.
std::vector<QRgb> colorsAllOver()
{
    std::vector<QRgb> colors;
    for (int r = 0; r < 256; r += 15) {
        for (int g = 0; g < 256; g += 15) {
            for (int b = 0; b < 256; b += 15)
                colors.push_back(qRgba(r, g, b, (r + 3 * g + 7 * b) % 256));
        }
    }
    for (int v = 0; v < 256; ++v)
        colors.push_back(qRgba(v, v, v, v));
    return colors;
}

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

/// Four inks all over, each of them alone among them; 255 is full.
std::vector<uchar> inksAllOver()
{
    std::vector<uchar> inks;
    std::minstd_rand numbers(77);
    constexpr int colors = 10000;
    for (int i = 0; i < 4 * colors; ++i)
        inks.push_back(uchar(numbers() >> 8));
    for (int own = 0; own < 4; ++own) {
        for (int value = 0; value < 256; ++value) {
            for (int ink = 0; ink < 4; ++ink)
                inks.push_back(uchar(ink == own ? value : 0));
        }
    }
    return inks;
}

/// As lcms2 converts `inks` itself in floating point, without any table of its own.
std::vector<QRgb> inksByLcms(const QByteArray& profile, const std::vector<uchar>& inks)
{
    std::vector<float> percent;
    for (const uchar ink : inks)
        percent.push_back(float(ink) * 100 / 255);
    const size_t count = inks.size() / 4;
    std::vector<float> colors(3 * count);
    const cmsHPROFILE from = cmsOpenProfileFromMem(profile.constData(), cmsUInt32Number(profile.size()));
    const cmsHPROFILE to = cmsCreate_sRGBProfile();
    const cmsHTRANSFORM transform =
        cmsCreateTransform(from, TYPE_CMYK_FLT, to, TYPE_RGB_FLT, INTENT_PERCEPTUAL,
                           cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION);
    cmsDoTransform(transform, percent.data(), colors.data(), cmsUInt32Number(count));
    cmsDeleteTransform(transform);
    cmsCloseProfile(from);
    cmsCloseProfile(to);
    std::vector<QRgb> result;
    for (size_t i = 0; i < colors.size(); i += 3) {
        const auto byte = [&](size_t c) { return qBound(0, qRound(colors[i + c] * 255), 255); };
        result.push_back(qRgb(byte(0), byte(1), byte(2)));
    }
    return result;
}

std::vector<QRgb> convertedBy(const ColorConversion& conversion, std::vector<QRgb> colors)
{
    conversion.convert(colors.data(), qsizetype(colors.size()));
    return colors;
}

QByteArray patched(QByteArray bytes, qsizetype at, const char* text)
{
    return bytes.replace(at, qsizetype(std::strlen(text)), text);
}

QImage sampleImage(QSize size, QImage::Format format)
{
    QImage image = imageOf(samplePicture(size)).convertToFormat(format);
    if (format == QImage::Format_Mono)
        image.setColorTable({qRgb(200, 30, 40), qRgba(10, 220, 90, 77)});
    return image;
}

} // namespace

class tst_ColorConversion : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void tellsTheModel_data()
    {
        QTest::addColumn<QByteArray>("profile");
        QTest::addColumn<int>("model"); // -1 for none
        const auto row = [](const char* name, const QByteArray& profile, int model) {
            QTest::newRow(name) << profile << model;
        };
        const QByteArray rgb = rgbProfile(adobeRgb);
        row("RGB", rgb, int(ColorModel::Rgb));
        row("RGB table", tableProfile(adobeRgb), int(ColorModel::Rgb));
        row("grey", grayProfile(2.2), int(ColorModel::Gray));
        row("four inks", cmykProfile(), int(ColorModel::Cmyk));
        row("the header alone", rgb.left(128), int(ColorModel::Rgb));
        row("as long as may be", rgb + QByteArray(maxProfileBytes - rgb.size(), '\0'), int(ColorModel::Rgb));
        row("one byte longer", rgb + QByteArray(maxProfileBytes - rgb.size() + 1, '\0'), -1);
        row("a cut header", rgb.left(127), -1);
        row("empty", {}, -1);
        row("no mark", patched(rgb, 36, "acsq"), -1);
        row("Lab", labProfile(), -1);
        row("a link", linkProfile(), -1);
        row("an abstract one", patched(rgb, 12, "abst"), -1);
        row("named colours", patched(rgb, 12, "nmcl"), -1);
        row("six inks", patched(rgb, 16, "6CLR"), -1);
    }

    void tellsTheModel()
    {
        QFETCH(QByteArray, profile);
        QFETCH(int, model);
        const auto told = colorModelOf(profile);
        QCOMPARE(told ? int(*told) : -1, model);
    }

    void nothingToConvert_data()
    {
        QTest::addColumn<QByteArray>("profile");
        const QByteArray rgb = rgbProfile(adobeRgb);
        const QByteArray table = tableProfile(adobeRgb);
        QTest::newRow("no profile") << QByteArray();
        QTest::newRow("sRGB") << srgbProfile();
        QTest::newRow("garbage") << QByteArray(5000, '\x5a');
        QTest::newRow("header and garbage") << rgb.left(128) + QByteArray(400, '\x5a');
        QTest::newRow("header and nothing") << rgb.left(128);
        QTest::newRow("cut in its tags") << rgb.left(rgb.size() / 2);
        QTest::newRow("cut in its table") << table.left(table.size() - 100);
        QTest::newRow("tags behind the end") << withTagsAt(rgb, 0xfffffff0U, 64);
        QTest::newRow("tags of four gigabytes") << withTagsAt(rgb, 132, 0xffffffffU);
        QTest::newRow("too long") << rgb + QByteArray(maxProfileBytes, '\0');
        QTest::newRow("link") << linkProfile();
        QTest::newRow("Lab") << labProfile();
        QTest::newRow("grey said to be RGB") << patched(grayProfile(1.0), 16, "RGB ");
        QTest::newRow("RGB said to be four inks") << patched(rgb, 16, "CMYK");
        QTest::newRow("RGB said to be grey") << patched(rgb, 16, "GRAY");
    }

    void nothingToConvert()
    {
        QFETCH(QByteArray, profile);
        QVERIFY(!ColorConversion::of(profile));
        const QImage image = sampleImage(QSize(30, 20), QImage::Format_RGB32);
        QCOMPARE(toSrgb(image, profile).constBits(), image.constBits()); // not even a copy
        QCOMPARE(displayImage(Picture{image, image.size(), 24, true, profile}).constBits(),
                 image.constBits());
    }

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

    void inks()
    {
        const auto conversion = ColorConversion::of(cmykProfile());
        QVERIFY(conversion);
        QCOMPARE(conversion->model(), ColorModel::Cmyk);
        std::vector<uchar> inks;
        std::vector<QRgb> wanted;
        for (int c = 0; c < 256; c += 51) {
            for (int m = 0; m < 256; m += 51) {
                for (int y = 0; y < 256; y += 51) {
                    for (int k = 0; k < 256; k += 17) {
                        for (const int ink : {c, m, y, k})
                            inks.push_back(uchar(ink));
                        wanted.push_back(inkInSrgb(c, m, y, k));
                    }
                }
            }
        }
        const auto count = qsizetype(wanted.size());
        std::vector<QRgb> got(wanted.size());
        conversion->convertInks(inks.data(), got.data(), count, false);
        for (size_t i = 0; i < got.size(); ++i)
            QVERIFY2(distance(got[i], wanted[i]) <= 3 && qAlpha(got[i]) == 255,
                     QByteArray::number(qulonglong(i)).constData());
        QVERIFY(distance(got.front(), qRgb(255, 255, 255)) <= 1);

        std::vector<QRgb> inPlace(wanted.size());
        auto* bytes = reinterpret_cast<uchar*>(inPlace.data());
        std::transform(inks.begin(), inks.end(), bytes, [](uchar ink) { return uchar(255 - ink); });
        conversion->convertInks(bytes, inPlace.data(), count, true);
        QCOMPARE(inPlace, got);
    }

    void installedInkProfiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("most"); // a channel is off by at the very most
        QTest::newRow("table of Lab behind curves") << QStringLiteral("default_cmyk") << 5;
        QTest::newRow("table of XYZ") << QStringLiteral("ps_cmyk") << 1;
        QTest::newRow("table of XYZ, grey in black") << QStringLiteral("gray_to_k") << 1;
    }

    void installedInkProfiles()
    {
        QFETCH(QString, name);
        QFETCH(int, most);
        QFile file(QStringLiteral("/usr/share/color/icc/ghostscript/%1.icc").arg(name));
        QVERIFY2(file.open(QIODevice::ReadOnly), "Ghostscript's profiles (libgs-common) are not installed");
        const QByteArray profile = file.readAll();
        const auto conversion = ColorConversion::of(profile);
        QVERIFY(conversion);
        const std::vector<uchar> inks = inksAllOver();
        const std::vector<QRgb> exact = inksByLcms(profile, inks);
        std::vector<QRgb> got(exact.size());
        conversion->convertInks(inks.data(), got.data(), qsizetype(got.size()), false);
        size_t far = 0;
        for (size_t i = 0; i < got.size(); ++i) {
            const int off = distance(got[i], exact[i]);
            QVERIFY2(off <= most, qPrintable(QStringLiteral("colour %1: %2").arg(i).arg(off)));
            far += off > 2 ? 1 : 0;
        }
        QVERIFY2(far * 1000 <= got.size(), qPrintable(QString::number(far)));
    }

    void inksStayWithinTheirRows()
    {
        const auto conversion = ColorConversion::of(cmykProfile());
        QImage image(700, 900, QImage::Format_RGB32);
        std::memset(image.bits(), 0, size_t(image.sizeInBytes())); // no ink
        CancelFlag cancel = false;
        QVERIFY(convertInks(image, 850, *conversion, false, cancel));
        QVERIFY(distance(image.pixel(699, 849), qRgb(255, 255, 255)) <= 1);
        QCOMPARE(image.pixel(0, 849), image.pixel(699, 0));
        const QByteArray rest(reinterpret_cast<const char*>(image.constScanLine(850)), 50 * 700 * 4);
        QCOMPARE(rest, QByteArray(50 * 700 * 4, '\0'));
        cancel = true;
        const QImage before = image.copy();
        QVERIFY(!convertInks(image, 900, *conversion, false, cancel));
        QCOMPARE(image, before);
    }

    /// What one model has is left alone by the operations of the other.
    void modelsKeepApart()
    {
        const auto fourInks = ColorConversion::of(cmykProfile());
        QCOMPARE(convertedBy(*fourInks, {qRgb(1, 2, 3)}), std::vector<QRgb>{qRgb(1, 2, 3)});
        const auto rgb = ColorConversion::of(rgbProfile(swappedRgb));
        const uchar ink[4] = {1, 2, 3, 4};
        QRgb out = 5;
        rgb->convertInks(ink, &out, 1, false);
        QCOMPARE(out, QRgb(5));
        const QImage image = sampleImage(QSize(9, 9), QImage::Format_RGB32);
        QCOMPARE(toSrgb(image, cmykProfile()).constBits(), image.constBits());
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

    void theLastOnesAreKept()
    {
        const QByteArray profile = rgbProfile(adobeRgb);
        const auto first = ColorConversion::of(profile);
        QCOMPARE(ColorConversion::of(profile), first);
        QCOMPARE(ColorConversion::of(QByteArray(profile.constData(), profile.size())), first); // by its bytes
        for (int i = 0; i < 6; ++i)
            QVERIFY(ColorConversion::of(grayProfile(1 + i / 10.0)));
        const auto again = ColorConversion::of(profile);
        QVERIFY(again && again != first); // forgotten and made anew
        QCOMPARE(convertedBy(*again, colorsAllOver()), convertedBy(*first, colorsAllOver()));
    }

    void threadsShareOne()
    {
        const std::vector<QRgb> colors = colorsAllOver();
        const QByteArray profiles[] = {rgbProfile(displayP3), tableProfile(adobeRgb)};
        std::vector<std::vector<QRgb>> made(8);
        {
            std::vector<std::jthread> threads;
            for (size_t i = 0; i < made.size(); ++i) {
                threads.emplace_back([&, i] {
                    if (const auto conversion = ColorConversion::of(profiles[i % 2]))
                        made[i] = convertedBy(*conversion, colors);
                });
            }
        }
        for (size_t i = 0; i < made.size(); ++i) {
            QCOMPARE(made[i].size(), colors.size());
            QCOMPARE(made[i], made[i % 2]);
        }
    }

    void brokenProfilesDoNoHarm_data()
    {
        QTest::addColumn<QByteArray>("good");
        QTest::addColumn<int>("children");
        QTest::newRow("RGB") << rgbProfile(adobeRgb) << 400;
        QTest::newRow("grey") << grayProfile(2.2) << 400;
        QTest::newRow("tinted grey") << tintedGrayProfile() << 400;
        QTest::newRow("table") << tableProfile(adobeRgb) << 60;
        QTest::newRow("four inks") << cmykProfile() << 30;
    }

    void brokenProfilesDoNoHarm()
    {
        QFETCH(QByteArray, good);
        QFETCH(int, children);
        Mutator mutator(good, 7);
        int used = 0;
        for (int i = 0; i < children; ++i) {
            const auto conversion = ColorConversion::of(mutator.next());
            if (!conversion)
                continue;
            ++used;
            std::vector<QRgb> colors = {qRgb(0, 0, 0), qRgb(255, 255, 255), qRgba(1, 100, 200, 50)};
            if (conversion->model() == ColorModel::Cmyk) {
                conversion->convertInks(reinterpret_cast<uchar*>(colors.data()), colors.data(), 3, false);
                QCOMPARE(qAlpha(colors[2]), 255);
            } else {
                conversion->convert(colors.data(), 3);
                QCOMPARE(qAlpha(colors[2]), 50);
            }
        }
        QVERIFY(used > 0 && used < children); // some breaks matter, some do not
    }

    void promisesOfHugeTablesCostNothing()
    {
        QByteArray profile = cmykProfile();
        const qsizetype table = profile.indexOf("mft2");
        QVERIFY(table > 0);
        for (const int nodes : {255, 100, 60, 40}) {
            profile[table + 10] = char(nodes);
            const qint64 grown = peakGrowth([&] { QVERIFY(!ColorConversion::of(profile)); });
            constexpr qint64 most = qint64(110) << 20;
            QVERIFY2(grown < most + sanitizerShare(most), QByteArray::number(grown).constData());
        }
    }
};

QTEST_GUILESS_MAIN(tst_ColorConversion)
#include "tst_colorconversion.moc"
