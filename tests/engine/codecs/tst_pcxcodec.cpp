#include "CodecChecks.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"

#include <QtEndian>
#include <QtTest>

#include <array>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// A PCX header; pixels are put behind it.
QByteArray header(QSize size, int bits, int planes, int planeBytes, int version = 5)
{
    QByteArray head(128, '\0');
    head[0] = '\x0A';
    head[1] = char(version);
    head[2] = 1;
    head[3] = char(bits);
    qToLittleEndian<quint16>(quint16(size.width() - 1), head.data() + 8);
    qToLittleEndian<quint16>(quint16(size.height() - 1), head.data() + 10);
    head[65] = char(planes);
    qToLittleEndian<quint16>(quint16(planeBytes), head.data() + 66);
    return head;
}

QByteArray withPalette(QByteArray head, const char* colors)
{
    const QByteArray bytes = QByteArray::fromHex(colors);
    return head.replace(16, bytes.size(), bytes);
}

QByteArray longPalette()
{
    QByteArray palette(1, '\x0C');
    for (int i = 0; i < 256; ++i) {
        palette += char(i);
        palette += char(255 - i);
        palette += char(7);
    }
    return palette;
}

QByteArray dcx(const QList<quint32>& offsets, const QByteArray& behind)
{
    QByteArray file = QByteArray::fromHex("b168de3a");
    for (const quint32 offset : offsets) {
        QByteArray entry(4, '\0');
        qToLittleEndian<quint32>(offset, entry.data());
        file += entry;
    }
    return file + behind;
}

} // namespace

class TestPcxCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase();
    void sniffs_data();
    void sniffs();
    void readsWhatOthersWrite_data();
    void readsWhatOthersWrite();
    void choosesThePalette_data();
    void choosesThePalette();
    void findsThePaletteBehindThePixels();
    void readsGreysWithoutPalette();
    void readsFourPlanesAsAlpha();
    void readsRunsOverRowEnds();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsTheDepthOnSave_data();
    void keepsTheDepthOnSave();
    void refusesToWrite();
    void readsBrokenTables_data();
    void readsBrokenTables();
    void countsPagesWithoutReadingThem();
    void writesOnePage();
    void readsRealSamples();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = pcxCodec();
    const Codec& m_book = dcxCodec();
    std::vector<Fixture> m_corpus;
    std::vector<Fixture> m_bookCorpus;
};

void TestPcxCodec::initTestCase()
{
    m_corpus = pcxCorpus();
    m_bookCorpus = dcxCorpus();
    QVERIFY(m_corpus.size() >= 10 && m_bookCorpus.size() >= 10);
}

void TestPcxCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<bool>("known");
    const QByteArray good = header({3, 3}, 8, 3, 4);
    const auto with = [&good](int at, int value) {
        QByteArray head = good;
        head[at] = char(value);
        return head;
    };
    QTest::newRow("good") << good << true;
    QTest::newRow("only its beginning") << good.left(12) << true;
    QTest::newRow("too short") << good.left(11) << false;
    QTest::newRow("another mark") << with(0, 11) << false;
    for (const int version : {0, 2, 3, 4, 5})
        QTest::newRow(qPrintable(QStringLiteral("version %1").arg(version))) << with(1, version) << true;
    QTest::newRow("version 1") << with(1, 1) << false;
    QTest::newRow("version 6") << with(1, 6) << false;
    QTest::newRow("not packed") << with(2, 0) << true;
    QTest::newRow("another coding") << with(2, 2) << false;
    QTest::newRow("3 bits") << with(3, 3) << false;
    QTest::newRow("no planes") << with(65, 0) << false;
    QTest::newRow("5 planes") << with(65, 5) << false;
    QTest::newRow("empty window") << with(4, 9) << false;
    QTest::newRow("text") << QByteArray("\n\n\n\n\n\n\n\n\n\n\n\n\n\n") << false;
}

void TestPcxCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(bool, known);
    QCOMPARE(m_codec.sniff(head, QStringLiteral("pcx")), known);
    QVERIFY(m_book.sniff(QByteArray::fromHex("b168de3a00"), QString()));
    QVERIFY(!m_book.sniff(head, QStringLiteral("dcx")));
}

void TestPcxCodec::readsWhatOthersWrite_data()
{
    QTest::addColumn<bool>("book");
    QTest::addColumn<int>("index");
    for (const bool book : {false, true}) {
        const std::vector<Fixture>& corpus = book ? m_bookCorpus : m_corpus;
        for (size_t i = 0; i < corpus.size(); ++i)
            QTest::newRow(qPrintable(QLatin1String(book ? "DCX, " : "PCX, ") + corpus[i].name))
                << book << int(i);
    }
}

void TestPcxCodec::readsWhatOthersWrite()
{
    QFETCH(bool, book);
    QFETCH(int, index);
    QCOMPARE(fixtureFault(book ? m_book : m_codec, (book ? m_bookCorpus : m_corpus)[size_t(index)]),
             QString());
}

void TestPcxCodec::choosesThePalette_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<QRgb>>("colors"); // of the four pixels
    const QRgb black = qRgb(0, 0, 0);
    const QRgb white = qRgb(255, 255, 255);
    const QByteArray bits = header({4, 1}, 1, 1, 2) + QByteArray::fromHex("5000"); // 0 1 0 1
    const QList<QRgb> blackWhite = {black, white, black, white};
    QTest::newRow("1 bit, colours told")
        << withPalette(bits, "ff0000 00ff00")
        << QList<QRgb>{qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(255, 0, 0), qRgb(0, 255, 0)};
    QTest::newRow("1 bit, white first")
        << withPalette(bits, "ffffff 000000") << QList<QRgb>{white, black, white, black};
    QTest::newRow("1 bit, no colours") << bits << blackWhite;
    QTest::newRow("1 bit, twice the same") << withPalette(bits, "101010 101010") << blackWhite;
    QTest::newRow("1 bit, colours of the adapter") << withPalette(bits, "000000 0000aa") << blackWhite;
    const QByteArray old = header({4, 1}, 1, 1, 2, 3) + QByteArray::fromHex("5000");
    QTest::newRow("1 bit, version without palette") << withPalette(old, "ff0000 00ff00") << blackWhite;
    const QByteArray two = header({4, 1}, 2, 1, 2) + QByteArray::fromHex("1b00"); // 0 1 2 3
    QTest::newRow("2 bits, told") << withPalette(two, "010203 040506 070809 0a0b0c")
                                  << QList<QRgb>{qRgb(1, 2, 3), qRgb(4, 5, 6), qRgb(7, 8, 9),
                                                 qRgb(10, 11, 12)};
    QTest::newRow("2 bits, not told")
        << two << QList<QRgb>{black, qRgb(85, 255, 255), qRgb(255, 85, 255), white};
    const QByteArray four = header({4, 1}, 4, 1, 2, 3) + QByteArray::fromHex("014f"); // 0 1 4 15
    QTest::newRow("4 bits, not told") << four << QList<QRgb>{black, qRgb(0, 0, 170), qRgb(170, 0, 0), white};
    QTest::newRow("8 bits") << header({4, 1}, 8, 1, 4) + QByteArray::fromHex("000180c1ff") + longPalette()
                            << QList<QRgb>{qRgb(0, 255, 7), qRgb(1, 254, 7), qRgb(128, 127, 7),
                                           qRgb(255, 0, 7)};
}

void TestPcxCodec::choosesThePalette()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<QRgb>, colors);
    const auto picture = decoded(m_codec, file);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    QVERIFY(picture->complete);
    QVERIFY(picture->image.colorCount() > 0);
    for (int x = 0; x < 4; ++x)
        QCOMPARE(picture->image.pixel(x, 0), colors[x]);
}

