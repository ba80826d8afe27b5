#include "CodecFixtures.h"
#include "corpus/Corpus.h"
#include "corpus/WmfMaker.h"
#include "engine/codecs/Codecs.h"
#include "engine/Toolkit.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <functional>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb black = qRgb(0, 0, 0);
constexpr QRgb white = qRgb(255, 255, 255);

/// The place of one pixel and what must be there.
struct Probe
{
    int x = 0;
    int y = 0;
    QRgb color = 0;
};
using Probes = QList<Probe>;

QString wrongProbe(const QImage& image, const Probes& probes)
{
    for (const Probe& probe : probes) {
        if (!image.valid(probe.x, probe.y) || image.pixel(probe.x, probe.y) != probe.color)
            return QStringLiteral("%1, %2 is %3")
                .arg(probe.x)
                .arg(probe.y)
                .arg(image.pixel(probe.x, probe.y), 8, 16, QLatin1Char('0'));
    }
    return {};
}

/// The smallest box around all pixels of `image` that are not white.
QRect inkOf(const QImage& image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != white)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

/// What the address sanitizer keeps back of the memory that was given free.
constexpr qint64 sanitizerQuarantine()
{
#ifdef __SANITIZE_ADDRESS__
    return qint64(512) << 20;
#else
    return 0;
#endif
}

WmfMaker big()
{
    return WmfMaker::pixels(QSize(100, 100));
}

} // namespace

Q_DECLARE_METATYPE(quorvia::test::WmfMaker)

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
    void draws_data();
    void draws();
    void textLiesWhereItShould_data();
    void textLiesWhereItShould();
    void framesTexts_data();
    void framesTexts();
    void updatesThePosition();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds();
    void leavesCutBitmapRecordsOut_data();
    void leavesCutBitmapRecordsOut();
    void showsTheRowsOfACutBitmap();
    void boundsTheWork_data();
    void boundsTheWork();
    void leavesOutWhatIsTooDear_data();
    void leavesOutWhatIsTooDear();
    void boundsTheMemory_data();
    void boundsTheMemory();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsDepthAndPalette_data();
    void keepsDepthAndPalette();
    void laysAlphaOverWhite();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
    void readsRealSamples();

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

