#include "engine/codecs/Codecs.h"
#include "engine/codecs/png/PngDecoder.h"
#include "engine/codecs/png/PngFast.h"
#include "engine/codecs/png/PngUnfilter.h"
#include "PngFixtures.h"

#include <QTest>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// Byte after byte, straight from the filters' definition.
std::vector<uchar> unfilteredPlainly(int filter, const std::vector<uchar>& row,
                                     const std::vector<uchar>& above, int pixelBytes)
{
    std::vector<uchar> out(row.size());
    const auto before = [pixelBytes](const std::vector<uchar>& bytes, size_t i) {
        return i < size_t(pixelBytes) ? 0 : int(bytes[i - size_t(pixelBytes)]);
    };
    for (size_t i = 0; i < row.size(); ++i) {
        const int a = before(out, i);
        const int b = above[i];
        const int c = before(above, i);
        const int p = a + b - c;
        const int pa = std::abs(p - a);
        const int pb = std::abs(p - b);
        const int pc = std::abs(p - c);
        const int nearest = pa <= pb && pa <= pc ? a : pb <= pc ? b : c;
        const int added[] = {0, a, b, (a + b) / 2, nearest};
        out[i] = uchar(row[i] + added[filter]);
    }
    return out;
}

constexpr int mixed = -1; ///< every row has another filter

/// Rows of random bytes: whatever the filter, they are some picture.
QByteArray randomRows(int rowBytes, int height, int filter, quint32 seed)
{
    std::mt19937 random(seed);
    QByteArray rows;
    for (int y = 0; y < height; ++y) {
        rows.append(char(filter == mixed ? random() % 5 : quint32(filter)));
        for (int i = 0; i < rowBytes; ++i)
            rows.append(char(random()));
    }
    return rows;
}

int rowBytes(int width, int depth, int colors)
{
    const int channels = colors == 2 ? 3 : colors == 4 ? 2 : colors == 6 ? 4 : 1;
    return (width * depth * channels + 7) / 8;
}

QByteArray palette(int depth)
{
    QByteArray entries;
    for (int i = 0; i < 1 << depth; ++i)
        entries.append(char(255 - i)).append(char(i * 5)).append(char(i));
    return pngChunk("PLTE", entries);
}

/// A file of `rows`; `further` stands before the pixels.
QByteArray fileOf(QSize size, int depth, int colors, const QByteArray& rows, const QByteArray& further = {})
{
    QByteArray file = pngHeader(quint32(size.width()), quint32(size.height()), depth, colors);
    if (colors == 3)
        file += palette(depth);
    return file + further + pngChunk("IDAT", zlibStream(rows)) + pngChunk("IEND", QByteArray());
}

struct BothWays
{
    std::optional<Picture> fast;
    Result<Picture> library;
};

BothWays decodeBothWays(const QByteArray& file, bool cancelled = false)
{
    const auto source = ByteSource::fromBytes(file);
    const auto header = readPngHeader(*source);
    if (!header)
        return {{}, header.error()};
    const CancelFlag cancel{cancelled};
    return {decodePngFast(*source, *header, cancel), decodePngByLibrary(*source, *header, cancel)};
}

/// Also what lies between the last pixel and the end of each row.
bool isSameMemory(const QImage& one, const QImage& other)
{
    return one.sizeInBytes() == other.sizeInBytes() &&
           std::memcmp(one.constBits(), other.constBits(), size_t(one.sizeInBytes())) == 0;
}

} // namespace

class TestPngFast : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void unfilters_data();
    void unfilters();
    void predictsEveryTriple();
    void refusesOtherFilters();
    void samePixelsAsTheLibrary_data();
    void samePixelsAsTheLibrary();
    void sameOnTwoThreads_data();
    void sameOnTwoThreads();
    void takesDataInAnyPieces();
    void leavesTheUnusual_data();
    void leavesTheUnusual();
    void leavesCancelled();
    void takesLittleMemory();
};

void TestPngFast::unfilters_data()
{
    QTest::addColumn<int>("filter");
    QTest::addColumn<int>("pixelBytes");
    for (int filter = 0; filter <= 4; ++filter) {
        for (const int pixelBytes : {1, 2, 3, 4, 6, 8})
            QTest::addRow("filter %d, %d bytes", filter, pixelBytes) << filter << pixelBytes;
    }
}

void TestPngFast::unfilters()
{
    QFETCH(int, filter);
    QFETCH(int, pixelBytes);
    std::mt19937 random(quint32(filter * 10 + pixelBytes));
    for (int pixels = 1; pixels <= 70; ++pixels) {
        std::vector<uchar> row(size_t(pixels * pixelBytes));
        std::vector<uchar> above(row.size());
        std::generate(row.begin(), row.end(), [&random] { return uchar(random()); });
        std::generate(above.begin(), above.end(), [&random] { return uchar(random()); });
        const std::vector<uchar> wanted = unfilteredPlainly(filter, row, above, pixelBytes);
        QVERIFY(unfilterPngRow(filter, row.data(), above.data(), qsizetype(row.size()), pixelBytes));
        QVERIFY2(row == wanted, QByteArray::number(pixels).constData());
    }
}

