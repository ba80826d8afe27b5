// AVIF and HEIF files that lie about what they hold: libheif, which can be told no limits, must not see them.
#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/avif/HeifFields.h"
#include "engine/codecs/avif/HeifItems.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HeifMaker.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "ProfileFixtures.h"
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

/// The profile that is read of an AVIF of avifenc's, made with `options` and `profile`.
QByteArray profileRead(const QByteArray& profile, const char* options)
{
    const ScratchFiles files;
    const QString icc = files.write(QStringLiteral("x.icc"), profile);
    const QString png = files.write(QStringLiteral("in.png"), samplePng({33, 17}, false));
    runTool(QStringLiteral("avifenc"), words(options) + QStringList{QStringLiteral("--icc"), icc, png,
                                                                    files.path(QStringLiteral("x.avif"))});
    const auto avif = decoded(avifCodec(), files.read(QStringLiteral("x.avif")));
    return avif ? avif->profile : QByteArray("not read");
}

} // namespace

class TestAvifHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void cleanup() { Limits::setMachineBytes(0); }
    void readsHonestFiles_data();
    void readsHonestFiles();
    void refuses_data();
    void refuses();
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
    void neverReadsBeyondABox();
    void fillsUpToTheLastItem_data();
    void fillsUpToTheLastItem();
    void neverGuessesGrey();
    void keepsColoursThatAreCalledGrey();
    void keepsFittingProfiles();
};

void TestAvifHostile::readsHonestFiles_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("plain") << plainHeif().bytes();
    QTest::newRow("grid") << derivedHeif("grid", heifGrid(16, 16)).bytes();
    QTest::newRow("grid, 16 bits") << derivedHeif("grid", heifGrid(16, 16, false)).bytes();
    QTest::newRow("overlay") << derivedHeif("iovl", heifOverlay(16, 16)).bytes();
    QTest::newRow("overlay, 16 bits") << derivedHeif("iovl", heifOverlay(16, 16, false)).bytes();
    QTest::newRow("the same") << derivedHeif("iden", {}).bytes();
    HeifParts tiles = derivedHeif("grid", heifGrid(32, 32, true, 2, 2), 32, 32);
    tiles.references = heifReference("dimg", 1, {2, 2, 2, 2});
    QTest::newRow("grid of one tile, four times") << tiles.bytes();
    QTest::newRow("padded") << plainHeif(hex("1200") + hex("7a04") + "xxxx" + sequence16 + frame16).bytes();
}

