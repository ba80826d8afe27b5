#include "corpus/Corpus.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray word(int value)
{
    return QByteArray(1, char(value & 255)) + char(value >> 8 & 255);
}

QByteArray longWord(qint64 value)
{
    return word(int(value & 0xFFFF)) + word(int(value >> 16 & 0xFFFF));
}

struct Slot
{
    QByteArray content;
    int width = 2;
    int height = 2;
    int bits = 24;
    int reserved = 0;
    qint64 offset = -1; ///< where the content stands, unless it lies elsewhere
    int planes = 1;
};

QByteArray icon(const QList<Slot>& slotList, int type = 1)
{
    QByteArray directory = word(0) + word(type) + word(int(slotList.size()));
    QByteArray content;
    for (const Slot& slot : slotList) {
        const qint64 offset = slot.offset >= 0 ? slot.offset : 6 + 16 * slotList.size() + content.size();
        directory += QByteArray(1, char(slot.width)) + char(slot.height) + '\0' + char(slot.reserved);
        directory += word(slot.planes) + word(slot.bits) + longWord(std::max<qint64>(slot.content.size(), 1));
        directory += longWord(offset);
        content += slot.content;
    }
    return directory + content;
}

/// A bitmap of 24 bits in one colour, with a mask of nothing.
QByteArray bitmap(int width, int height, int red, bool masked = true)
{
    const int rowBytes = (width * 24 + 31) / 32 * 4;
    QByteArray out = longWord(40) + longWord(width) + longWord(masked ? 2 * height : height) + word(1) +
                     word(24) + QByteArray(24, '\0');
    for (int y = 0; y < height; ++y) {
        QByteArray row;
        for (int x = 0; x < width; ++x)
            row += QByteArray(2, '\0') + char(red);
        out += row.leftJustified(rowBytes, '\0');
    }
    return out + (masked ? QByteArray((width + 31) / 32 * 4 * height, '\0') : QByteArray());
}

QByteArray png(QSize size)
{
    return outputOf(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("png24:-")},
                    writePnm(colorPicture(size)));
}

QImage readByIcotool(const QByteArray& file)
{
    QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("in.ico"));
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(file) != file.size())
        return {};
    out.close();
    return QImage::fromData(outputOf(
        QStringLiteral("icotool"), {QStringLiteral("-x"), QStringLiteral("-o"), QStringLiteral("-"), path}));
}

} // namespace

class TestIcoCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void tellsTheDepth_data();
    void tellsTheDepth();
    void choosesTheBest_data();
    void choosesTheBest();
    void keepsBitsAndPalettes();
    void readsFiveBitsAChannel();
    void takesTheMaskWhereNoAlphaIs();
    void readsCursors();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesEveryFormat_data();
    void writesEveryFormat();
    void makesLargePicturesSmaller_data();
    void makesLargePicturesSmaller();
    void keepsClearPicturesClear();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = icoCodec();
};

void TestIcoCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("known");
    const auto add = [](const char* name, const QByteArray& head, bool known, const char* extension = "") {
        QTest::newRow(name) << head << QString::fromLatin1(extension) << known;
    };
    const Slot good = {bitmap(2, 2, 9)};
    add("icon", icon({good}), true);
    add("icon by another name", icon({good}), true, "tga");
    add("two entries", icon({good, good}), true);
    add("many entries, cut at 1024 bytes", icon(QList<Slot>(100, good)).left(1024), true);
    add("no entry", icon({}), false, "ico");
    add("entry cut short", icon({good}).left(21), false, "ico");
    add("cursor", icon({good}, 2), true, "cur");
    add("cursor named as an icon", icon({good}, 2), true, "ico");
    add("what may be a TGA", icon({good}, 2), false, "tga");
    add("what may be a TGA, no name", icon({good}, 2), false);
    add("type 3", icon({good}, 3), false, "ico");
    Slot odd = good;
    odd.reserved = 255;
    add("reserved byte 255", icon({odd}), true);
    odd.reserved = 7;
    add("reserved byte 7", icon({odd}), false);
    add("reserved byte 7, by its name", icon({odd}), true, "ico");
    odd = good;
    odd.bits = 0;
    odd.planes = 0;
    add("no depth told", icon({odd}), true);
    odd.bits = 33;
    add("33 bits", icon({odd}), false);
    add("33 bits, by its name", icon({odd}), true, "ico");
    odd.bits = 256;
    add("256 for the bits, by its name", icon({odd}), true, "cur");
    odd = good;
    odd.planes = 99;
    add("99 planes", icon({odd}), false);
    add("99 planes, by its name", icon({odd}), true, "ico");
    odd = good;
    odd.offset = 21;
    add("content in the directory", icon({odd}), false, "ico");
    add("second entry makes no sense", icon({good, odd}), false);
    add("second entry makes no sense, by its name", icon({good, odd}), true, "ico");
    add("first entry makes no sense, by its name", icon({odd, good}), true, "ico");
    odd.offset = 0;
    add("null entry, by its name", icon({odd, good}), true, "ico");
    add("null entry alone, by its name", icon({odd}), false, "ico");
    QByteArray noLength = icon({good});
    noLength.replace(14, 4, QByteArray(4, '\0'));
    add("length 0", noLength, false);
    add("length 0, by its name", noLength, true, "ico");
    add("nothing", {}, false, "ico");
    // 300 x 200, 24 bits, unpacked: the usual header of a TGA.
    add("a TGA", QByteArray::fromHex("000002000000000000000000 2c01 c800 1800") + QByteArray(900, 'x'), false,
        "tga");
}

void TestIcoCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, extension);
    QTEST(m_codec.sniff(head, extension), "known");
}

void TestIcoCodec::readsTheCorpus_data()
{
    QTest::addColumn<Fixture>("fixture");
    const std::vector<Fixture> all = icoCorpus();
    QVERIFY(all.size() >= 10);
    for (const Fixture& fixture : all)
        QTest::newRow(qPrintable(fixture.name)) << fixture;
}

void TestIcoCodec::readsTheCorpus()
{
    QFETCH(Fixture, fixture);
    QVERIFY(m_codec.sniff(fixture.file.left(1024), QString()));
    const auto result = decoded(m_codec, fixture.file);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QVERIFY(result->complete && result->isFull());
    if (!fixture.expected.size.isEmpty())
        QCOMPARE(firstDifference(rgbaOf(result->image), fixture.expected, fixture.tolerance), QString());
    QCOMPARE(misbehaviour(m_codec, fixture.file), QString());
}

void TestIcoCodec::tellsTheDepth_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    QTest::newRow("1") << dotPicture(QSize(5, 5)) << 1;
    QTest::newRow("4") << palettePicture(QSize(5, 5), 16) << 4;
    QTest::newRow("8") << palettePicture(QSize(5, 5), 17) << 8;
    QTest::newRow("32") << colorPicture(QSize(5, 5)) << 32;
    QTest::newRow("PNG, 24") << colorPicture(QSize(256, 5)) << 24;
    QTest::newRow("PNG, 32") << alphaPicture(QSize(256, 5)) << 32;
}

void TestIcoCodec::tellsTheDepth()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY(bytes);
    const auto decoder = m_codec.open(ByteSource::fromBytes(*bytes));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    QCOMPARE(header->size, picture.size());
    QTEST(header->bitsPerPixel, "bits");
    const CancelFlag go = false;
    QTEST((*decoder)->decode(1, {}, go)->bitsPerPixel, "bits");
}

