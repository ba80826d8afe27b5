#include "engine/Resample.h"
#include "FakePictures.h"

#include <QtTest>

#include <cmath>

using namespace quorvia::engine;
using quorvia::test::graded;
using quorvia::test::plain;

Q_DECLARE_METATYPE(quorvia::engine::Filter)

namespace {

QImage whole(const QImage& source, QSize target, Filter filter)
{
    return resampled(source, target, QRect(QPoint(), target), filter, filter);
}

QImage noise(QSize size, QImage::Format format)
{
    QImage image(size, QImage::Format_ARGB32);
    quint32 state = 1;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            image.setPixel(x, y, state);
        }
    }
    return image.convertToFormat(format);
}

/// The largest difference of a channel.
int distance(const QImage& a, const QImage& b)
{
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
        }
    }
    return most;
}

/// Area averaging by its definition, in floating point.
QImage averaged(const QImage& source, QSize target)
{
    QImage result(target, QImage::Format_RGB32);
    const double stepX = double(source.width()) / target.width();
    const double stepY = double(source.height()) / target.height();
    const auto overlap = [](double begin, double end, int pixel) {
        return std::max(0.0, std::min(end, pixel + 1.0) - std::max(begin, double(pixel)));
    };
    for (int y = 0; y < target.height(); ++y) {
        for (int x = 0; x < target.width(); ++x) {
            double sum[3] = {};
            for (int sy = 0; sy < source.height(); ++sy) {
                const double down = overlap(y * stepY, (y + 1) * stepY, sy);
                for (int sx = 0; down > 0 && sx < source.width(); ++sx) {
                    const double share = down * overlap(x * stepX, (x + 1) * stepX, sx) / (stepX * stepY);
                    const QRgb color = source.pixel(sx, sy);
                    sum[0] += share * qRed(color);
                    sum[1] += share * qGreen(color);
                    sum[2] += share * qBlue(color);
                }
            }
            result.setPixel(x, y, qRgb(qRound(sum[0]), qRound(sum[1]), qRound(sum[2])));
        }
    }
    return result;
}

} // namespace

