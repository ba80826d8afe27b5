// Bitmaps of all depths, headers, masks and run-length codes, down to the single pixel.
#include "BmpMaker.h"
#include "engine/codecs/bmp/BmpRows.h"
#include "engine/codecs/Codecs.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "Pixels.h"
#include "PureColors.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// A row for `bitmap`, whose rows stand from the bottom up: the second stored row is the upper one.
void add(const char* name, const BmpMaker& bitmap, const Pixels& pixels, QImage::Format format,
         bool complete = true)
{
    QTest::newRow(name) << bitmap.bytes() << pixels << int(format) << complete;
}

void addHeaders()
{
    BmpMaker deep = BmpMaker::rows(24, "0000ff00ff000000 ff0000ffffff0000");
    add("24 bits", deep, {blue, white, red, green}, QImage::Format_RGB32);
    deep.height = -2;
    add("24 bits, top down", deep, {red, green, blue, white}, QImage::Format_RGB32);
    deep.height = 2;
    deep.fileHeader = false;
    add("24 bits, bare", deep, {blue, white, red, green}, QImage::Format_RGB32);
    deep.clrUsed = 4;
    deep.behindHeader = fourColors();
    add("24 bits, bare, with a palette in passing", deep, {blue, white, red, green}, QImage::Format_RGB32);
    for (const qint64 nonsense : {2, 0, 54, 100000}) {
        BmpMaker lies = BmpMaker::rows(24, "0000ff00ff000000 ff0000ffffff0000");
        lies.tellOffset = nonsense;
        add(qPrintable(QStringLiteral("24 bits, pixels said to be at %1").arg(nonsense)), lies,
            {blue, white, red, green}, QImage::Format_RGB32);
    }
    BmpMaker apart = BmpMaker::rows(24, "0000ff00ff000000 ff0000ffffff0000");
    apart.pixels.prepend("gap ");
    apart.tellOffset = 58;
    add("24 bits, pixels behind a gap", apart, {blue, white, red, green}, QImage::Format_RGB32);
    for (const quint32 headerSize : {12u, 16u, 52u, 56u, 64u, 108u, 124u}) {
        for (const bool fileHeader : {true, false}) {
            BmpMaker other = BmpMaker::rows(24, "0000ff00ff000000 ff0000ffffff0000");
            other.headerSize = headerSize;
            other.fileHeader = fileHeader;
            add(qPrintable(QStringLiteral("24 bits, header of %1, %2").arg(headerSize).arg(fileHeader)),
                other, {blue, white, red, green}, QImage::Format_RGB32);
        }
    }

    for (const quint32 headerSize : {24u, 36u, 46u, 48u}) {
        BmpMaker os2 = BmpMaker::rows(24, "0000ff00ff000000 ff0000ffffff0000");
        os2.headerSize = headerSize;
        add(qPrintable(QStringLiteral("24 bits, header of %1").arg(headerSize)), os2,
            {blue, white, red, green}, QImage::Format_RGB32);
        BmpMaker mapped = BmpMaker::rows(8, "00010000 02030000");
        mapped.headerSize = headerSize;
        mapped.behindHeader = fourColors() + QByteArray(252 * 4, '\0');
        add(qPrintable(QStringLiteral("8 bits, header of %1").arg(headerSize)), mapped,
            {blue, white, red, green}, QImage::Format_Indexed8);
    }
    BmpMaker member = BmpMaker::rows(24, "0000ff00ff000000 ff0000ffffff0000");
    member.headerSize = 12;
    member.tellOffset = 14 + 14 + 12; // from the start of the file
    QTest::newRow("24 bits, first of an array")
        << hex("4241 28000000 00000000 0000 0000") + member.bytes() << Pixels{blue, white, red, green}
        << int(QImage::Format_RGB32) << true;
}

