// Four inks brought to sRGB, against the formulas and lcms2.
#include "ColorFixtures.h"
#include "ProfileFixtures.h"

#include <QtTest>

#include <lcms2.h>

#include <cstring>
#include <random>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

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

} // namespace

class tst_InkConversion : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
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
};

QTEST_GUILESS_MAIN(tst_InkConversion)
#include "tst_inkconversion.moc"