void TestPngFast::predictsEveryTriple()
{
    // Two pixels of 8 bytes: the first becomes `left` below `aboveLeft`, the second is the prediction.
    uchar row[16];
    uchar above[16];
    for (int left = 0; left < 256; ++left) {
        for (int up = 0; up < 256; ++up) {
            for (int aboveLeft = 0; aboveLeft < 256; aboveLeft += 8) {
                for (int i = 0; i < 8; ++i) {
                    above[i] = uchar(aboveLeft + i);
                    above[8 + i] = uchar(up);
                    row[i] = uchar(left - above[i]);
                    row[8 + i] = 0;
                }
                unfilterPngRow(4, row, above, 16, 8);
                for (int i = 0; i < 8; ++i) {
                    const int pa = std::abs(up - above[i]);
                    const int pb = std::abs(left - above[i]);
                    const int pc = std::abs(left + up - 2 * above[i]);
                    const int wanted = pa <= pb && pa <= pc ? left : pb <= pc ? up : above[i];
                    if (row[i] != left || row[8 + i] != wanted)
                        QFAIL(qPrintable(QStringLiteral("%1 %2 %3").arg(left).arg(up).arg(above[i])));
                }
            }
        }
    }
}

void TestPngFast::refusesOtherFilters()
{
    uchar row[3] = {1, 2, 3};
    const uchar above[3] = {9, 9, 9};
    for (const int filter : {-1, 5, 255})
        QVERIFY(!unfilterPngRow(filter, row, above, 3, 3));
    QCOMPARE(row[0] + row[1] + row[2], 6);
}

void TestPngFast::samePixelsAsTheLibrary_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("colors");
    QTest::addColumn<QByteArray>("further");
    const auto add = [](const char* name, int colors, const QList<int>& depths, const QByteArray& further) {
        for (const int depth : depths)
            QTest::addRow("%s, %d bits", name, depth) << depth << colors << further;
    };
    const QList<int> all = {1, 2, 4, 8, 16};
    const QList<int> packed = {1, 2, 4, 8};
    const QList<int> wide = {8, 16};
    add("grey", 0, all, {});
    add("grey with a clear value", 0, all, pngChunk("tRNS", QByteArray("\0\1", 2)));
    add("deep grey with a clear value", 0, {16}, pngChunk("tRNS", QByteArray("\x7f\1", 2)));
    add("RGB", 2, wide, {});
    add("RGB with a clear colour", 2, wide, pngChunk("tRNS", QByteArray("\0\1\0\2\0\3", 6)));
    add("palette", 3, packed, {});
    add("palette with alpha", 3, packed, pngChunk("tRNS", QByteArray("\x80\x00", 2)));
    add("palette and things between", 3, packed,
        pngChunk("gAMA", bigEndian(100000)) + pngChunk("tEXt", QByteArray("a\0b", 3)));
    add("grey with alpha", 4, wide, {});
    add("RGB with alpha", 6, wide, {});
    add("RGB with alpha and a chunk that means nothing there", 6, wide,
        pngChunk("tRNS", QByteArray("\0\1\0\2\0\3", 6)));
}

void TestPngFast::samePixelsAsTheLibrary()
{
    QFETCH(int, depth);
    QFETCH(int, colors);
    QFETCH(QByteArray, further);
    for (const int width : {1, 2, 3, 5, 7, 8, 9, 16, 31, 100}) {
        for (const int height : {1, 2, 23}) {
            for (const int filter : {0, 1, 2, 3, 4, mixed}) {
                QByteArray rows = randomRows(rowBytes(width, depth, colors), height, filter, quint32(width));
                if (!further.isEmpty() && colors == 2) // one pixel that is the clear colour
                    rows.replace(0, 1 + 3 * depth / 8,
                                 QByteArray(1, '\0') +
                                     (depth == 8 ? QByteArray("\1\2\3", 3) : QByteArray("\0\1\0\2\0\3", 6)));
                const QByteArray file = fileOf(QSize(width, height), depth, colors, rows, further);
                const BothWays both = decodeBothWays(file);
                const QByteArray name =
                    QStringLiteral("%1 x %2, filter %3").arg(width).arg(height).arg(filter).toLatin1();
                QVERIFY2(both.fast && both.library, name.constData());
                QVERIFY2(both.fast->complete && both.library->complete, name.constData());
                QCOMPARE(both.fast->image.format(), both.library->image.format());
                QCOMPARE(both.fast->image.colorTable(), both.library->image.colorTable());
                QCOMPARE(both.fast->bitsPerPixel, both.library->bitsPerPixel);
                QCOMPARE(both.fast->fullSize, both.library->fullSize);
                QVERIFY2(isSameMemory(both.fast->image, both.library->image), name.constData());
            }
        }
    }
}

