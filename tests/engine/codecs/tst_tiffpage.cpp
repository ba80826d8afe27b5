#include "CodecFixtures.h"
#include "corpus/Corpus.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/tiff/TiffPage.h"
#include "engine/codecs/tiff/TiffPieces.h"
#include "engine/Limits.h"
#include "IndependentReader.h"
#include "TiffMaker.h"

#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

struct Decoded
{
    QImage image;
    TiffProgress progress;
};

/// The first page of `file`; a null image when it fails.
Decoded decodedBy(const QByteArray& file, int threads)
{
    const auto source = ByteSource::fromBytes(file);
    const auto handle = TiffHandle::reading(source);
    if (!handle->get() || !TIFFSetDirectory(handle->get(), 0))
        return {};
    const auto layout = readTiffLayout(handle->get());
    if (!layout)
        return {};
    const CancelFlag goOn{false};
    Decoded made;
    const auto image = decodeTiffStriles(*handle, source, *layout, goOn, made.progress, threads);
    if (image)
        made.image = *image;
    return made;
}

QString differenceOf(const Decoded& one, const Decoded& other)
{
    if (one.image.isNull() || other.image.isNull())
        return QStringLiteral("no picture");
    if (one.image.format() != other.image.format() || one.image.colorTable() != other.image.colorTable())
        return QStringLiteral("another format");
    if (one.progress.complete != other.progress.complete || one.progress.drawn != other.progress.drawn)
        return QStringLiteral("another judgement");
    if (std::memcmp(one.image.constBits(), other.image.constBits(), size_t(one.image.sizeInBytes())) != 0)
        return QStringLiteral("other pixels");
    return {};
}

constexpr int allCores = 0;

} // namespace

class TestTiffPage : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void coversThePage_data();
    void coversThePage();
    void sharedBytes();
    void sameOnAllCores_data();
    void sameOnAllCores();
    void sameDamageOnAllCores_data();
    void sameDamageOnAllCores();
    void readsOnAllCores();
    void boundsItsMemory();
    void readsTheCorpus_data();
    void readsTheCorpus();
};

void TestTiffPage::coversThePage_data()
{
    QTest::addColumn<QSize>("page");
    QTest::addColumn<QSize>("strile");
    QTest::addColumn<bool>("tiled");
    QTest::addColumn<bool>("compressed");
    QTest::addColumn<qint64>("rowBytes");
    QTest::addColumn<int>("tallest");
    const auto row = [](const char* name, QSize page, QSize strile, bool tiled, bool compressed,
                        qint64 rowBytes, int tallest) {
        QTest::newRow(name) << page << strile << tiled << compressed << rowBytes << tallest;
    };
    row("one strip", {10, 7}, {10, 7}, false, true, 30, 7);
    row("strips", {10, 7}, {10, 3}, false, true, 30, 3);
    row("tall plain strip in pieces", {200000, 9}, {200000, 9}, false, false, 100000, 2);
    row("plain strips in pieces", {200000, 20}, {200000, 7}, false, false, 100000, 2);
    row("rows larger than a piece", {10, 3}, {10, 3}, false, false, 1 << 20, 1);
    row("tiles", {50, 35}, {16, 16}, true, true, 48, 16);
    row("plain tiles", {50, 35}, {16, 16}, true, false, 1 << 20, 16);
    row("a tile larger than the page", {5, 3}, {16, 16}, true, true, 48, 16);
}

void TestTiffPage::coversThePage()
{
    QFETCH(QSize, page);
    QFETCH(QSize, strile);
    QFETCH(bool, tiled);
    QFETCH(bool, compressed);
    QFETCH(qint64, rowBytes);
    TiffLayout layout;
    layout.stored = page;
    layout.strile = strile;
    layout.tiled = tiled;
    layout.compressed = compressed;
    const TiffPieces pieces(layout, rowBytes);
    QTEST(pieces.tallest(), "tallest");
    const int across = (page.width() + strile.width() - 1) / strile.width();
    QList<int> rowsOfColumn(across, 0); // shown so far
    for (qint64 i = 0; i < pieces.count(); ++i) {
        const TiffPiece piece = pieces.at(i);
        if (piece.rows == 0)
            continue;
        const int column = piece.x / strile.width();
        QCOMPARE(piece.x, column * strile.width());
        QCOMPARE(piece.y, rowsOfColumn[column]);
        QCOMPARE(int(piece.strile), piece.y / strile.height() * across + column);
        QCOMPARE(piece.first, piece.y % strile.height());
        QVERIFY(piece.rows <= pieces.tallest());
        rowsOfColumn[column] += piece.rows;
    }
    for (const int rows : rowsOfColumn)
        QCOMPARE(rows, page.height());
}

void TestTiffPage::sharedBytes()
{
    TiffLayout layout;
    layout.stored = QSize(100, 10);
    layout.tiled = true;
    layout.strile = QSize(16, 16);
    QVERIFY(TiffPieces(layout, 2).areApart());
    layout.strile = QSize(20, 16);
    QVERIFY(!TiffPieces(layout, 3).areApart());
    layout.strile = QSize(100, 16);
    QVERIFY(TiffPieces(layout, 13).areApart());
}

