#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpeg/JpegEncode.h"
#include "JpegFixtures.h"

#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegCodec();

struct Frame
{
    int components = 0;
    int across = 0; ///< luminance sampling factors
    int down = 0;
};

Frame frameOf(const QByteArray& file)
{
    const qsizetype at = frameAt(file);
    return {uchar(file[at + 9]), uchar(file[at + 11]) >> 4, uchar(file[at + 11]) & 15};
}

} // namespace

class TestJpegEncode : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void quantTables_data();
    void quantTables();
    void quantTablesGrowWithTheStrength();
    void writesTheTables();
    void writesReadableFiles_data();
    void writesReadableFiles();
    void writesEveryFormat_data();
    void writesEveryFormat();
    void laysAlphaOverWhite();
    void refusesToWrite_data();
    void refusesToWrite();
};

void TestJpegEncode::quantTables_data()
{
    QTest::addColumn<bool>("chrominance");
    QTest::addColumn<int>("strength");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    QTest::addColumn<int>("largest");
    QTest::newRow("best") << false << 0 << 1 << 1 << 1;
    QTest::newRow("best, chroma") << true << 0 << 1 << 1 << 1;
    QTest::newRow("below the range") << false << -7 << 1 << 1 << 1;
    QTest::newRow("default") << false << 24 << 4 << 24 << 29;
    QTest::newRow("default, chroma") << true << 20 << 3 << 20 << 20;
    QTest::newRow("the tables themselves") << false << 100 << 16 << 99 << 121;
    QTest::newRow("the tables themselves, chroma") << true << 100 << 17 << 99 << 99;
    QTest::newRow("strongest") << false << 255 << 41 << 252 << 255;
    QTest::newRow("strongest, chroma") << true << 255 << 43 << 252 << 252;
    QTest::newRow("above the range") << true << 1000 << 43 << 252 << 252;
}

void TestJpegEncode::quantTables()
{
    QFETCH(bool, chrominance);
    QFETCH(int, strength);
    QFETCH(int, first);
    QFETCH(int, last);
    QFETCH(int, largest);
    const QuantTable table = quantTable(chrominance, strength);
    QCOMPARE(int(table.front()), first);
    QCOMPARE(int(table.back()), last);
    QCOMPARE(int(*std::max_element(table.begin(), table.end())), largest);
}

void TestJpegEncode::quantTablesGrowWithTheStrength()
{
    for (const bool chrominance : {false, true}) {
        QuantTable before = quantTable(chrominance, 0);
        for (int strength = 1; strength <= 255; ++strength) {
            const QuantTable table = quantTable(chrominance, strength);
            for (size_t i = 0; i < table.size(); ++i)
                QVERIFY(table[i] >= before[i]);
            before = table;
        }
        QVERIFY(before.front() > quantTable(chrominance, 100).front());
    }
}

void TestJpegEncode::writesTheTables()
{
    EncodeOptions options;
    options.jpeg.luminance = 100;
    options.jpeg.chrominance = 0;
    const QImage image = imageOf(samplePicture(QSize(40, 30)));
    const auto file = codec.encode(image, QStringLiteral("jpg"), options);
    QVERIFY(file);
    const qsizetype first = markerAt(*file, 0xdb);
    const qsizetype second = markerAt(*file, 0xdb, first + 69);
    QVERIFY(first > 0 && second > 0);
    // Zigzag order: 16, 11, 12, 14, 12, 10 are the first of table K.1.
    QCOMPARE(file->mid(first + 5, 6), QByteArray("\x10\x0b\x0c\x0e\x0c\x0a", 6));
    QCOMPARE(file->mid(second + 5, 64), QByteArray(64, '\x01'));
}

void TestJpegEncode::writesReadableFiles_data()
{
    QTest::addColumn<int>("luminance");
    QTest::addColumn<int>("chrominance");
    QTest::addColumn<int>("subSampling");
    QTest::addColumn<bool>("gray");
    QTest::addColumn<int>("across");
    QTest::addColumn<int>("down");
    QTest::addColumn<double>("noise"); // dB at the least
    QTest::newRow("defaults") << 24 << 20 << 1 << false << 2 << 1 << 32.0;
    QTest::newRow("best") << 0 << 0 << 0 << false << 1 << 1 << 48.0;
    QTest::newRow("none") << 24 << 20 << 0 << false << 1 << 1 << 34.0;
    QTest::newRow("both ways") << 24 << 20 << 2 << false << 2 << 2 << 30.0;
    QTest::newRow("down") << 24 << 20 << 3 << false << 1 << 2 << 32.0;
    QTest::newRow("strongest") << 255 << 255 << 2 << false << 2 << 2 << 20.0;
    QTest::newRow("sampling below the range") << 24 << 20 << -1 << false << 1 << 1 << 34.0;
    QTest::newRow("sampling above the range") << 24 << 20 << 9 << false << 1 << 2 << 32.0;
    QTest::newRow("grey") << 24 << 20 << 1 << true << 1 << 1 << 34.0;
}

