#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "RefusalChecks.h"
#include "WritingRows.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestPnmCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs_data();
    void sniffs();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void keepsTheDepth_data();
    void keepsTheDepth();
    void scalesSamplesByRounding();
    void readsOddHeaders_data();
    void readsOddHeaders();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsTwoColorsApart_data();
    void keepsTwoColorsApart();
    void laysAlphaOverWhite();
    void spreadsTheErrorInBlackAndWhite();
    void refusesToWrite();
    void stopsWhenCancelled();
    void stopsWithinARow();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = pnmCodec();
    std::vector<Fixture> m_corpus;
};

void TestPnmCodec::initTestCase()
{
    for (auto* make : {pbmCorpus, pgmCorpus, ppmCorpus}) {
        const std::vector<Fixture> fixtures = make();
        QVERIFY(fixtures.size() >= 10);
        m_corpus.insert(m_corpus.end(), fixtures.begin(), fixtures.end());
    }
}

void TestPnmCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    for (char kind = '1'; kind <= '6'; ++kind)
        QTest::newRow(QByteArray(1, kind).constData()) << QByteArray("P") + kind + "\n1 1" << true;
    QTest::newRow("7") << QByteArray("P7\nWIDTH 1") << true;
    QTest::newRow("7 with a long line end") << QByteArray("P7\r\nWIDTH 1") << true;
    QTest::newRow("blank") << QByteArray("P6 1 1 255 ") << true;
    QTest::newRow("comment") << QByteArray("P5#x\n2 2") << true;
    QTest::newRow("comments and blanks") << QByteArray("P5 \t#x\r\n # y\n\n2 2") << true;
    QTest::newRow("comment longer than the head") << QByteArray("P5\n#").leftJustified(1024, 'x') << true;
    QTest::newRow("comment and no more") << QByteArray("P5#x") << false;
    QTest::newRow("blank and no more") << QByteArray("P5 ") << false;
    QTest::newRow("text") << QByteArray("P1 is the first page of the memo") << false;
    QTest::newRow("text behind a comment") << QByteArray("P2 # 3\nthree 4") << false;
    QTest::newRow("7, a comment and a tab") << QByteArray("P7\n# c\nDEPTH\t3\n") << true;
    QTest::newRow("7 and text") << QByteArray("P7\nWIDTHS and heights") << false;
    QTest::newRow("7 and a number") << QByteArray("P7\n3 3") << false;
    QTest::newRow("thumbnail of another program") << QByteArray("P7 332\n") << false;
    QTest::newRow("0") << QByteArray("P0\n") << false;
    QTest::newRow("8") << QByteArray("P8\n") << false;
    QTest::newRow("letter behind") << QByteArray("P6a") << false;
    QTest::newRow("small letter") << QByteArray("p6\n") << false;
    QTest::newRow("short") << QByteArray("P6") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestPnmCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(m_codec.sniff(head, QStringLiteral("ppm")), known);
}

void TestPnmCodec::readsWhatOthersWrite_data()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < m_corpus.size(); ++i)
        QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(i).arg(m_corpus[i].name))) << int(i);
}

void TestPnmCodec::readsWhatOthersWrite()
{
    QFETCH(int, index);
    QCOMPARE(fixtureFault(m_codec, m_corpus[size_t(index)]), QString());
}

