#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "corpus/UtahMaker.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestUtahCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void keepsTheDepth_data();
    void keepsTheDepth();
    void drawsCodes_data();
    void drawsCodes();
    void boundsTheWork();
    void boundsTheWorkByTheArea_data();
    void boundsTheWorkByTheArea();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void isReadOnly();
    void readsRealSamples();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = utahRleCodec();
    std::vector<Fixture> m_corpus;
};

void TestUtahCodec::initTestCase()
{
    m_corpus = utahCorpus();
    QVERIFY(m_corpus.size() >= 10);
}

void TestUtahCodec::sniffs()
{
    QVERIFY(m_codec.sniff(QByteArray::fromHex("52cc0000"), QString()));
    QVERIFY(!m_codec.sniff(QByteArray::fromHex("cc520000"), QStringLiteral("rle")));
    QVERIFY(!m_codec.sniff(QByteArray("BM"), QStringLiteral("rle")));
    QVERIFY(!m_codec.sniff(QByteArray("R"), QStringLiteral("rle")));
}

void TestUtahCodec::readsWhatOthersWrite_data()
{
    addFixtureRows(m_corpus);
}

void TestUtahCodec::readsWhatOthersWrite()
{
    QFETCH(Fixture, fixture);
    QCOMPARE(fixtureFault(m_codec, fixture), QString());
}

void TestUtahCodec::keepsTheDepth_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("maps");
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bits");
    const int plain = UtahMaker::NoBackground;
    const int alpha = UtahMaker::NoBackground | UtahMaker::Alpha;
    QTest::newRow("grey") << 1 << plain << 0 << int(QImage::Format_Grayscale8) << 8;
    QTest::newRow("grey through a map") << 1 << plain << 1 << int(QImage::Format_Grayscale8) << 8;
    QTest::newRow("palette") << 1 << plain << 3 << int(QImage::Format_Indexed8) << 8;
    QTest::newRow("grey and alpha") << 1 << alpha << 0 << int(QImage::Format_ARGB32) << 16;
    QTest::newRow("palette and alpha") << 1 << alpha << 3 << int(QImage::Format_ARGB32) << 16;
    QTest::newRow("colour") << 3 << plain << 0 << int(QImage::Format_RGB32) << 24;
    QTest::newRow("colour and alpha") << 3 << alpha << 0 << int(QImage::Format_ARGB32) << 32;
}

void TestUtahCodec::keepsTheDepth()
{
    QFETCH(int, channels);
    QFETCH(int, flags);
    QFETCH(int, maps);
    QByteArray map;
    for (int i = 0; i < maps; ++i) { // four entries: v + 10 (i + 1)
        for (int v = 0; v < 4; ++v)
            map += QByteArray(1, '\0') + char(v + 10 * (i + 1));
    }
    UtahMaker maker({2, 1}, channels, flags, {}, maps, 2, map);
    for (int channel = 0; channel < channels; ++channel)
        maker.color(channel).run(2, 1 + channel);
    maker.color(255).run(2, 200);
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QTEST(int(picture->image.format()), "format");
    QTEST(picture->bitsPerPixel, "bits");
    const QRgb pixel = picture->image.pixel(1, 0);
    QCOMPARE(qAlpha(pixel), flags & UtahMaker::Alpha ? 200 : 255);
    QCOMPARE(qRed(pixel), maps > 0 ? 11 : 1);
    QCOMPARE(qBlue(pixel), maps == 3 ? 31 : (maps == 1 ? 11 : (channels == 3 ? 3 : 1)));
}

void TestUtahCodec::drawsCodes_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("rows"); // 3 x 3 greys from the top
    QTest::addColumn<bool>("complete");
    const auto grey = [] { return UtahMaker({3, 3}, 1, UtahMaker::NoBackground); };
    QTest::newRow("from the bottom upwards")
        << grey().pixels("abc").skipLines(1).pixels("def").skipLines(1).pixels("ghi").file()
        << QByteArray("ghidefabc") << true;
    QTest::newRow("a run past the row's end")
        << grey().run(200, 'x').skipLines(1).pixels("y").file() << QByteArray("\0\0\0y\0\0xxx", 9) << true;
    QTest::newRow("bytes past the row's end") << grey().pixels("abcdef").file()
                                              << QByteArray("\0\0\0\0\0\0"
                                                            "abc",
                                                            9)
                                              << true;
    QTest::newRow("lines past the top") << grey().pixels("abc").skipLines(70).pixels("d").file()
                                        << QByteArray("\0\0\0\0\0\0"
                                                      "abc",
                                                      9)
                                        << true;
    QTest::newRow("channels that are not there")
        << grey().color(1).pixels("xyz").color(255).pixels("xyz").color(0).pixels("a").file()
        << QByteArray("\0\0\0\0\0\0a\0\0", 9) << true;
    QTest::newRow("a channel anew begins at the left")
        << grey().skipPixels(2).pixels("c").color(0).pixels("ab").file()
        << QByteArray("\0\0\0\0\0\0"
                      "abc",
                      9)
        << true;
    QTest::newRow("no end, but all drawn")
        << grey().pixels("abc").skipLines(1).pixels("def").skipLines(1).pixels("ghi").file(false)
        << QByteArray("ghidefabc") << true;
    QTest::newRow("no end") << grey().pixels("abc").file(false)
                            << QByteArray("\0\0\0\0\0\0"
                                          "abc",
                                          9)
                            << false;
    QTest::newRow("a code that is none") << grey().pixels("abc").file(false) + QByteArray::fromHex("09000100")
                                         << QByteArray("\0\0\0\0\0\0"
                                                       "abc",
                                                       9)
                                         << false;
    QTest::newRow("nothing drawn") << grey().file() << QByteArray(9, '\0') << true;
    UtahMaker noted({3, 3}, 1, UtahMaker::NoBackground | UtahMaker::Comment, {}, 0, 0,
                    QByteArray::fromHex("0500") + "a=bc\0" + QByteArray(2, '\0'));
    QTest::newRow("comment of odd length") << noted.pixels("abc").file()
                                           << QByteArray("\0\0\0\0\0\0"
                                                         "abc",
                                                         9)
                                           << true;
    UtahMaker painted({3, 3}, 1, UtahMaker::ClearFirst, QByteArray("p"));
    QTest::newRow("background") << painted.skipLines(2).pixels("a").file() << QByteArray("apppppppp") << true;
}