void TestAvifHostile::readsHonestFiles()
{
    QFETCH(QByteArray, file);
    const auto picture = decoded(avifCodec(), file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QCOMPARE(picture->bitsPerPixel, 24);
}

void TestAvifHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const int damagedFile = int(ErrorKind::Damaged);
    const int unsupported = int(ErrorKind::Unsupported);
    const int tooLarge = int(ErrorKind::TooLarge);

    // Canvases: within the limits, and beyond.
    QTest::newRow("grid of another size") << derivedHeif("grid", heifGrid(1000, 16)).bytes() << damagedFile;
    QTest::newRow("grid of another size, 16 bits")
        << derivedHeif("grid", heifGrid(16, 1000, false)).bytes() << damagedFile;
    QTest::newRow("grid, huge") << derivedHeif("grid", heifGrid(28000, 28000)).bytes() << tooLarge;
    QTest::newRow("grid, beyond all")
        << derivedHeif("grid", heifGrid(0xFFFFFFFF, 0xFFFFFFFF)).bytes() << tooLarge;
    QTest::newRow("overlay of another size")
        << derivedHeif("iovl", heifOverlay(16, 17)).bytes() << damagedFile;
    QTest::newRow("overlay, huge, 16 bits")
        << derivedHeif("iovl", heifOverlay(40000, 40000, false)).bytes() << tooLarge;
    QTest::newRow("grid of one byte") << derivedHeif("grid", hex("00")).bytes() << damagedFile;

    // Kinds and relations.
    QTest::newRow("unknown kind") << derivedHeif("tmap", heifGrid(16, 16)).bytes() << unsupported;
    HeifParts parts = derivedHeif("iden", {});
    parts.references = heifReference("dimg", 1, {1});
    QTest::newRow("made of itself") << parts.bytes() << damagedFile;
    parts = derivedHeif("iovl", heifOverlay(16, 16, true, 2));
    parts.references = heifReference("dimg", 1, {2, 1});
    QTest::newRow("laid over itself") << parts.bytes() << damagedFile;
    parts.references = heifReference("dimg", 1, {2, 7});
    QTest::newRow("made of one that is not there") << parts.bytes() << damagedFile;
    parts.references = heifReference("dimg", 1, {2}) + heifReference("dimg", 1, {2, 2});
    QTest::newRow("two lists of parts") << parts.bytes() << damagedFile;
    parts = derivedHeif("iovl", heifOverlay(16, 16, true, 1000));
    parts.references = heifReference("dimg", 1, QList<int>(1000, 2));
    QTest::newRow("thousand pictures on a stamp") << parts.bytes() << damagedFile;
    parts = derivedHeif("grid", heifGrid(16, 16));
    parts.items[1] = {2, "iden", {}, hex("02")};
    parts.items.append({3, "av01", stream16, hex("0203")});
    parts.references += heifReference("dimg", 2, {3});
    QTest::newRow("tile that is no coded picture") << parts.bytes() << unsupported;
    parts = derivedHeif("grid", heifGrid(16, 16));
    parts.items[1].properties = hex("02");
    QTest::newRow("tile without a configuration") << parts.bytes() << damagedFile;
    for (const char* bits : {"00", "ffffff", "210808"}) {
        parts = derivedHeif("grid", heifGrid(16, 16));
        parts.properties.append(heifSamplesBox(hex(bits)));
        parts.items[0].properties = hex("0104");
        QTest::addRow("grid of samples of %s bits", bits) << parts.bytes() << damagedFile;
    }

    // Boxes that can be read in two ways.
    const HeifParts good = plainHeif();
    const QByteArray meta =
        fullHeifBox("meta", 0, good.head() + good.places() + good.entries() + good.tail());
    QTest::newRow("two boxes of items") << HeifParts::type() + meta + meta << damagedFile;
    for (const QByteArray& second : {good.places(), good.entries(), fullHeifBox("pitm", 0, heifNumber(1, 2)),
                                     heifBox("idat", "x"), fullHeifBox("iref", 0, {}), heifBox("iprp", {})}) {
        parts = good;
        parts.more = second;
        QTest::addRow("second %s", second.mid(4, 4).constData()) << parts.bytes() << damagedFile;
    }
    parts = good;
    parts.items.append({1, "grid", heifGrid(16, 16), {}});
    QTest::newRow("two types of one item") << parts.withPlaces(good.places()) << damagedFile;
    const auto placed = [&good](int version, const char* text) {
        return good.withPlaces(fullHeifBox("iloc", version, hex(text)));
    };
    QTest::newRow("two places of one item")
        << placed(1, "4400 0002 0001 0001 0000 0001 00000000 00000021 0001 0001 0000 0001 00000000 00000021")
        << damagedFile;
    QTest::newRow("offsets of two bytes")
        << placed(1, "2400 0001 0001 0001 0000 0001 0000 00000021") << unsupported;
    QTest::newRow("lengths of one byte")
        << placed(1, "4100 0001 0001 0001 0000 0001 00000000 21") << unsupported;
    QTest::newRow("index in version 1")
        << placed(1, "4404 0001 0001 0001 0000 0001 00000000 00000000 00000021") << unsupported;
    QTest::newRow("unknown version") << placed(3, "4400 00000001 00000001 0001 0000 0001 00000000 00000021")
                                     << unsupported;
    QTest::newRow("65535 pieces of no bytes") << placed(1, "0000 0001 0001 0001 0000 ffff") << damagedFile;
    QTest::newRow("33 pieces") << placed(1, "4400 0001 0001 0001 0000 0021") << damagedFile;
    QTest::newRow("20001 items") << placed(1, "4400 4e21") << damagedFile;
    QTest::newRow("item beyond any file")
        << placed(1, "8480 0001 0001 0001 0000 ffffffffffffff00 0001 ffffffffffffff00 00000021")
        << damagedFile;
    QTest::newRow("pieces over each other")
        << good.withPlaces(fullHeifBox(
               "iloc", 1, hex("4400 0001 0001 0001 0000 0020") + hex("00000000 00000021").repeated(32)))
        << damagedFile;

    // Streams that announce another size.
    QTest::newRow("larger header") << plainHeif(hex("1200") + sequence4096 + frame16).bytes() << damagedFile;
    QTest::newRow("larger header behind the first")
        << plainHeif(hex("1200") + sequence16 + sequence4096 + frame16).bytes() << damagedFile;
    const QByteArray padding = hex("7a808008") + QByteArray(128 * 1024, '\x55');
    QTest::newRow("larger header behind padding")
        << plainHeif(hex("1200") + sequence16 + padding + sequence4096 + frame16).bytes() << damagedFile;
    QTest::newRow("no header") << plainHeif(hex("1200") + frame16).bytes() << damagedFile;
    QTest::newRow("units without end")
        << plainHeif(stream16 + hex("1200").repeated(heifGlances / glanceOfHeifUnit)).bytes() << damagedFile;

    parts = plainHeif();
    parts.properties.append(parts.properties[1]);
    parts.items[0].properties = hex("010203");
    parts.items[0].properties.append(char(parts.properties.size()));
    QTest::newRow("two configurations") << parts.bytes() << damagedFile;
}