void addPalettes()
{
    BmpMaker one = BmpMaker::rows(1, "40000000 80000000");
    one.behindHeader = hex("0000ff00 ff000000");
    add("1 bit", one, {blue, red, red, blue}, QImage::Format_Mono);
    one.headerSize = 12;
    one.behindHeader = hex("0000ff ff0000");
    add("1 bit, OS/2 1", one, {blue, red, red, blue}, QImage::Format_Mono);
    one.fileHeader = false;
    add("1 bit, OS/2 1, bare", one, {blue, red, red, blue}, QImage::Format_Mono);
    BmpMaker two = BmpMaker::rows(2, "10000000 b0000000");
    two.behindHeader = fourColors();
    add("2 bits", two, {blue, white, red, green}, QImage::Format_Indexed8);
    BmpMaker four = BmpMaker::rows(4, "01000000 23000000");
    four.clrUsed = 4;
    four.behindHeader = fourColors();
    add("4 bits, palette of 4", four, {blue, white, red, green}, QImage::Format_Indexed8);
    BmpMaker eight = BmpMaker::rows(8, "00010000 02030000");
    eight.behindHeader = fourColors() + QByteArray(252 * 4, '\0');
    add("8 bits", eight, {blue, white, red, green}, QImage::Format_Indexed8);
    eight.behindHeader = fourColors();
    add("8 bits, palette cut by the pixels", eight, {blue, white, red, green}, QImage::Format_Indexed8);
    eight.clrUsed = 4;
    eight.fileHeader = false;
    add("8 bits, palette of 4, bare", eight, {blue, white, red, green}, QImage::Format_Indexed8);
    eight.pixels = hex("00040000 02ff0000");
    add("8 bits, indices past the palette", eight, {blue, black, red, black}, QImage::Format_Indexed8);
    BmpMaker many = BmpMaker::rows(8, "00010000 02030000");
    many.clrUsed = 300;
    many.behindHeader = fourColors() + QByteArray(296 * 4, '\0');
    add("8 bits, palette of 300", many, {blue, white, red, green}, QImage::Format_Indexed8);
}

