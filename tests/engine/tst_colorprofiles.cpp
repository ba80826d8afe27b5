// Colour profiles: which are taken, kept and shared, and what broken ones do.
#include "CodecFixtures.h"
#include "ColorFixtures.h"
#include "DisplayImage.h"
#include "Mutator.h"
#include "ProfileFixtures.h"

#include <QtTest>

#include <cstring>
#include <thread>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray patched(QByteArray bytes, qsizetype at, const char* text)
{
    return bytes.replace(at, qsizetype(std::strlen(text)), text);
}

} // namespace

class tst_ColorProfiles : public QObject
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

QTEST_GUILESS_MAIN(tst_ColorProfiles)
#include "tst_colorprofiles.moc"