void TestPcxCodec::findsThePaletteBehindThePixels()
{
    const QByteArray file =
        header({4, 1}, 8, 1, 4) + QByteArray::fromHex("000180c1ff") + longPalette() + "something else";
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->image.format(), QImage::Format_Indexed8);
    QCOMPARE(picture->image.pixel(1, 0), qRgb(1, 254, 7));
}

void TestPcxCodec::readsGreysWithoutPalette()
{
    const auto picture = decoded(m_codec, header({4, 1}, 8, 1, 4) + QByteArray::fromHex("000180c1ff"));
    QVERIFY(picture);
    QCOMPARE(picture->image.format(), QImage::Format_Grayscale8);
    QCOMPARE(picture->image.pixel(2, 0), qRgb(128, 128, 128));
}

void TestPcxCodec::readsFourPlanesAsAlpha()
{
    const QByteArray file = header({2, 1}, 8, 4, 2) + QByteArray::fromHex("0102 0304 0506 0780");
    const auto picture = decoded(m_codec, file);
    QVERIFY(picture);
    QCOMPARE(picture->bitsPerPixel, 32);
    QCOMPARE(picture->image.format(), QImage::Format_ARGB32);
    QCOMPARE(picture->image.pixel(0, 0), qRgba(1, 3, 5, 7));
    QCOMPARE(picture->image.pixel(1, 0), qRgba(2, 4, 6, 128));
}

void TestPcxCodec::readsRunsOverRowEnds()
{
    // Rows of 4 bytes; a run of 10, an empty run, then two single bytes.
    const auto picture =
        decoded(m_codec, header({4, 3}, 8, 1, 4) + QByteArray::fromHex("ca11 c099 22 c1c7") + longPalette());
    QVERIFY(picture && picture->complete);
    QCOMPARE(picture->image.pixelIndex(1, 2), 0x11);
    QCOMPARE(picture->image.pixelIndex(2, 2), 0x22);
    QCOMPARE(picture->image.pixelIndex(3, 2), 0xC7);
    // Bytes as they are.
    QByteArray plain = header({4, 1}, 8, 1, 4) + QByteArray::fromHex("c0c1c2c3");
    plain[2] = 0;
    const auto flat = decoded(m_codec, plain);
    QVERIFY(flat && flat->complete);
    QCOMPARE(qRed(flat->image.pixel(3, 0)), 0xC3);
    // Rows that are shorter than the window is wide: the rest stays blank.
    const auto narrow =
        decoded(m_codec, header({6, 2}, 8, 1, 2) + QByteArray::fromHex("01020304") + longPalette());
    QVERIFY(narrow && !narrow->complete);
    QCOMPARE(narrow->image.pixelIndex(1, 1), 4);
    QCOMPARE(narrow->image.pixelIndex(5, 1), 0);
}

void TestPcxCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const int damaged = int(ErrorKind::Damaged);
    QTest::newRow("half a header") << header({3, 3}, 8, 3, 4).left(100) << damaged;
    QTest::newRow("no pixel") << header({3, 3}, 8, 3, 4) << damaged;
    QTest::newRow("no whole pixel") << header({3, 3}, 8, 3, 4) + "abcdefgh" << damaged;
    QTest::newRow("rows of no bytes") << header({3, 3}, 8, 3, 0) + "abc" << damaged;
    QTest::newRow("2 planes of 8 bits") << header({3, 3}, 8, 2, 4) + "abc" << int(ErrorKind::Unsupported);
    QTest::newRow("4 planes of 4 bits") << header({3, 3}, 4, 4, 4) + "abc" << int(ErrorKind::Unsupported);
    QTest::newRow("too wide") << header({65536, 1}, 8, 1, 4) + "abc" << int(ErrorKind::TooLarge);
}

