// AVIF and HEIF files that lie about how many pictures, frames and slices they hold, and how large those are.
#include "corpus/MapTools.h"
#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/avif/HeifFields.h"
#include "engine/codecs/avif/HeifItems.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HeifMaker.h"
#include "HeifSizes.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// One coded picture of heif-enc's, to be put together anew.
struct CodedHevc
{
    explicit CodedHevc(QSize size)
    {
        const QByteArray map =
            QStringLiteral("P6 %1 %2 255\n").arg(size.width()).arg(size.height()).toLatin1();
        const QByteArray flat(qsizetype(3) * size.width() * size.height(), 'x');
        const QByteArray file =
            converted("heif-enc -q 50 @in -o @out", piped("pnmtopng -quiet", map + flat), "png", "heic");
        const auto items = heifItems(file);
        if (!items || !items->primary)
            return;
        const HeifItem item = items->items.value(*items->primary);
        stream = heifPieces(file, *items, item).bytes(0, file.size());
        for (const int index : item.properties) {
            const HeifProperty& property = items->properties[index];
            // Deep copies: the items lie in the file.
            if (property.name == "hvcC")
                configuration = QByteArray(property.content.constData(), property.content.size());
            else if (property.name == "ispe")
                told = fullHeifBox("ispe", 0, property.content.mid(4));
        }
        for (qsizetype at = 0; at + 6 < stream.size();) {
            const auto length = qsizetype(HeifFields(stream, at).take(4));
            if ((uchar(stream[at + 4]) >> 1 & 63) < 32)
                slice = stream.mid(at, 4 + length);
            at += 4 + length;
        }
    }

    /// The file whose configuration holds the slice so many times, and its stream so many times more than
    /// once.
    QByteArray withSlices(int configured, int more) const
    {
        QByteArray configuring = configuration;
        if (configured > 0) {
            configuring[22] = char(uchar(configuring[22]) + 1);
            const QByteArray unit = slice.mid(2); // its length in two bytes
            configuring += slice.mid(4, 1) + heifNumber(quint64(configured), 2) + unit.repeated(configured);
        }
        return HeifParts{{{1, "hvc1", stream + slice.repeated(more), hex("0102")}},
                         {told, heifBox("hvcC", configuring)},
                         {},
                         {}}
            .bytes();
    }

    QByteArray stream;
    QByteArray slice; ///< behind its length in four bytes
    QByteArray configuration;
    QByteArray told;
};

} // namespace

class TestAvifCounts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void cleanup() { Limits::setMachineBytes(0); }
    void refusesWhatAnIntCannotCount_data();
    void refusesWhatAnIntCannotCount();
    void findsFramesLargerThanTheirSequence_data();
    void findsFramesLargerThanTheirSequence();
    void findsTheLargestHeader_data();
    void findsTheLargestHeader();
    void countsPictures_data();
    void countsPictures();
    void refusesManyPicturesInOneItem_data();
    void refusesManyPicturesInOneItem();
    void refusesManySlicesInOneItem_data();
    void refusesManySlicesInOneItem();
    void joinsPieces();
    void looksOnlyAtThePrimaryItem();
    void stopsLookingAtUnits();
};

void TestAvifCounts::refusesWhatAnIntCannotCount_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("8 bits") << derivedHeif("grid", heifGrid(28000, 28000), 28000, 28000).bytes();
    HeifParts deep = derivedHeif("grid", heifGrid(20000, 20000), 20000, 20000);
    deep.properties[2] = av1Deep;
    QTest::newRow("10 bits") << deep.bytes();
    // Fits but for the rows that planes are filled up by.
    QTest::newRow("filled up") << derivedHeif("iovl", heifOverlay(65500, 10923), 65500, 10923).bytes();
}

void TestAvifCounts::refusesWhatAnIntCannotCount()
{
    QFETCH(QByteArray, file);
    Limits::setMachineBytes(qint64(1) << 50);
    const auto decoder = avifCodec().open(ByteSource::fromBytes(file));
    const Result<PageHeader> header = decoder ? (*decoder)->header(1) : decoder.error();
    QVERIFY(!header);
    QCOMPARE(header.error().kind, ErrorKind::TooLarge);
}