void TestWmfCodec::draws_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<Probes>("probes");
    QTest::newRow("ellipse") << big().fillWith(red).record(0x0418, {80, 90, 20, 10}).file()
                             << Probes{{50, 50, red}, {12, 50, red},   {87, 50, red},
                                       {50, 22, red}, {15, 25, white}, {88, 76, white}};
    QTest::newRow("ellipse far beyond the picture")
        << big().fillWith(red).record(0x0418, {32000, 32000, -32000, -32000}).file()
        << Probes{{0, 0, red}, {99, 99, red}};
    QTest::newRow("round rectangle")
        << big().fillWith(red).record(0x061C, {40, 40, 90, 90, 10, 10}).file()
        << Probes{{50, 50, red}, {50, 10, red}, {10, 50, red}, {11, 11, white}, {88, 88, white}};
    QTest::newRow("pie of the upper right quarter")
        << big().fillWith(red).record(0x081A, {0, 50, 50, 100, 100, 100, 0, 0}).file()
        << Probes{{70, 30, red}, {52, 47, red}, {30, 30, white}, {70, 70, white}, {97, 3, white}};
    QTest::newRow("chord of the lower half")
        << big().fillWith(red).record(0x0830, {50, 100, 50, 0, 100, 100, 0, 0}).file()
        << Probes{{50, 60, red}, {50, 97, red}, {50, 40, white}};
    QTest::newRow("arc of the upper half")
        << big().pen(0, 5, blue).select(0).record(0x0817, {50, 0, 50, 100, 90, 90, 10, 10}).file()
        << Probes{{50, 10, blue}, {50, 50, white}, {50, 89, white}};
    QTest::newRow("arc with a box turned round")
        << big().pen(0, 5, blue).select(0).record(0x0817, {50, 0, 50, 100, 10, 10, 90, 90}).file()
        << Probes{{50, 10, blue}, {50, 89, white}};
    QTest::newRow("star, alternating")
        << big().fillWith(red).record(0x0324, {5, 50, 5, 75, 90, 5, 35, 95, 35, 25, 90}).file()
        << Probes{{50, 50, white}, {50, 20, red}};
    QTest::newRow("star, winding") << big()
                                          .fillWith(red)
                                          .record(0x0106, {2})
                                          .record(0x0324, {5, 50, 5, 75, 90, 5, 35, 95, 35, 25, 90})
                                          .file()
                                   << Probes{{50, 50, red}, {50, 20, red}};
    QTest::newRow("triangle with corners far outside")
        << big().fillWith(red).record(0x0324, {3, -32000, -32000, 32000, -32000, 50, 50}).file()
        << Probes{{50, 40, red}, {50, 60, white}, {20, 60, white}};
    QTest::newRow("wide pen") << big().pen(0x200, 11, blue).select(0).line(20, 50, 80, 50).file()
                              << Probes{{50, 45, blue},  {50, 55, blue},  {50, 44, white},
                                        {50, 56, white}, {18, 50, white}, {83, 50, white}};
    QTest::newRow("line far beyond the picture")
        << big().pen(0, 3, blue).select(0).line(-32000, 50, 32000, 50).file()
        << Probes{{0, 50, blue}, {99, 49, blue}, {50, 53, white}};
    QTest::newRow("dashes on a filled ground")
        << big().record(0x0201, {0xFF, 0}).pen(1, 1, blue).select(0).line(0, 50, 100, 50).file()
        << Probes{{0, 50, blue}, {17, 50, blue}, {18, 50, red}, {23, 50, red}, {24, 50, blue}};
    QTest::newRow("dashes on a clear ground")
        << big().record(0x0102, {1}).pen(1, 1, blue).select(0).line(0, 50, 100, 50).file()
        << Probes{{0, 50, blue}, {17, 50, blue}, {18, 50, white}, {23, 50, white}, {24, 50, blue}};
    QTest::newRow("lines of no length, and outlines of one pixel")
        << big()
               .pen(0, 1, blue)
               .select(0)
               .rectangle(10, 10, 11, 11)
               .rectangle(20, 20, 21, 25)
               .rectangle(30, 20, 35, 21)
               .rectangle(70, 70, 70, 80)
               .record(0x0418, {80, 70, 70, 70})
               .line(40, 40, 40, 40)
               .record(0x0325, {2, 50, 50, 50, 50})
               .line(60, 60, 61, 60)
               .file()
        << Probes{{10, 10, blue},  {11, 10, white}, {10, 11, white}, {9, 10, white},  {10, 9, white},
                  {20, 20, blue},  {20, 24, blue},  {20, 25, white}, {21, 22, white}, {30, 20, blue},
                  {34, 20, blue},  {35, 20, white}, {40, 40, white}, {50, 50, white}, {60, 60, blue},
                  {61, 60, white}, {59, 60, white}, {70, 70, white}, {70, 75, white}};
    QTest::newRow("frame inside")
        << big().pen(6, 10, blue).brush(1, 0).select(0).select(1).rectangle(20, 20, 80, 80).file()
        << Probes{{20, 50, blue},  {29, 50, blue},  {79, 50, blue},
                  {19, 50, white}, {80, 50, white}, {31, 50, white}};
    QTest::newRow("isotropic keeps the proportions")
        << WmfMaker()
               .placed(0, 0, 100, 100, 96)
               .record(0x0103, {7})
               .record(0x020C, {50, 100})
               .fillWith(red)
               .rectangle(0, 0, 50, 50)
               .file()
        << Probes{{49, 49, red}, {49, 51, white}, {51, 49, white}};
    QTest::newRow("tenths of millimetres, y up")
        << big().record(0x0103, {2}).fillWith(red).rectangle(0, 0, 127, -127).file()
        << Probes{{47, 47, red}, {48, 10, white}, {10, 48, white}};
    QTest::newRow("smooth where it shrinks")
        << big()
               .record(0x0F43, {0x20, 0xCC, 0, 40, 40, 0, 0, 10, 10, 20, 20},
                       WmfMaker::dib(QSize(40, 40), 24, {}, 0,
                                     [](int x, int y) { return qRgb((x + y) % 2 == 0 ? 100 : 200, 0, 0); }))
               .file()
        << Probes{{25, 25, qRgb(150, 0, 0)}, {19, 25, white}, {30, 25, white}};
    QTest::newRow("unknown records are passed over")
        << big().record(0x0626, {15, 0}).record(0x1234, {1, 2, 3}).fillWith(red).rectangle(0, 0, 5, 5).file()
        << Probes{{2, 2, red}, {6, 6, white}};
    QTest::newRow("objects that are not there")
        << big().select(7).record(0x01F0, {9}).record(0x012D, {-1}).fillWith(red).rectangle(0, 0, 5, 5).file()
        << Probes{{2, 2, red}};
    const auto rows = [](QSize size, int first, int count) { // of a picture of 20 x 20, from the lowest
        return WmfMaker::dib(size, 24, {}, 0,
                             [](int x, int y) {
                                 return y % 20 < 10 ? (x < 10 ? red : blue)
                                                    : (x < 10 ? black : qRgb(0, 255, 0));
                             })
            .remove(40 + 60 * (first + count), 60 * size.height())
            .remove(40, 60 * first);
    };
    const QSize whole(20, 20);
    const Probes quarters = {{5, 5, red},
                             {14, 14, red},
                             {15, 5, blue},
                             {24, 14, blue},
                             {5, 15, black},
                             {14, 24, black},
                             {24, 24, qRgb(0, 255, 0)},
                             {4, 5, white},
                             {25, 5, white},
                             {5, 4, white},
                             {5, 25, white}};
    QTest::newRow("a bitmap in bands")
        << big()
               .record(0x0D33, {0, 10, 0, 0, 0, 20, 20, 5, 5}, rows(whole, 0, 10))
               .record(0x0D33, {0, 10, 10, 0, 0, 20, 20, 5, 5}, rows(whole, 10, 10))
               .file()
        << quarters;
    QTest::newRow("a bitmap in bands of uneven height, the upper one first")
        << big()
               .record(0x0D33, {0, 13, 7, 0, 0, 20, 20, 5, 5}, rows(whole, 7, 13))
               .record(0x0D33, {0, 7, 0, 0, 0, 20, 20, 5, 5}, rows(whole, 0, 7))
               .file()
        << quarters;
    QTest::newRow("a band alone")
        << big().record(0x0D33, {0, 10, 10, 0, 0, 20, 20, 5, 5}, rows(whole, 10, 10)).file()
        << Probes{{5, 5, red}, {24, 14, blue}, {5, 15, white}, {24, 24, white}};
    QByteArray topDown = rows(whole, 0, 20);
    topDown.replace(8, 4, WmfMaker::number<qint32>(-20)); // now black and green lie above
    QTest::newRow("a part of a bitmap that begins with its top row")
        << big().record(0x0F43, {0x20, 0xCC, 0, 10, 20, 0, 0, 10, 20, 5, 5}, topDown).file()
        << Probes{{5, 5, black}, {24, 14, qRgb(0, 255, 0)}, {5, 15, white}};
    QTest::newRow("the same from its lower half")
        << big().record(0x0F43, {0x20, 0xCC, 0, 10, 20, 10, 0, 10, 20, 5, 5}, topDown).file()
        << Probes{{5, 5, red}, {24, 14, blue}, {5, 15, white}};
    QTest::newRow("bands of a bitmap that begins with its top row")
        << big()
               .record(0x0D33, {0, 10, 0, 0, 0, 20, 20, 5, 5}, QByteArray(topDown).left(40 + 600))
               .record(0x0D33, {0, 10, 10, 0, 0, 20, 20, 5, 5}, QByteArray(topDown).remove(40, 600))
               .file()
        << Probes{{5, 5, black}, {24, 14, qRgb(0, 255, 0)}, {5, 15, red}, {24, 24, blue}};
    QTest::newRow("a pattern larger than the picture")
        << big()
               .pen(5, 0, 0)
               .record(0x0142, {5, 0},
                       WmfMaker::dib(QSize(150, 130), 24, {}, 0,
                                     [](int x, int y) { return x < 60 && y < 60 ? red : blue; }))
               .select(0)
               .select(1)
               .rectangle(0, 0, 100, 100)
               .file()
        << Probes{{0, 0, red}, {59, 59, red}, {60, 0, blue}, {0, 60, blue}, {99, 99, blue}};
    QTest::newRow("a palette changed in place, for saved contexts too")
        << big()
               .record(0x00F7, {0x300, 2}, QByteArray::fromHex("0000000000000000"))
               .record(0x0234, {0})
               .record(0x001E)
               .record(0x0037, {1, 1, 0xFF, 0})
               .record(0x0127, {-1})
               .record(0x02FA, {5, 0, 0, 0, 0})
               .record(0x02FC, {0, 1, 0x0100, 0})
               .select(1)
               .select(2)
               .rectangle(0, 0, 5, 5)
               .file()
        << Probes{{2, 2, red}};
    QTest::newRow("restore without save") << big()
                                                 .record(0x0127, {-1})
                                                 .record(0x0127, {3})
                                                 .record(0x0127, {0})
                                                 .fillWith(red)
                                                 .rectangle(0, 0, 5, 5)
                                                 .file()
                                          << Probes{{2, 2, red}};
}

