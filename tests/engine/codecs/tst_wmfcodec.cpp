#include "CodecFixtures.h"
#include "corpus/Corpus.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "WmfChecks.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestWmfCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs_data();
    void sniffs();
    void drawsTheCorpus_data();
    void drawsTheCorpus();
    void sizes_data();
    void sizes();
    void readsRealSamples();
    void drawsSamplesAsOthersDo_data();
    void drawsSamplesAsOthersDo();

  private:
    const Codec& m_codec = wmfCodec();
    std::vector<Fixture> m_corpus;
};

void TestWmfCodec::initTestCase()
{
    m_corpus = wmfCorpus();
    QVERIFY(m_corpus.size() >= 10);
}

void TestWmfCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("is");
    QTest::newRow("placeable") << QByteArray::fromHex("d7cdc69a0000") << true;
    QTest::newRow("plain") << QByteArray::fromHex("010009000003") << true;
    QTest::newRow("plain, on disk, old") << QByteArray::fromHex("020009000001") << true;
    QTest::newRow("other header size") << QByteArray::fromHex("01000a000003") << false;
    QTest::newRow("other version") << QByteArray::fromHex("010009000002") << false;
    QTest::newRow("enhanced") << QByteArray::fromHex("010000006c000000") << false;
    QTest::newRow("cut") << QByteArray::fromHex("0100090000") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestWmfCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, is);
    QCOMPARE(m_codec.sniff(head, QStringLiteral("wmf")), is);
    QCOMPARE(m_codec.sniff(head, QString()), is);
}

void TestWmfCodec::drawsTheCorpus_data()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < m_corpus.size(); ++i)
        QTest::newRow(qPrintable(m_corpus[i].name)) << int(i);
}

void TestWmfCodec::drawsTheCorpus()
{
    QFETCH(int, index);
    const Fixture& fixture = m_corpus[size_t(index)];
    const auto picture = decoded(m_codec, fixture.file);
    QVERIFY(picture);
    QVERIFY(picture->complete);
    if (fixture.expected.size.isEmpty())
        QVERIFY(!inkOf(picture->image).isEmpty());
    else
        QCOMPARE(firstDifference(rgbaOf(picture->image), fixture.expected, fixture.tolerance), QString());
}

void TestWmfCodec::sizes_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size");
    const auto placed = [](int left, int top, int right, int bottom, int inch) {
        return WmfMaker().placed(left, top, right, bottom, inch).fillWith(red).rectangle(0, 0, 9, 9).file();
    };
    QTest::newRow("an inch") << placed(0, 0, 1440, 720, 1440) << QSize(96, 48);
    QTest::newRow("rounded") << placed(0, 0, 1000, 1016, 1440) << QSize(67, 68);
    QTest::newRow("mirrored") << placed(100, 300, -100, 0, 96) << QSize(200, 300);
    QTest::newRow("inch of 0") << placed(0, 0, 30, 20, 0) << QSize(30, 20);
    QTest::newRow("less than a pixel") << placed(0, 0, 1, 1, 5000) << QSize(1, 1);
    QTest::newRow("the widest box") << placed(-32768, 0, 32767, 10, 96) << QSize(65535, 10);
    QTest::newRow("the largest box") << placed(-32768, -32768, 32767, 32767, 96) << QSize(5793, 5793);
    QTest::newRow("too large an inch") << placed(0, 0, 20000, 10000, 1) << QSize(8192, 4096);
    QTest::newRow("no box: as drawn") << placed(5, 5, 5, 90, 96) << QSize(10, 10);
    const auto plain = [](QSize extent) {
        return WmfMaker().window(0, 0, extent).fillWith(red).rectangle(0, 0, 9, 9).file();
    };
    QTest::newRow("plain") << plain(QSize(1024, 300)) << QSize(1024, 300);
    QTest::newRow("plain, mirrored") << plain(QSize(-200, -100)) << QSize(200, 100);
    QTest::newRow("plain, large units") << plain(QSize(10240, 20480)) << QSize(512, 1024);
    QTest::newRow("plain, tall and thin") << plain(QSize(1, 32767)) << QSize(1, 1024);
    QTest::newRow("plain, empty extent: as drawn") << plain(QSize(0, 300)) << QSize(10, 10);
    QTest::newRow("plain with a viewport") << WmfMaker()
                                                  .window(0, 0, QSize(9000, 9000))
                                                  .record(0x020E, {150, 200})
                                                  .fillWith(red)
                                                  .rectangle(0, 0, 9, 9)
                                                  .file()
                                           << QSize(200, 150);
    QTest::newRow("tenths of millimetres")
        << WmfMaker().record(0x0103, {2}).fillWith(red).rectangle(0, 0, 254, 508).file() << QSize(97, 193);
}

