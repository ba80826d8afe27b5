// JPEG XL files that cost more than their pictures: layers far beyond the canvas, and bytes without end.
#include "CodecFixtures.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/jpegxl/JxlReader.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "JxlMaker.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = jpegXlCodec();

constexpr QSize small(16, 16);
const QRect whole(QPoint(), small);
const QRect huge(-5, -5, 4200, 4200); // more pixels than layers have for nothing

size_t offered = 0; // to a library that takes nothing

} // namespace

class TestJpegXlHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refusesHugeLayers_data();
    void refusesHugeLayers();
    void refusesALayerThatCostsTooMuch();
    void refusesTooManyLayers_data();
    void refusesTooManyLayers();
    void showsHonestLayers_data();
    void showsHonestLayers();
    void stopsBeforeALaterFrame();
    void stopsInASmallFile();
    void stopsWhereFewBytesOfManyCount();
    void feedsNoTwoLayersAtOnce();
    void endsWhereNothingIsTaken();
};

void TestJpegXlHostile::refusesHugeLayers_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("lossless") << jxlOf(small, {{huge, 90}});
    QTest::newRow("lossy") << jxlOf(small, {{huge, 90}}, false);
    QTest::newRow("under another one") << jxlOf(small, {{huge, 90}, {whole, 50}});
    QTest::newRow("over another one") << jxlOf(small, {{whole, 50}, {huge, 90}});
    QTest::newRow("first of an animation") << jxlOf(small, {{huge, 90, 1}, {whole, 50, 1}});
}

void TestJpegXlHostile::refusesHugeLayers()
{
    QFETCH(QByteArray, file);
    QVERIFY(!file.isEmpty());
    const auto picture = decoded(codec, file);
    QVERIFY(!picture);
    QCOMPARE(picture.error().kind, ErrorKind::TooLarge);
    QVERIFY(!picture.error().text.isEmpty());
}

void TestJpegXlHostile::refusesALayerThatCostsTooMuch()
{
    const QByteArray file = jxlOf(small, {{QRect(0, 0, 600, 500), 90}});
    QVERIFY(!file.isEmpty());
    constexpr qint64 pixels = 600 * 500;
    Limits::setMachineBytes(pixels * 16 - 1);
    const auto refused = decoded(codec, file);
    Limits::setMachineBytes(pixels * 16);
    const auto shown = decoded(codec, file);
    Limits::setMachineBytes(0);
    QVERIFY(!refused);
    QCOMPARE(refused.error().kind, ErrorKind::TooLarge);
    QVERIFY(shown);
    QCOMPARE(shown->image.pixel(3, 3), qRgb(90, 90, 90));
}

void TestJpegXlHostile::refusesTooManyLayers_data()
{
    QTest::addColumn<QSize>("canvas");
    QTest::addColumn<QRect>("layer");
    QTest::addColumn<int>("most");
    QTest::newRow("far larger than the picture") << small << QRect(0, 0, 1000, 1000) << 16;
    // However small it is, the library goes over the whole picture for it.
    QTest::newRow("of one pixel") << QSize(1024, 1024) << QRect(0, 0, 1, 1) << 48;
}

void TestJpegXlHostile::refusesTooManyLayers()
{
    QFETCH(QSize, canvas);
    QFETCH(QRect, layer);
    QFETCH(int, most);
    const QByteArray few = jxlOf(canvas, QList<JxlLayer>(most, {layer, 90}));
    const QByteArray many = jxlOf(canvas, QList<JxlLayer>(most + 1, {layer, 90}));
    QVERIFY(!few.isEmpty() && !many.isEmpty());
    QVERIFY(decoded(codec, few));
    const auto refused = decoded(codec, many);
    QVERIFY(!refused);
    QCOMPARE(refused.error().kind, ErrorKind::TooLarge);
}

void TestJpegXlHostile::showsHonestLayers_data()
{
    QTest::addColumn<QSize>("canvas");
    QTest::addColumn<QByteArray>("file");
    const QSize large(1200, 900);
    QTest::newRow("over the edges") << small << jxlOf(small, {{whole, 50}, {QRect(-8, -8, 300, 12), 90}});
    QTest::newRow("many") << large << jxlOf(large, QList<JxlLayer>(40, {QRect(QPoint(), large), 70}));
}

