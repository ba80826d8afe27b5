#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "corpus/PictMaker.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// A bitmap of 16 x 4 pixels in rows that are not packed, all black.
PictMaker& addBlackBitmap(PictMaker& maker, const QRect& target)
{
    const QRect all(0, 0, 16, 4);
    return maker.op(0x98).word(2).rectangle(all).place(all, target).raw(QByteArray(8, '\xFF'));
}

} // namespace

class TestPictCodec : public QObject
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
    void passesOtherOpcodes_data();
    void passesOtherOpcodes();
    void takesTheSizeInPixels();
    void movesTheOrigin();
    void readsLengthsOfEitherWidth_data();
    void readsLengthsOfEitherWidth();
    void boundsTheWork();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void isReadOnly();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = pictCodec();
    std::vector<Fixture> m_corpus;
};

void TestPictCodec::initTestCase()
{
    m_corpus = pictCorpus();
    QVERIFY(m_corpus.size() >= 10);
}

void TestPictCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    const QByteArray two = PictMaker({3, 4}, 2).file();
    const QByteArray one = PictMaker({3, 4}, 1).file();
    QTest::newRow("version 2") << two << true;
    QTest::newRow("version 1") << one << true;
    QTest::newRow("version 2 without prefix") << two.mid(512) << true;
    QTest::newRow("version 1 without prefix") << one.mid(512) << true;
    QTest::newRow("empty frame") << PictMaker({0, 4}, 2).file() << false;
    QTest::newRow("frame upside down") << PictMaker({3, -4}, 2).file() << false;
    QTest::newRow("prefix only") << two.left(512) << false;
    QTest::newRow("short") << two.mid(512, 13) << false;
    QTest::newRow("zeros") << QByteArray(1024, '\0') << false;
}

void TestPictCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(m_codec.sniff(head, QStringLiteral("pict")), known);
}

void TestPictCodec::readsWhatOthersWrite_data()
{
    addFixtureRows(m_corpus);
}

void TestPictCodec::readsWhatOthersWrite()
{
    QFETCH(Fixture, fixture);
    QCOMPARE(fixtureFault(m_codec, fixture), QString());
}

void TestPictCodec::keepsTheDepth_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("format");
    for (const int bits : {1, 2, 4, 8})
        QTest::newRow(qPrintable(QStringLiteral("%1 bits").arg(bits)))
            << bits << int(bits == 1 ? QImage::Format_Mono : QImage::Format_Indexed8);
}

void TestPictCodec::keepsTheDepth()
{
    QFETCH(int, bits);
    const QSize size(4, 1);
    QList<QRgb> palette;
    for (int i = 0; i < 1 << bits; ++i)
        palette.append(qRgb(200 - i % 200, i, 77));
    PictMaker maker(size, 2);
    maker.op(0x98)
        .pixmap(4, size, 0, bits, 1)
        .colors(palette)
        .place(size)
        .raw(QByteArray::fromHex("41000000"));
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QTEST(int(picture->image.format()), "format");
    QCOMPARE(picture->bitsPerPixel, bits);
    QCOMPARE(picture->image.colorTable(), palette);
    const int first = 0x41 >> (8 - bits);
    QCOMPARE(picture->image.pixel(0, 0), palette[first]);
}