void TestWmfCodec::draws()
{
    QFETCH(QByteArray, file);
    QFETCH(Probes, probes);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.format(), QImage::Format_RGB32);
    QCOMPARE(wrongProbe(picture->image, probes), QString());
}

void TestWmfCodec::textLiesWhereItShould_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QRect>("within"); ///< all ink lies in here
    QTest::addColumn<QRect>("covers"); ///< and goes at least as far as this
    const auto text = [](int align, int escapement = 0) {
        return WmfMaker::pixels(QSize(200, 200))
            .record(0x0102, {1})
            .record(0x012E, {align})
            .font(-20, "Arial", 0, escapement)
            .select(0);
    };
    const QByteArray letters("HHHHH");
    QTest::newRow("from the top left")
        << text(0).text(100, 100, letters).file() << QRect(100, 100, 90, 24) << QRect(104, 104, 55, 12);
    QTest::newRow("on the baseline") << text(24).text(100, 100, letters).file() << QRect(100, 83, 90, 18)
                                     << QRect(104, 88, 55, 10);
    QTest::newRow("from the bottom") << text(8).text(100, 100, letters).file() << QRect(100, 76, 90, 24)
                                     << QRect(104, 84, 55, 8);
    QTest::newRow("from the right") << text(2).text(100, 100, letters).file() << QRect(20, 100, 80, 24)
                                    << QRect(42, 104, 52, 12);
    QTest::newRow("centred") << text(6).text(100, 100, letters).file() << QRect(50, 100, 100, 24)
                             << QRect(74, 104, 52, 12);
    QTest::newRow("upwards") << text(24, 900).text(100, 100, letters).file() << QRect(83, 10, 18, 91)
                             << QRect(88, 42, 10, 54);
    QTest::newRow("upside down") << text(24, 1800).text(100, 100, letters).file() << QRect(10, 99, 91, 18)
                                 << QRect(42, 102, 54, 10);
    QTest::newRow("extra room between letters") << text(0).record(0x0108, {10}).text(10, 10, letters).file()
                                                << QRect(10, 10, 140, 24) << QRect(14, 14, 105, 12);
    QTest::newRow("in steps") << text(0)
                                     .record(0x0A32, {10, 10, 3, 0},
                                             QByteArray("HHH\0", 4) + WmfMaker::words({50, 60, 10}))
                                     .file()
                              << QRect(10, 10, 130, 24) << QRect(14, 14, 116, 12);
    QTest::newRow("narrowed") << text(0).font(-20, "Arial", 0, 0, 3).select(1).text(10, 10, letters).file()
                              << QRect(10, 10, 40, 24) << QRect(13, 14, 12, 12);
    QTest::newRow("clipped") << text(0).record(0x0A32, {10, 10, 5, 4, 20, 10, 50, 20}, letters + '\0').file()
                             << QRect(20, 10, 30, 10) << QRect(22, 15, 27, 5);
    QTest::newRow("numbers of glyphs are not letters; their ground is drawn")
        << text(0)
               .record(0x0201, {0xFF, 0})
               .record(0x0A32, {10, 10, 5, 0x12, 20, 10, 50, 20}, letters + '\0')
               .file()
        << QRect(20, 10, 30, 10) << QRect(20, 10, 30, 10);
    QTest::newRow("underlined")
        << text(24).font(-20, "Arial", 0, 0, 0, true).select(1).text(10, 50, "    .").file()
        << QRect(10, 46, 60, 10) << QRect(11, 51, 20, 1);
    QTest::newRow("from right to left")
        << text(0).font(-20, "Arial", 177).select(1).text(10, 10, "\xE0\xE1\xE2").file()
        << QRect(8, 8, 60, 30) << QRect(14, 17, 20, 8);
}

