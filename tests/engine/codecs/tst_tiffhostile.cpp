// TIFF files that are refused or broken, and decodes that are cancelled.
#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "TiffMaker.h"
#include "TiffTools.h"

#include <QTemporaryFile>
#include <QtTest>

#include <unistd.h>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestTiffHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refuses_data();
    void refuses();
    void tellsWhatIsWrong_data();
    void tellsWhatIsWrong();
    void printsNothing();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    const auto row = [](const char* name, const TiffMaker& tiff, ErrorKind kind) {
        QTest::newRow(name) << tiff.bytes() << int(kind);
    };
    const auto page = [](int width, int height, int bits, int samples, int photometric) {
        TiffMaker tiff;
        tiff.page(width, height, bits, samples, photometric, "pixels");
        return tiff;
    };
    row("too wide", page(70000, 1, 8, 1, 1), ErrorKind::TooLarge);
    row("no height", page(1, 0, 8, 1, 1), ErrorKind::Damaged);
    row("too few samples", page(1, 1, 8, 1, 2), ErrorKind::Damaged);
    TiffMaker longMap = page(1, 1, 16, 1, 3);
    longMap.setShorts(320, QByteArray(3 * 65536 * 2, '\1'));
    row("palette of 16 bits", longMap, ErrorKind::Unsupported);
    row("a palette that is not there", page(1, 1, 4, 1, 3), ErrorKind::Damaged);
    row("colour filter array", page(1, 1, 8, 1, 32803), ErrorKind::Unsupported);
    row("24 bits in a sample", page(1, 1, 24, 1, 1), ErrorKind::Unsupported);
    TiffMaker strange = page(2, 2, 8, 1, 1);
    strange.set(259, 3, {40000});
    row("unknown compression", strange, ErrorKind::Unsupported);
    TiffMaker complex = page(2, 2, 32, 1, 1);
    complex.set(339, 3, {5});
    row("complex numbers", complex, ErrorKind::Unsupported);
    TiffMaker inks = page(1, 1, 8, 4, 5);
    inks.set(332, 3, {2});
    row("inks other than CMYK", inks, ErrorKind::Unsupported);
    TiffMaker hugeTile = page(1, 1, 8, 1, 1);
    hugeTile.tile(1 << 20, 1 << 20);
    row("a tile beyond the limits", hugeTile, ErrorKind::TooLarge);
    TiffMaker largeTile = page(1, 1, 8, 1, 1);
    largeTile.tile(4096, 4096);
    row("a tile far larger than its page", largeTile, ErrorKind::TooLarge);
    // Each plane fits into the limit, and so does the picture; all of them together do not.
    const qint64 most = Limits::machine().maxBytes;
    constexpr int wide = 60000;
    const auto high = int(std::min<qint64>(most / 4 / wide, 60000));
    if (qint64(wide) * high * (4 + 3 * 2) > most) {
        TiffMaker planes = page(wide, high, 16, 3, 2);
        planes.set(284, 3, {2});
        planes.set(259, 3, {8});
        planes.set(273, 4, {0x7FFFFFF0, 0x7FFFFFF0, 0x7FFFFFF0});
        planes.set(279, 4, {8, 8, 8});
        row("planes beyond the limits", planes, ErrorKind::TooLarge);
        TiffMaker chroma = page(wide, high, 8, 3, 6);
        chroma.set(273, 4, {0x7FFFFFF0});
        chroma.set(530, 3, {1, 1});
        row("a strip for the library beyond the limits", chroma, ErrorKind::TooLarge);
    }
    TiffMaker away = page(4, 4, 8, 1, 1);
    away.set(273, 4, {0x7FFFFFF0});
    row("pixels past the end", away, ErrorKind::Damaged);
    TiffMaker jbig = page(4, 4, 1, 1, 1);
    jbig.set(259, 3, {34661});
    jbig.set(266, 3, {2}); // the lowest bit first: the header below stands as it is
    jbig.strips = {hex("00000100 7fffffff 7fffffff 00000001 00000000 0000")};
    row("JBIG that asks for more than its page", jbig, ErrorKind::Damaged);
    TiffMaker garbage = page(4, 4, 8, 1, 1);
    garbage.set(259, 3, {8});
    row("pixels that are no deflate", garbage, ErrorKind::Damaged);
}