void TestPnmCodec::keepsTheDepth_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("format");
    QTest::addColumn<int>("bits");
    QTest::newRow("P1") << QByteArray("P1 1 1 1") << int(QImage::Format_Mono) << 1;
    QTest::newRow("P4") << QByteArray("P4 1 1 x") << int(QImage::Format_Mono) << 1;
    QTest::newRow("P2") << QByteArray("P2 1 1 255 1") << int(QImage::Format_Grayscale8) << 8;
    QTest::newRow("P5") << QByteArray("P5 1 1 255 x") << int(QImage::Format_Grayscale8) << 8;
    QTest::newRow("P5, 16 bits") << QByteArray("P5 1 1 256 xx") << int(QImage::Format_Grayscale8) << 16;
    QTest::newRow("P3") << QByteArray("P3 1 1 255 1 2 3") << int(QImage::Format_RGB32) << 24;
    QTest::newRow("P6") << QByteArray("P6 1 1 255 xyz") << int(QImage::Format_RGB32) << 24;
    QTest::newRow("P6, 16 bits") << QByteArray("P6 1 1 65535 xxyyzz") << int(QImage::Format_RGB32) << 48;
    const QByteArray head = "P7\nWIDTH 1\nHEIGHT 1\n";
    QTest::newRow("P7, bits") << head + "DEPTH 1\nMAXVAL 1\nENDHDR\n" + '\1' << int(QImage::Format_Mono) << 1;
    QTest::newRow("P7, grey and alpha")
        << head + "DEPTH 2\nMAXVAL 255\nENDHDR\nxy" << int(QImage::Format_ARGB32) << 16;
    QTest::newRow("P7, 4 channels of 16 bits")
        << head + "DEPTH 4\nMAXVAL 65535\nENDHDR\nwwxxyyzz" << int(QImage::Format_ARGB32) << 64;
}

void TestPnmCodec::keepsTheDepth()
{
    QFETCH(QByteArray, file);
    QFETCH(int, format);
    QFETCH(int, bits);
    const auto picture = decoded(m_codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QCOMPARE(int(picture->image.format()), format);
    QCOMPARE(picture->bitsPerPixel, bits);
    QVERIFY(picture->complete);
}

void TestPnmCodec::scalesSamplesByRounding()
{
    for (const int maxval : {1, 2, 3, 7, 100, 254, 255, 256, 1000, 65534, 65535}) {
        QByteArray file = "P2 1 101 " + QByteArray::number(maxval) + '\n';
        for (int i = 0; i <= 100; ++i)
            file += QByteArray::number(qint64(maxval) * i / 100) + '\n';
        const auto picture = decoded(m_codec, file);
        QVERIFY(picture);
        for (int i = 0; i <= 100; ++i) {
            const int value = int(qint64(maxval) * i / 100);
            QCOMPARE(int(picture->image.constScanLine(i)[0]), qRound(value * 255.0 / maxval));
        }
    }
}

void TestPnmCodec::readsOddHeaders_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRgb>("first");
    QTest::newRow("comment in a word") << QByteArray("P5 2#two\n1 255 ab") << QSize(2, 1) << qRgb(97, 97, 97);
    QTest::newRow("comment before the pixels")
        << QByteArray("P5 2 1 255#end\nab") << QSize(2, 1) << qRgb(97, 97, 97);
    QTest::newRow("line ends of two characters")
        << QByteArray("P6\r\n1\r\n1\r\n255\nabc") << QSize(1, 1) << qRgb(97, 98, 99);
    QTest::newRow("leading zeros") << QByteArray("P5 0001 01 0255 a") << QSize(1, 1) << qRgb(97, 97, 97);
    QTest::newRow("digits without blanks") << QByteArray("P1 4 1 1001") << QSize(4, 1) << qRgb(0, 0, 0);
    QTest::newRow("sample above maxval") << QByteArray("P2 1 1 10 99") << QSize(1, 1) << qRgb(255, 255, 255);
    QTest::newRow("raw sample above maxval")
        << QByteArray("P5 1 1 10 c") << QSize(1, 1) << qRgb(255, 255, 255);
    QTest::newRow("comment among plain samples")
        << QByteArray("P2 2 1 9 #x\n9 # y 7\n0") << QSize(2, 1) << qRgb(255, 255, 255);
    QTest::newRow("arbitrary map in another order")
        << QByteArray("P7\n# c\nMAXVAL 255\nTUPLTYPE GRAYSCALE\nDEPTH 1\nHEIGHT 1\nWIDTH 2\n\nENDHDR\nab")
        << QSize(2, 1) << qRgb(97, 97, 97);
    QTest::newRow("arbitrary map with tabs")
        << QByteArray("P7\nWIDTH\t2\nHEIGHT \t1\nDEPTH\t 1\nMAXVAL\t255\nTUPLTYPE\tGRAYSCALE\nENDHDR\nab")
        << QSize(2, 1) << qRgb(97, 97, 97);
    QTest::newRow("a second picture behind")
        << QByteArray("P5 1 1 255 aP5 1 1 255 b") << QSize(1, 1) << qRgb(97, 97, 97);
}