void TestAvifHostile::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(misbehaviour(avifCodec(), file), QString());
    QCOMPARE(refusalFault(avifCodec(), file, ErrorKind(kind)), QString());
}

void TestAvifHostile::refusesWhatAnIntCannotCount_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("8 bits") << derivedHeif("grid", heifGrid(28000, 28000), 28000, 28000).bytes();
    HeifParts deep = derivedHeif("grid", heifGrid(20000, 20000), 20000, 20000);
    deep.properties[2] = av1Deep;
    QTest::newRow("10 bits") << deep.bytes();
    // Fits but for the rows that planes are filled up by.
    QTest::newRow("filled up") << derivedHeif("iovl", heifOverlay(65500, 10923), 65500, 10923).bytes();
}

void TestAvifHostile::refusesWhatAnIntCannotCount()
{
    QFETCH(QByteArray, file);
    Limits::setMachineBytes(qint64(1) << 50);
    const auto decoder = avifCodec().open(ByteSource::fromBytes(file));
    const Result<PageHeader> header = decoder ? (*decoder)->header(1) : decoder.error();
    QVERIFY(!header);
    QCOMPARE(header.error().kind, ErrorKind::TooLarge);
}

void TestAvifHostile::findsFramesLargerThanTheirSequence_data()
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
void TestAvifHostile::findsFramesLargerThanTheirSequence()
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

void TestAvifHostile::findsTheLargestHeader_data()
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

void TestAvifHostile::findsTheLargestHeader()
{
    QFETCH(QByteArray, stream);
    QTEST(av1Stream(stream).size, "size");
    // The same in pieces of three bytes.
    HeifPieces pieces;
    for (qsizetype at = 0; at < std::min<qsizetype>(stream.size(), 100); at += 3)
        pieces.append(stream.mid(at, 3));
    pieces.append(stream.mid(pieces.size()));
    QTEST(av1Stream(pieces).size, "size");
}

void TestAvifHostile::countsPictures_data()
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

void TestAvifHostile::countsPictures()
{
    QFETCH(QByteArray, stream);
    QFETCH(bool, hevc);
    qint64 glances = 1000;
    const HeifStream found = hevc ? hevcStream(stream, glances) : av1Stream(stream, glances);
    QTEST(int(found.pictures), "pictures");
}

/// Layers are honest; frames are decoded even where nothing shows them.
void TestAvifHostile::refusesManyPicturesInOneItem_data()
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

void TestAvifHostile::refusesManyPicturesInOneItem()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, good);
    const auto picture = decoded(avifCodec(), file);
    QVERIFY2(bool(picture) == good, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture || picture.error().kind == ErrorKind::Damaged);
}

void TestAvifHostile::refusesManySlicesInOneItem_data()
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

void TestAvifHostile::refusesManySlicesInOneItem()
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

void TestAvifHostile::joinsPieces()
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

void TestAvifHostile::looksOnlyAtThePrimaryItem()
{
    HeifParts parts = plainHeif();
    parts.items.append({2, "av01", sequence4096, hex("02")});
    QCOMPARE(heifCodedSizes(parts.bytes()), QList<QSize>{QSize(16, 16)});
    QVERIFY(decoded(avifCodec(), parts.bytes()));
    // But at what gives it alpha.
    parts.references = heifReference("auxl", 2, {1});
    QCOMPARE(heifCodedSizes(parts.bytes()), (QList<QSize>{QSize(16, 16), QSize(4096, 4096)}));
}

void TestAvifHostile::stopsLookingAtUnits()
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