void TestPictCodec::passesOtherOpcodes_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("data");
    const auto row = [](int code, const QByteArray& data, int version = 0) {
        for (int v = 1; v <= 2; ++v) {
            if (version == 0 || version == v)
                QTest::newRow(
                    qPrintable(QStringLiteral("%1, version %2").arg(code, 4, 16, QLatin1Char('0')).arg(v)))
                    << v << code << data;
        }
    };
    const QByteArray region = QByteArray::fromHex("000a 0000 0000 0004 0010");
    row(0x00, {});
    row(0x01, region);
    row(0x01, QByteArray::fromHex("000e 0000 0000 0004 0010 11223344"), 1);
    row(0x02, QByteArray(8, 'x'));
    row(0x03, QByteArray(2, 'x'));
    row(0x04, "x");
    row(0x09, QByteArray(8, 'x'));
    row(0x0D, QByteArray(2, 'x'));
    row(0x0E, QByteArray(4, 'x'));
    row(0x10, QByteArray(8, 'x'));
    row(0x15, QByteArray(2, 'x'), 2);
    row(0x1A, QByteArray(6, 'x'), 2);
    row(0x1C, {}, 2);
    row(0x1E, {}, 2);
    row(0x20, QByteArray(8, 'x'));
    row(0x21, QByteArray(4, 'x'));
    row(0x22, QByteArray(6, 'x'));
    row(0x23, QByteArray(2, 'x'));
    row(0x28, QByteArray(4, 'x') + '\3' + "abc");
    row(0x29, QByteArray(1, 'x') + '\3' + "abc");
    row(0x2A, QByteArray(1, 'x') + '\3' + "abc");
    row(0x2B, QByteArray(2, 'x') + '\3' + "abc");
    row(0x2C, QByteArray::fromHex("0005") + "abcde", 2);
    row(0x31, QByteArray(8, 'x'));
    row(0x39, {});
    row(0x41, QByteArray(8, 'x'));
    row(0x51, QByteArray(8, 'x'));
    row(0x60, QByteArray(12, 'x'));
    row(0x68, QByteArray(4, 'x'));
    row(0x71, region);
    row(0x79, {});
    row(0x81, region);
    row(0x89, {});
    row(0xA0, QByteArray(2, 'x'));
    row(0xA1, QByteArray::fromHex("0064 0003") + "abc");
    row(0xA5, QByteArray::fromHex("0003") + "abc", 2);
    row(0xB7, {}, 2);
    row(0xD3, QByteArray::fromHex("00000003") + "abc", 2);
    row(0x0150, QByteArray(2, 'x'), 2);
    row(0x0BFF, QByteArray(22, 'x'), 2);
    row(0x7F00, QByteArray(254, 'x'), 2);
    row(0x8042, {}, 2);
    row(0x8143, QByteArray::fromHex("00000005") + "abcde", 2);
    row(0xFFFF, QByteArray::fromHex("00000002") + "ab", 2);
    // A pattern of pixels: 8 x 1 of 8 bits in rows of 8 bytes, which are packed.
    PictMaker pattern({1, 1}, 1, false);
    const qsizetype before = pattern.file().size() - 1;
    pattern.word(1)
        .raw(QByteArray(8, 'x'))
        .pixmap(8, {8, 1}, 0, 8, 1)
        .colors({qRgb(1, 2, 3)})
        .packedRow("abcdefgh", false);
    const QByteArray whole = pattern.file();
    row(0x13, whole.mid(before, whole.size() - 1 - before), 2);
    row(0x12, QByteArray::fromHex("0002") + QByteArray(8, 'x') + QByteArray(6, 'r'), 2);
}

void TestPictCodec::passesOtherOpcodes()
{
    QFETCH(int, version);
    QFETCH(int, code);
    QFETCH(QByteArray, data);
    const QRect all(0, 0, 16, 4);
    PictMaker maker(all.size(), version);
    maker.op(code).raw(data);
    addBlackBitmap(maker, all);
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(picture->image.format(), QImage::Format_Mono);
    QCOMPARE(picture->image.pixel(15, 3), qRgb(0, 0, 0));
}