void TestPngFast::sameOnTwoThreads_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("colors");
    QTest::newRow("RGB") << 1001 << 8 << 2;
    QTest::newRow("RGB 16") << 1001 << 16 << 2;
    QTest::newRow("RGBA") << 1001 << 8 << 6;
    QTest::newRow("grey") << 3001 << 8 << 0;
    QTest::newRow("grey 1") << 30001 << 1 << 0;
    QTest::newRow("palette 2") << 15001 << 2 << 3;
    QTest::newRow("one pixel wide") << 1 << 16 << 6;
    QTest::newRow("a row longer than a batch") << 60001 << 8 << 2;
}

void TestPngFast::sameOnTwoThreads()
{
    QFETCH(int, width);
    QFETCH(int, depth);
    QFETCH(int, colors);
    constexpr int enough = 3 << 20; // bytes of rows, so that a second thread is worth while
    const int bytes = rowBytes(width, depth, colors);
    const int height = std::min(enough / (bytes + 1), 65535);
    const QByteArray rows = randomRows(bytes, height, mixed, 7);
    const BothWays both = decodeBothWays(fileOf(QSize(width, height), depth, colors, rows));
    QVERIFY(both.fast && both.library);
    QVERIFY(isSameMemory(both.fast->image, both.library->image));
    QByteArray broken = rows;
    broken[(height / 2) * (bytes + 1)] = 77;
    QVERIFY(!decodeBothWays(fileOf(QSize(width, height), depth, colors, broken)).fast);
}

void TestPngFast::takesDataInAnyPieces()
{
    const QByteArray stream = zlibStream(randomRows(300, 40, mixed, 3));
    const QByteArray start = pngHeader(100, 40, 8, 2);
    const QByteArray end = pngChunk("IEND", QByteArray());
    const BothWays whole = decodeBothWays(start + pngChunk("IDAT", stream) + end);
    QVERIFY(whole.fast);
    for (const int piece : {1, 2, 3, 100, 8191}) {
        QByteArray chunks;
        for (qsizetype at = 0; at < stream.size(); at += piece)
            chunks += pngChunk("IDAT", stream.mid(at, piece)) + pngChunk("IDAT", QByteArray());
        const BothWays both = decodeBothWays(start + chunks + end);
        QVERIFY2(both.fast, QByteArray::number(piece).constData());
        QCOMPARE(both.fast->image, whole.fast->image);
    }
}

