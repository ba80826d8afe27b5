#include "engine/Resample.h"
#include "engine/Transforms.h"
#include "FakePictures.h"

#include <QtTest>

#include <limits>

using namespace quorvia::engine;
using quorvia::test::graded;
using quorvia::test::plain;

namespace {

QImage sample(QImage::Format format, QSize size)
{
    QImage image = graded(size.width(), size.height());
    if (format == QImage::Format_Mono) {
        QImage mono(size, format);
        mono.setColorTable({qRgb(10, 20, 30), qRgb(200, 100, 50)});
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                mono.setPixel(x, y, (x * 5 + y * 3) % 7 < 3);
        }
        return mono;
    }
    if (format == QImage::Format_Indexed8) {
        QImage indexed(size, format);
        QList<QRgb> table;
        for (int i = 0; i < 200; ++i)
            table.append(qRgb(i, 255 - i, i / 2));
        indexed.setColorTable(table);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                indexed.setPixel(x, y, static_cast<uint>((x * 13 + y * 7) % 200));
        }
        return indexed;
    }
    if (format == QImage::Format_ARGB32) {
        image.convertTo(format);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                image.setPixel(x, y, qRgba(x, y, 99, (x * 31) % 256)); // colour under alpha 0 as well
        }
        return image;
    }
    return image.convertToFormat(format);
}

const QList<std::pair<const char*, QImage::Format>> formats = {{"mono", QImage::Format_Mono},
                                                               {"indexed", QImage::Format_Indexed8},
                                                               {"grey", QImage::Format_Grayscale8},
                                                               {"RGB32", QImage::Format_RGB32},
                                                               {"ARGB32", QImage::Format_ARGB32}};

/// What stands in a pixel, without any conversion.
QRgb raw(const QImage& image, int x, int y)
{
    if (image.depth() <= 8)
        return image.format() == QImage::Format_Grayscale8 ? image.constScanLine(y)[x]
                                                           : static_cast<QRgb>(image.pixelIndex(x, y));
    return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
}

} // namespace