void TestWmfCodec::textLiesWhereItShould()
{
    QFETCH(QByteArray, file);
    QFETCH(QRect, within);
    QFETCH(QRect, covers);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture && picture->complete);
    const QRect ink = inkOf(picture->image);
    const QString found =
        QStringLiteral("%1, %2, %3 x %4").arg(ink.x()).arg(ink.y()).arg(ink.width()).arg(ink.height());
    QVERIFY2(within.contains(ink), qPrintable(found));
    QVERIFY2(ink.contains(covers), qPrintable(found));
}

void TestWmfCodec::framesTexts_data()
{
    QTest::addColumn<QByteArray>("file"); ///< that tells no extent
    const auto text = [](int align, int escapement = 0) {
        return WmfMaker()
            .record(0x0102, {1})
            .record(0x012E, {align})
            .font(-40, "Arial", 0, escapement)
            .select(0);
    };
    const QByteArray letters("WMgjfWMgjfWMgjf");
    QTest::newRow("from the top left") << text(0).text(0, 0, letters).file();
    QTest::newRow("on the baseline") << text(24).text(7, -9, letters).file();
    QTest::newRow("from the right, below") << text(2 | 8).text(100, 100, letters).file();
    QTest::newRow("centred") << text(6).text(100, 100, letters).file();
    QTest::newRow("slanting") << text(24, 300).text(100, 100, letters).file();
    QTest::newRow("upside down") << text(0, 1800).text(100, 100, letters).file();
    QTest::newRow("one wide letter") << text(0).text(0, 0, "W").file();
    QTest::newRow("steps that are too narrow")
        << text(0).record(0x0A32, {10, 10, 3, 0}, QByteArray("WWW\0", 4) + WmfMaker::words({5, 5, 5})).file();
    QTest::newRow("steps downwards") << text(0)
                                            .record(0x0A32, {10, 10, 2, 0x2000},
                                                    QByteArray("gj") + WmfMaker::words({20, 40, 20, 40}))
                                            .file();
    QTest::newRow("letters and room between them") << text(0).record(0x0108, {9}).text(0, 0, letters).file();
    QTest::newRow("signs")
        << text(0).font(-40, "Wingdings", 2).select(1).text(0, 0, "\x4A\x4B\x6C\xFC").file();
}

void TestWmfCodec::framesTexts()
{
    QFETCH(QByteArray, file);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture && picture->complete);
    const QRect all = picture->image.rect();
    const QRect ink = inkOf(picture->image);
    QVERIFY(!ink.isEmpty());
    const QString found = QStringLiteral("%1, %2, %3 x %4 of %5 x %6")
                              .arg(ink.x())
                              .arg(ink.y())
                              .arg(ink.width())
                              .arg(ink.height())
                              .arg(all.width())
                              .arg(all.height());
    QVERIFY2(all.adjusted(1, 1, -1, -1).contains(ink), qPrintable(found));
    QVERIFY2(ink.width() > all.width() / 2 && ink.height() > all.height() / 3, qPrintable(found));

    // Before the toolkit stands the header gives a frame with room to spare, and it holds.
    const auto early = m_codec.open(ByteSource::fromBytes(file));
    QVERIFY(early);
    {
        const ToolkitHold hold;
        QVERIFY((*early)->header(1));
    }
    const auto header = (*early)->header(1);
    const CancelFlag go = false;
    const auto later = (*early)->decode(1, QSize(), go);
    QVERIFY(header && later && later->complete);
    QCOMPARE(later->image.size(), header->size);
    const QRect laterInk = inkOf(later->image);
    QVERIFY(later->image.rect().adjusted(1, 1, -1, -1).contains(laterInk));
    QVERIFY(qAbs(laterInk.width() - ink.width()) <= ink.width() / 20 + 2 ||
            later->image.width() == 1024); // as large, unless brought down
}

void TestWmfCodec::updatesThePosition()
{
    const QByteArray file = big()
                                .record(0x0102, {1})
                                .record(0x012E, {1})
                                .font(-20, "Arial")
                                .select(0)
                                .record(0x0214, {10, 10})
                                .record(0x0A32, {0, 0, 1, 0}, QByteArray("H\0", 2) + WmfMaker::words({40}))
                                .record(0x0A32, {0, 0, 1, 0}, QByteArray("H\0", 2) + WmfMaker::words({20}))
                                .pen(0, 1, red)
                                .select(1)
                                .record(0x0213, {10, 90})
                                .file();
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(wrongProbe(picture->image, {{69, 10, white}, {70, 10, red}, {89, 10, red}, {90, 10, white}}),
             QString());
    QVERIFY(!inkOf(picture->image.copy(50, 11, 20, 30)).isEmpty());
    QVERIFY(inkOf(picture->image.copy(30, 11, 20, 30)).isEmpty());
}

void TestWmfCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray good = big().fillWith(red).rectangle(0, 0, 9, 9).file();
    QTest::newRow("mark only") << good.left(4);
    QTest::newRow("cut in the plain header") << good.left(39);
    QTest::newRow("no record") << good.left(40);
    QTest::newRow("nothing drawn before the end of the file") << big().file(false);
    QTest::newRow("plain, no extent, nothing drawn") << WmfMaker().file();
    QTest::newRow("a record of no size") << big().file(false) + QByteArray(6, '\0');
    QTest::newRow("a bitmap that is none")
        << big().record(0x0F43, {0x20, 0xCC, 0, 9, 9, 0, 0, 9, 9, 0, 0}, QByteArray(60, '\x77')).file();
}

void TestWmfCodec::refuses()
{
    QFETCH(QByteArray, file);
    const auto picture = decoded(m_codec, file);
    QVERIFY(!picture);
    QCOMPARE(picture.error().kind, ErrorKind::Damaged);
    QVERIFY(!picture.error().text.isEmpty());
}

void TestWmfCodec::showsWhatACutFileHolds()
{
    WmfMaker maker = WmfMaker::pixels(QSize(80, 10)).fillWith(red);
    QList<qsizetype> ends; // of the record of each square, bytes
    for (int i = 0; i < 8; ++i) {
        maker.rectangle(10 * i, 0, 10 * i + 10, 10);
        ends.append(maker.file(false).size());
    }
    const QByteArray file = maker.file();
    for (qsizetype length = 0; length < file.size(); ++length) {
        const qsizetype squares =
            std::count_if(ends.begin(), ends.end(), [=](qsizetype end) { return end <= length; });
        const auto picture = decoded(m_codec, file.left(length));
        QCOMPARE(bool(picture), squares > 0);
        if (!picture) {
            QCOMPARE(picture.error().kind, ErrorKind::Damaged);
            continue;
        }
        QVERIFY(!picture->complete);
        const Rgba wanted = Paper(QSize(80, 10)).box(0, 0, int(10 * squares), 10, red).rgba();
        QCOMPARE(firstDifference(rgbaOf(picture->image), wanted), QString());
    }
}

void TestWmfCodec::leavesCutBitmapRecordsOut_data()
{
    QTest::addColumn<QByteArray>("record"); ///< of a black box from 15, 15 to 35, 35
    QTest::addColumn<qsizetype>("fixed");   ///< bytes without which it cannot be drawn
    const auto bytes = [](int function, const QList<int>& words, const QByteArray& tail = {}) {
        return WmfMaker().record(function, words, tail).file(false).mid(18);
    };
    const QByteArray dib = WmfMaker::dib(QSize(20, 20), 24, {}, 0, [](int, int) { return black; });
    QTest::newRow("PatBlt") << bytes(0x061D, {0x42, 0, 20, 20, 15, 15}) << qsizetype(6 + 12);
    QTest::newRow("BitBlt without bitmap")
        << bytes(0x0922, {0x42, 0, 0, 0, 0, 20, 20, 15, 15}) << qsizetype(6 + 18);
    QTest::newRow("StretchBlt without bitmap")
        << bytes(0x0B23, {0x42, 0, 20, 20, 0, 0, 0, 20, 20, 15, 15}) << qsizetype(6 + 22);
    QTest::newRow("StretchDIB, which needs no source")
        << bytes(0x0F43, {0x42, 0, 0, 20, 20, 0, 0, 20, 20, 15, 15}, dib) << qsizetype(6 + 22);
    QTest::newRow("DIBBitBlt, which needs no source")
        << bytes(0x0940, {0x42, 0, 0, 0, 20, 20, 15, 15}, dib) << qsizetype(6 + 16);
}

void TestWmfCodec::leavesCutBitmapRecordsOut()
{
    QFETCH(QByteArray, record);
    QFETCH(qsizetype, fixed);
    const QByteArray start =
        WmfMaker::pixels(QSize(40, 40)).fillWith(red).rectangle(0, 0, 10, 10).file(false);
    for (qsizetype length = 0; length <= record.size(); length += length < fixed ? 1 : 101) {
        const auto picture = decoded(m_codec, start + record.left(length));
        QVERIFY(picture && !picture->complete);
        Paper wanted = Paper(QSize(40, 40)).box(0, 0, 10, 10, red);
        if (length >= fixed)
            wanted.box(15, 15, 35, 35, black);
        QCOMPARE(firstDifference(rgbaOf(picture->image), wanted.rgba()), QString());
    }
}