void addMasks()
{
    add("16 bits", BmpMaker::rows(16, "007ce003 1f00ff7f"), {blue, white, red, green}, QImage::Format_RGB32);
    BmpMaker b565 = BmpMaker::rows(16, "00f8e007 1f00ffff");
    b565.compression = 3;
    b565.behindHeader = masks({0xF800, 0x07E0, 0x001F});
    add("16 bits, 565", b565, {blue, white, red, green}, QImage::Format_RGB32);
    b565.tellOffset = 54;
    add("16 bits, 565, pixels said to be where the masks are", b565, {blue, white, red, green},
        QImage::Format_RGB32);
    BmpMaker b4444 = BmpMaker::rows(16, "000ff000 0f80ffff");
    b4444.headerSize = 108;
    b4444.compression = 3;
    b4444.masksInHeader = masks({0x0F00, 0x00F0, 0x000F, 0xF000});
    add("16 bits, 4444, version 4", b4444,
        {qRgba(0, 0, 255, 8 * 17), white, qRgba(255, 0, 0, 0), qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);
    BmpMaker b1555 = BmpMaker::rows(16, "00fce003 1f80ffff");
    b1555.compression = 6;
    b1555.behindHeader = masks({0x7C00, 0x03E0, 0x001F, 0x8000});
    add("16 bits, 1555, loose masks", b1555, {blue, white, red, qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);

    add("32 bits", BmpMaker::rows(32, "0000ff0000ff0080 ff0000ffffffff01"), {blue, white, red, green},
        QImage::Format_RGB32);
    BmpMaker rgbx = BmpMaker::rows(32, "ff00000000ff0000 0000ff00ffffff00");
    rgbx.compression = 3;
    rgbx.behindHeader = masks({0xFF, 0xFF00, 0xFF0000});
    add("32 bits, red first", rgbx, {blue, white, red, green}, QImage::Format_RGB32);
    BmpMaker ten = BmpMaker::rows(32, "0000f03f00fc0f00 ff030000ffffff3f");
    ten.compression = 3;
    ten.behindHeader = masks({0x3FF00000, 0x000FFC00, 0x000003FF});
    add("32 bits, ten each", ten, {blue, white, red, green}, QImage::Format_RGB32);
    BmpMaker v5 = BmpMaker::rows(32, "0000ff8000ff0000 ff0000ffffffff01");
    v5.headerSize = 124;
    v5.compression = 3;
    v5.masksInHeader = masks({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    add("32 bits, alpha, version 5", v5,
        {blue, qRgba(255, 255, 255, 1), qRgba(255, 0, 0, 128), qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);
    v5.headerSize = 56;
    add("32 bits, alpha, header of 56", v5,
        {blue, qRgba(255, 255, 255, 1), qRgba(255, 0, 0, 128), qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);
    BmpMaker blank = BmpMaker::rows(32, "0000ff0000ff0000 ff000000ffffff00");
    blank.compression = 3;
    blank.masksInHeader = masks({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    for (const quint32 headerSize : {56u, 108u, 124u}) {
        blank.headerSize = headerSize;
        add(qPrintable(QStringLiteral("32 bits, alpha 0 everywhere, header of %1").arg(headerSize)), blank,
            {blue, white, red, green}, QImage::Format_RGB32);
    }
    blank.headerSize = 40;
    blank.compression = 6;
    blank.behindHeader = blank.masksInHeader;
    blank.masksInHeader.clear();
    add("32 bits, alpha 0 everywhere, loose masks", blank, {blue, white, red, green}, QImage::Format_RGB32);
    blank.pixels.chop(4);
    const auto clear = [](QRgb color) { return color & 0xFFFFFF; };
    add("32 bits, alpha 0 as far as it goes", blank, {clear(blue), 0, clear(red), clear(green)},
        QImage::Format_ARGB32, false);
    blank.pixels = QByteArray(16, '\0');
    add("32 bits, alpha 0 and no colour", blank, {0, 0, 0, 0}, QImage::Format_ARGB32);
    BmpMaker blank1555 = BmpMaker::rows(16, "007ce003 1f00ff7f");
    blank1555.compression = 6;
    blank1555.behindHeader = masks({0x7C00, 0x03E0, 0x001F, 0x8000});
    add("16 bits, alpha 0 everywhere, loose masks", blank1555, {blue, white, red, green},
        QImage::Format_RGB32);
    v5.headerSize = 52;
    v5.masksInHeader.truncate(12);
    add("32 bits, header of 52 has no alpha", v5, {blue, white, red, green}, QImage::Format_RGB32);
    BmpMaker noMasks = BmpMaker::rows(32, "0000ff0000ff0000 ff000000ffffff00");
    noMasks.compression = 3;
    noMasks.behindHeader = masks({0, 0, 0});
    add("32 bits, masks all 0", noMasks, {blue, white, red, green}, QImage::Format_RGB32);
}

void addRuns()
{
    const auto indexed = QImage::Format_Indexed8;
    add("RLE8", BmpMaker::runs(8, 2, 2, "0100 0101 0000 0102 0103 0001"), {blue, white, red, green}, indexed);
    add("RLE8, literals", BmpMaker::runs(8, 3, 2, "0003 01020300 0000 0301 0001"),
        {green, green, green, green, blue, white}, indexed);
    add("RLE8, no end mark", BmpMaker::runs(8, 2, 2, "0201 0000 0202"), {blue, blue, green, green}, indexed);
    add("RLE8, delta", BmpMaker::runs(8, 3, 3, "0101 0002 0101 0102 0001"),
        {red, red, red, red, red, blue, green, red, red}, indexed);
    add("RLE8, run past the edge", BmpMaker::runs(8, 2, 2, "ff01 0000 ff02 0000 ff03 0001"),
        {blue, blue, green, green}, indexed);
    add("RLE8, delta out of the picture", BmpMaker::runs(8, 2, 2, "0201 0002ffff 0203 0001"),
        {red, red, green, green}, indexed);
    add("RLE8, end mark early", BmpMaker::runs(8, 2, 2, "0101 0001"), {red, red, green, red}, indexed);
    add("RLE8, cut short", BmpMaker::runs(8, 2, 2, "0201 0000 01"), {red, red, green, green}, indexed, false);
    add("RLE8, literals cut short", BmpMaker::runs(8, 4, 1, "0004 0102"), {green, blue, red, red}, indexed,
        false);
    BmpMaker downward = BmpMaker::runs(8, 2, 2, "0201 0000 0202 0001");
    downward.height = -2;
    add("RLE8, top down", downward, {green, green, blue, blue}, indexed);
    BmpMaker bareRuns = BmpMaker::runs(8, 2, 2, "0201 0000 0202 0001");
    bareRuns.fileHeader = false;
    add("RLE8, bare", bareRuns, {blue, blue, green, green}, indexed);
    add("RLE4", BmpMaker::runs(4, 5, 2, "0512 0000 0003 0120 0213 0001"),
        {red, green, blue, green, white, green, blue, green, blue, green}, indexed);
    add("RLE4, delta", BmpMaker::runs(4, 3, 2, "0111 0002 0101 0122 0001"), {red, red, blue, green, red, red},
        indexed);
    BmpMaker os2 = BmpMaker::rows(24, "020000ff 0000 0002 00ff00ffffff 0001");
    os2.compression = 4;
    os2.headerSize = 64;
    // One code of two literals does not exist: 00 02 is a delta. Three stand for it, the third beyond the
    // edge.
    os2.pixels = hex("020000ff 0000 0003 ff0000ffffff00000000 0001");
    add("RLE24", os2, {blue, white, red, red}, QImage::Format_RGB32);
    BmpMaker marked = os2; // a run of 255 pixels that begins as a JPEG does
    marked.pixels = hex("ffd8ff01 0000 ffd8ff02 0001");
    add("RLE24, as if a JPEG began", marked,
        {qRgb(2, 255, 0xD8), qRgb(2, 255, 0xD8), qRgb(1, 255, 0xD8), qRgb(1, 255, 0xD8)},
        QImage::Format_RGB32);
    os2.headerSize = 40;
    add("RLE24, header of 40", os2, {blue, white, red, red}, QImage::Format_RGB32);
    os2.pixels = hex("020000ff 0000 0100ff");
    add("RLE24, cut short", os2, {black, black, red, red}, QImage::Format_RGB32, false);
}

} // namespace

class TestBmpVariants : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readsVariants_data();
    void readsVariants();
    void scalesMasks_data();
    void scalesMasks();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpVariants::readsVariants_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Pixels>("pixels");
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("complete");
    addHeaders();
    addPalettes();
    addMasks();
    addRuns();
}

void TestBmpVariants::readsVariants()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Pixels, pixels);
    QFETCH(int, format);
    QVERIFY(m_codec.sniff(bytes.left(512), QStringLiteral("dib")));
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(pixelFault(result->image, pixels), QString());
    QCOMPARE(int(result->image.format()), format);
    QTEST(result->complete, "complete");
}

void TestBmpVariants::scalesMasks_data()
{
    QTest::addColumn<quint32>("mask");
    QTest::addColumn<quint32>("pixel");
    QTest::addColumn<int>("value");
    QTest::newRow("none") << 0u << 0xFFFFFFFFu << 77;
    QTest::newRow("8 bits") << 0xFF00u << 0x1234u << 0x12;
    QTest::newRow("5 bits, top") << 0x7C00u << 0x7C00u << 255;
    QTest::newRow("5 bits, 3 of 31") << 0x7C00u << 0x0C00u << 24;
    QTest::newRow("5 bits, 28 of 31") << 0x001Fu << 0x001Cu << 231;
    QTest::newRow("4 bits, 7 of 15") << 0x000Fu << 0x0007u << 0x77;
    QTest::newRow("3 bits, 5 of 7") << 0x00E0u << 0x00A0u << 0xB6;
    QTest::newRow("7 bits, 64 of 127") << 0x007Fu << 0x0040u << 129;
    QTest::newRow("6 bits, 32 of 63") << 0x07E0u << 0x0400u << 130;
    QTest::newRow("1 bit") << 0x8000u << 0x8000u << 255;
    QTest::newRow("10 bits, 512 of 1023") << 0x3FF00000u << 0x20000000u << 128;
    QTest::newRow("32 bits, half") << 0xFFFFFFFFu << 0x80000000u << 128;
    QTest::newRow("32 bits, top") << 0xFFFFFFFFu << 0xFFFFFFFFu << 255;
    QTest::newRow("with a gap, top") << 0x0505u << 0xFFFFu << 255;
}

void TestBmpVariants::scalesMasks()
{
    QFETCH(quint32, mask);
    QFETCH(quint32, pixel);
    QTEST(MaskedChannel(mask, 77).of(pixel), "value");
}

QTEST_GUILESS_MAIN(TestBmpVariants)
#include "tst_bmpvariants.moc"
