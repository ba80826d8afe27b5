#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"
#include "SoftimageMaker.h"
#include "StbReader.h"
#include "WritingRows.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <QTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

const Codec& codec = softimageCodec();
const QString pic = QStringLiteral("pic");

SoftimageMaker makerOf(QSize size, std::vector<SoftimageMaker::Packet> packets)
{
    SoftimageMaker maker;
    maker.picture = runPicture(size);
    maker.packets = std::move(packets);
    return maker;
}

template <class T>
QByteArray little(T value)
{
    const T stored = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&stored), sizeof stored);
}

/// A picture of the first Animator, 5 x 3: entry i is (i / 4, 63 - i / 4, 21), pixel i of value 50 * i % 256.
QByteArray animatorFile()
{
    QByteArray file =
        QByteArray::fromHex("1991") + little<quint16>(5) + little<quint16>(3) + little<quint32>(0);
    file += QByteArray::fromHex("0800") + little<quint32>(15);
    file = file.leftJustified(32, '\0');
    for (int i = 0; i < 256; ++i)
        file += QByteArray(1, char(i / 4)) + char(63 - i / 4) + char(21);
    for (int i = 0; i < 15; ++i)
        file.append(char(50 * i));
    return file;
}

QByteArray block(int type, const QByteArray& data)
{
    return little<quint32>(quint32(6 + data.size())) + little<quint16>(quint16(type)) + data;
}

/// A picture (8 bits) or mask (1 bit) of Animator Pro around `blocks`.
QByteArray animatorProFile(QSize size, int bits, const QByteArray& blocks)
{
    QByteArray file = little<quint32>(quint32(64 + blocks.size())) + QByteArray::fromHex("0095");
    file += little<quint16>(quint16(size.width())) + little<quint16>(quint16(size.height()));
    file += QByteArray(8, '\0') + char(bits);
    return file.leftJustified(64, '\0') + blocks;
}

QByteArray proPalette()
{
    QByteArray palette(2, '\0');
    for (int i = 0; i < 256; ++i)
        palette += QByteArray(1, char(i)) + char(255 - i) + char(7);
    return palette;
}

} // namespace

class TestSoftimageCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsTheCorpus_data();
    void readsTheCorpus();
    void skipsChannelsForOtherUses();
    void takesRunsBeyondTheRow();
    void readsFields_data();
    void readsFields();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void readsAnimatorPictures();
    void readsAnimatorProPictures();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesEverySize_data();
    void writesEverySize();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
    void readsRealSamples();
};

void TestSoftimageCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("accepted");
    const QByteArray softimage = QByteArray::fromHex("5380f63400000000");
    QTest::newRow("Softimage") << softimage << pic << true;
    QTest::newRow("Softimage under any name") << softimage << QString() << true;
    QTest::newRow("Animator") << animatorFile() << pic << true;
    QTest::newRow("Animator under another name") << animatorFile() << QStringLiteral("tga") << false;
    const QByteArray pro = animatorProFile(QSize(1, 1), 8, {});
    QTest::newRow("Animator Pro") << pro << pic << true;
    QTest::newRow("Animator Pro under another name") << pro << QString() << false;
    QTest::newRow("PICtor") << QByteArray::fromHex("34120000") << pic << true;
    QTest::newRow("PICtor under another name") << QByteArray::fromHex("34120000") << QString() << false;
    QTest::newRow("Macintosh") << QByteArray(600, '\0') << pic << false;
    QTest::newRow("text") << QByteArray("a text of some length") << pic << false;
    QTest::newRow("empty") << QByteArray() << pic << false;
}

void TestSoftimageCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, extension);
    QTEST(codec.sniff(head, extension), "accepted");
}

void TestSoftimageCodec::readsTheCorpus_data()
{
    addFixtureRows(picCorpus());
}