void TestWmfCodec::showsTheRowsOfACutBitmap()
{
    const auto file = m_codec.encode(colorPicture(QSize(20, 30)), QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto whole = decoded(m_codec, *file);
    const auto part = decoded(m_codec, file->left(file->size() - 6 - 10 * 60));
    QVERIFY(whole && part);
    QVERIFY(whole->complete && !part->complete);
    QCOMPARE(part->image.copy(0, 10, 20, 20), whole->image.copy(0, 10, 20, 20));
}

void TestWmfCodec::boundsTheWork_data()
{
    using Step = std::function<void(WmfMaker&, int)>;
    QTest::addColumn<WmfMaker>("start");
    QTest::addColumn<Step>("step"); ///< repeated
    QTest::addColumn<int>("times");
    const auto row = [](const char* name, const WmfMaker& start, int times, const Step& step) {
        QTest::newRow(name) << start << step << times;
    };
    QList<int> zigzag = {30000};
    for (int i = 0; i < 30000; ++i)
        zigzag << (i % 2 == 0 ? -30000 : 30000) << i;
    QList<int> crowd = {30000};
    for (int i = 0; i < 30000; ++i)
        crowd << i * 7919 % 5700 << i * 4729 % 5700;
    const WmfMaker small = WmfMaker().placed(0, 0, 1000, 1000, 96);
    const WmfMaker large = WmfMaker().placed(0, 0, 5700, 5700, 96);
    row("polygons of many points", WmfMaker(large).fillWith(red), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0324, crowd); });
    row("dashes", WmfMaker(large).pen(2, 1, blue).select(0), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0325, zigzag); });
    row("thin lines", WmfMaker(large).pen(0, 1, blue).select(0), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0325, crowd); });
    row("wide pens", WmfMaker(large).pen(0, 32767, blue).select(0), 100,
        [=](WmfMaker& maker, int) { maker.record(0x0325, crowd); });
    row("hatches", WmfMaker(large).brush(2, blue, 5).select(0), 9000, [](WmfMaker& maker, int i) {
        maker.record(0x0418, {5700, 5700, i % 7, 0});
    });
    row("gigantic arcs", WmfMaker(small).pen(0, 9, blue).select(0), 9000, [](WmfMaker& maker, int i) {
        maker.record(0x0817, {0, 100, 0, 100, 30000, 50, -30000, i % 99 - 30000});
    });
    row("gigantic letters", WmfMaker(small).font(-30000, "Arial").select(0), 9000,
        [](WmfMaker& maker, int) { maker.text(-20000, 1000, "HHHHHHHHHHHHHHHH"); });
    row("many letters", WmfMaker(small).font(-20, "Arial").select(0), 2000,
        [](WmfMaker& maker, int) { maker.text(0, 0, QByteArray(30000, 'W')); });
    row("patterns", WmfMaker(large).brush(2, blue, 5).select(0), 9000, [](WmfMaker& maker, int) {
        maker.record(0x061D, {0x49, 0x5A, 5700, 5700, 0, 0});
    });
    row("saved contexts", WmfMaker(small).fillWith(red).rectangle(0, 0, 9, 9), 20000,
        [](WmfMaker& maker, int) { maker.record(0x001E); });
    row("clips of many pieces", WmfMaker(small).fillWith(red), 9000, [](WmfMaker& maker, int i) {
        const int x = i * 7 % 900;
        const int y = i % 900;
        maker.record(0x0415, {y + 1, x + 1, y, x}).rectangle(0, 0, 1000, 1000);
    });
    const QByteArray promise = WmfMaker::number<quint32>(40) + WmfMaker::number<qint32>(4000) +
                               WmfMaker::number<qint32>(4000) + WmfMaker::words({1, 8, 1, 0}) +
                               QByteArray(20, '\0') + QByteArray(2048, '\1');
    row("bitmaps that promise much", WmfMaker(small).fillWith(red).rectangle(0, 0, 9, 9), 3000,
        [promise](WmfMaker& maker, int) {
            maker.record(0x0F43, {0x20, 0xCC, 0, 4000, 4000, 0, 0, 100, 100, 0, 0}, promise);
        });
}

void TestWmfCodec::boundsTheWork()
{
    using Step = std::function<void(WmfMaker&, int)>;
    QFETCH(WmfMaker, start);
    QFETCH(Step, step);
    QFETCH(int, times);
    for (int i = 0; i < times; ++i)
        step(start, i);
    const auto picture = decoded(m_codec, start.file());
    QVERIFY(picture);
    QVERIFY(!inkOf(picture->image.copy(0, 0, 100, 100)).isEmpty() || !picture->complete);
}

void TestWmfCodec::leavesOutWhatIsTooDear_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("whole");
    const WmfMaker start =
        WmfMaker::pixels(QSize(200, 200)).record(0x0102, {1}).fillWith(red).rectangle(0, 0, 50, 50);
    WmfMaker fonts = start;
    for (int i = 0; i < 3000; ++i)
        fonts.font(-10 - i % 190, "Face " + QByteArray::number(i))
            .select(2)
            .text(10, 10, "x")
            .record(0x01F0, {2});
    QTest::newRow("a font for every text") << fonts.file() << false;
    WmfMaker few = start;
    for (int i = 0; i < 30; ++i)
        few.font(-10 - i, "Arial");
    for (int i = 0; i < 5000; ++i)
        few.select(2 + i % 30).text(10, 10, "x");
    QTest::newRow("a few fonts for many texts") << few.file() << true;
    QList<int> region = {0, 6, 0, 0, 0, 60, 60, 0, 0, 200, 200};
    for (int y = 0; y < 60; ++y) {
        region += {60, 3 * y, 3 * y + 2};
        for (int x = 0; x < 60; ++x)
            region << 3 * x + x % 2;
        region << 60;
    }
    WmfMaker clipped = start;
    clipped.record(0x06FF, region).record(0x012C, {2}).font(-12, "Arial").select(3);
    for (int i = 0; i < 5000; ++i)
        clipped.record(0x0A32, {i % 200, i % 190, 1, 4, 0, 0, 200, 200}, QByteArray("x\0", 2));
    QTest::newRow("texts clipped by many pieces") << clipped.file() << false;
}