void TestPictCodec::takesTheSizeInPixels()
{
    // The frame counts points, the extended header counts pixels.
    const QRect all(0, 0, 16, 4);
    PictMaker maker({8, 2}, 2, false);
    QByteArray start = maker.file().left(14);
    PictMaker rest({1, 1}, 2, false);
    rest.op(0x0C00).raw(QByteArray::fromHex("fffe0000 00900000 00900000")).rectangle(all).longWord(0);
    addBlackBitmap(rest, all);
    const QByteArray file = start + rest.file().mid(14 + 26);
    const auto picture = decoded(m_codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QCOMPARE(picture->image.size(), all.size());
    QVERIFY(picture->complete);
}

void TestPictCodec::movesTheOrigin()
{
    PictMaker maker({20, 10}, 2);
    maker.op(0x0C).word(-3).word(-5);
    addBlackBitmap(maker, QRect(0, 0, 16, 4));
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY(picture);
    QCOMPARE(picture->image.pixel(3, 5), qRgb(0, 0, 0));
    QCOMPARE(picture->image.pixel(18, 8), qRgb(0, 0, 0));
    QCOMPARE(picture->image.pixel(2, 5), qRgb(255, 255, 255));
    QCOMPARE(picture->image.pixel(19, 9), qRgb(255, 255, 255));
}

void TestPictCodec::readsLengthsOfEitherWidth_data()
{
    QTest::addColumn<int>("rowBytes");
    QTest::addColumn<bool>("wide");
    for (const int rowBytes : {200, 202, 220, 250}) {
        QTest::newRow(qPrintable(QStringLiteral("%1 bytes, a byte").arg(rowBytes))) << rowBytes << false;
        if (rowBytes > 200)
            QTest::newRow(qPrintable(QStringLiteral("%1 bytes, a word").arg(rowBytes))) << rowBytes << true;
    }
    QTest::newRow("252 bytes, a word") << 252 << true;
}

void TestPictCodec::readsLengthsOfEitherWidth()
{
    QFETCH(int, rowBytes);
    QFETCH(bool, wide);
    const QSize size(rowBytes, 5);
    PictMaker maker(size, 2);
    maker.op(0x98).pixmap(rowBytes, size, 0, 8, 1).colors({qRgb(1, 1, 1), qRgb(2, 2, 2)}).place(size);
    for (int y = 0; y < size.height(); ++y) {
        QByteArray row(rowBytes, char(y % 2));
        row[y] = char(1 - y % 2);
        maker.packedRow(row, wide);
    }
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY(picture && picture->complete);
    for (int y = 0; y < size.height(); ++y) {
        QCOMPARE(picture->image.pixelIndex(y, y), 1 - y % 2);
        QCOMPARE(picture->image.pixelIndex(rowBytes - 1, y), y % 2);
    }
}

void TestPictCodec::boundsTheWork()
{
    // A thousand times over the same large place: such a picture is given up, not drawn.
    PictMaker maker({3000, 3000}, 2);
    for (int i = 0; i < 1000; ++i)
        addBlackBitmap(maker, QRect(0, 0, 3000, 3000));
    const auto picture = decoded(m_codec, maker.file());
    QVERIFY(picture);
    QVERIFY(!picture->complete);
    QCOMPARE(picture->image.pixel(2999, 2999), qRgb(0, 0, 0));
}

void TestPictCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const QRect all(0, 0, 16, 4);
    QTest::newRow("no beginning") << QByteArray(1000, 'x') << int(ErrorKind::Damaged);
    QTest::newRow("nothing in it") << PictMaker({16, 4}, 2).file() << int(ErrorKind::Damaged);
    PictMaker drawing({16, 4}, 2);
    drawing.op(0x20).raw(QByteArray(8, '\0'));
    QTest::newRow("a line") << drawing.file() << int(ErrorKind::Unsupported);
    PictMaker film({16, 4}, 2);
    film.op(0x8200)
        .longWord(68 + 86)
        .raw(QByteArray(68, '\0'))
        .longWord(86)
        .raw("SVQ1")
        .raw(QByteArray(78, '\0'));
    QTest::newRow("another coding") << film.file() << int(ErrorKind::Unsupported);
    PictMaker narrow({16, 4}, 2);
    narrow.op(0x98).word(1).rectangle(all).place(all.size()).raw(QByteArray(8, 'x'));
    QTest::newRow("rows too short for the pixels") << narrow.file() << int(ErrorKind::Damaged);
    PictMaker odd({16, 4}, 2);
    odd.op(0x98).pixmap(16, all.size(), 0, 3, 1).colors({0}).place(all.size()).raw(QByteArray(64, 'x'));
    QTest::newRow("3 bits") << odd.file() << int(ErrorKind::Damaged);
    if (Limits::machine().maxBytes < qint64(32767) * 32767 * 4) {
        PictMaker large({32767, 32767}, 2);
        addBlackBitmap(large, all);
        QTest::newRow("beyond the limits") << large.file() << int(ErrorKind::TooLarge);
    }
}

void TestPictCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestPictCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<int>("index");
    for (size_t i = 0; i < m_corpus.size(); ++i) {
        if (m_corpus[i].expected.size != QSize(1, 1))
            QTest::newRow(qPrintable(m_corpus[i].name)) << int(i);
    }
}

void TestPictCodec::showsWhatACutFileHolds()
{
    QFETCH(int, index);
    const Fixture& fixture = m_corpus[size_t(index)];
    // Half of a small file, or of one with a palette, is its beginning.
    const bool shows = fixture.file.size() > 3000;
    QCOMPARE(cutFault(m_codec, fixture, shows), QString());
}

void TestPictCodec::isReadOnly()
{
    QCOMPARE(readOnlyFault(m_codec, QStringLiteral("pict")), QString());
}

void TestPictCodec::stopsWhenCancelled()
{
    for (const size_t index : {size_t(0), size_t(3), m_corpus.size() - 2, m_corpus.size() - 1})
        QCOMPARE(cancelFault(m_codec, m_corpus[index].file), QString());
}

void TestPictCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 400), QString());
}

QTEST_GUILESS_MAIN(TestPictCodec)
#include "tst_pictcodec.moc"