void TestWmfCodec::sizes()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    const auto decoder = m_codec.open(ByteSource::fromBytes(file));
    QVERIFY(decoder);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    QCOMPARE(header->size, size);
    QCOMPARE(header->bitsPerPixel, 24);
}

void TestWmfCodec::readsRealSamples()
{
    const QString folder = qEnvironmentVariable("QUORVIA_SAMPLES");
    const QDir place(folder + QStringLiteral("/wmf"));
    if (folder.isEmpty() || !place.exists())
        QSKIP("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
    int read = 0;
    for (const QString& name : place.entryList(QDir::Files)) {
        QFile file(place.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY2(m_codec.sniff(bytes.left(1024), QString()), qPrintable(name));
        const auto picture = decoded(m_codec, bytes);
        QVERIFY2(picture && picture->complete, qPrintable(name));
        const QRect ink = inkOf(picture->image);
        QVERIFY2(ink.width() > picture->image.width() / 3 && ink.height() > picture->image.height() / 4,
                 qPrintable(name));
        ++read;
    }
    QVERIFY(read > 0);
}

namespace {

/// The drawn part of `image`, brought to 24 x 24 pixels of grey.
QImage coarse(const QImage& image)
{
    const QImage flat = image.convertToFormat(QImage::Format_RGB32);
    return flat.copy(inkOf(flat))
        .scaled(QSize(24, 24), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_Grayscale8);
}

/// How far two coarse pictures are from each other in the mean, in grades of grey.
double meanDifference(const QImage& one, const QImage& other)
{
    double sum = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x)
            sum += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y)));
    }
    return sum / (one.width() * one.height());
}

QImage inverted(QImage image)
{
    image.invertPixels();
    return image;
}

} // namespace

void TestWmfCodec::drawsSamplesAsOthersDo_data()
{
    QTest::addColumn<QString>("name");
    // GraphicsMagick draws these; the others need fonts of its own that are not there.
    for (const char* name : {"GraphicsMagick__ant.wmf", "GraphicsMagick__arrow01.wmf",
                             "graphicsmagick__fjftest.wmf", "poi__santa.wmf"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestWmfCodec::drawsSamplesAsOthersDo()
{
    QFETCH(QString, name);
    const QString folder = qEnvironmentVariable("QUORVIA_SAMPLES");
    const QString path = folder + QStringLiteral("/wmf/") + name;
    if (folder.isEmpty() || !QFile::exists(path))
        QSKIP("QUORVIA_SAMPLES names no folder with this sample: it is not compared");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const auto picture = decoded(m_codec, file.readAll());
    QVERIFY(picture && picture->complete);
    const QImage theirs =
        readPnm(runTool(QStringLiteral("gm"), {QStringLiteral("convert"), path, QStringLiteral("-depth"),
                                               QStringLiteral("8"), QStringLiteral("ppm:-")}));
    QVERIFY(!theirs.isNull());
    const QImage ours = coarse(picture->image);
    const QImage wanted = coarse(theirs);
    constexpr double near = 20; // lines are smoothed and rounded in other ways
    const double got = meanDifference(ours, wanted);
    QVERIFY2(got < near, qPrintable(QString::number(got)));
    // The measure tells wrong pictures from right ones.
    QVERIFY(meanDifference(ours.mirrored(true, false), wanted) > 2 * near);
    QVERIFY(meanDifference(ours.mirrored(false, true), wanted) > 2 * near);
    QVERIFY(meanDifference(inverted(ours), wanted) > 2 * near);
}

QTEST_MAIN(TestWmfCodec)
#include "tst_wmfcodec.moc"
