#include "engine/Codec.h"
#include "engine/ColorCount.h"

#include <QtTest>

using namespace quorvia::engine;

namespace {

QImage indexed(QSize size, const QList<QRgb>& table, const std::function<int(int, int)>& index,
               QImage::Format format = QImage::Format_Indexed8)
{
    QImage image(size, format);
    image.setColorTable(table);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, static_cast<uint>(index(x, y)));
    }
    return image;
}

QImage deep(QSize size, const std::function<QRgb(int, int)>& color, QImage::Format format)
{
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, color(x, y));
    }
    return image.convertToFormat(format);
}

} // namespace

class tst_ColorCount : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void count_data()
    {
        QTest::addColumn<QImage>("image");
        QTest::addColumn<int>("colors");

        QTest::newRow("null") << QImage() << 0;

        const QList<QRgb> blackWhite = {qRgb(0, 0, 0), qRgb(255, 255, 255)};
        const auto mono = [&](int width, const QList<QRgb>& table,
                              const std::function<int(int, int)>& index) {
            return indexed(QSize(width, 3), table, index, QImage::Format_Mono);
        };
        QTest::newRow("mono, one used") << mono(13, blackWhite, [](int, int) { return 1; }) << 1;
        QTest::newRow("mono, other used") << mono(13, blackWhite, [](int, int) { return 0; }) << 1;
        QTest::newRow("mono, both") << mono(13, blackWhite, [](int x, int) { return x & 1; }) << 2;
        QTest::newRow("mono, last pixel of a part byte")
            << mono(9, blackWhite, [](int x, int y) { return x == 8 && y == 2; }) << 2;
        QTest::newRow("mono, whole bytes only")
            << mono(16, blackWhite, [](int x, int y) { return x == 15 && y == 2; }) << 2;
        QTest::newRow("mono, equal entries")
            << mono(13, {qRgb(7, 7, 7), qRgb(7, 7, 7)}, [](int x, int) { return x & 1; }) << 1;

        const QList<QRgb> four = {qRgb(1, 0, 0), qRgb(0, 1, 0), qRgb(1, 0, 0), qRgb(0, 0, 1)};
        QTest::newRow("indexed, unused entries do not count")
            << indexed({5, 5}, four, [](int, int) { return 1; }) << 1;
        QTest::newRow("indexed, equal entries count once")
            << indexed({5, 5}, four, [](int x, int) { return x % 4; }) << 3;
        QTest::newRow("indexed, alpha does not count")
            << indexed({4, 1}, {qRgba(9, 9, 9, 255), qRgba(9, 9, 9, 10)}, [](int x, int) { return x % 2; })
            << 1;

        QImage gray(300, 2, QImage::Format_Grayscale8);
        for (int x = 0; x < 300; ++x) {
            gray.scanLine(0)[x] = static_cast<uchar>(x % 256);
            gray.scanLine(1)[x] = 0;
        }
        QTest::newRow("grey, all 256") << gray << 256;
        QImage flat(300, 2, QImage::Format_Grayscale8);
        flat.fill(77);
        QTest::newRow("grey, one") << flat << 1;

        const auto byPlace = [](int x, int y) { return qRgb(x & 255, y & 255, 0); };
        QTest::newRow("deep, one") << deep(
                                          {7, 7}, [](int, int) { return qRgb(1, 2, 3); },
                                          QImage::Format_RGB32)
                                   << 1;
        QTest::newRow("deep, the first pixel differs")
            << deep(
                   {7, 7}, [](int x, int y) { return x + y == 0 ? qRgb(1, 2, 3) : qRgb(3, 2, 1); },
                   QImage::Format_RGB32)
            << 2;
        QTest::newRow("deep, 16 x 16") << deep({16, 16}, byPlace, QImage::Format_RGB32) << 256;
        QTest::newRow("deep, 65536 colours over several bands")
            << deep({1024, 1024}, byPlace, QImage::Format_RGB32) << 65536;
        QTest::newRow("deep, black and white corner of the set")
            << deep(
                   {2, 1}, [](int x, int) { return x ? qRgb(255, 255, 255) : qRgb(0, 0, 0); },
                   QImage::Format_RGB32)
            << 2;
        QTest::newRow("deep, alpha does not count")
            << deep(
                   {256, 1}, [](int x, int) { return qRgba(5, 6, 7, x); }, QImage::Format_ARGB32)
            << 1;
        QTest::newRow("another format") << deep({16, 16}, byPlace, QImage::Format_RGB888) << 256;
    }

    void count()
    {
        QFETCH(QImage, image);
        QFETCH(int, colors);
        QCOMPARE(countColors(image), colors);
    }

    void paddingDoesNotCount()
    {
        QImage image = allocateImage(QSize(3, 2), QImage::Format_RGB32);
        image.fill(qRgb(1, 1, 1));
        image.setPixel(0, 0, 0x00010101U); // the fourth byte is no colour
        QCOMPARE(countColors(image), 1);
    }

    void everyColor()
    {
        QImage image(4096, 4096, QImage::Format_RGB32);
        for (int y = 0; y < 4096; ++y) {
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < 4096; ++x)
                line[x] = 0xff000000U | static_cast<unsigned>(y * 4096 + x);
        }
        QCOMPARE(countColors(image), 1 << 24);
    }
};

QTEST_APPLESS_MAIN(tst_ColorCount)
#include "tst_colorcount.moc"
