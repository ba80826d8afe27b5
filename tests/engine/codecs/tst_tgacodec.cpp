#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "TgaMaker.h"
#include "WritingRows.h"

#include <QTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = tgaCodec();
const QString tga = QStringLiteral("tga");

QByteArray encoded(const QImage& image)
{
    const auto file = codec.encode(image, tga, {});
    return file ? *file : QByteArray();
}

/// A file of two pixels of 32 bits: (10, 20, 30) with alpha `first`, (200, 100, 50) with alpha `second`.
TgaMaker twoPixels(int first, int second)
{
    TgaMaker maker;
    maker.size = QSize(2, 1);
    maker.depth = 32;
    maker.pixels = {QByteArray("\x1e\x14\x0a") + char(first), QByteArray("\x32\x64\xc8") + char(second)};
    return maker;
}

} // namespace

class TestTgaCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void tellsAlpha_data();
    void tellsAlpha();
    void keepsAlphaOfACutPicture();
    void takesSixteenthBitAsAlpha();
    void keepsPalettes();
    void drawsValuesWithoutEntryBlack();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsClearPicturesClear_data();
    void keepsClearPicturesClear();
    void writesTheSmaller();
    void writesEverySize_data();
    void writesEverySize();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
};

void TestTgaCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("accepted");
    const TgaMaker good = TgaMaker::trueColor(QSize(4, 4), 24);
    const auto row = [](const char* name, const QByteArray& head, const char* extension, bool accepted) {
        QTest::newRow(name) << head << QString::fromLatin1(extension) << accepted;
    };
    for (const char* extension : {"tga", "icb", "vda", "vst"})
        row(extension, good.bytes(), extension, true);
    row("without its name", good.bytes(), "", false);
    row("under another name", good.bytes(), "ico", false);
    row("palette", TgaMaker::mapped(QSize(4, 4), 8, 24, 9, 0).bytes(), "tga", true);
    row("header alone", good.bytes().left(18), "tga", true);
    row("a byte less", good.bytes().left(17), "tga", false);
    row("text", QByteArray("just a few lines of text, nothing else"), "tga", false);
    row("zeros", QByteArray(100, '\0'), "tga", false);
    row("empty", QByteArray(), "tga", false);
    const auto patched = [](const TgaMaker& maker, int offset, int value) {
        QByteArray bytes = maker.bytes();
        bytes[offset] = char(value);
        return bytes;
    };
    row("no width", patched(good, 12, 0), "tga", false);
    row("palette kind 2", patched(good, 1, 2), "tga", false);
    row("image kind 4", patched(good, 2, 4), "tga", false);
    row("image kind 8", patched(good, 2, 8), "tga", false);
    row("19 bits", patched(good, 16, 19), "tga", false);
    const TgaMaker mapped = TgaMaker::mapped(QSize(4, 4), 8, 24, 9, 0);
    row("palette of 9-bit entries", patched(mapped, 7, 9), "tga", false);
    row("palette without entries", patched(mapped, 5, 0), "tga", false);
    row("palette image without palette", patched(mapped, 1, 0), "tga", false);
    row("Huffman", patched(mapped, 2, 32), "tga", true);
}

void TestTgaCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, extension);
    QTEST(codec.sniff(head, extension), "accepted");
}

void TestTgaCodec::readsTheCorpus_data()
{
    addFixtureRows(tgaCorpus());
}

void TestTgaCodec::readsTheCorpus()
{
    QFETCH(Fixture, fixture);
    Picture picture;
    QCOMPARE(fixtureFault(codec, fixture, &picture), QString());
    const QByteArray& file = fixture.file;
    QCOMPARE(picture.bitsPerPixel, (uchar(file[16]) + 7) / 8 * 8);
    if (file[16] == 8)
        QCOMPARE(picture.image.format(),
                 (file[2] & 3) == 1 ? QImage::Format_Indexed8 : QImage::Format_Grayscale8);
}