void TestUtahCodec::drawsCodes()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, rows);
    const auto picture = decoded(m_codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QByteArray seen;
    for (int y = 0; y < 3; ++y)
        seen += QByteArray(reinterpret_cast<const char*>(picture->image.constScanLine(y)), 3);
    QCOMPARE(seen, rows);
    QTEST(picture->complete, "complete");
}

void TestUtahCodec::boundsTheWork()
{
    // The same row over and over: such a picture is given up long before its end.
    UtahMaker maker({60000, 2}, 1, UtahMaker::NoBackground);
    for (int i = 0; i < 20000; ++i)
        maker.color(0).run(60000, i & 255);
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY(picture);
    QVERIFY(!picture->complete);
    QVERIFY(picture->image.constScanLine(1)[59999] < 100);
    QCOMPARE(picture->image.constScanLine(0)[0], uchar(0));
}

void TestUtahCodec::boundsTheWorkByTheArea_data()
{
    QTest::addColumn<int>("times");
    QTest::addColumn<bool>("complete");
    QTest::newRow("each sample once") << 1 << true;
    QTest::newRow("each sample twice") << 2 << true;
    QTest::newRow("each sample three times") << 3 << false;
}

void TestUtahCodec::boundsTheWorkByTheArea()
{
    QFETCH(int, times);
    constexpr int height = 200;
    UtahMaker maker({3000, height}, 3, UtahMaker::NoBackground);
    for (int y = 0; y < height; ++y) {
        for (int i = 0; i < 3 * times; ++i)
            maker.color(i % 3).run(3000, 200);
        maker.skipLines(1);
    }
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY(picture);
    QTEST(picture->complete, "complete");
    QCOMPARE(picture->image.pixel(2999, height - 1), qRgb(200, 200, 200));
    QCOMPARE(picture->image.pixel(2999, 0) == qRgb(200, 200, 200), picture->complete);
}

void TestUtahCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const int damaged = int(ErrorKind::Damaged);
    const int unsupported = int(ErrorKind::Unsupported);
    const int plain = UtahMaker::NoBackground;
    QTest::newRow("half a header") << UtahMaker({3, 3}, 1, plain).file().left(14) << damaged;
    QTest::newRow("nothing behind the header") << UtahMaker({3, 3}, 1, plain).file(false) << damaged;
    QTest::newRow("no width") << UtahMaker({0, 3}, 1, plain).file() << damaged;
    QTest::newRow("two channels") << UtahMaker({3, 3}, 2, plain).file() << unsupported;
    QTest::newRow("two maps") << UtahMaker({3, 3}, 1, plain, {}, 2, 1, QByteArray(8, 'x')).file()
                              << unsupported;
    QTest::newRow("endless map") << UtahMaker({3, 3}, 1, plain, {}, 3, 200).file() << unsupported;
    QTest::newRow("half a map") << UtahMaker({3, 3}, 1, plain, {}, 3, 8).file() << damaged;
    if (Limits::machine().maxBytes < qint64(65535) * 65535 * 4)
        QTest::newRow("beyond the limits")
            << UtahMaker({65535, 65535}, 3, plain).file() << int(ErrorKind::TooLarge);
}

void TestUtahCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestUtahCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<int>("index");
    for (const int index : {1, 3, 8, 11})
        QTest::newRow(qPrintable(m_corpus[size_t(index)].name)) << index;
}

void TestUtahCodec::showsWhatACutFileHolds()
{
    QFETCH(int, index);
    const Fixture& fixture = m_corpus[size_t(index)];
    QCOMPARE(cutFault(m_codec, fixture, !fixture.name.contains(QLatin1String("palette"))), QString());
}

void TestUtahCodec::isReadOnly()
{
    QCOMPARE(readOnlyFault(m_codec, QStringLiteral("rle")), QString());
}

void TestUtahCodec::readsRealSamples()
{
    const auto folder = sampleFolder(QStringLiteral("rle"));
    if (!folder)
        QSKIP("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
    int seen = 0;
    for (const QFileInfo& info : folder->entryInfoList({QStringLiteral("*.rle")}, QDir::Files)) {
        const auto source = ByteSource::open(info.filePath());
        QVERIFY(source);
        const QByteArray bytes = (*source)->bytes(0, (*source)->size());
        if (!m_codec.sniff(bytes.left(1024), QString()))
            continue; // a bitmap
        const auto picture = decoded(m_codec, bytes);
        QVERIFY2(picture && picture->complete, qPrintable(info.fileName()));
        QCOMPARE(
            firstDifference(rgbaOf(picture->image), fromPnm(runTool(QStringLiteral("rletopnm"), {}, bytes))),
            QString());
        ++seen;
    }
    QVERIFY(seen > 0);
}

void TestUtahCodec::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(m_codec, m_corpus[3].file), QString());
}

void TestUtahCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 300), QString());
}

QTEST_GUILESS_MAIN(TestUtahCodec)
#include "tst_utahcodec.moc"