void TestPngFast::leavesTheUnusual_data()
{
    QTest::addColumn<QByteArray>("file");
    const QSize size(10, 20);
    const QByteArray rows = randomRows(30, 20, mixed, 5);
    const QByteArray stream = zlibStream(rows);
    const QByteArray start = pngHeader(10, 20, 8, 2);
    const QByteArray end = pngChunk("IEND", QByteArray());
    const QByteArray good = fileOf(size, 8, 2, rows);
    const auto flipped = [](QByteArray file, qsizetype at) {
        file[at] = char(file[at] ^ 0x10);
        return file;
    };
    const auto data = [&](const QByteArray& content) { return start + pngChunk("IDAT", content) + end; };
    QTest::newRow("wrong sum of the header") << flipped(good, 30);
    QTest::newRow("wrong sum of the pixels") << flipped(good, good.size() - 14);
    QTest::newRow("wrong byte in the pixels") << flipped(good, good.size() - 60);
    QTest::newRow("wrong sum in the stream") << data(flipped(stream, stream.size() - 1));
    QTest::newRow("cut") << good.left(good.size() - 40);
    QTest::newRow("no end") << good.left(good.size() - 12);
    QTest::newRow("an end that is cut") << good.left(good.size() - 1);
    QTest::newRow("too few rows") << data(zlibStream(rows.left(31 * 19)));
    QTest::newRow("a byte too little") << data(zlibStream(rows.left(31 * 20 - 1)));
    QTest::newRow("a byte too many") << data(zlibStream(rows + QByteArray(1, '\0')));
    QTest::newRow("bytes behind the stream") << data(stream + QByteArray(9, '\0'));
    QTest::newRow("half a stream") << data(stream.left(stream.size() / 2));
    QTest::newRow("no stream") << data(QByteArray());
    QTest::newRow("noise for a stream") << data(QByteArray(300, '\x5a'));
    QTest::newRow("a stream that wants a dictionary") << data(flipped(flipped(stream, 0), 1));
    QByteArray filter = rows;
    filter[31 * 19] = 5;
    QTest::newRow("filter 5") << data(zlibStream(filter));
    QTest::newRow("pixels in two places") << start + pngChunk("IDAT", stream.left(100)) +
                                                 pngChunk("tEXt", QByteArray("a\0b", 3)) +
                                                 pngChunk("IDAT", stream.mid(100)) + end;
    QTest::newRow("no pixels") << start + end;
    QTest::newRow("a chunk without a name")
        << start + pngChunk("I1AT", QByteArray("x")) + pngChunk("IDAT", stream) + end;
    QTest::newRow("interlaced") << magickFile(samplePicture(size), 2, 8, true);
    const QByteArray clear("\0\1\0\2\0\3", 6);
    QTest::newRow("two clear colours") << withChunk(good, pngChunk("tRNS", clear) + pngChunk("tRNS", clear));
    QTest::newRow("half a clear colour") << withChunk(good, pngChunk("tRNS", clear.left(3)));
    QTest::newRow("a clear colour beyond its depth")
        << withChunk(good, pngChunk("tRNS", QByteArray("\0\1\7\2\0\3", 6)));
    QByteArray wrongClear = pngChunk("tRNS", clear);
    QTest::newRow("wrong sum of the clear colour")
        << withChunk(good, flipped(wrongClear, wrongClear.size() - 1));
    const QByteArray indices = randomRows(10, 20, 0, 5);
    const QByteArray colors = fileOf(size, 8, 3, indices);
    QTest::newRow("two palettes") << withChunk(colors, palette(8));
    QTest::newRow("wrong sum of the palette") << flipped(colors, pngChunkAt(colors, "PLTE") + 8 + 768);
    QTest::newRow("alpha for more colours than there are")
        << pngHeader(10, 20, 8, 3) + pngChunk("PLTE", QByteArray(30, '\x30')) +
               pngChunk("tRNS", QByteArray(11, '\x30')) + pngChunk("IDAT", zlibStream(indices)) + end;
    QTest::newRow("alpha before the palette") << pngHeader(10, 20, 8, 3) +
                                                     pngChunk("tRNS", QByteArray(3, '\x30')) + palette(8) +
                                                     pngChunk("IDAT", zlibStream(indices)) + end;
    QTest::newRow("a palette of four thirds") << pngHeader(10, 20, 8, 3) +
                                                     pngChunk("PLTE", QByteArray(4, '\x30')) +
                                                     pngChunk("IDAT", zlibStream(indices)) + end;
    QTest::newRow("a palette that is too long")
        << pngHeader(80, 20, 1, 3) + palette(2) + pngChunk("IDAT", zlibStream(indices)) + end;
    QTest::newRow("a palette behind the pixels")
        << pngHeader(10, 20, 8, 3) + pngChunk("IDAT", zlibStream(indices)) + palette(8) + end;
}

void TestPngFast::leavesTheUnusual()
{
    QFETCH(QByteArray, file);
    const BothWays both = decodeBothWays(file);
    QVERIFY(!both.fast);
    const auto shown = decodeBytes(pngCodec(), file);
    QCOMPARE(bool(shown), bool(both.library));
    if (!shown) {
        QCOMPARE(shown.error().kind, both.library.error().kind);
        QCOMPARE(shown.error().text, both.library.error().text);
        return;
    }
    QCOMPARE(shown->complete, both.library->complete);
    QCOMPARE(shown->image, both.library->image);
    QCOMPARE(shown->image.colorTable(), both.library->image.colorTable());
}

void TestPngFast::leavesCancelled()
{
    const QByteArray file = fileOf(QSize(10, 20), 8, 2, randomRows(30, 20, mixed, 5));
    const BothWays both = decodeBothWays(file, true);
    QVERIFY(!both.fast);
    QVERIFY(!both.library);
    QCOMPARE(both.library.error().kind, ErrorKind::Cancelled);
}

void TestPngFast::takesLittleMemory()
{
    const QSize size(3000, 2000);
    const QByteArray rows = randomRows(9000, 2000, mixed, 5); // will not pack
    const QByteArray file = fileOf(size, 8, 2, rows);
    std::optional<Picture> picture;
    const qint64 growth = peakGrowth([&] {
        const auto source = ByteSource::fromBytes(file);
        const auto header = readPngHeader(*source);
        const CancelFlag goOn{false};
        picture = decodePngFast(*source, *header, goOn);
    });
    QVERIFY(picture);
    QVERIFY(growth >= 0);
    const qint64 needed = qint64(4) * 3000 * 2000 + file.size();
    const qint64 granted = needed + (qint64(12) << 20) + sanitizerShare(needed);
    QVERIFY2(growth <= granted, QByteArray::number(growth).constData());
}

QTEST_GUILESS_MAIN(TestPngFast)
#include "tst_pngfast.moc"