void TestAvifCounts::findsFramesLargerThanTheirSequence_data()
{
    QTest::addColumn<QByteArray>("configuration");
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QSize>("size");
    // A sequence of 16 x 16 with sides of 13 bits, and key frames that are shown.
    const QByteArray sequence = hex("0a0a") + bitsOf("000 0 0 0 0 00000 000000000000 00000 1100 1100"
                                                     "0000000001111 0000000001111 0 000 0000 0 11 1");
    const QByteArray same = hex("3210") + bitsOf("0001 0 0 0 1").leftJustified(16, '\x55');
    const QByteArray larger =
        hex("3210") + bitsOf("0001 0 0 1 0111111111111 1111111111111 1").leftJustified(16, '\x55');
    const QByteArray layered =
        hex("360810") + bitsOf("0001 0 0 1 0111111111111 1111111111111 1").leftJustified(16, '\x55');
    const QByteArray header = hex("1a06101111111111") + hex("1a06") + larger.mid(2, 6);
    QTest::newRow("none") << QByteArray() << sequence + same << QSize(16, 16);
    QTest::newRow("first") << QByteArray() << sequence + larger << QSize(4096, 8192);
    QTest::newRow("second") << QByteArray() << sequence + same + larger << QSize(4096, 8192);
    QTest::newRow("of a layer") << QByteArray() << sequence + layered << QSize(4096, 8192);
    QTest::newRow("header alone") << QByteArray() << sequence + header << QSize(4096, 8192);
    QTest::newRow("header in the configuration") << sequence << larger << QSize(4096, 8192);
    QTest::newRow("all in the configuration") << sequence + larger << same << QSize(4096, 8192);
    QTest::newRow("behind a reduced header") << QByteArray() << sequence16 + larger << QSize(16, 16);
    QTest::newRow("behind another header")
        << QByteArray() << sequence + same + sequence16 + larger << QSize(16, 16);
    QTest::newRow("before any header") << QByteArray() << larger + sequence << QSize(16, 16);
}

/// The decoder would make room for such a frame, whatever is told.
void TestAvifCounts::findsFramesLargerThanTheirSequence()
{
    QFETCH(QByteArray, configuration);
    QFETCH(QByteArray, stream);
    QFETCH(QSize, size);
    HeifParts parts = plainHeif(hex("1200") + stream);
    parts.properties[1] = heifBox("av1C", hex("81200000") + configuration);
    QCOMPARE(heifCodedSizes(parts.bytes()), QList<QSize>{size});
    if (size != QSize(16, 16))
        QCOMPARE(refusalFault(avifCodec(), parts.bytes(), ErrorKind::Damaged), QString());
}

void TestAvifCounts::findsTheLargestHeader_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<QSize>("size");
    QTest::newRow("small") << stream16 << QSize(16, 16);
    QTest::newRow("large") << sequence4096 << QSize(4096, 4096);
    QTest::newRow("large behind small") << sequence16 + sequence4096 << QSize(4096, 4096);
    QTest::newRow("small behind large") << sequence4096 + sequence16 << QSize(4096, 4096);
    QTest::newRow("large behind a frame") << stream16 + sequence4096 << QSize(4096, 4096);
    QTest::newRow("large behind padding")
        << sequence16 + hex("7a808008") + QByteArray(128 * 1024, '\x55') + sequence4096 << QSize(4096, 4096);
}

void TestAvifCounts::findsTheLargestHeader()
{
    QFETCH(QByteArray, stream);
    qint64 glances = heifGlances;
    QTEST(av1Stream(stream, glances).size, "size");
    // The same in pieces of three bytes.
    HeifPieces pieces;
    for (qsizetype at = 0; at < std::min<qsizetype>(stream.size(), 100); at += 3)
        pieces.append(stream.mid(at, 3));
    pieces.append(stream.mid(pieces.size()));
    glances = heifGlances;
    QTEST(av1Stream(pieces, glances).size, "size");
}

void TestAvifCounts::countsPictures_data()
{
    QTest::addColumn<QByteArray>("stream");
    QTest::addColumn<bool>("hevc");
    QTest::addColumn<int>("pictures");
    QTest::newRow("AV1") << stream16 << false << 1;
    QTest::newRow("AV1, none") << hex("1200") + sequence16 << false << 0;
    QTest::newRow("AV1, layers") << stream16 + frame16 + frame16 << false << 3;
    QTest::newRow("AV1, headers alone") << hex("1a01001a0100") << false << 2;
    QTest::newRow("AV1, repeated header") << hex("3a0100") << false << 1;
    QTest::newRow("AV1, groups of tiles, metadata, padding") << hex("220100 2a0100 7a0100") << false << 0;
    QTest::newRow("AV1, frame without a length") << hex("30abcd") << false << 1;
    // The first slice of a picture, and one that is not.
    QTest::newRow("HEVC, first slices") << hex("00000003 2801ac 00000003 2801ac") << true << 2;
    QTest::newRow("HEVC, other slices") << hex("00000003 2801ac 00000003 280130") << true << 2;
    QTest::newRow("HEVC, kinds of slices") << hex("00000002 0001 00000002 0201 00000002 3e01") << true << 3;
    QTest::newRow("HEVC, no slices") << hex("00000002 4001 00000002 4401 00000002 4e01") << true << 0;
    QTest::newRow("HEVC, empty units") << hex("00000000 00000001 28") << true << 0;
}

void TestAvifCounts::countsPictures()
{
    QFETCH(QByteArray, stream);
    QFETCH(bool, hevc);
    qint64 glances = 1000;
    const HeifStream found = hevc ? hevcStream(stream, glances) : av1Stream(stream, glances);
    QTEST(int(found.pictures), "pictures");
}