void TestTiffPage::sameOnAllCores_data()
{
    QTest::addColumn<QByteArray>("file");
    const QSize size(901, 700); // enough work for several threads
    const auto made = [](const QImage& picture, const char* kind) {
        return fileMadeBy(QStringLiteral("convert"),
                          words("@in -alpha off") + words(kind) + words("-compress none @"),
                          QStringLiteral("tif"), writePnm(picture));
    };
    const QByteArray color = made(colorPicture(size), "-type TrueColor");
    const QByteArray bits = made(dotPicture(QSize(4001, 3000)), "-monochrome");
    const auto copied = [](const char* options, const QByteArray& file) {
        return fileMadeBy(QStringLiteral("tiffcp"), words(options) + words("@in @"), QStringLiteral("tif"),
                          file);
    };
    for (const char* options :
         {"-c none -r 1000", "-c none -r 7", "-c none -B", "-c lzw:2 -r 16", "-c zip -r 16",
          "-c jpeg:80 -r 16", "-c jpeg:80 -t -w 64 -l 64", "-c lzw -t -w 64 -l 48",
          "-c zip:2 -p separate -r 9", "-c packbits -r 3", "-c lzw -r 1000"})
        QTest::newRow(options) << copied(options, color);
    for (const char* options : {"-c g4 -r 30", "-c lzw -t -w 48 -l 16", "-c g3:2d -r 11"})
        QTest::addRow("bits, %s", options) << copied(options, bits);
}

void TestTiffPage::sameOnAllCores()
{
    QFETCH(QByteArray, file);
    const Decoded serial = decodedBy(file, 1);
    QVERIFY(serial.progress.complete && serial.progress.drawn);
    QCOMPARE(differenceOf(decodedBy(file, allCores), serial), QString());
    QCOMPARE(difference(serial.image, readByMagick(file, QStringLiteral("tiff"))), QString());
}

void TestTiffPage::sameDamageOnAllCores_data()
{
    sameOnAllCores_data();
}

void TestTiffPage::sameDamageOnAllCores()
{
    QFETCH(QByteArray, file);
    file = directoryFirst(file);
    const qsizetype begin = file.size() / 4;
    for (const qsizetype at : {begin, file.size() / 2, file.size() - 50})
        file.replace(at, 6, QByteArray::fromHex("ff00fe01aa55"));
    for (const qsizetype length : {file.size(), file.size() * 2 / 3}) {
        const QByteArray broken = file.left(length);
        const Decoded serial = decodedBy(broken, 1);
        if (length == file.size())
            QVERIFY(serial.progress.drawn); // a cut may take all of a plane, without which nothing shows
        else
            QVERIFY(!serial.progress.complete);
        QCOMPARE(differenceOf(decodedBy(broken, allCores), serial), QString());
    }
}

void TestTiffPage::readsOnAllCores()
{
    const auto file = tiffCodec().encode(colorPicture(QSize(901, 700)), QStringLiteral("tif"), {});
    QVERIFY(file);
    const size_t wanted = std::min(std::thread::hardware_concurrency(), 2U);
    std::mutex mutex;
    std::condition_variable joined;
    std::set<std::thread::id> readers;
    const auto directory = qFromLittleEndian<quint32>(file->constData() + 4); // behind the strips
    const auto source = std::make_shared<WatchedSource>(*file, [&](qint64 offset) {
        std::unique_lock lock(mutex);
        readers.insert(std::this_thread::get_id());
        joined.notify_all();
        if (offset >= 8 && offset < directory) // nobody reads on alone before the others have come
            joined.wait_for(lock, std::chrono::seconds(10), [&] { return readers.size() >= wanted; });
    });
    const auto decoder = tiffCodec().open(source);
    QVERIFY(decoder);
    const CancelFlag goOn{false};
    QVERIFY((*decoder)->decode(1, {}, goOn));
    QVERIFY(readers.size() >= wanted);
}

void TestTiffPage::boundsItsMemory()
{
    TiffLayout layout;
    layout.stored = QSize(1000, 1000);
    const qint64 most = Limits::machine().maxBytes;
    QVERIFY(checkTiffMemory(layout, QImage::Format_RGB32, most - 4'000'000));
    const Status refused = checkTiffMemory(layout, QImage::Format_RGB32, most - 3'999'999);
    QVERIFY(!refused);
    QCOMPARE(refused.error().kind, ErrorKind::TooLarge);
}

void TestTiffPage::readsTheCorpus_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("pixels");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("tolerance");
    for (const Fixture& fixture : tiffCorpus())
        QTest::newRow(qPrintable(fixture.name))
            << fixture.file << fixture.expected.pixels << fixture.expected.size << fixture.tolerance;
}

void TestTiffPage::readsTheCorpus()
{
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, pixels);
    QFETCH(QSize, size);
    QFETCH(int, tolerance);
    QVERIFY(!size.isEmpty());
    const auto picture = decodeBytes(tiffCodec(), file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(firstDifference(rgbaOf(picture->image), Rgba{size, pixels}, tolerance), QString());
}

QTEST_GUILESS_MAIN(TestTiffPage)
#include "tst_tiffpage.moc"