void TestAvifHostile::neverReadsBeyondABox()
{
    const QByteArray wide = hex("00000001") + "infe" + hex("ffffffffffffffff");
    for (qsizetype length = 8; length < 16; ++length) {
        bool called = false;
        const QByteArray cut = wide.left(length);
        QVERIFY(forEachHeifBox(cut, 0, [&called](const QByteArray&, const QByteArray&) { called = true; }));
        QVERIFY(!called);
        HeifParts parts = plainHeif();
        parts.more = cut;
        QCOMPARE(misbehaviour(avifCodec(), parts.bytes()), QString());
        const QByteArray types = fullHeifBox("iinf", 0, heifNumber(1, 2) + cut);
        QVERIFY(heifItems(HeifParts::type() + fullHeifBox("meta", 0, types)));
    }
    // Boxes that end before their first number.
    for (const char* name : {"iinf", "iloc", "iref", "pitm", "iprp", "idat"})
        QVERIFY(heifItems(HeifParts::type() + fullHeifBox("meta", 0, heifBox(name, {}))));
    const QByteArray many = heifBox("free", {}).repeated(mostHeifBoxes);
    const auto nothing = [](const QByteArray&, const QByteArray&) {};
    QVERIFY(forEachHeifBox(many, 0, nothing));
    QVERIFY(!forEachHeifBox(many + heifBox("free", {}), 0, nothing));
}

void TestAvifHostile::fillsUpToTheLastItem_data()
{
    QTest::addColumn<quint32>("length");
    QTest::addColumn<quint32>("promised");
    QTest::addColumn<int>("missing");
    QTest::newRow("whole") << 33U << 41U << 0;
    QTest::newRow("cut") << 133U << 141U << 100;
    QTest::newRow("promises too much") << 33U << 0xFFFFFFF0U << 0;
    QTest::newRow("cut, promises too much") << 133U << 0xFFFFFFF0U << 100;
    QTest::newRow("asks for too much") << 0xFFFFFFF0U << 141U << 100;
}

void TestAvifHostile::fillsUpToTheLastItem()
{
    QFETCH(quint32, length);
    QFETCH(quint32, promised);
    const HeifParts parts = plainHeif();
    const auto placed = [&](quint64 offset) {
        return parts.withPlaces(fullHeifBox(
            "iloc", 1, hex("4400 0001 0001 0000 0000 0001") + heifNumber(offset, 4) + heifNumber(length, 4)));
    };
    const QByteArray file =
        placed(quint64(placed(0).size()) + 8) + heifNumber(promised, 4) + "mdat" + stream16;
    const auto items = heifItems(file);
    QVERIFY(items);
    QTEST(int(wantedHeifLength(file, *items) - file.size()), "missing");
    QCOMPARE(misbehaviour(avifCodec(), file), QString());
}

void TestAvifHostile::neverGuessesGrey()
{
    HeifParts parts = plainHeif();
    parts.properties.append(heifSamplesBox(hex("08")));
    for (const char* properties : {"0102", "010203"}) {
        parts.items[0].properties = hex(properties);
        const auto picture = decoded(avifCodec(), parts.bytes());
        QVERIFY(picture);
        QCOMPARE(picture->bitsPerPixel, 24);
        QCOMPARE(picture->image.format(), QImage::Format_RGB32);
    }
}

void TestAvifHostile::keepsColoursThatAreCalledGrey()
{
    const QByteArray good =
        converted("avifenc -j 1 -s 8 -l @in @out", samplePng({33, 17}, false), "png", "avif");
    QByteArray lying = good;
    const qsizetype at = lying.indexOf("av1C");
    QVERIFY(at > 0);
    lying[at + 6] = char(uchar(lying[at + 6]) | 0x10);
    const auto picture = decoded(avifCodec(), lying);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QCOMPARE(rgbaOf(picture->image).pixels, rgbaOf(decoded(avifCodec(), good)->image).pixels);
}

void TestAvifHostile::keepsFittingProfiles()
{
    const QByteArray rgb = rgbProfile(wideGamut);
    const QByteArray gray = grayProfile(1.8);
    QCOMPARE(profileRead(rgb, "-l -j 1"), rgb);
    QCOMPARE(profileRead(rgb, "-y 400 -j 1"), rgb);
    QCOMPARE(profileRead(gray, "-y 400 -j 1"), gray);
    QCOMPARE(profileRead(gray, "-l -j 1"), QByteArray());
    QCOMPARE(profileRead(cmykProfile(), "-l -j 1"), QByteArray());
    QCOMPARE(profileRead(labProfile(), "-l -j 1"), QByteArray());
    QCOMPARE(profileRead("no profile at all", "-l -j 1"), QByteArray());
}

QTEST_GUILESS_MAIN(TestAvifHostile)
#include "tst_avifhostile.moc"