void TestWmfCodec::leavesOutWhatIsTooDear()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, whole);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->complete, whole);
    QCOMPARE(picture->image.pixel(0, 0), red);
}

void TestWmfCodec::boundsTheMemory_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QRgb>("corner"); ///< of what is still drawn
    const WmfMaker small = WmfMaker(big()).fillWith(red).rectangle(0, 0, 50, 50);
    const WmfMaker large =
        WmfMaker::pixels(QSize(2000, 2000)).fillWith(red).rectangle(0, 0, 50, 50); // pixels of 16 MB
    // Pictures of one colour by run lengths: a few bytes for many pixels.
    const auto plain = [](int side) {
        return WmfMaker::number<quint32>(40) + WmfMaker::number<qint32>(side) +
               WmfMaker::number<qint32>(side) + WmfMaker::words({1, 8, 1, 0}) + QByteArray(20, '\0') +
               QByteArray(1024, '\0') + QByteArray("\1\1\0\1", 4);
    };
    const auto row = [](const char* name, WmfMaker maker, int times,
                        const std::function<void(WmfMaker&, int)>& step) {
        for (int i = 0; i < times; ++i)
            step(maker, i);
        QTest::newRow(name) << maker.file() << red;
    };
    row("patterns larger than the picture", small, 60, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(2000));
    });
    row("patterns that promise more than any has", small, 20, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(4096));
    });
    row("patterns as large as the picture", large, 60, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(2000));
    });
    row("patterns that only saved contexts hold", large, 60, [&](WmfMaker& maker, int) {
        maker.record(0x0142, {5, 0}, plain(2000)).select(2).record(0x001E).record(0x01F0, {2});
    });
    const QByteArray device = WmfMaker::words({0, 16000, 500, 2000}) + QByteArray("\1\1", 2) +
                              QByteArray(22, '\0') + QByteArray(2000 * 500, '\x55');
    row("patterns of the device kind", small, 20,
        [&](WmfMaker& maker, int) { maker.record(0x01F9, {}, device); });
    WmfMaker colors = small;
    colors.record(0x00F7, {0x300, 65535}, QByteArray(4 * 65535, '\1')).record(0x0234, {2});
    row("palettes changed between saved contexts", colors, 1000, [](WmfMaker& maker, int i) {
        maker.record(0x0037, {5, 1, i, 0}).record(0x001E);
    });
    row("objects without number", small, 600'000, [](WmfMaker& maker, int) { maker.record(0x00F8); });
    WmfMaker pieces = small;
    QList<int> scans = {0, 6, 0, 0, 0, 500, 32, 0, 0, 500, 1000};
    for (int y = 0; y < 500; ++y) {
        scans += {32, 2 * y, 2 * y + 1};
        for (int x = 0; x < 32; ++x)
            scans << 3 * x;
        scans << 32;
    }
    pieces.record(0x06FF, scans).record(0x012C, {2});
    row("clips of many pieces between saved contexts", pieces, 1000, [](WmfMaker& maker, int i) {
        maker.record(0x0220, {i % 2 == 0 ? 1 : -1, 0}).record(0x001E);
    });
}

void TestWmfCodec::boundsTheMemory()
{
    QFETCH(QByteArray, file);
    QFETCH(QRgb, corner);
    std::optional<Result<Picture>> picture;
    const qint64 grown = peakGrowth([&] { picture.emplace(decoded(m_codec, file)); });
    QVERIFY(*picture);
    QCOMPARE((*picture)->image.pixel(0, 0), corner);
    constexpr qint64 most = 112 << 20; // 64 MB of objects, the largest picture and what one record takes
    QVERIFY2(grown >= 0 && grown < most + sanitizerQuarantine(), qPrintable(QString::number(grown)));
}

void TestWmfCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(1, 300), QSize(37, 5), QSize(64, 20)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        QTest::newRow(name("mono").constData()) << dotPicture(size);
        QTest::newRow(name("few colours").constData()) << palettePicture(size, 7);
        QTest::newRow(name("palette").constData()) << palettePicture(size, 200);
        QTest::newRow(name("grey").constData()) << greyPicture(size);
        QTest::newRow(name("colour").constData()) << colorPicture(size);
    }
}

void TestWmfCodec::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto file = m_codec.encode(picture, QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto own = decoded(m_codec, *file);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, picture), QString());

    // Turned into SVG, the bitmap stands beside it as a file of its own.
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("a.wmf"), *file);
    runTool(QStringLiteral("wmf2svg"), {QStringLiteral("-o"), files.path(QStringLiteral("a.svg")), path});
    QCOMPARE(difference(QImage(files.path(QStringLiteral("a-1.png"))), picture), QString());
    const QByteArray drawing = files.read(QStringLiteral("a.svg"));
    const QString place =
        QStringLiteral("<image x=\"0.000000\" y=\"0.000000\" width=\"%1.000000\" height=\"%2.000000\"")
            .arg(picture.width())
            .arg(picture.height());
    QVERIFY2(drawing.contains(place.toLatin1()), drawing.constData());
}