void TestPnmCodec::readsOddHeaders()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    QFETCH(QRgb, first);
    const auto picture = decoded(m_codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(picture->image.size(), size);
    QCOMPARE(picture->image.pixel(0, 0), first);
}

void TestPnmCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const int damaged = int(ErrorKind::Damaged);
    QTest::newRow("mark only") << QByteArray("P6\n") << damaged;
    QTest::newRow("no height") << QByteArray("P6 3 ") << damaged;
    QTest::newRow("no maxval") << QByteArray("P6 3 3 ") << damaged;
    QTest::newRow("a word for a number") << QByteArray("P6 three 3 255 ") << damaged;
    QTest::newRow("negative") << QByteArray("P6 -3 3 255 ") << damaged;
    QTest::newRow("no width") << QByteArray("P6 0 3 255 xyz") << damaged;
    QTest::newRow("maxval 0") << QByteArray("P5 3 3 0 xyz") << damaged;
    QTest::newRow("maxval 65536") << QByteArray("P5 3 3 65536 xyz") << damaged;
    QTest::newRow("no pixel") << QByteArray("P6 3 3 255\n") << damaged;
    QTest::newRow("no whole pixel") << QByteArray("P6 3 3 255\nab") << damaged;
    QTest::newRow("no plain pixel") << QByteArray("P3 3 3 255\n1 2") << damaged;
    QTest::newRow("too wide") << QByteArray("P5 65536 1 255\n") << int(ErrorKind::TooLarge);
    QTest::newRow("numbers beyond all")
        << QByteArray("P5 99999999999999999999 1 255\n") << int(ErrorKind::TooLarge);
    QTest::newRow("an endless arbitrary map") << QByteArray("P7\nWIDTH 3\n") << damaged;
    QTest::newRow("an arbitrary map without depth")
        << QByteArray("P7\nWIDTH 3\nHEIGHT 3\nMAXVAL 255\nENDHDR\nxxxxxxxxx") << damaged;
    QTest::newRow("five planes") << QByteArray("P7\nWIDTH 1\nHEIGHT 1\nDEPTH 5\nMAXVAL 255\nENDHDR\nabcde")
                                 << int(ErrorKind::Unsupported);
    QTest::newRow("print colours")
        << QByteArray("P7\nWIDTH 1\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\nTUPLTYPE CMYK\nENDHDR\nabcd")
        << int(ErrorKind::Unsupported);
}

void TestPnmCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestPnmCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray map = sampleMap({9, 30});
    QTest::newRow("raw") << map;
    QTest::newRow("plain") << piped("pamtopnm -plain", map);
    QTest::newRow("16 bits") << piped("pamdepth -quiet 65535", map);
    QTest::newRow("bits") << piped("pgmtopbm -threshold", pgmOf(samplePicture({29, 60})));
    QTest::newRow("plain bits") << piped("pgmtopbm -threshold -plain", pgmOf(samplePicture({29, 30})));
    QTest::newRow("arbitrary") << piped("pamtopam", map);
}

void TestPnmCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QCOMPARE(cutFault(m_codec, {QStringLiteral("file"), file, {}}), QString());
}

void TestPnmCodec::writesWhatOthersRead_data()
{
    addSizeAndFormatRows({QSize(1, 1), QSize(13, 7), QSize(1, 2000), QSize(70, 150)});
}

