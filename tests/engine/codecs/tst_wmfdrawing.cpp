#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "engine/Toolkit.h"
#include "HostileBytes.h"
#include "WmfChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestWmfDrawing : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void draws_data();
    void draws();
    void textLiesWhereItShould_data();
    void textLiesWhereItShould();
    void framesTexts_data();
    void framesTexts();
    void updatesThePosition();

  private:
    const Codec& m_codec = wmfCodec();
};

void TestWmfDrawing::draws_data()
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

void TestWmfDrawing::draws()
{
    QFETCH(QByteArray, file);
    QFETCH(Probes, probes);
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.format(), QImage::Format_RGB32);
    QCOMPARE(wrongProbe(picture->image, probes), QString());
}

void TestWmfDrawing::textLiesWhereItShould_data()
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

void TestWmfDrawing::textLiesWhereItShould()
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

void TestWmfDrawing::framesTexts_data()
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

void TestWmfDrawing::framesTexts()
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

void TestWmfDrawing::updatesThePosition()
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

QTEST_MAIN(TestWmfDrawing)
#include "tst_wmfdrawing.moc"