void TestJpegEncode::writesReadableFiles()
{
    QFETCH(int, luminance);
    QFETCH(int, chrominance);
    QFETCH(int, subSampling);
    QFETCH(bool, gray);
    QFETCH(int, across);
    QFETCH(int, down);
    QFETCH(double, noise);
    // Soft colours, as a photo has: noise cannot survive subsampling.
    QImage image(203, 149, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x, y + 60, gray ? 0 : 255 - (x + y) / 2));
    }
    QPainter painter(&image);
    painter.fillRect(60, 40, 50, 30, QColor(200, 210, 190));
    painter.end();
    EncodeOptions options;
    options.jpeg = {luminance, chrominance, subSampling, gray};
    const auto file = codec.encode(image, QStringLiteral("jpeg"), options);
    QVERIFY(file);
    const Frame frame = frameOf(*file);
    QCOMPARE(frame.components, gray ? 1 : 3);
    QCOMPARE(frame.across, across);
    QCOMPARE(frame.down, down);
    Rgba wanted = rgbaOf(image);
    if (gray) {
        for (qsizetype i = 0; i < wanted.pixels.size(); i += 4) {
            const auto* p = reinterpret_cast<const uchar*>(wanted.pixels.constData()) + i;
            const char value = char((299 * p[0] + 587 * p[1] + 114 * p[2] + 500) / 1000);
            wanted.pixels.replace(i, 3, QByteArray(3, value));
        }
    }
    for (const Rgba& got : {djpeg(*file), readWithMagick(*file, QStringLiteral("jpg"))}) {
        const double reached = psnr(got, wanted);
        QVERIFY2(reached >= noise, QByteArray::number(reached).constData());
    }
}

void TestJpegEncode::writesEveryFormat_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("components");
    const auto row = [](const char* name, QImage::Format format, int components) {
        QTest::newRow(name) << int(format) << components;
    };
    row("Mono", QImage::Format_Mono, 1);
    row("MonoLSB", QImage::Format_MonoLSB, 1);
    row("Indexed8", QImage::Format_Indexed8, 3);
    row("Grayscale8", QImage::Format_Grayscale8, 1);
    row("Grayscale16", QImage::Format_Grayscale16, 3);
    row("RGB32", QImage::Format_RGB32, 3);
    row("ARGB32", QImage::Format_ARGB32, 3);
    row("ARGB32_Premultiplied", QImage::Format_ARGB32_Premultiplied, 3);
    row("RGB16", QImage::Format_RGB16, 3);
    row("RGB888", QImage::Format_RGB888, 3);
    row("RGBA64", QImage::Format_RGBA64, 3);
}

void TestJpegEncode::writesEveryFormat()
{
    QFETCH(int, format);
    QFETCH(int, components);
    QImage soft(70, 150, QImage::Format_RGB32); // more rows than a strip has
    for (int y = 0; y < soft.height(); ++y) {
        for (int x = 0; x < soft.width(); ++x)
            soft.setPixel(x, y, qRgb(40 + x * 2, 50 + y, 90));
    }
    const QImage image = soft.convertToFormat(QImage::Format(format));
    EncodeOptions best;
    best.jpeg = {0, 0, 0, false};
    const auto file = codec.encode(image, QStringLiteral("jif"), best);
    QVERIFY(file);
    QCOMPARE(frameOf(*file).components, components);
    const double reached = psnr(djpeg(*file), rgbaOf(image.convertToFormat(QImage::Format_RGB32)));
    QVERIFY2(reached > 45, QByteArray::number(reached).constData());
}

void TestJpegEncode::laysAlphaOverWhite()
{
    QImage image(48, 16, QImage::Format_ARGB32);
    image.fill(qRgba(255, 0, 0, 255));
    for (int y = 0; y < 16; ++y) {
        for (int x = 16; x < 32; ++x)
            image.setPixel(x, y, qRgba(0, 0, 255, 128));
        for (int x = 32; x < 48; ++x)
            image.setPixel(x, y, qRgba(10, 20, 30, 0));
    }
    EncodeOptions best;
    best.jpeg = {0, 0, 0, false};
    const auto file = codec.encode(image, QStringLiteral("jpg"), best);
    QVERIFY(file);
    const Rgba got = djpeg(*file);
    const auto near = [&got](int x, int red, int green, int blue) {
        const uchar* p = got.at(x, 8);
        return std::abs(p[0] - red) <= 2 && std::abs(p[1] - green) <= 2 && std::abs(p[2] - blue) <= 2;
    };
    QVERIFY(near(8, 255, 0, 0));
    QVERIFY(near(24, 127, 127, 255));
    QVERIFY(near(40, 255, 255, 255));
}

void TestJpegEncode::refusesToWrite_data()
{
    QTest::addColumn<QImage>("image");
    QTest::newRow("null") << QImage();
    QTest::newRow("too wide") << allocateImage(QSize(65501, 1), QImage::Format_Grayscale8);
    QTest::newRow("too high") << allocateImage(QSize(1, 65501), QImage::Format_Grayscale8);
}

void TestJpegEncode::refusesToWrite()
{
    QFETCH(QImage, image);
    const auto file = codec.encode(image, QStringLiteral("jpg"), {});
    QVERIFY(!file);
    QCOMPARE(file.error().kind, ErrorKind::Unsupported);
    QVERIFY(codec.canEncode(QStringLiteral("jpg")) && codec.canEncode(QStringLiteral("jif")));
    QVERIFY(!codec.canEncode(QStringLiteral("ljp")) && !codec.canEncode(QStringLiteral("png")));
}

QTEST_GUILESS_MAIN(TestJpegEncode)
#include "tst_jpegencode.moc"