void TestPcxCodec::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    const auto picture = decoded(m_codec, file);
    QVERIFY(!picture);
    QCOMPARE(int(picture.error().kind), kind);
    QVERIFY(!picture.error().text.isEmpty());
}

void TestPcxCodec::showsWhatACutFileHolds()
{
    const auto pcx = [](const char* command, const QByteArray& map) { return piped(command, map); };
    const QByteArray deep = pcx("ppmtopcx -quiet -24bit", sampleMap({19, 30}));
    QCOMPARE(cutFault(m_codec, {QStringLiteral("24 bits"), deep, {}}), QString());
    const QByteArray planes = pcx("ppmtopcx -quiet", fewColors({33, 30}, 16));
    QCOMPARE(cutFault(m_codec, {QStringLiteral("4 planes"), planes, {}}), QString());
    // The palette stands at the end: without it the colours are greys, so only the faults count here.
    const QByteArray indexed = pcx("ppmtopcx -quiet", fewColors({33, 30}, 200));
    QCOMPARE(cutFault(m_codec, {QStringLiteral("8 bits"), indexed, {}}, false), QString());
    const auto part = decoded(m_codec, indexed.left(128 + 500));
    QVERIFY(part && !part->complete);
    QCOMPARE(part->image.format(), QImage::Format_Grayscale8);
    const Fixture& book = m_bookCorpus.front();
    const auto page = decoded(m_book, book.file.left(4100 + 900), 1);
    QVERIFY(page && !page->complete);
    QCOMPARE(cutFault(m_book, {QStringLiteral("pages"), book.file, {}}, false), QString());
}

void TestPcxCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("format");
    for (const QSize size : {QSize(1, 1), QSize(13, 7), QSize(1, 2000), QSize(2001, 1), QSize(70, 150)}) {
        for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
            QTest::newRow(qPrintable(
                QStringLiteral("%1 x %2, format %3").arg(size.width()).arg(size.height()).arg(format)))
                << size << format;
    }
}

void TestPcxCodec::writesWhatOthersRead()
{
    QFETCH(QSize, size);
    QFETCH(int, format);
    const QImage image = imageOf(samplePicture(size)).convertToFormat(QImage::Format(format));
    const QImage seen =
        image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    Rgba expected = rgbaOf(seen);
    for (qsizetype i = 0; i < expected.pixels.size(); i += 4) {
        auto* p = reinterpret_cast<uchar*>(expected.pixels.data()) + i;
        const int alpha = p[3];
        for (int channel = 0; channel < 3; ++channel)
            p[channel] = uchar((p[channel] * alpha + 255 * (255 - alpha) + 127) / 255);
        p[3] = 255;
    }
    const auto bytes = m_codec.encode(image, QStringLiteral("pcx"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    QCOMPARE(firstDifference(fromPnm(runTool(QStringLiteral("pcxtoppm"), {}, *bytes)), expected), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), expected), QString());
}

void TestPcxCodec::keepsTheDepthOnSave_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("bits");
    QImage mono(10, 3, QImage::Format_Mono);
    mono.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
    mono.fill(1);
    mono.setPixel(9, 2, 0);
    QTest::newRow("white and black") << mono << 1;
    mono.setColorTable({qRgb(0, 0, 0), qRgb(255, 255, 255)});
    QTest::newRow("black and white") << mono << 1;
    mono.setColorTable({qRgb(0, 0, 90), qRgb(255, 255, 0)});
    QTest::newRow("two colours") << mono << 8;
    QImage indexed(10, 3, QImage::Format_Indexed8);
    indexed.setColorTable({qRgb(1, 2, 3), qRgb(4, 5, 6), qRgb(200, 100, 0)});
    indexed.fill(2);
    indexed.setPixel(5, 1, 1);
    QTest::newRow("three colours") << indexed << 8;
    QImage grey(10, 3, QImage::Format_Grayscale8);
    grey.fill(200);
    QTest::newRow("grey") << grey << 8;
    QImage deep(10, 3, QImage::Format_RGB32);
    deep.fill(qRgb(9, 8, 7));
    QTest::newRow("deep") << deep << 24;
    indexed.setColor(1, qRgba(4, 5, 6, 0));
    QTest::newRow("palette with a clear entry") << indexed << 24;
}