void TestPnmCodec::writesWhatOthersRead()
{
    QFETCH(QSize, size);
    QFETCH(int, format);
    const QImage image = imageOf(samplePicture(size)).convertToFormat(QImage::Format(format));
    QVERIFY(!image.isNull());
    const bool alpha = image.hasAlphaChannel();
    const QImage seen = image.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    Rgba color = rgbaOf(seen);
    Rgba grey = color;
    for (qsizetype i = 0; i < color.pixels.size(); i += 4) {
        auto* p = reinterpret_cast<uchar*>(color.pixels.data()) + i;
        const int a = p[3];
        for (int channel = 0; channel < 3; ++channel)
            p[channel] = uchar((p[channel] * a + 255 * (255 - a) + 127) / 255);
        p[3] = 255;
        const uchar value = uchar((299 * p[0] + 587 * p[1] + 114 * p[2] + 500) / 1000);
        std::fill_n(reinterpret_cast<uchar*>(grey.pixels.data()) + i, 3, value);
        grey.pixels[i + 3] = char(255);
    }
    const auto ppm = m_codec.encode(image, QStringLiteral("ppm"), {});
    QVERIFY(ppm);
    QCOMPARE(firstDifference(mapPixels(*ppm), color), QString());
    const auto pgm = m_codec.encode(image, QStringLiteral("pgm"), {});
    QVERIFY(pgm);
    QCOMPARE(firstDifference(mapPixels(*pgm), grey), QString());
    const auto pbm = m_codec.encode(image, QStringLiteral("pbm"), {});
    QVERIFY(pbm);
    const Rgba bits = mapPixels(*pbm);
    QCOMPARE(bits.size, size);
    if (image.depth() == 1)
        QCOMPARE(firstDifference(bits, color), QString());
    const auto own = decoded(m_codec, *pbm);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), bits), QString());
}

void TestPnmCodec::keepsTwoColorsApart_data()
{
    QTest::addColumn<QRgb>("first");
    QTest::addColumn<QRgb>("second");
    QTest::addColumn<QByteArray>("bits"); // of the pixels first, second; 1 is black
    QTest::newRow("black and white") << qRgb(0, 0, 0) << qRgb(255, 255, 255) << QByteArray("80");
    QTest::newRow("white and black") << qRgb(255, 255, 255) << qRgb(0, 0, 0) << QByteArray("40");
    QTest::newRow("127 and 128") << qRgb(127, 127, 127) << qRgb(128, 128, 128) << QByteArray("80");
    QTest::newRow("two dark ones") << qRgb(0, 0, 0) << qRgb(0, 0, 90) << QByteArray("80");
    QTest::newRow("two dark ones, the lighter first")
        << qRgb(60, 60, 60) << qRgb(9, 9, 9) << QByteArray("40");
    QTest::newRow("two light ones") << qRgb(200, 200, 200) << qRgb(255, 255, 0) << QByteArray("80");
    QTest::newRow("two light ones, the lighter first")
        << qRgb(255, 255, 255) << qRgb(130, 130, 130) << QByteArray("40");
    QTest::newRow("dark and clear") << qRgb(50, 50, 50) << qRgba(0, 0, 0, 0) << QByteArray("80");
    QTest::newRow("light and clear") << qRgb(150, 150, 150) << qRgba(0, 0, 0, 0) << QByteArray("80");
    QTest::newRow("twice the same, dark") << qRgb(50, 50, 50) << qRgb(50, 50, 50) << QByteArray("c0");
    QTest::newRow("twice the same, light") << qRgb(150, 150, 150) << qRgb(150, 150, 150) << QByteArray("00");
}

void TestPnmCodec::keepsTwoColorsApart()
{
    QFETCH(QRgb, first);
    QFETCH(QRgb, second);
    for (const QImage::Format format : {QImage::Format_Mono, QImage::Format_MonoLSB}) {
        QImage image(2, 1, format);
        image.setColorTable({first, second});
        image.setPixel(0, 0, 0);
        image.setPixel(1, 0, 1);
        const auto bytes = m_codec.encode(image, QStringLiteral("pbm"), {});
        QVERIFY(bytes);
        QTEST(bytes->right(1).toHex(), "bits");
    }
}