void TestTgaCodec::tellsAlpha_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QRgb>("first");
    QTest::addColumn<QRgb>("second");
    const auto row = [](const char* name, TgaMaker maker, int descriptor, int attributesType, QRgb first,
                        QRgb second) {
        maker.descriptor = descriptor;
        maker.attributesType = attributesType;
        QTest::newRow(name) << maker.bytes() << first << second;
    };
    const TgaMaker half = twoPixels(255, 128);
    const QRgb one = qRgb(10, 20, 30);
    const QRgb other = qRgb(200, 100, 50);
    const QRgb clear = qRgba(200, 100, 50, 128);
    row("eight attribute bits", half, 8, -1, one, clear);
    row("no attribute bits", half, 0, -1, one, other);
    row("alpha 0 throughout", twoPixels(0, 0), 8, -1, one, other);
    TgaMaker blank = twoPixels(0, 0);
    blank.pixels = {QByteArray(4, '\0'), QByteArray(4, '\0')};
    row("alpha 0 and no colour", blank, 8, -1, 0, 0);
    row("type 3: alpha, 0 throughout", twoPixels(0, 0), 8, 3, qRgba(10, 20, 30, 0), qRgba(200, 100, 50, 0));
    row("alpha 0 in one", twoPixels(255, 0), 8, -1, one, qRgba(200, 100, 50, 0));
    row("type 0: none", half, 8, 0, one, other);
    row("type 1: undefined", half, 8, 1, one, other);
    row("type 2: to be kept", half, 8, 2, one, other);
    row("type 3: alpha", half, 8, 3, one, clear);
    row("type 3 without attribute bits", half, 0, 3, one, clear);
    row("type 9: unknown", half, 8, 9, one, clear);
    TgaMaker premultiplied = twoPixels(255, 128);
    premultiplied.pixels[1] = QByteArray("\x19\x32\x64\x80"); // (100, 50, 25) of 128
    row("type 4: premultiplied", premultiplied, 8, 4, one, qUnpremultiply(qRgba(100, 50, 25, 128)));
}

void TestTgaCodec::tellsAlpha()
{
    QFETCH(QByteArray, file);
    QFETCH(QRgb, first);
    QFETCH(QRgb, second);
    const auto picture = decodeBytes(codec, file);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.pixel(0, 0), first);
    QCOMPARE(picture->image.pixel(1, 0), second);
}

/// Only the whole picture tells that nobody filled the alpha bits.
void TestTgaCodec::keepsAlphaOfACutPicture()
{
    TgaMaker maker = twoPixels(0, 255);
    maker.descriptor = 8;
    const auto part = decodeBytes(codec, maker.bytes().left(18 + 4));
    QVERIFY(part && !part->complete);
    QCOMPARE(part->image.pixel(0, 0), qRgba(10, 20, 30, 0));
}

void TestTgaCodec::takesSixteenthBitAsAlpha()
{
    TgaMaker maker;
    maker.size = QSize(2, 1);
    maker.depth = 16;
    maker.pixels = {QByteArray("\x00\xfc", 2), QByteArray("\x00\x7c", 2)}; // red with and without the bit
    for (const int bits : {0, 1}) {
        maker.descriptor = bits;
        const auto picture = decodeBytes(codec, maker.bytes());
        QVERIFY(picture);
        QCOMPARE(picture->image.pixel(0, 0), qRgba(255, 0, 0, 255));
        QCOMPARE(picture->image.pixel(1, 0), qRgba(255, 0, 0, bits == 0 ? 255 : 0));
    }
}