void TestPcxCodec::keepsTheDepthOnSave()
{
    QFETCH(QImage, image);
    QFETCH(int, bits);
    const auto bytes = m_codec.encode(image, QStringLiteral("pcx"), {});
    QVERIFY(bytes);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own);
    QCOMPARE(own->bitsPerPixel, bits);
    QCOMPARE(firstDifference(rgbaOf(own->image), fromPnm(runTool(QStringLiteral("pcxtoppm"), {}, *bytes))),
             QString());
    if (!image.hasAlphaChannel())
        QCOMPARE(firstDifference(rgbaOf(own->image), rgbaOf(image)), QString());
}

void TestPcxCodec::refusesToWrite()
{
    for (const Codec* codec : {&m_codec, &m_book}) {
        const QString extension = codec->extensions().first();
        QVERIFY(codec->canEncode(extension));
        QVERIFY(!codec->canEncode(QStringLiteral("png")));
        for (const QImage& image :
             {QImage(), QImage(65536, 1, QImage::Format_Mono), QImage(1, 65536, QImage::Format_Mono)}) {
            const auto bytes = codec->encode(image, extension, {});
            QVERIFY(!bytes);
            QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
        }
    }
    QImage widest(65535, 2, QImage::Format_Grayscale8);
    widest.fill(77);
    const auto bytes = m_codec.encode(widest, QStringLiteral("pcx"), {});
    QVERIFY(bytes);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(qRed(own->image.pixel(65534, 1)), 77);
}

