// Bitmaps that are refused, cut or broken, and decodes that are cancelled.
#include "BmpMaker.h"
#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CodecFixtures.h"
#include "CutFiles.h"
#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"

#include <QtEndian>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// A PNG of 9 x 5 pixels.
QByteArray pngBytes()
{
    QImage swatch(9, 5, QImage::Format_RGB32);
    swatch.fill(qRgb(200, 30, 60));
    return runTool(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("png:-")},
                   writePnm(swatch));
}

} // namespace

class TestBmpHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const BmpMaker& bitmap, ErrorKind kind) {
        QTest::newRow(name) << bitmap.bytes() << int(kind);
    };
    BmpMaker huffman = BmpMaker::rows(1, "0000");
    huffman.compression = 3;
    huffman.headerSize = 64;
    add("Huffman 1D", huffman, ErrorKind::Unsupported);
    add("64 bits", BmpMaker::rows(64, "00"), ErrorKind::Unsupported);
    add("3 bits", BmpMaker::rows(3, "00"), ErrorKind::Unsupported);
    BmpMaker cmyk = BmpMaker::rows(32, "00");
    cmyk.compression = 11;
    add("CMYK", cmyk, ErrorKind::Unsupported);
    BmpMaker mismatch = BmpMaker::rows(24, "00");
    mismatch.compression = 1;
    add("RLE8 with 24 bits", mismatch, ErrorKind::Damaged);
    BmpMaker wide = BmpMaker::rows(24, "00");
    wide.width = 70000;
    add("70000 pixels wide", wide, ErrorKind::TooLarge);
    BmpMaker high = BmpMaker::rows(1, "00");
    high.height = std::numeric_limits<int>::max();
    add("2 thousand million rows", high, ErrorKind::TooLarge);
    high.height = std::numeric_limits<int>::min();
    add("the most negative height", high, ErrorKind::Damaged);
    BmpMaker none = BmpMaker::rows(24, "00");
    none.width = 0;
    add("no width", none, ErrorKind::Damaged);
    none.width = -2;
    add("a negative width", none, ErrorKind::Damaged);
    add("no pixels", BmpMaker::rows(24, ""), ErrorKind::Damaged);
    add("no runs", BmpMaker::runs(8, 2, 2, ""), ErrorKind::Damaged);
}

void TestBmpHostile::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, bytes, ErrorKind(kind)), QString());
}

void TestBmpHostile::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("1 bit") << encodeBytes(m_codec, dotPicture(QSize(19, 6)), "bmp");
    QTest::newRow("8 bits") << encodeBytes(m_codec, palettePicture(QSize(11, 6), 5), "bmp");
    QTest::newRow("24 bits") << encodeBytes(m_codec, colorPicture(QSize(7, 6)), "bmp");
    QTest::newRow("32 bits") << encodeBytes(m_codec, alphaPicture(QSize(5, 6)), "bmp");
    QTest::newRow("runs") << encodeBytes(m_codec, palettePicture(QSize(11, 6), 5), "rle");
}

void TestBmpHostile::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY(whole && whole->complete);
    const qint64 used = BmpLayout(*readBmpLayout(bytes, bytes.size())).usedRowBytes();
    const qint64 pixelsAt = qFromLittleEndian<quint32>(bytes.constData() + 10);
    const bool isRuns = bytes[30] == 1;
    int rowsBefore = 0;
    for (int length = 0; length < bytes.size(); ++length) {
        const auto part = decoded(m_codec, bytes.left(length));
        if (!part) {
            QVERIFY(part.error().kind == ErrorKind::Damaged);
            const qint64 pixelBytes = std::max(whole->bitsPerPixel / 8, 1);
            QVERIFY2(isRuns || length < pixelsAt + pixelBytes, qPrintable(QString::number(length)));
            continue;
        }
        // Rows from the bottom, where the file begins.
        const int equal = equalRows(part->image.mirrored(), whole->image.mirrored());
        QVERIFY2(equal >= rowsBefore, qPrintable(QString::number(length)));
        rowsBefore = equal;
        if (isRuns)
            continue;
        const qint64 stride = (used + 3) / 4 * 4;
        const qint64 held = (length - pixelsAt + stride - used) / stride;
        QVERIFY2(equal >= held, qPrintable(QString::number(length)));
        QCOMPARE(part->complete, held >= part->image.height());
    }
}

void TestBmpHostile::stopsWhenCancelled()
{
    for (const char* extension : {"bmp", "rle"}) {
        const QImage picture = palettePicture(QSize(300, 300), 50);
        QCOMPARE(cancelFault(m_codec, encodeBytes(m_codec, picture, extension)), QString());
    }
}

void TestBmpHostile::survivesBrokenFiles()
{
    BmpMaker alpha = BmpMaker::rows(16, "00000000 ffffffff");
    alpha.compression = 6;
    alpha.behindHeader = masks({0xF00, 0xF0, 0xF, 0xF000});
    BmpMaker holder;
    holder.bits = 0;
    holder.compression = 5;
    holder.pixels = pngBytes();
    const QList<QByteArray> parents = {encodeBytes(m_codec, dotPicture(QSize(19, 6)), "bmp"),
                                       encodeBytes(m_codec, palettePicture(QSize(21, 16), 50), "rle"),
                                       encodeBytes(m_codec, palettePicture(QSize(21, 16), 50), "bmp"),
                                       encodeBytes(m_codec, colorPicture(QSize(7, 6)), "bmp"),
                                       encodeBytes(m_codec, alphaPicture(QSize(5, 6)), "bmp"),
                                       BmpMaker::runs(4, 9, 9, "0512 0000 0003 0120 0213 0001").bytes(),
                                       alpha.bytes(),
                                       holder.bytes()};
    QCOMPARE(mutantFault(m_codec, parents, 320), QString());
}

QTEST_GUILESS_MAIN(TestBmpHostile)
#include "tst_bmphostile.moc"