void TestTgaCodec::keepsPalettes()
{
    const QImage picture = palettePicture(QSize(9, 9), 17);
    const auto own = decoded(codec, encoded(picture));
    QVERIFY(own);
    QCOMPARE(own->image.format(), QImage::Format_Indexed8);
    QCOMPARE(own->image.colorTable(), picture.colorTable());
    QImage tinted = dotPicture(QSize(9, 9));
    tinted.setColorTable({qRgb(255, 0, 0), qRgb(0, 0, 255)});
    const auto mono = decoded(codec, encoded(tinted));
    QVERIFY(mono);
    QCOMPARE(mono->image.colorTable(), tinted.colorTable());
    QCOMPARE(difference(mono->image, tinted), QString());
}

void TestTgaCodec::drawsValuesWithoutEntryBlack()
{
    TgaMaker maker = TgaMaker::mapped(QSize(3, 1), 8, 24, 4, 2);
    maker.pixels = {QByteArray(1, '\1'), QByteArray(1, '\2'), QByteArray(1, '\x09')};
    const auto picture = decodeBytes(codec, maker.bytes());
    QVERIFY(picture);
    QCOMPARE(picture->image.pixel(0, 0), qRgb(0, 0, 0));
    QCOMPARE(picture->image.pixel(1, 0),
             qRgb(uchar(maker.palette[2]), uchar(maker.palette[1]), uchar(maker.palette[0])));
    QCOMPARE(picture->image.pixel(2, 0), qRgb(0, 0, 0));
}

void TestTgaCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    TgaMaker huffman = TgaMaker::mapped(QSize(4, 4), 8, 24, 9, 0);
    huffman.type = 32;
    QTest::newRow("Huffman") << huffman.bytes() << int(ErrorKind::Unsupported);
    huffman.type = 33;
    QTest::newRow("Huffman, quad tree") << huffman.bytes() << int(ErrorKind::Unsupported);
    const QByteArray good = TgaMaker::trueColor(QSize(4, 4), 24).bytes();
    QTest::newRow("no pixels") << good.left(18) << int(ErrorKind::Damaged);
    QTest::newRow("half a pixel") << good.left(20) << int(ErrorKind::Damaged);
    QTest::newRow("not plausible") << QByteArray(100, '\0') << int(ErrorKind::NotAnImage);
    QTest::newRow("too short") << good.left(17) << int(ErrorKind::NotAnImage);
}

void TestTgaCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(codec, file, ErrorKind(kind)), QString());
}

void TestTgaCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    const QSize size(7, 6);
    QTest::newRow("24 bits") << TgaMaker::trueColor(size, 24).bytes();
    QTest::newRow("16 bits, run length") << TgaMaker::trueColor(size, 16).packed(false).bytes();
    QTest::newRow("packets across rows") << TgaMaker::trueColor(size, 24).packed(true).bytes();
    QTest::newRow("palette") << TgaMaker::mapped(size, 8, 24, 9, 0).bytes();
    QTest::newRow("16-bit values") << TgaMaker::mapped(size, 16, 24, 300, 0).bytes();
    TgaMaker mirrored = TgaMaker::trueColor(size, 24);
    mirrored.descriptor = 0x10;
    QTest::newRow("right to left") << mirrored.bytes();
}

void TestTgaCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QCOMPARE(growingCutFault(codec, file, equalPixels, 7 * 6 - 5), QString());
}

void TestTgaCodec::writesWhatOthersRead_data()
{
    addFormatRows();
    QTest::newRow("grey") << greyPicture(QSize(31, 7));
    QTest::newRow("palette") << palettePicture(QSize(31, 7), 200);
    QTest::newRow("dots") << dotPicture(QSize(31, 7));
    QTest::newRow("alpha") << alphaPicture(QSize(31, 7));
    QTest::newRow("palette with a clear entry") << clearEntryPicture(QSize(15, 5));
}