void TestSoftimageCodec::readsTheCorpus()
{
    QFETCH(Fixture, fixture);
    Picture picture;
    QCOMPARE(fixtureFault(codec, fixture, &picture), QString());
    QCOMPARE(picture.image.format(),
             picture.bitsPerPixel == 32 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

void TestSoftimageCodec::skipsChannelsForOtherUses()
{
    const SoftimageMaker maker = makerOf(QSize(19, 4), {{2, 0xEC}, {1, 0x03}, {2, 0x10}});
    const auto picture = decodeBytes(codec, maker.bytes());
    QVERIFY(picture && picture->complete);
    QCOMPARE(firstDifference(rgbaOf(picture->image), maker.shown()), QString());
}

void TestSoftimageCodec::takesRunsBeyondTheRow()
{
    SoftimageMaker maker = makerOf(QSize(3, 2), {{2, 0xE0}});
    maker.storedRows = 0;
    // Ten pixels in a row of three; then a run of none, two literals, a run of five.
    const QByteArray rows = QByteArray::fromHex("89112233 800000aabbcc 01445566778899 84abcdef");
    const auto picture = decodeBytes(codec, maker.bytes() + rows);
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.pixel(2, 0), qRgb(0x11, 0x22, 0x33));
    QCOMPARE(picture->image.pixel(0, 1), qRgb(0x44, 0x55, 0x66));
    QCOMPARE(picture->image.pixel(1, 1), qRgb(0x77, 0x88, 0x99));
    QCOMPARE(picture->image.pixel(2, 1), qRgb(0xab, 0xcd, 0xef));
}

void TestSoftimageCodec::readsFields_data()
{
    QTest::addColumn<int>("fields");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("stored");
    QTest::addColumn<bool>("complete");
    for (const int fields : {0, 1, 2, 3})
        QTest::addRow("%d, all rows", fields) << fields << 8 << 8 << true;
    for (const int fields : {1, 2}) {
        QTest::addRow("%d, half the rows", fields) << fields << 8 << 4 << true;
        QTest::addRow("%d, the lesser half", fields) << fields << 7 << 3 << true;
        QTest::addRow("%d, the greater half", fields) << fields << 7 << 4 << true;
        QTest::addRow("%d, cut", fields) << fields << 8 << 3 << false;
    }
    QTest::addRow("whole frame, half the rows") << 3 << 8 << 4 << false;
}

void TestSoftimageCodec::readsFields()
{
    QFETCH(int, fields);
    QFETCH(int, height);
    QFETCH(int, stored);
    QFETCH(bool, complete);
    SoftimageMaker maker = makerOf(QSize(11, height), {{2, 0xE0}, {2, 0x10}});
    maker.fields = fields;
    maker.storedRows = stored;
    const auto picture = decodeBytes(codec, maker.bytes());
    QVERIFY(picture);
    QCOMPARE(picture->fullSize, QSize(11, height));
    QCOMPARE(picture->complete, complete);
    const QImage wanted = imageOf(maker.picture).convertToFormat(QImage::Format_ARGB32);
    const bool doubled = complete && stored < height;
    for (int y = 0; y < (doubled ? height : stored); ++y) {
        const int from = doubled ? std::min(y / 2, stored - 1) : y;
        QCOMPARE(difference(picture->image.copy(0, y, 11, 1), wanted.copy(0, from, 11, 1)), QString());
    }
}

void TestSoftimageCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("word");
    const QSize size(5, 4);
    const auto add = [](const char* name, const QByteArray& file, ErrorKind kind, const char* word) {
        QTest::newRow(name) << file << int(kind) << QString::fromLatin1(word);
    };
    add("16 bits a channel", makerOf(size, {{0, 0xE0, 16}}).bytes(), ErrorKind::Unsupported, "16 bits");
    add("floating point", makerOf(size, {{0x20, 0xE0}}).bytes(), ErrorKind::Unsupported, "type 32");
    add("no channel", makerOf(size, {{0, 0}}).bytes(), ErrorKind::Unsupported, "channels");
    add("depth alone", makerOf(size, {{0, 0x04}}).bytes(), ErrorKind::Unsupported, "channels");
    QByteArray other = makerOf(size, {{2, 0xE0}}).bytes();
    other.replace(88, 4, "SCEN");
    add("no picture", other, ErrorKind::Unsupported, "no picture");
    add("17 packets", makerOf(size, std::vector<SoftimageMaker::Packet>(17, {0, 0xE0})).bytes(),
        ErrorKind::Damaged, "more channel packets");
    QByteArray endless = makerOf(size, {{0, 0xE0}}).bytes().left(104);
    for (int i = 0; i < 1000; ++i)
        endless += QByteArray::fromHex("01080000");
    add("1000 empty packets", endless, ErrorKind::Damaged, "cut short");
    QByteArray empty = makerOf(size, {{2, 0xE0}}).bytes();
    empty[92] = empty[93] = '\0';
    add("no width", empty, ErrorKind::Damaged, "0 x 4");
    add("no pixels", makerOf(size, {{2, 0xE0}}).bytes().left(108), ErrorKind::Damaged, "first pixel");
    add("half a header", makerOf(size, {{2, 0xE0}}).bytes().left(90), ErrorKind::Damaged, "cut short");
    add("PICtor", QByteArray::fromHex("3412400032000000000083ff4c00000000"), ErrorKind::Unsupported,
        "PICtor");
    QByteArray packed = animatorFile();
    packed[11] = '\1';
    add("Animator, packed", packed, ErrorKind::Unsupported, "Animator");
    add("Animator, cut header", animatorFile().left(20), ErrorKind::Damaged, "Animator");
    add("Animator, no pixels", animatorFile().left(800), ErrorKind::Damaged, "first pixel");
    add("Animator Pro, 4 bits", animatorProFile(size, 4, {}), ErrorKind::Unsupported, "4 bits");
    add("Animator Pro, no pixels", animatorProFile(size, 8, block(0, proPalette())), ErrorKind::Damaged,
        "first pixel");
    add("Animator Pro, endless blocks", animatorProFile(size, 8, QByteArray(1000, '\0')), ErrorKind::Damaged,
        "first pixel");
}

void TestSoftimageCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QFETCH(QString, word);
    QCOMPARE(refusalFault(codec, file, ErrorKind(kind), word), QString());
}

void TestSoftimageCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("height");
    QTest::newRow("mixed") << makerOf(QSize(21, 6), {{2, 0xE0}}).bytes() << 6;
    QTest::newRow("runs with alpha") << makerOf(QSize(21, 6), {{1, 0xE0}, {1, 0x10}}).bytes() << 6;
    QTest::newRow("raw") << makerOf(QSize(5, 6), {{0, 0xF0}}).bytes() << 6;
    QTest::newRow("Animator") << animatorFile() << 3;
}

void TestSoftimageCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QFETCH(int, height);
    QCOMPARE(growingCutFault(codec, file, equalRows, height - 1), QString());
}

void TestSoftimageCodec::readsAnimatorPictures()
{
    const auto picture = decoded(codec, animatorFile());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.size(), QSize(5, 3));
    QCOMPARE(picture->bitsPerPixel, 8);
    QCOMPARE(picture->image.format(), QImage::Format_Indexed8);
    // The pixel 7 holds 94: entry (23, 40, 21) of 63.
    QCOMPARE(picture->image.pixel(2, 1), qRgb(23 << 2 | 23 >> 4, 40 << 2 | 40 >> 4, 21 << 2 | 21 >> 4));
    QCOMPARE(picture->image.pixelIndex(4, 2), 50 * 14 % 256);
    QCOMPARE(picture->image.colorTable().at(255), qRgb(255, 0, 85));
}

void TestSoftimageCodec::readsAnimatorProPictures()
{
    const QSize size(11, 2);
    QByteArray bytes;
    for (int i = 0; i < 22; ++i)
        bytes.append(char(11 * i));
    const auto deep = decoded(codec, animatorProFile(size, 8, block(0, proPalette()) + block(1, bytes)));
    QVERIFY(deep && deep->complete);
    QCOMPARE(deep->image.size(), size);
    QCOMPARE(deep->image.pixel(3, 1), qRgb(154, 101, 7)); // pixel 14

    const QByteArray bits = QByteArray::fromHex("a5e0 0180");
    const auto mask = decoded(codec, animatorProFile(size, 1, block(2, bits)));
    QVERIFY(mask && mask->complete);
    QCOMPARE(mask->bitsPerPixel, 1);
    QCOMPARE(mask->image.format(), QImage::Format_Mono);
    QCOMPARE(mask->image.pixel(0, 0), qRgb(255, 255, 255));
    QCOMPARE(mask->image.pixel(1, 0), qRgb(0, 0, 0));
    QCOMPARE(mask->image.pixel(8, 1), qRgb(255, 255, 255));
}