void TestJpegXlHostile::showsHonestLayers()
{
    QFETCH(QSize, canvas);
    QFETCH(QByteArray, file);
    QVERIFY(!file.isEmpty());
    const auto picture = decoded(codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(picture->image.size(), canvas);
    const QByteArray seen = converted("djxl --quiet @in @out", file, "jxl", "png");
    QCOMPARE(firstDifference(rgbaOf(picture->image), pngPixels(seen)), QString());
}

/// Only the first frame is shown: what the others cost is nobody's concern.
void TestJpegXlHostile::stopsBeforeALaterFrame()
{
    const QByteArray file = jxlOf(small, {{whole, 50, 1}, {huge, 90, 1}, {huge, 20, 1}});
    QVERIFY(!file.isEmpty());
    const auto picture = decoded(codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(picture->image.pixel(8, 8), qRgb(50, 50, 50));
}

/// Few bytes that stand for many pixels come in pieces all the same.
void TestJpegXlHostile::stopsInASmallFile()
{
    const QSize size(3000, 2000);
    const QByteArray file = jxlOf(size, {{QRect(QPoint(), size), 90}});
    QVERIFY(!file.isEmpty());
    QVERIFY2(file.size() < 2048, qPrintable(QString::number(file.size())));
    CancelFlag cancel = false;
    qint64 last = 0;
    const auto source = std::make_shared<WatchedSource>(file, [&](qint64 offset) {
        cancel = offset > file.size() / 2;
        last = offset;
    });
    const auto decoder = codec.open(source);
    QVERIFY(decoder);
    const auto stopped = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!stopped);
    QCOMPARE(stopped.error().kind, ErrorKind::Cancelled);
    QVERIFY2(last < file.size() * 3 / 4, qPrintable(QString::number(last)));
}

/// So they do when many others stand behind them.
void TestJpegXlHostile::stopsWhereFewBytesOfManyCount()
{
    const QSize size(3000, 2000);
    QByteArray file = jxlOf(size, {{QRect(QPoint(), size), 90}});
    QVERIFY(!file.isEmpty());
    const qsizetype length = file.size();
    file += QByteArray(4 << 20, '\0');
    CancelFlag cancel = false;
    bool feeding = false; // once the layers are known
    qint64 last = 0;
    const auto source = std::make_shared<WatchedSource>(file, [&](qint64 offset) {
        feeding = feeding || (offset > 0 && offset < 1000);
        last = offset;
        cancel = feeding && offset > length / 2;
    });
    const auto decoder = codec.open(source);
    QVERIFY(decoder);
    const auto stopped = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!stopped);
    QCOMPARE(stopped.error().kind, ErrorKind::Cancelled);
    QVERIFY2(last < length, qPrintable(QString::number(last)));
}

/// Layers may lie close together in a file that is large otherwise.
void TestJpegXlHostile::feedsNoTwoLayersAtOnce()
{
    constexpr int dots = 30;
    const QSize size(400, 300);
    QList<JxlLayer> layers(1 + dots, {QRect(0, 0, 1, 1), 90});
    layers[0].place = QRect(QPoint(), size);
    QByteArray file = jxlOf(size, layers);
    QVERIFY(!file.isEmpty());
    const qsizetype length = file.size();
    file += QByteArray(4 << 20, '\0');
    QSet<qint64> offsets;
    const auto source = std::make_shared<WatchedSource>(file, [&](qint64 offset) {
        if (offset < length)
            offsets.insert(offset);
    });
    const auto decoder = codec.open(source);
    QVERIFY(decoder);
    const auto picture = (*decoder)->decode(1, QSize(), CancelFlag(false));
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QVERIFY2(offsets.size() > dots, qPrintable(QString::number(offsets.size())));
}

void TestJpegXlHostile::endsWhereNothingIsTaken()
{
    const JxlLibrary* const library = JxlLibrary::get();
    QVERIFY(library);
    JxlLibrary idle = *library;
    idle.ProcessInput = [](JxlDecoder*) { return JXL_DEC_NEED_MORE_INPUT; };
    idle.SetInput = [](JxlDecoder*, const uint8_t*, size_t size) {
        offered = size;
        return JXL_DEC_SUCCESS;
    };
    idle.ReleaseInput = [](JxlDecoder*) { return offered; };
    offered = 0;
    const WatchedSource source(QByteArray(1 << 20, 'x'));
    JxlReader reader(idle, source, JXL_DEC_BASIC_INFO);
    Limits::setMachineBytes(400'000);
    JxlDecoderStatus event = JXL_DEC_ERROR;
    const JxlEnd end = reader.run(CancelFlag(false), event);
    Limits::setMachineBytes(0);
    QCOMPARE(int(end), int(JxlEnd::Broken));
    QVERIFY(source.reached() > 100'000);
    QVERIFY2(source.reached() < 150'000, qPrintable(QString::number(source.reached())));
}

QTEST_GUILESS_MAIN(TestJpegXlHostile)
#include "tst_jpegxlhostile.moc"