void TestIcoCodec::choosesTheBest_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("red"); // of the entry that is to be shown
    const Slot small = {bitmap(4, 4, 1), 4, 4};
    const Slot large = {bitmap(8, 6, 2), 8, 6};
    const Slot wide = {bitmap(300, 2, 3), 44, 2};
    QTest::newRow("largest last") << icon({small, large}) << QSize(8, 6) << 2;
    QTest::newRow("largest first") << icon({large, small}) << QSize(8, 6) << 2;
    QTest::newRow("wider than the directory can tell") << icon({large, wide}) << QSize(300, 2) << 3;
    QTest::newRow("same size twice") << icon({{bitmap(4, 4, 7), 4, 4}, small}) << QSize(4, 4) << 7;
    QTest::newRow("directory tells another size")
        << icon({small, {bitmap(8, 6, 2), 1, 1}}) << QSize(8, 6) << 2;
    QTest::newRow("height without a mask") << icon({{bitmap(4, 6, 5, false), 4, 6}}) << QSize(4, 6) << 5;
    QTest::newRow("height without a mask, an entry behind")
        << icon({{bitmap(4, 6, 5, false), 4, 6}, small}) << QSize(4, 6) << 5;
    QTest::newRow("slot tells the height with the mask's rows")
        << icon({{bitmap(8, 6, 5), 8, 12}}) << QSize(8, 6) << 5;
    QTest::newRow("slot tells the height with the mask's rows, an entry behind")
        << icon({{bitmap(8, 6, 5), 8, 12}, {bitmap(8, 5, 4), 8, 5}}) << QSize(8, 6) << 5;
    QTest::newRow("height 0 for 256 means 128 and the mask")
        << icon({{bitmap(128, 128, 5), 0, 0}}) << QSize(128, 128) << 5;
    QTest::newRow("two squares are a picture and its mask")
        << icon({{bitmap(8, 8, 5) + QByteArray(999, '\0'), 8, 16}}) << QSize(8, 8) << 5;
    Slot noPlanes = small;
    noPlanes.content.replace(12, 2, word(0));
    QTest::newRow("0 planes") << icon({noPlanes}) << QSize(4, 4) << 1;
    QTest::newRow("null entry") << icon({Slot{{}, 0, 0, 0, 0, 0}, small}) << QSize(4, 4) << 1;
    Slot broken = large;
    broken.content[0] = 99;
    QTest::newRow("largest has no header") << icon({broken, small}) << QSize(4, 4) << 1;
    Slot cut = large;
    cut.content.truncate(60);
    QTest::newRow("largest is cut short") << icon({small, cut}) << QSize(4, 4) << 1;
    Slot away = large;
    away.offset = 1 << 20;
    QTest::newRow("largest lies behind the end") << icon({away, small}) << QSize(4, 4) << 1;
    QByteArray file = png(QSize(20, 20));
    file.truncate(60);
    QTest::newRow("largest is a PNG of nothing") << icon({small, {file, 20, 20, 32}}) << QSize(4, 4) << 1;
    QByteArray huge = png(QSize(20, 20));
    huge.replace(16, 8, QByteArray::fromHex("7fffffff7fffffff"));
    QTest::newRow("largest is beyond the limits") << icon({{huge, 0, 0, 32}, small}) << QSize(4, 4) << 1;
}

void TestIcoCodec::choosesTheBest()
{
    QFETCH(QByteArray, file);
    QFETCH(QSize, size);
    const auto result = decoded(m_codec, file);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.size(), size);
    QTEST(qRed(result->image.pixel(1, 1)), "red");
    QVERIFY(result->complete);
    QCOMPARE(misbehaviour(m_codec, file), QString());
}

void TestIcoCodec::keepsBitsAndPalettes()
{
    const auto formatOf = [&](const QImage& picture) {
        const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
        const auto result = decoded(m_codec, *bytes);
        return result ? result->image.format() : QImage::Format_Invalid;
    };
    QCOMPARE(formatOf(dotPicture(QSize(9, 9))), QImage::Format_Mono);
    QCOMPARE(formatOf(palettePicture(QSize(9, 9), 9)), QImage::Format_Indexed8);
    QCOMPARE(formatOf(alphaPicture(QSize(9, 9))), QImage::Format_ARGB32);
}