void TestTgaCodec::writesWhatOthersRead()
{
    QFETCH(QImage, image);
    const QByteArray file = encoded(image);
    QVERIFY(file.endsWith(QByteArray("TRUEVISION-XFILE.", 18)));
    const bool alpha = image.hasAlphaChannel();
    const QImage wanted = image.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QCOMPARE(file[16] == 32, alpha);
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("in.tga"), file);
    const auto read = [&](const char* program, const QStringList& options) {
        return fromPnm(runTool(QLatin1String(program), options));
    };
    const Rgba byNetpbm = read("tgatoppm", {path});
    QCOMPARE(firstDifference(byNetpbm, rgbaOf(wanted.convertToFormat(QImage::Format_RGB32))), QString());
    // This reader leaves it to a switch which end of the picture is up.
    const Rgba byMagick = readWithMagick(file, tga, {QStringLiteral("-auto-orient")});
    QCOMPARE(firstDifference(byMagick, rgbaOf(wanted)), QString());
    const auto own = decoded(codec, file);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), rgbaOf(wanted)), QString());
}

void TestTgaCodec::keepsClearPicturesClear_data()
{
    addClearPictureRows();
}

void TestTgaCodec::keepsClearPicturesClear()
{
    QFETCH(QImage, picture);
    const QByteArray file = encoded(picture);
    const auto own = decoded(codec, file);
    QVERIFY(own);
    QCOMPARE(difference(own->image, picture, true), QString());
    QCOMPARE(difference(readByMagick(file, tga), picture, true), QString());
}

void TestTgaCodec::writesTheSmaller()
{
    QImage flat(300, 20, QImage::Format_RGB32);
    flat.fill(qRgb(1, 2, 3));
    const QByteArray runs = encoded(flat);
    QCOMPARE(int(runs[2]), 10);
    QCOMPARE(runs.size(), 18 + 20 * 3 * 4 + 26); // 300 pixels are three packets
    const QByteArray plain = encoded(colorPicture(QSize(30, 20)));
    QCOMPARE(int(plain[2]), 2);
    QCOMPARE(plain.size(), 18 + 30 * 20 * 3 + 26);
}

void TestTgaCodec::writesEverySize_data()
{
    addSizeRows(
        {QSize(1, 1), QSize(1, 20000), QSize(20000, 1), QSize(128, 2), QSize(129, 3), QSize(65535, 1)});
}

void TestTgaCodec::writesEverySize()
{
    QFETCH(QSize, size);
    for (const QImage& image : {palettePicture(size, 5), alphaPicture(size)}) {
        const QByteArray file = encoded(image);
        const ScratchFiles files;
        const QString path = files.write(QStringLiteral("in.tga"), file);
        const Rgba seen = fromPnm(runTool(QStringLiteral("tgatoppm"), {path}));
        QCOMPARE(firstDifference(seen, rgbaOf(image.convertToFormat(QImage::Format_RGB32))), QString());
        const auto own = decoded(codec, file);
        QVERIFY(own && own->complete);
        QCOMPARE(difference(own->image, image, true), QString());
    }
}

void TestTgaCodec::refusesToWrite()
{
    QCOMPARE(writingRefusalFault(codec, tga, {QImage(), QImage(65536, 1, QImage::Format_Mono)}), QString());
}

void TestTgaCodec::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(codec, encoded(colorPicture(QSize(30, 30)))), QString());
}

void TestTgaCodec::survivesBrokenFiles()
{
    TgaMaker extended = twoPixels(255, 128);
    extended.attributesType = 4;
    const QSize size(13, 9);
    const QList<QByteArray> parents = {TgaMaker::trueColor(size, 24).packed(true).bytes(),
                                       TgaMaker::trueColor(size, 32).bytes(),
                                       TgaMaker::mapped(size, 8, 16, 40, 10).packed(false).bytes(),
                                       TgaMaker::mapped(size, 16, 32, 400, 9).bytes(),
                                       TgaMaker::gray(size).packed(false).bytes(),
                                       extended.bytes(),
                                       encoded(palettePicture(size, 30))};
    QCOMPARE(mutantFault(codec, parents, 700), QString());
}

QTEST_GUILESS_MAIN(TestTgaCodec)
#include "tst_tgacodec.moc"