void TestWmfCodec::keepsDepthAndPalette_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("format");
    const QSize size(21, 9);
    QImage tinted = dotPicture(size);
    tinted.setColorTable({red, blue});
    const QImage color = colorPicture(size);
    QTest::newRow("1 bit") << dotPicture(size) << 1 << int(QImage::Format_Mono);
    QTest::newRow("1 bit, tinted") << tinted << 1 << int(QImage::Format_Mono);
    QTest::newRow("1 bit, lowest first")
        << tinted.convertToFormat(QImage::Format_MonoLSB) << 1 << int(QImage::Format_Mono);
    QTest::newRow("16 colours") << palettePicture(size, 16) << 4 << int(QImage::Format_Indexed8);
    QTest::newRow("17 colours") << palettePicture(size, 17) << 8 << int(QImage::Format_Indexed8);
    QTest::newRow("256 colours") << palettePicture(size, 256) << 8 << int(QImage::Format_Indexed8);
    QTest::newRow("grey") << greyPicture(size) << 8 << int(QImage::Format_Indexed8);
    QTest::newRow("16-bit grey") << greyPicture(size).convertToFormat(QImage::Format_Grayscale16) << 24
                                 << int(QImage::Format_RGB32);
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_RGB888, QImage::Format_BGR888,
                                        QImage::Format_RGBX8888, QImage::Format_RGBX64, QImage::Format_RGB30})
        QTest::newRow(qPrintable(QStringLiteral("colour format %1").arg(format)))
            << color.convertToFormat(format) << 24 << int(QImage::Format_RGB32);
    QTest::newRow("565") << color.convertToFormat(QImage::Format_RGB16) << 24 << int(QImage::Format_RGB32);
}

void TestWmfCodec::keepsDepthAndPalette()
{
    QFETCH(QImage, picture);
    QFETCH(int, bits);
    QFETCH(int, format);
    const auto file = m_codec.encode(picture, QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto decoder = m_codec.open(ByteSource::fromBytes(*file));
    QVERIFY(decoder);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    const auto own = decoded(m_codec, *file);
    QVERIFY(own && own->complete);
    if (picture.format() != QImage::Format_Grayscale16)
        QCOMPARE(header->bitsPerPixel, bits);
    QCOMPARE(own->bitsPerPixel, header->bitsPerPixel);
    if (picture.format() != QImage::Format_Grayscale16)
        QCOMPARE(int(own->image.format()), format);
    QCOMPARE(difference(own->image, picture.convertToFormat(QImage::Format_RGB32)), QString());
    if (picture.format() == QImage::Format_Indexed8)
        QCOMPARE(own->image.colorTable().first(picture.colorCount()), picture.colorTable());
}

void TestWmfCodec::laysAlphaOverWhite()
{
    QImage picture(3, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, qRgba(10, 20, 30, 255));
    picture.setPixel(1, 0, qRgba(10, 20, 30, 0));
    picture.setPixel(2, 0, qRgba(255, 0, 0, 51));
    const auto file = m_codec.encode(picture, QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto own = decoded(m_codec, *file);
    QVERIFY(own);
    QCOMPARE(wrongProbe(own->image, {{0, 0, qRgb(10, 20, 30)}, {1, 0, white}, {2, 0, qRgb(255, 204, 204)}}),
             QString());
    QImage clear = palettePicture(QSize(5, 5), 9);
    clear.setColor(3, qRgba(1, 2, 3, 0));
    const auto second = m_codec.encode(clear, QStringLiteral("wmf"), {});
    QVERIFY(second);
    const auto read = decoded(m_codec, *second);
    QVERIFY(read && read->bitsPerPixel == 24);
}

void TestWmfCodec::refusesToWrite()
{
    const auto none = m_codec.encode(QImage(), QStringLiteral("wmf"), {});
    QVERIFY(!none);
    QCOMPARE(none.error().kind, ErrorKind::Unsupported);
    const auto wide = m_codec.encode(QImage(32768, 1, QImage::Format_Mono), QStringLiteral("wmf"), {});
    QVERIFY(!wide);
    QCOMPARE(wide.error().kind, ErrorKind::Unsupported);
    QVERIFY(wide.error().text.contains(QLatin1String("32767")));
    QVERIFY(m_codec.encode(dotPicture(QSize(32767, 1)), QStringLiteral("wmf"), {}));
    QVERIFY(m_codec.canEncode(QStringLiteral("wmf")) && !m_codec.canEncode(QStringLiteral("emf")));
}

void TestWmfCodec::stopsWhenCancelled()
{
    WmfMaker maker = big().fillWith(red);
    for (int i = 0; i < 100; ++i)
        maker.rectangle(0, 0, 100, 100);
    CancelFlag cancel = false;
    const QByteArray file = maker.file();
    const auto source = std::make_shared<WatchedSource>(
        file, [&](qint64 offset) { cancel = cancel || offset > file.size() / 2; });
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder && (*decoder)->header(1));
    cancel = false;
    const auto stopped = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!stopped);
    QCOMPARE(stopped.error().kind, ErrorKind::Cancelled);
}

void TestWmfCodec::survivesBrokenFiles()
{
    quint32 seed = 1;
    for (int round = 0; round < 6; ++round) {
        for (const Fixture& fixture : m_corpus) {
            const QByteArray bytes = Mutator(fixture.file, seed).next();
            const QString fault = misbehaviour(m_codec, bytes);
            QVERIFY2(fault.isEmpty(),
                     qPrintable(QStringLiteral("%1, seed %2: %3").arg(fixture.name).arg(seed).arg(fault)));
            ++seed;
        }
    }
}

void TestWmfCodec::readsRealSamples()
{
    const QString folder = qEnvironmentVariable("QUORVIA_SAMPLES");
    const QDir place(folder + QStringLiteral("/wmf"));
    if (folder.isEmpty() || !place.exists()) {
        qInfo("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
        return;
    }
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

QTEST_MAIN(TestWmfCodec)
#include "tst_wmfcodec.moc"