void TestTiffHostile::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, bytes, ErrorKind(kind)), QString());
}

void TestTiffHostile::tellsWhatIsWrong_data()
{
    QTest::addColumn<bool>("tiled");
    QTest::addColumn<int>("compression");
    QTest::addColumn<QString>("text");
    const QString packed = QStringLiteral("no row of any %1 could be unpacked");
    const QString plain = QStringLiteral("no row of any %1 is within the file");
    const QString strip = QStringLiteral("strip");
    const QString tile = QStringLiteral("tile");
    QTest::newRow("deflate") << false << 8 << packed.arg(strip);
    QTest::newRow("LZW") << false << 5 << packed.arg(strip);
    QTest::newRow("deflate in a tile") << true << 8 << packed.arg(tile);
    QTest::newRow("cut tile") << true << 1 << plain.arg(tile);
    QTest::newRow("cut strip") << false << 1 << plain.arg(strip);
}

/// In our own words: libtiff's numbers of lines mean nothing where strips are decoded one by one.
void TestTiffHostile::tellsWhatIsWrong()
{
    QFETCH(bool, tiled);
    QFETCH(int, compression);
    TiffMaker tiff;
    tiff.page(16, 16, 8, 1, 1, "pixels");
    tiff.set(259, 3, {quint32(compression)});
    if (tiled)
        tiff.tile(16, 16);
    const auto result = decoded(m_codec, tiff.bytes());
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Damaged);
    QTEST(result.error().text, "text");
}

void TestTiffHostile::printsNothing()
{
    const QByteArray good = encodeBytes(m_codec, colorPicture(QSize(30, 30)), "tif");
    QTemporaryFile caught;
    QVERIFY(caught.open());
    const int before = ::dup(STDERR_FILENO);
    ::dup2(caught.handle(), STDERR_FILENO);
    for (int at = 8; at < good.size(); at += 7) {
        QByteArray bad = good;
        bad[at] = char(bad[at] ^ 0x55);
        const auto result = decoded(m_codec, bad);
        Q_UNUSED(result);
    }
    ::dup2(before, STDERR_FILENO);
    ::close(before);
    QCOMPARE(caught.size(), 0);
}

void TestTiffHostile::stopsWhenCancelled()
{
    const QByteArray lab = fileMadeBy(QStringLiteral("convert"), arguments("@in -colorspace Lab -depth 8 @"),
                                      QStringLiteral("tif"), inputOf(colorPicture(QSize(50, 50))));
    for (const QByteArray& bytes : {encodeBytes(m_codec, colorPicture(QSize(50, 50)), "tif"), lab})
        QCOMPARE(cancelFault(m_codec, bytes), QString());
}

void TestTiffHostile::survivesBrokenFiles()
{
    const QImage small = colorPicture(QSize(19, 11));
    QList<QByteArray> parents = {encodeBytes(m_codec, small, "tif"),
                                 encodeBytes(m_codec, dotPicture(QSize(33, 9)), "tif"),
                                 encodeBytes(m_codec, palettePicture(QSize(9, 9), 30), "tif")};
    for (const char* options : {"-c none -r 4", "-c zip:2 -p separate", "-c jpeg:75 -r 16",
                                "-c lzw -t -w 16 -l 16", "-c packbits -B", "-c none -8"})
        parents += madeByTools(small, arguments("-type TrueColor"), arguments(options));
    parents += madeByTools(dotPicture(QSize(33, 9)), arguments("-monochrome"), arguments("-c g3:2d"));
    parents += blockYCbCr(QSize(2, 2));
    for (QByteArray& parent : parents)
        parent = directoryFirst(parent); // where the mutator strikes most
    QCOMPARE(mutantFault(m_codec, parents, 352), QString());
}

QTEST_GUILESS_MAIN(TestTiffHostile)
#include "tst_tiffhostile.moc"