void TestPnmCodec::laysAlphaOverWhite()
{
    QImage image(3, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(255, 0, 0, 0));
    image.setPixel(1, 0, qRgba(255, 0, 0, 128));
    image.setPixel(2, 0, qRgba(255, 0, 0, 255));
    const auto ppm = m_codec.encode(image, QStringLiteral("ppm"), {});
    QVERIFY(ppm);
    QCOMPARE(ppm->right(9).toHex(), QByteArray("ffffff"
                                               "ff7f7f"
                                               "ff0000"));
    image = image.convertToFormat(QImage::Format_Indexed8);
    QVERIFY(image.hasAlphaChannel());
    const auto indexed = m_codec.encode(image, QStringLiteral("ppm"), {});
    QVERIFY(indexed);
    QCOMPARE(indexed->right(9).left(3).toHex(), QByteArray("ffffff"));
}

void TestPnmCodec::spreadsTheErrorInBlackAndWhite()
{
    // As many white dots as the grey is bright, in each block of 16 x 16.
    for (const int level : {0, 32, 64, 100, 128, 200, 255}) {
        QImage image(64, 64, QImage::Format_Grayscale8);
        image.fill(uint(level));
        const auto bytes = m_codec.encode(image, QStringLiteral("pbm"), {});
        QVERIFY(bytes);
        const auto own = decoded(m_codec, *bytes);
        QVERIFY(own);
        for (int block = 0; block < 16; ++block) {
            int white = 0;
            for (int i = 0; i < 256; ++i)
                white += qRed(own->image.pixel(block % 4 * 16 + i % 16, block / 4 * 16 + i / 16)) / 255;
            QVERIFY2(qAbs(white - level) <= 12, qPrintable(QStringLiteral("%1: %2").arg(level).arg(white)));
        }
    }
    // Black and white stay where they are.
    QImage exact(40, 3, QImage::Format_RGB32);
    for (int x = 0; x < 40; ++x) {
        for (int y = 0; y < 3; ++y)
            exact.setPixel(x, y, (x * 3 + y) % 5 < 2 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
    const auto bytes = m_codec.encode(exact, QStringLiteral("pbm"), {});
    QVERIFY(bytes);
    QCOMPARE(firstDifference(mapPixels(*bytes), rgbaOf(exact)), QString());
}

void TestPnmCodec::refusesToWrite()
{
    for (const char* extension : {"pbm", "pgm", "ppm"}) {
        QVERIFY(m_codec.canEncode(QLatin1String(extension)));
        QCOMPARE(writingRefusalFault(m_codec, QLatin1String(extension), {QImage()}), QString());
    }
    QVERIFY(!m_codec.canEncode(QStringLiteral("png")));
}

void TestPnmCodec::stopsWhenCancelled()
{
    for (const QByteArray& file : {sampleMap({50, 50}), piped("pamtopnm -plain", sampleMap({50, 50}))})
        QCOMPARE(cancelFault(m_codec, file), QString());
}

/// A plain row may be longer than a reader wants to wait for.
void TestPnmCodec::stopsWithinARow()
{
    const QByteArray row = QByteArray("1 2 3 ").repeated(20000);
    const QByteArray comment = '#' + QByteArray(200000, 'x') + '\n';
    for (const QByteArray& file : {"P3 20000 1 3\n" + row, "P2 9 1 3\n1" + comment + row}) {
        CancelFlag cancel = false;
        int reads = 0;
        const auto source = std::make_shared<WatchedSource>(file, [&](qint64 offset) {
            reads += offset > 0 ? 1 : 0;
            if (reads == 2)
                cancel = true;
        });
        const auto decoder = m_codec.open(source);
        QVERIFY(decoder);
        const auto result = (*decoder)->decode(1, QSize(), cancel);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
        QVERIFY2(source->reached() < file.size() / 2, qPrintable(QString::number(source->reached())));
    }
}

void TestPnmCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 490), QString());
}

QTEST_GUILESS_MAIN(TestPnmCodec)
#include "tst_pnmcodec.moc"