/// Layers are honest; frames are decoded even where nothing shows them.
void TestAvifCounts::refusesManyPicturesInOneItem_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<bool>("good");
    QTest::newRow("four layers") << plainHeif(stream16 + frame16.repeated(3)).bytes() << true;
    QTest::newRow("as many as a stamp may have")
        << plainHeif(stream16 + frame16.repeated(255)).bytes() << true;
    QTest::newRow("more") << plainHeif(stream16 + frame16.repeated(256)).bytes() << false;
    QTest::newRow("more, before the shown one")
        << plainHeif(hex("1200") + sequence16 + frame16.repeated(256) + frame16).bytes() << false;
    HeifParts parts = plainHeif();
    parts.properties[1] = heifBox("av1C", hex("81200000") + sequence16 + frame16.repeated(256));
    QTest::newRow("more, in the configuration") << parts.bytes() << false;
    parts = derivedHeif("iovl", heifOverlay(16, 16, true, 20));
    parts.references = heifReference("dimg", 1, QList<int>(20, 2));
    parts.items[1].bytes = stream16 + frame16.repeated(9);
    QTest::newRow("ten in each of twenty parts") << parts.bytes() << true;
    parts.items[1].bytes = stream16 + frame16.repeated(19);
    QTest::newRow("twenty in each of twenty parts") << parts.bytes() << false;
}

void TestAvifCounts::refusesManyPicturesInOneItem()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, good);
    const auto picture = decoded(avifCodec(), file);
    QVERIFY2(bool(picture) == good, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture || picture.error().kind == ErrorKind::Damaged);
}

void TestAvifCounts::refusesManySlicesInOneItem_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("configured");
    QTest::addColumn<int>("more");
    QTest::addColumn<bool>("good");
    // A stamp may have 256, a picture of 512 x 512 eight for its size and 256 more in any case.
    const QSize stamp(64, 64);
    const QSize large(512, 512);
    QTest::newRow("one") << stamp << 0 << 0 << true;
    QTest::newRow("eight") << stamp << 0 << 7 << true;
    QTest::newRow("many on a stamp") << stamp << 0 << 300 << false;
    QTest::newRow("many in the configuration") << stamp << 300 << 0 << false;
    QTest::newRow("both together") << stamp << 150 << 150 << false;
    QTest::newRow("large, the most") << large << 0 << 263 << true;
    QTest::newRow("large, too many") << large << 0 << 264 << false;
}

void TestAvifCounts::refusesManySlicesInOneItem()
{
    QFETCH(QSize, size);
    QFETCH(int, configured);
    QFETCH(int, more);
    QFETCH(bool, good);
    const CodedHevc coded(size);
    QVERIFY(!coded.slice.isEmpty() && !coded.configuration.isEmpty() && !coded.told.isEmpty());
    const auto picture = decoded(avifCodec(), coded.withSlices(configured, more));
    QVERIFY2(bool(picture) == good, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture || picture.error().kind == ErrorKind::Damaged);
}

void TestAvifCounts::joinsPieces()
{
    HeifPieces pieces;
    QCOMPARE(pieces.bytes(0, 5), QByteArray());
    for (const char* piece : {"abc", "", "d", "efgh"})
        pieces.append(piece);
    const QByteArray whole = "abcdefgh";
    QCOMPARE(pieces.size(), qint64(whole.size()));
    for (qsizetype at = 0; at <= whole.size() + 1; ++at) {
        for (qsizetype count = 0; count <= whole.size() + 1; ++count)
            QCOMPARE(pieces.bytes(at, count), whole.mid(std::min(at, whole.size()), count));
    }
}

void TestAvifCounts::looksOnlyAtThePrimaryItem()
{
    HeifParts parts = plainHeif();
    parts.items.append({2, "av01", sequence4096, hex("02")});
    QCOMPARE(heifCodedSizes(parts.bytes()), QList<QSize>{QSize(16, 16)});
    QVERIFY(decoded(avifCodec(), parts.bytes()));
    // But at what gives it alpha.
    parts.references = heifReference("auxl", 2, {1});
    QCOMPARE(heifCodedSizes(parts.bytes()), (QList<QSize>{QSize(16, 16), QSize(4096, 4096)}));
}

void TestAvifCounts::stopsLookingAtUnits()
{
    qint64 glances = 1000;
    QCOMPARE(av1Stream(stream16 + hex("1200").repeated(1000) + sequence4096, glances).size, QSize(16, 16));
    QVERIFY(glances < 0);
    glances = 1000;
    QCOMPARE(hevcStream(QByteArray(4000, '\0'), glances).size, QSize());
    QVERIFY(glances < 0);
    glances = 1000;
    QCOMPARE(av1Stream(stream16, glances).size, QSize(16, 16));
    QVERIFY(glances > 900);
}

QTEST_GUILESS_MAIN(TestAvifCounts)
#include "tst_avifcounts.moc"