void TestSoftimageCodec::writesWhatOthersRead_data()
{
    addFormatRows();
    QTest::newRow("runs") << imageOf(runPicture(QSize(700, 9)));
    QTest::newRow("palette with a clear entry") << clearEntryPicture(QSize(15, 5));
}

void TestSoftimageCodec::writesWhatOthersRead()
{
    QFETCH(QImage, image);
    const auto file = codec.encode(image, pic, {});
    QVERIFY(file);
    const bool alpha = image.hasAlphaChannel();
    const Rgba wanted = rgbaOf(image.convertToFormat(alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32));
    QCOMPARE(firstDifference(readByStb(*file), wanted), QString());
    const auto own = decoded(codec, *file);
    QVERIFY(own && own->complete);
    QCOMPARE(own->bitsPerPixel, alpha ? 32 : 24);
    QCOMPARE(firstDifference(rgbaOf(own->image), wanted), QString());
}

void TestSoftimageCodec::writesEverySize_data()
{
    addSizeRows(
        {QSize(1, 1), QSize(1, 20000), QSize(20000, 1), QSize(128, 2), QSize(129, 3), QSize(65535, 1)});
}

void TestSoftimageCodec::writesEverySize()
{
    QFETCH(QSize, size);
    QImage flat(size, QImage::Format_RGB32);
    flat.fill(qRgb(3, 2, 1));
    for (const QImage& image : {flat, alphaPicture(size)}) {
        const auto file = codec.encode(image, pic, {});
        QVERIFY(file);
        QCOMPARE(firstDifference(readByStb(*file), rgbaOf(image)), QString());
        const auto own = decoded(codec, *file);
        QVERIFY(own && own->complete);
        QCOMPARE(difference(own->image, image), QString());
    }
}

void TestSoftimageCodec::refusesToWrite()
{
    QCOMPARE(writingRefusalFault(codec, pic, {QImage(), QImage(65536, 1, QImage::Format_Mono)}), QString());
}

void TestSoftimageCodec::stopsWhenCancelled()
{
    const QByteArray pro = animatorProFile(QSize(4, 1), 8, block(1, QByteArray(4, 'x')));
    for (const QByteArray& file : {makerOf(QSize(9, 9), {{2, 0xE0}}).bytes(), animatorFile(), pro})
        QCOMPARE(cancelFault(codec, file), QString());
}

void TestSoftimageCodec::survivesBrokenFiles()
{
    SoftimageMaker field = makerOf(QSize(9, 8), {{2, 0xE0}});
    field.fields = 1;
    field.storedRows = 4;
    const QList<QByteArray> parents = {
        makerOf(QSize(30, 6), {{2, 0xE0}, {2, 0x10}}).bytes(),
        makerOf(QSize(30, 6), {{1, 0xF0}}).bytes(),
        makerOf(QSize(9, 6), {{0, 0x80}, {1, 0x60}, {2, 0x1F}}).bytes(),
        field.bytes(),
        animatorFile(),
        animatorProFile(QSize(11, 2), 8, block(0, proPalette()) + block(1, QByteArray(22, 'x')))};
    QCOMPARE(mutantFault(codec, parents, 600), QString());
}

void TestSoftimageCodec::readsRealSamples()
{
    const auto folder = sampleFolder(QStringLiteral("pic"));
    if (!folder)
        QSKIP("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
    int read = 0;
    for (const QString& name : folder->entryList(QDir::Files)) {
        QFile file(folder->filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        if (!codec.sniff(bytes.left(1024), QString()))
            continue; // the extension is shared with other formats
        const auto picture = decodeBytes(codec, bytes);
        QVERIFY2(picture && picture->complete, qPrintable(name));
        QCOMPARE(firstDifference(rgbaOf(picture->image), readByStb(bytes)), QString());
        ++read;
    }
    QVERIFY(read > 0);
}

QTEST_GUILESS_MAIN(TestSoftimageCodec)
#include "tst_softimagecodec.moc"