void TestPcxCodec::readsBrokenTables_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<int>>("widths"); // of the pages, 0 for one that cannot be read
    const auto page = [](int width) {
        return header({width, 1}, 8, 3, width) + QByteArray(3 * width, '\x11');
    };
    const QByteArray one = page(5);
    const QByteArray two = page(9);
    const quint32 first = 4 + 4 * 4;
    const quint32 second = first + quint32(one.size());
    const quint32 past = second + quint32(two.size());
    QTest::newRow("in order") << dcx({first, second, 0, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("not in order") << dcx({second, first, 0, 0}, one + two) << QList<int>{9, 5};
    QTest::newRow("twice the same") << dcx({first, first, second, 0}, one + two) << QList<int>{5, 5, 9};
    QTest::newRow("one past the end") << dcx({first, past, second, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("one far past the end")
        << dcx({first, 0xFFFFFFFF, second, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("one in the mark") << dcx({first, 2, second, 0}, one + two) << QList<int>{5, 9};
    QTest::newRow("no end mark") << dcx({first, second}, QByteArray(8, '\xFF') + one + two)
                                 << QList<int>{5, 9};
    QTest::newRow("a page that is none")
        << dcx({first, second, 0, 0}, QByteArray(one.size(), 'x') + two) << QList<int>{0, 9};
    QTest::newRow("no page") << dcx({0, first, second, 0}, one + two) << QList<int>();
    QTest::newRow("all past the end") << dcx({past, past + 9, 0, 0}, one + two) << QList<int>();
    QTest::newRow("no table") << dcx({}, {}) << QList<int>();
}

void TestPcxCodec::readsBrokenTables()
{
    QFETCH(QByteArray, file);
    QFETCH(QList<int>, widths);
    const auto decoder = m_book.open(ByteSource::fromBytes(file));
    QCOMPARE(bool(decoder), !widths.isEmpty());
    if (!decoder) {
        QCOMPARE(decoder.error().kind, ErrorKind::Damaged);
        return;
    }
    QCOMPARE((*decoder)->pageCount(), int(widths.size()));
    const CancelFlag go = false;
    for (int i = 0; i < widths.size(); ++i) {
        const auto facts = (*decoder)->header(i + 1);
        const auto picture = (*decoder)->decode(i + 1, QSize(), go);
        QCOMPARE(bool(facts), widths[i] != 0);
        QCOMPARE(bool(picture), widths[i] != 0);
        if (picture)
            QCOMPARE(picture->image.width(), widths[i]);
    }
    QVERIFY(!(*decoder)->header(0));
    QVERIFY(!(*decoder)->decode(int(widths.size()) + 1, QSize(), go));
}

void TestPcxCodec::countsPagesWithoutReadingThem()
{
    const QByteArray& file = m_bookCorpus.front().file;
    const auto source = std::make_shared<WatchedSource>(file);
    const auto decoder = m_book.open(source);
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 6);
    QVERIFY(source->reached() <= 4 + 4 * 1024);
}

void TestPcxCodec::writesOnePage()
{
    const Rgba picture = samplePicture({33, 17});
    const QImage image = imageOf(picture).convertToFormat(QImage::Format_RGB32);
    const auto bytes = m_book.encode(image, QStringLiteral("dcx"), {});
    QVERIFY(bytes);
    QCOMPARE(firstDifference(readWithMagick(*bytes, QStringLiteral("dcx")), rgbaOf(image)), QString());
    const auto decoder = m_book.open(ByteSource::fromBytes(*bytes));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const CancelFlag go = false;
    const auto own = (*decoder)->decode(1, QSize(), go);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), rgbaOf(image)), QString());
}

void TestPcxCodec::readsRealSamples()
{
    const QDir samples(qEnvironmentVariable("QUORVIA_SAMPLES") + QStringLiteral("/dcx"));
    const QFileInfoList files =
        qEnvironmentVariableIsSet("QUORVIA_SAMPLES") ? samples.entryInfoList(QDir::Files) : QFileInfoList();
    if (files.isEmpty())
        qInfo("the real samples are absent");
    for (const QFileInfo& info : files) {
        const auto source = ByteSource::open(info.filePath());
        QVERIFY(source);
        const auto decoder = m_book.open(*source);
        QVERIFY2(decoder, qPrintable(info.fileName()));
        const CancelFlag go = false;
        const QByteArray bytes = (*source)->bytes(0, (*source)->size());
        for (int page = 1; page <= (*decoder)->pageCount(); ++page) {
            const auto picture = (*decoder)->decode(page, QSize(), go);
            QVERIFY2(picture && picture->complete, qPrintable(info.fileName()));
            // Each page on its own is a PCX for another reader.
            const qint64 start = qFromLittleEndian<quint32>(bytes.constData() + 4 * page);
            const qint64 next = qFromLittleEndian<quint32>(bytes.constData() + 4 * page + 4);
            const QByteArray own = next > start ? bytes.mid(start, next - start) : bytes.mid(start);
            QCOMPARE(firstDifference(rgbaOf(picture->image), fromPnm(piped("gm convert pcx:- ppm:-", own))),
                     QString());
        }
    }
}

void TestPcxCodec::stopsWhenCancelled()
{
    for (const Codec* codec : {&m_codec, &m_book}) {
        const Fixture& fixture = codec == &m_codec ? m_corpus[1] : m_bookCorpus[0];
        const auto decoder = codec->open(ByteSource::fromBytes(fixture.file));
        QVERIFY(decoder);
        CancelFlag cancel = true;
        const auto result = (*decoder)->decode(1, QSize(), cancel);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
        cancel = false;
        QVERIFY((*decoder)->decode(1, QSize(), cancel));
    }
}

void TestPcxCodec::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, m_corpus, 300), QString());
    QCOMPARE(mutantFault(m_book, m_bookCorpus, 300), QString());
}

QTEST_GUILESS_MAIN(TestPcxCodec)
#include "tst_pcxcodec.moc"