class tst_Resample : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void areaIsTheAverage_data()
    {
        QTest::addColumn<QSize>("from");
        QTest::addColumn<QSize>("to");
        QTest::newRow("half") << QSize(20, 20) << QSize(10, 10);
        QTest::newRow("a little smaller") << QSize(21, 20) << QSize(20, 19);
        QTest::newRow("uneven") << QSize(23, 31) << QSize(7, 5);
        QTest::newRow("one pixel") << QSize(23, 31) << QSize(1, 1);
        QTest::newRow("one axis") << QSize(40, 8) << QSize(9, 8);
        QTest::newRow("more columns than one chunk") << QSize(2500, 6) << QSize(77, 4);
    }

    void areaIsTheAverage()
    {
        QFETCH(QSize, from);
        QFETCH(QSize, to);
        const QImage source = noise(from, QImage::Format_RGB32);
        const QImage result = whole(source, to, Filter::Area);
        QCOMPARE(result.size(), to);
        QVERIFY2(distance(result, averaged(source, to)) <= 1, "more than rounding apart");
    }

    void flatStaysFlat_data()
    {
        QTest::addColumn<Filter>("filter");
        QTest::addColumn<QSize>("to");
        for (const QSize to : {QSize(1, 1), QSize(13, 17), QSize(36, 38), QSize(70, 90), QSize(333, 111)}) {
            for (const auto& [name, filter] :
                 {std::pair("nearest", Filter::Nearest), std::pair("area", Filter::Area),
                  std::pair("bicubic", Filter::Bicubic)}) {
                if (filter != Filter::Area || to.width() <= 37)
                    QTest::addRow("%s %d", name, to.width()) << filter << to;
            }
        }
    }

    void flatStaysFlat()
    {
        QFETCH(Filter, filter);
        QFETCH(QSize, to);
        for (const QRgb color : {qRgb(255, 255, 255), qRgb(0, 0, 0), qRgb(201, 102, 3)})
            QCOMPARE(whole(plain(37, 41, color), to, filter), plain(to.width(), to.height(), color));
    }

    void sameSizeIsTheSame_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("RGB32") << QImage::Format_RGB32;
        QTest::newRow("grey") << QImage::Format_Grayscale8;
        QTest::newRow("indexed") << QImage::Format_Indexed8;
        QTest::newRow("mono") << QImage::Format_Mono;
        QTest::newRow("mono, lowest bit first") << QImage::Format_MonoLSB;
        QTest::newRow("RGB888") << QImage::Format_RGB888;
    }

    void sameSizeIsTheSame()
    {
        QFETCH(QImage::Format, format);
        QImage source = noise(QSize(37, 11), QImage::Format_RGB32).convertToFormat(format);
        const QImage result = whole(source, source.size(), Filter::Bicubic);
        QCOMPARE(result.format(), QImage::Format_RGB32);
        QCOMPARE(result, source.convertToFormat(QImage::Format_RGB32));
    }

    void whatIsTheResultAlreadyIsShared_data()
    {
        QTest::addColumn<QImage>("source");
        QTest::addColumn<QRect>("part");
        QTest::addColumn<bool>("shared");
        const QImage opaque = noise(QSize(37, 11), QImage::Format_RGB32);
        const QRect all = opaque.rect();
        QTest::newRow("all of an opaque one") << opaque << all << true;
        QTest::newRow("all of one with alpha")
            << opaque.convertToFormat(QImage::Format_ARGB32_Premultiplied) << all << true;
        QTest::newRow("a part") << opaque << all.adjusted(0, 0, -1, 0) << false;
        QImage unfilled = opaque;
        unfilled.bits()[3] = 0;
        QTest::newRow("a fourth byte that is not set") << unfilled << all << false;
        QImage fine = opaque;
        fine.setDevicePixelRatio(2);
        QTest::newRow("of finer pixels") << fine << all << false;
    }

    void whatIsTheResultAlreadyIsShared()
    {
        QFETCH(QImage, source);
        QFETCH(QRect, part);
        QFETCH(bool, shared);
        const QImage result = resampled(source, source.size(), part, Filter::Area, Filter::Area);
        QCOMPARE(result.cacheKey() == source.cacheKey(), shared);
        QCOMPARE(result.devicePixelRatio(), 1.0);
        QCOMPARE(qAlpha(result.pixel(0, 0)), 255);
    }

    void partsMeetWithoutASeam_data()
    {
        QTest::addColumn<Filter>("filter");
        QTest::addColumn<QSize>("to");
        QTest::addColumn<QImage::Format>("format");
        QTest::newRow("area") << Filter::Area << QSize(83, 47) << QImage::Format_RGB32;
        QTest::newRow("area with alpha") << Filter::Area << QSize(83, 47) << QImage::Format_ARGB32;
        QTest::newRow("area, mono") << Filter::Area << QSize(83, 47) << QImage::Format_Mono;
        QTest::newRow("bicubic") << Filter::Bicubic << QSize(301, 207) << QImage::Format_RGB32;
        QTest::newRow("nearest") << Filter::Nearest << QSize(1007, 501) << QImage::Format_RGB32;
    }

    void partsMeetWithoutASeam()
    {
        QFETCH(Filter, filter);
        QFETCH(QSize, to);
        QFETCH(QImage::Format, format);
        const QImage source = noise(QSize(211, 103), format);
        const QImage all = whole(source, to, filter);
        const int across = to.width() / 3;
        const int down = to.height() / 2 + 1;
        for (int y = 0; y < to.height(); y += down) {
            for (int x = 0; x < to.width(); x += across) {
                const QRect part = QRect(x, y, across, down) & all.rect();
                QCOMPARE(resampled(source, to, part, filter, filter), all.copy(part));
            }
        }
    }

    void bandsMeetWithoutASeam()
    {
        const QImage source = noise(QSize(2000, 1500), QImage::Format_RGB32); // enough for several threads
        const QImage all = whole(source, QSize(700, 500), Filter::Area);
        const QRect row(0, 249, 700, 2);
        QCOMPARE(resampled(source, QSize(700, 500), row, Filter::Area, Filter::Area), all.copy(row));
    }

    void nearestMakesSquares()
    {
        const QImage source = graded(5, 4);
        const QImage result = whole(source, QSize(20, 16), Filter::Nearest);
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 20; ++x)
                QCOMPARE(result.pixel(x, y), source.pixel(x / 4, y / 4));
        }
    }

    void bicubicFollowsARamp()
    {
        QImage ramp(32, 1, QImage::Format_RGB32);
        for (int x = 0; x < 32; ++x)
            ramp.setPixel(x, 0, qRgb(8 * x, 8 * x, 8 * x));
        const QImage result = whole(ramp, QSize(64, 1), Filter::Bicubic);
        for (int x = 4; x < 60; ++x) // away from the repeated edge Catmull-Rom is exact on a line
            QVERIFY(std::abs(qRed(result.pixel(x, 0)) - (4.0 * x - 2.0)) <= 1);
    }

    void bicubicIsBoundedAtAnEdge()
    {
        QImage edge(8, 1, QImage::Format_RGB32);
        for (int x = 0; x < 8; ++x)
            edge.setPixel(x, 0, x < 4 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
        const QImage result = whole(edge, QSize(24, 1), Filter::Bicubic);
        QCOMPARE(result.pixel(8, 0), qRgb(0, 0, 0)); // undershoot is cut, not wrapped
        QCOMPARE(result.pixel(15, 0), qRgb(255, 255, 255));
    }

    void transparentColoursDoNotBleed()
    {
        QImage source(2, 1, QImage::Format_ARGB32);
        source.setPixel(0, 0, qRgba(255, 0, 0, 255));
        source.setPixel(1, 0, qRgba(0, 255, 0, 0));
        const QImage result = whole(source, QSize(1, 1), Filter::Area);
        QCOMPARE(result.format(), QImage::Format_ARGB32_Premultiplied);
        const QRgb mixed = reinterpret_cast<const QRgb*>(result.constScanLine(0))[0];
        QCOMPARE(qAlpha(mixed), 128);
        QCOMPARE(qRed(mixed), 128);
        QCOMPARE(qGreen(mixed), 0);
    }

    void indexBeyondTheTableIsBlack()
    {
        QImage source(2, 1, QImage::Format_Indexed8);
        source.setColorTable({qRgb(10, 20, 30)});
        source.scanLine(0)[0] = 0;
        source.scanLine(0)[1] = 200;
        const QImage result = whole(source, QSize(2, 1), Filter::Nearest);
        QCOMPARE(result.pixel(0, 0), qRgb(10, 20, 30));
        QCOMPARE(result.pixel(1, 0), qRgb(0, 0, 0));
    }

    void hugeTargetCostsItsPartOnly()
    {
        const QSize target(1 << 29, 1 << 29);
        const QRect part((1 << 28) - 8, (1 << 28) - 8, 16, 16);
        const QImage result =
            resampled(plain(2, 2, qRgb(1, 2, 3)), target, part, Filter::Nearest, Filter::Nearest);
        QCOMPARE(result, plain(16, 16, qRgb(1, 2, 3)));
    }

    void extremeReduction()
    {
        QCOMPARE(whole(plain(65535, 2, qRgb(9, 8, 7)), QSize(1, 1), Filter::Area),
                 plain(1, 1, qRgb(9, 8, 7)));
    }

    void nothingForNothing()
    {
        const QImage image = plain(4, 4, qRgb(1, 1, 1));
        QVERIFY(whole(QImage(), QSize(4, 4), Filter::Area).isNull());
        QVERIFY(resampled(image, QSize(4, 4), QRect(), Filter::Area, Filter::Area).isNull());
        QVERIFY(resampled(image, QSize(4, 4), QRect(2, 2, 3, 1), Filter::Area, Filter::Area).isNull());
        QVERIFY(resampled(image, QSize(4, 4), QRect(-1, 0, 2, 2), Filter::Area, Filter::Area).isNull());
    }

    void normalizedFormats_data()
    {
        QTest::addColumn<QImage::Format>("from");
        QTest::addColumn<QImage::Format>("to");
        QTest::newRow("mono") << QImage::Format_Mono << QImage::Format_Mono;
        QTest::newRow("mono LSB") << QImage::Format_MonoLSB << QImage::Format_Mono;
        QTest::newRow("indexed") << QImage::Format_Indexed8 << QImage::Format_Indexed8;
        QTest::newRow("grey") << QImage::Format_Grayscale8 << QImage::Format_Grayscale8;
        QTest::newRow("grey 16") << QImage::Format_Grayscale16 << QImage::Format_Grayscale8;
        QTest::newRow("RGB32") << QImage::Format_RGB32 << QImage::Format_RGB32;
        QTest::newRow("ARGB32") << QImage::Format_ARGB32 << QImage::Format_ARGB32;
        QTest::newRow("premultiplied") << QImage::Format_ARGB32_Premultiplied << QImage::Format_ARGB32;
        QTest::newRow("RGB888") << QImage::Format_RGB888 << QImage::Format_RGB32;
        QTest::newRow("RGBA64") << QImage::Format_RGBA64 << QImage::Format_ARGB32;
    }

    void normalizedFormats()
    {
        QFETCH(QImage::Format, from);
        QFETCH(QImage::Format, to);
        QImage image = noise(QSize(5, 5), QImage::Format_RGB32).convertToFormat(from);
        QCOMPARE(normalized(image).format(), to);
        QCOMPARE(normalized(image).convertToFormat(QImage::Format_RGB32),
                 image.convertToFormat(QImage::Format_RGB32));
    }
};

QTEST_APPLESS_MAIN(tst_Resample)
#include "tst_resample.moc"
