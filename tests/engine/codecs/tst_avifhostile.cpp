// AVIF and HEIF files that lie about what they hold: libheif, which can be told no limits, must not see them.
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