void TestIcoCodec::readsFiveBitsAChannel()
{
    QByteArray content = bitmap(2, 1, 0).left(40);
    content[14] = 16;
    content += word(31 << 10 | 1 << 5 | 16) + word(0x7FFF) + longWord(0x40); // the mask's second pixel is set
    const auto result = decoded(m_codec, icon({{content, 2, 1, 16}}));
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.pixel(0, 0), qRgb(255, 8, 132));
    QCOMPARE(result->image.pixel(1, 0), qRgba(255, 255, 255, 0));
    QCOMPARE(result->bitsPerPixel, 16);
}

void TestIcoCodec::takesTheMaskWhereNoAlphaIs()
{
    QByteArray content = bitmap(2, 1, 0).left(40);
    content[14] = 32;
    const QByteArray noAlpha = content + longWord(0x102030) + longWord(0x405060) + longWord(0x40);
    const auto masked = decoded(m_codec, icon({{noAlpha, 2, 1, 32}}));
    QVERIFY(masked);
    QCOMPARE(masked->image.pixel(0, 0), qRgb(0x10, 0x20, 0x30));
    QCOMPARE(masked->image.pixel(1, 0), qRgba(0x40, 0x50, 0x60, 0));
    const QByteArray alpha = content + longWord(0x80102030) + longWord(0x405060) + longWord(0x80);
    const auto own = decoded(m_codec, icon({{alpha, 2, 1, 32}}));
    QVERIFY(own);
    QCOMPARE(own->image.pixel(0, 0), qRgba(0x10, 0x20, 0x30, 0x80)); // though the mask would clear it
    QCOMPARE(own->image.pixel(1, 0), qRgba(0x40, 0x50, 0x60, 0));
}

void TestIcoCodec::readsCursors()
{
    const auto result = decoded(m_codec, icon({{bitmap(8, 6, 2), 8, 6, 5, 0, -1, 3}}, 2));
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.size(), QSize(8, 6));
    QVERIFY(!m_codec.canEncode(QStringLiteral("cur")));
}

void TestIcoCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const QByteArray& file, ErrorKind kind) {
        QTest::newRow(name) << file << int(kind);
    };
    const Slot good = {bitmap(2, 2, 9)};
    add("directory cut short", icon({good}).left(20), ErrorKind::Damaged);
    add("no content", icon({good}).left(22), ErrorKind::Damaged);
    add("header only", icon({good}).left(62), ErrorKind::Damaged);
    add("no header", icon({{QByteArray(100, 'x')}}), ErrorKind::Damaged);
    Slot packed = good;
    packed.content[14] = 8;
    packed.content[16] = 1;
    add("run length", icon({packed}), ErrorKind::Unsupported);
    Slot deep = good;
    deep.content.replace(4, 8, longWord(70000) + longWord(4));
    add("beyond the limits", icon({deep}), ErrorKind::TooLarge);
    Slot flat = good;
    flat.content.replace(8, 4, longWord(1));
    add("no height", icon({flat}), ErrorKind::Damaged);
}

void TestIcoCodec::refuses()
{
    QFETCH(QByteArray, file);
    const auto result = decoded(m_codec, file);
    QVERIFY(!result);
    QTEST(int(result.error().kind), "kind");
    QVERIFY(!result.error().text.isEmpty());
}

void TestIcoCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("bitmap") << icon({{bitmap(8, 6, 2), 8, 6}});
    QTest::newRow("PNG") << icon({{png(QSize(9, 9)), 9, 9}});
    QTest::newRow("two entries") << icon({{bitmap(8, 6, 2), 8, 6}, {bitmap(4, 4, 1), 4, 4}});
    QTest::newRow("palette and alpha")
        << *icoCodec().encode(palettePicture(QSize(9, 7), 9), QStringLiteral("ico"), {});
    QTest::newRow("alpha") << *icoCodec().encode(alphaPicture(QSize(9, 7)), QStringLiteral("ico"), {});
}

void TestIcoCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QCOMPARE(everyCutFault(m_codec, file), QString());
}

void TestIcoCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(7, 13), QSize(33, 20), QSize(255, 3), QSize(256, 256)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        QTest::newRow(name("bits").constData()) << dotPicture(size);
        QTest::newRow(name("palette of 3").constData()) << palettePicture(size, 3);
        QTest::newRow(name("palette of 256").constData()) << palettePicture(size, 256);
        QTest::newRow(name("grey").constData()) << greyPicture(size);
        QTest::newRow(name("colour").constData()) << colorPicture(size);
        QTest::newRow(name("alpha").constData()) << alphaPicture(size);
    }
    QImage clear = palettePicture(QSize(20, 20), 5);
    clear.setColor(2, qRgba(0, 100, 200, 128));
    QTest::newRow("a half transparent entry") << clear;
}

void TestIcoCodec::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    const QImage wanted = picture.convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("ico")), wanted, true), QString());
    QCOMPARE(difference(readByIcotool(*bytes), wanted, true), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, wanted, true), QString());
}

void TestIcoCodec::writesEveryFormat_data()
{
    QTest::addColumn<int>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::newRow(qPrintable(QString::number(format))) << format;
}

void TestIcoCodec::writesEveryFormat()
{
    QFETCH(int, format);
    const QImage picture = alphaPicture(QSize(19, 11)).convertToFormat(QImage::Format(format));
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    // Some formats without alpha keep stray bits in its place.
    const bool alpha = picture.hasAlphaChannel();
    const QImage wanted = picture.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    QCOMPARE(difference(readByIcotool(*bytes), wanted, true), QString());
}

void TestIcoCodec::makesLargePicturesSmaller_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("stored");
    QTest::newRow("400 x 300") << QSize(400, 300) << QSize(256, 192);
    QTest::newRow("300 x 400") << QSize(300, 400) << QSize(192, 256);
    QTest::newRow("2000 x 1") << QSize(2000, 1) << QSize(256, 1);
    QTest::newRow("257 x 256") << QSize(257, 256) << QSize(256, 255);
    QTest::newRow("256 x 100") << QSize(256, 100) << QSize(256, 100);
}

void TestIcoCodec::makesLargePicturesSmaller()
{
    QFETCH(QSize, size);
    QFETCH(QSize, stored);
    QImage picture = alphaPicture(size);
    picture.fill(qRgba(10, 200, 30, 255));
    for (const QImage& image : {picture, picture.convertToFormat(QImage::Format_RGB32)}) {
        const auto bytes = m_codec.encode(image, QStringLiteral("ico"), {});
        QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
        const QImage seen = readByMagick(*bytes, QStringLiteral("ico"));
        QCOMPARE(seen.size(), stored);
        QCOMPARE(seen.pixel(stored.width() / 2, stored.height() / 2), qRgb(10, 200, 30));
    }
}

void TestIcoCodec::keepsClearPicturesClear()
{
    QImage picture(6, 5, QImage::Format_ARGB32);
    picture.fill(qRgba(1, 2, 3, 0));
    const auto bytes = m_codec.encode(picture, QStringLiteral("ico"), {});
    QVERIFY(bytes);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own);
    QCOMPARE(qAlpha(own->image.pixel(3, 3)), 0);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("ico")), picture, true), QString());
}

void TestIcoCodec::refusesToWrite()
{
    const auto bytes = m_codec.encode(QImage(), QStringLiteral("ico"), {});
    QVERIFY(!bytes);
    QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
    QVERIFY(m_codec.canEncode(QStringLiteral("ico")));
}

void TestIcoCodec::stopsWhenCancelled()
{
    const auto decoder = m_codec.open(ByteSource::fromBytes(icon({{bitmap(8, 6, 2), 8, 6}})));
    QVERIFY(decoder);
    CancelFlag cancel = true;
    const auto result = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    cancel = false;
    QVERIFY((*decoder)->decode(1, QSize(), cancel));
}

void TestIcoCodec::survivesBrokenFiles()
{
    const std::vector<Fixture> parents = icoCorpus();
    for (quint32 seed = 1; seed <= 400; ++seed) {
        const QByteArray& good = parents[seed % parents.size()].file;
        const QString fault = misbehaviour(m_codec, Mutator(good, seed).next());
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

QTEST_GUILESS_MAIN(TestIcoCodec)
#include "tst_icocodec.moc"