class tst_Transforms : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void quarterTurns_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("degrees");
        QTest::addColumn<int>("quarters"); // counter-clockwise
        const QList<std::pair<double, int>> turns = {{0, 0},   {90, 1},  {180, 2},  {270, 3},  {-90, 3},
                                                     {360, 0}, {450, 1}, {-180, 2}, {-450, 3}, {1e6 * 90, 0}};
        for (const auto& [name, format] : formats) {
            for (const auto& [degrees, quarters] : turns) {
                for (const QSize size : {QSize(13, 9), QSize(16, 1), QSize(1, 33),
                                         QSize(131, 70)}) // the last has tiles, whole and cut
                    QTest::addRow("%s %dx%d by %g", name, size.width(), size.height(), degrees)
                        << format << size << degrees << quarters;
            }
        }
    }

    void quarterTurns()
    {
        QFETCH(QImage::Format, format);
        QFETCH(QSize, size);
        QFETCH(double, degrees);
        QFETCH(int, quarters);
        const QImage image = sample(format, size);
        const QImage result = rotated(image, degrees, Qt::red);
        QCOMPARE(result.format(), format);
        QCOMPARE(result.colorTable(), image.colorTable());
        QCOMPARE(result.size(), quarters % 2 ? size.transposed() : size);
        QCOMPARE(rotatedSize(size, degrees), result.size());
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                QPoint to(x, y);
                if (quarters == 1)
                    to = QPoint(y, size.width() - 1 - x);
                else if (quarters == 2)
                    to = QPoint(size.width() - 1 - x, size.height() - 1 - y);
                else if (quarters == 3)
                    to = QPoint(size.height() - 1 - y, x);
                QCOMPARE(raw(result, to.x(), to.y()), raw(image, x, y));
            }
        }
    }

    void fourTurnsAreNone()
    {
        for (const auto& [name, format] : formats) {
            const QImage image = sample(format, QSize(37, 23));
            QImage turned = image;
            for (int i = 0; i < 4; ++i)
                turned = rotated(turned, 90, Qt::black);
            QVERIFY2(turned == image, name);
        }
    }

    void freeTurnFillsTheCorners()
    {
        const QImage result = rotated(plain(40, 40, qRgb(10, 200, 30)), 45, QColor(1, 2, 3));
        QCOMPARE(result.size(), QSize(57, 57)); // 40 * sqrt(2) = 56.57
        QCOMPARE(result.format(), QImage::Format_RGB32);
        for (const QPoint corner : {QPoint(0, 0), QPoint(56, 0), QPoint(0, 56), QPoint(56, 56)})
            QCOMPARE(result.pixel(corner), qRgb(1, 2, 3));
        QCOMPARE(result.pixel(28, 28), qRgb(10, 200, 30));
        QCOMPARE(result.pixel(28, 5), qRgb(10, 200, 30));
    }

    void freeTurnGoesCounterClockwise()
    {
        QImage image = plain(41, 41, qRgb(0, 0, 0));
        for (int y = 18; y <= 22; ++y) {
            for (int x = 30; x < 41; ++x)
                image.setPixel(x, y, qRgb(255, 0, 0)); // to the right of the centre
        }
        const QImage result = rotated(image, 30, Qt::black);
        const double far = 15;
        const QPoint at(qRound(result.width() / 2.0 + far * std::cos(M_PI / 6) - 0.5),
                        qRound(result.height() / 2.0 - far * std::sin(M_PI / 6) - 0.5)); // up is smaller y
        QCOMPARE(result.pixel(at), qRgb(255, 0, 0));
    }

    void freeTurnFormats_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QColor>("fill");
        QTest::addColumn<QImage::Format>("becomes");
        QTest::newRow("grey on grey")
            << QImage::Format_Grayscale8 << QColor(9, 9, 9) << QImage::Format_Grayscale8;
        QTest::newRow("grey on colour")
            << QImage::Format_Grayscale8 << QColor(9, 0, 9) << QImage::Format_RGB32;
        QTest::newRow("palette") << QImage::Format_Indexed8 << QColor(9, 9, 9) << QImage::Format_RGB32;
        QTest::newRow("opaque") << QImage::Format_RGB32 << QColor(9, 9, 9) << QImage::Format_RGB32;
        QTest::newRow("alpha") << QImage::Format_ARGB32 << QColor(9, 9, 9) << QImage::Format_ARGB32;
        QTest::newRow("clear fill") << QImage::Format_RGB32 << QColor(0, 0, 0, 0) << QImage::Format_ARGB32;
    }

    void freeTurnFormats()
    {
        QFETCH(QImage::Format, format);
        QFETCH(QColor, fill);
        QFETCH(QImage::Format, becomes);
        const QImage result = rotated(sample(format, QSize(20, 10)), 30, fill);
        QCOMPARE(result.format(), becomes);
        QCOMPARE(result.pixelColor(0, 0).alpha(), fill.alpha());
        QCOMPARE(result.size(), rotatedSize(QSize(20, 10), 30));
    }

    void noTurnForNoNumber()
    {
        const QImage image = graded(5, 4);
        QCOMPARE(rotated(image, std::numeric_limits<double>::quiet_NaN(), Qt::black), image);
        QCOMPARE(rotated(image, std::numeric_limits<double>::infinity(), Qt::black), image);
        QVERIFY(rotated(QImage(), 90, Qt::black).isNull());
    }

    void resizeFormats_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<QImage::Format>("becomes");
        QImage bilevel(8, 8, QImage::Format_Mono);
        bilevel.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
        bilevel.fill(1);
        QTest::newRow("grey mono") << bilevel << QImage::Format_Grayscale8;
        QTest::newRow("coloured mono") << sample(QImage::Format_Mono, {8, 8}) << QImage::Format_RGB32;
        QTest::newRow("indexed") << sample(QImage::Format_Indexed8, {8, 8}) << QImage::Format_RGB32;
        QTest::newRow("grey") << sample(QImage::Format_Grayscale8, {8, 8}) << QImage::Format_Grayscale8;
        QTest::newRow("RGB32") << sample(QImage::Format_RGB32, {8, 8}) << QImage::Format_RGB32;
        QTest::newRow("ARGB32") << sample(QImage::Format_ARGB32, {8, 8}) << QImage::Format_ARGB32;
    }

    void resizeFormats()
    {
        QFETCH(QImage, image);
        QFETCH(QImage::Format, becomes);
        for (const QSize size : {QSize(3, 5), QSize(20, 30), QSize(3, 30), QSize(30, 3)}) {
            const QImage result = resized(image, size);
            QCOMPARE(result.size(), size);
            QCOMPARE(result.format(), becomes);
        }
        QCOMPARE(resized(image, image.size()), image);
        QCOMPARE(resized(image, image.size()).format(), image.format());
        QVERIFY(resized(image, QSize(0, 5)).isNull());
        QVERIFY(resized(image, QSize(5, -1)).isNull());
    }

    void resizeAverages()
    {
        QImage image(4, 2, QImage::Format_Grayscale8);
        const uchar values[2][4] = {{0, 100, 10, 20}, {50, 250, 30, 40}};
        for (int y = 0; y < 2; ++y)
            std::copy_n(values[y], 4, image.scanLine(y));
        const QImage result = resized(image, QSize(2, 1));
        QCOMPARE(int(result.constScanLine(0)[0]), 100);
        QCOMPARE(int(result.constScanLine(0)[1]), 25);
    }

    void resizeOneAxisEachWay()
    {
        const QImage result = resized(plain(10, 10, qRgb(5, 6, 7)), QSize(3, 50));
        QCOMPARE(result, plain(3, 50, qRgb(5, 6, 7)));
    }

    void bevelPixels_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("intensity");
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<int>("value"); // of an image of 100
        // share of white or black = intensity / 25 * (width - depth) / width
        QTest::newRow("raised top") << 1 << 10 << 10 << QPoint(50, 0) << 162; // 40% towards 255
        QTest::newRow("raised left") << 1 << 10 << 10 << QPoint(0, 30) << 162;
        QTest::newRow("raised bottom") << 1 << 10 << 10 << QPoint(50, 59) << 60; // 40% towards 0
        QTest::newRow("raised right") << 1 << 10 << 10 << QPoint(99, 30) << 60;
        QTest::newRow("half way in") << 1 << 10 << 10 << QPoint(50, 5) << 131; // 20%
        QTest::newRow("last ring") << 1 << 10 << 25 << QPoint(50, 9) << 116;   // 10%
        QTest::newRow("inside") << 1 << 10 << 25 << QPoint(50, 10) << 100;
        QTest::newRow("inside, right") << 1 << 10 << 25 << QPoint(89, 30) << 100;
        QTest::newRow("full strength") << 1 << 10 << 25 << QPoint(50, 0) << 255;
        QTest::newRow("full strength, dark") << 1 << 10 << 25 << QPoint(50, 59) << 0;
        QTest::newRow("above 25 is 25") << 1 << 10 << 500 << QPoint(50, 0) << 255;
        QTest::newRow("sunken top") << 2 << 10 << 10 << QPoint(50, 0) << 60;
        QTest::newRow("sunken bottom") << 0 << 10 << 10 << QPoint(50, 59) << 162;
        QTest::newRow("upper right corner, nearer the top") << 1 << 10 << 25 << QPoint(95, 2) << 224;
        QTest::newRow("upper right corner, nearer the right") << 1 << 10 << 25 << QPoint(97, 4) << 20;
        QTest::newRow("upper right diagonal") << 1 << 10 << 25 << QPoint(99, 0) << 255;
        QTest::newRow("wide, bounded by half the height") << 1 << 1000 << 25 << QPoint(50, 29) << 105;
        QTest::newRow("no width") << 1 << 0 << 25 << QPoint(50, 0) << 100;
        QTest::newRow("negative width") << 1 << -5 << 25 << QPoint(50, 0) << 100;
        QTest::newRow("no intensity") << 1 << 10 << 0 << QPoint(50, 0) << 100;
        QTest::newRow("negative intensity") << 1 << 10 << -10 << QPoint(50, 0) << 100;
    }

    void bevelPixels()
    {
        QFETCH(int, style);
        QFETCH(int, width);
        QFETCH(int, intensity);
        QFETCH(QPoint, pixel);
        QFETCH(int, value);
        QImage gray(100, 60, QImage::Format_Grayscale8);
        gray.fill(100);
        const QImage result = bevelled(gray, style, width, intensity);
        QCOMPARE(result.format(), QImage::Format_Grayscale8);
        QVERIFY2(std::abs(result.constScanLine(pixel.y())[pixel.x()] - value) <= 1,
                 qPrintable(QString::number(result.constScanLine(pixel.y())[pixel.x()])));
        const QImage colored = bevelled(plain(100, 60, qRgb(100, 100, 100)), style, width, intensity);
        QCOMPARE(qRed(colored.pixel(pixel)), int(result.constScanLine(pixel.y())[pixel.x()]));
    }

    void bevelFormats_data()
    {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QImage::Format>("becomes");
        QTest::newRow("mono") << QImage::Format_Mono << QImage::Format_RGB32;
        QTest::newRow("indexed") << QImage::Format_Indexed8 << QImage::Format_RGB32;
        QTest::newRow("grey") << QImage::Format_Grayscale8 << QImage::Format_Grayscale8;
        QTest::newRow("RGB32") << QImage::Format_RGB32 << QImage::Format_RGB32;
        QTest::newRow("ARGB32") << QImage::Format_ARGB32 << QImage::Format_ARGB32;
    }

    void bevelFormats()
    {
        QFETCH(QImage::Format, format);
        QFETCH(QImage::Format, becomes);
        const QImage image = sample(format, QSize(40, 40));
        const QImage result = bevelled(image, 1, 5, 50);
        QCOMPARE(result.format(), becomes);
        for (int i = 0; i < 40; ++i)
            QCOMPARE(qAlpha(result.pixel(i, 0)), qAlpha(image.pixel(i, 0)));
        QCOMPARE(result.copy(5, 5, 30, 30).convertToFormat(QImage::Format_ARGB32),
                 image.copy(5, 5, 30, 30).convertToFormat(QImage::Format_ARGB32));
        QCOMPARE(bevelled(QImage(), 1, 5, 5), QImage());
        QCOMPARE(bevelled(image.copy(0, 0, 1, 1), 1, 5, 50).size(), QSize(1, 1));
    }
};

QTEST_APPLESS_MAIN(tst_Transforms)
#include "tst_transforms.moc"
