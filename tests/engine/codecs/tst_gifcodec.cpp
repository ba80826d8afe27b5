#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"

#include <QtTest>

#include <array>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QByteArray word(int value)
{
    return QByteArray(1, char(value & 255)) + char(value >> 8);
}

QByteArray paletteBytes(const QList<QRgb>& colors)
{
    QByteArray bytes;
    for (const QRgb color : colors) {
        bytes += char(qRed(color));
        bytes += char(qGreen(color));
        bytes += char(qBlue(color));
    }
    return bytes;
}

/// A GIF put together block by block; its pixels are stored with codes of 9 bits and no string longer than 1.
struct Gif
{
    QSize canvas = {4, 3};
    QRect frame = {0, 0, 4, 3};
    QList<QRgb> global = {qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255), qRgb(255, 255, 255)};
    QList<QRgb> local;
    int transparent = -1;
    bool interlaced = false;
    QByteArray before; ///< blocks in front of the frame
    QByteArray pixels = QByteArray::fromHex("000102030001020300010203");

    static int sizeBits(const QList<QRgb>& colors) // the field n of 2 << n entries
    {
        int bits = 0;
        while ((2 << bits) < colors.size())
            ++bits;
        return bits;
    }

    QByteArray codes() const
    {
        constexpr int clearCode = 256;
        QList<int> all;
        for (const char pixel : pixels) { // a clear code each time keeps the width at 9 bits
            all << clearCode << uchar(pixel);
        }
        all << clearCode + 1;
        QByteArray packed;
        quint32 pending = 0;
        int bits = 0;
        for (const int code : all) {
            pending |= quint32(code) << bits;
            for (bits += 9; bits >= 8; bits -= 8, pending >>= 8)
                packed += char(pending & 255);
        }
        return packed + char(pending & 255);
    }

    QByteArray bytes() const
    {
        QByteArray out = "GIF89a" + word(canvas.width()) + word(canvas.height());
        out += char(global.isEmpty() ? 0 : 0x80 | sizeBits(global));
        out += QByteArray(2, '\0') + paletteBytes(global) + before;
        if (transparent >= 0)
            out += QByteArray::fromHex("21f90401 0000") + char(transparent) + '\0';
        out += ',' + word(frame.x()) + word(frame.y()) + word(frame.width()) + word(frame.height());
        out += char((local.isEmpty() ? 0 : 0x80 | sizeBits(local)) | (interlaced ? 0x40 : 0));
        out += paletteBytes(local) + char(8);
        const QByteArray data = codes();
        for (qsizetype at = 0; at < data.size(); at += 255) {
            const QByteArray block = data.mid(at, 255);
            out += char(block.size());
            out += block;
        }
        return out + '\0' + ';';
    }
};

QByteArray encoded(const QImage& image)
{
    const auto bytes = gifCodec().encode(image, QStringLiteral("gif"), {});
    return bytes ? *bytes : QByteArray();
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

QImage smoothPicture(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 255 / size.width(), y * 255 / size.height(), (x + y) % 256));
    }
    return image;
}

} // namespace

class TestGifCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs();
    void readsFilesOfTools_data();
    void readsFilesOfTools();
    void composesTheFirstFrame_data();
    void composesTheFirstFrame();
    void findsNoFreeEntry();
    void passesOtherBlocks();
    void tellsTheDepth_data();
    void tellsTheDepth();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsOneClearEntry();
    void quantisesWell();
    void keepsUndecodedPixelsOpaque_data();
    void keepsUndecodedPixelsOpaque();
    void refusesToWrite();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = gifCodec();
};

void TestGifCodec::sniffs()
{
    QVERIFY(m_codec.sniff("GIF87a....", QString()));
    QVERIFY(m_codec.sniff("GIF89a....", QStringLiteral("jpg")));
    QVERIFY(!m_codec.sniff("GIF90a....", QStringLiteral("gif")));
    QVERIFY(!m_codec.sniff(QByteArray(), QStringLiteral("gif")));
}

void TestGifCodec::readsFilesOfTools_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(640, 9)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        const QImage many = palettePicture(size, 256);
        QTest::newRow(name("convert").constData())
            << QStringLiteral("convert") << words("ppm:- gif:-") << many;
        QTest::newRow(name("convert interlaced").constData())
            << QStringLiteral("convert") << words("ppm:- -interlace GIF gif:-") << many;
        QTest::newRow(name("convert 87").constData())
            << QStringLiteral("convert") << words("ppm:- gif87:-") << many;
        QTest::newRow(name("gm").constData())
            << QStringLiteral("gm") << words("convert ppm:- gif:-") << palettePicture(size, 100);
        QTest::newRow(name("pamtogif").constData()) << QStringLiteral("pamtogif") << QStringList() << many;
        QTest::newRow(name("pamtogif interlaced").constData())
            << QStringLiteral("pamtogif") << words("-interlace") << palettePicture(size, 5);
        QTest::newRow(name("pamtogif bits").constData())
            << QStringLiteral("pamtogif") << QStringList() << dotPicture(size);
    }
}

void TestGifCodec::readsFilesOfTools()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QImage, picture);
    const QByteArray bytes = outputOf(program, arguments, writePnm(picture));
    QVERIFY(m_codec.sniff(bytes.left(512), QString()));
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(difference(result->image, picture), QString());
    QCOMPARE(result->image.format(), QImage::Format_Indexed8);
    QVERIFY(result->complete && result->isFull());
    QCOMPARE(difference(result->image, readByMagick(bytes, QStringLiteral("gif"))), QString());
}

void TestGifCodec::composesTheFirstFrame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    // One letter a pixel: palette entries r g b w, t transparent, k black.
    QTest::addColumn<QString>("pixels");
    const auto add = [](const char* name, const Gif& gif, const char* pixels, QSize size = {4, 3}) {
        QTest::newRow(name) << gif.bytes() << size << QString::fromLatin1(pixels).remove(QLatin1Char(' '));
    };
    Gif gif;
    add("covers", gif, "rgbw rgbw rgbw");
    gif.transparent = 1;
    add("covers, transparent entry", gif, "rtbw rtbw rtbw");
    gif.transparent = 200;
    add("covers, transparent entry past the palette", gif, "rgbw rgbw rgbw");
    gif = {};
    gif.local = {qRgb(255, 255, 255), qRgb(255, 0, 0), qRgb(0, 255, 0), qRgb(0, 0, 255)};
    add("palette of its own", gif, "wrgb wrgb wrgb");
    gif.global.clear();
    add("no palette of the file", gif, "wrgb wrgb wrgb");
    gif = {};
    gif.frame = QRect(1, 1, 2, 1);
    gif.pixels = QByteArray::fromHex("0203");
    add("in the middle", gif, "tttt tbwt tttt");
    gif.transparent = 3;
    add("in the middle, transparent entry", gif, "tttt tbtt tttt");
    gif = {};
    gif.frame = QRect(2, 1, 4, 3);
    add("reaches beyond right and bottom", gif, "tttt ttrg ttrg");
    gif.frame = QRect(0, 0, 6, 5);
    gif.pixels = QByteArray::fromHex("000102030101 010203000101 020300010101 000000000000 000000000000");
    add("larger than the canvas", gif, "rgbwgg gbwrgg bwrggg rrrrrr rrrrrr", {6, 5});
    gif.frame = QRect(1, 1, 5, 2);
    gif.pixels = QByteArray::fromHex("0001020300 0102030001");
    add("wider than the canvas, off its corner", gif, "tttttt trgbwr tgbwrg", {6, 3});
    gif.frame = QRect(3, 0, 2, 4);
    gif.pixels = QByteArray::fromHex("0001 0002 0003 0000");
    add("higher than the canvas, off its corner", gif, "tttrg tttrb tttrw tttrr", {5, 4});
    gif.frame = QRect(9, 9, 1, 1);
    gif.pixels = QByteArray::fromHex("02");
    add("beside the canvas", gif, "tttt tttt tttt");
    gif = {};
    gif.canvas = QSize(0, 0);
    add("no canvas", gif, "rgbw rgbw rgbw");
    gif.frame = QRect(3, 2, 4, 3);
    add("no canvas, off its corner", gif, "rgbw rgbw rgbw");
    gif.canvas = QSize(0, 9);
    add("a canvas without width", gif, "rgbw rgbw rgbw");
    gif = {};
    gif.pixels = QByteArray::fromHex("000102ff 040203fe 00010203");
    add("indices past the palette", gif, "rgbk kbwk rgbw");
    gif = {};
    gif.interlaced = true;
    gif.canvas = QSize(1, 9);
    gif.frame = QRect(0, 0, 1, 9);
    gif.pixels = QByteArray::fromHex("000101020303 030302").left(9); // rows 0 8 4 2 6 1 3 5 7
    add("interlaced", gif, "rwbwgwwb g", QSize(1, 9));
}

void TestGifCodec::composesTheFirstFrame()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    QFETCH(QString, pixels);
    const QHash<QChar, QRgb> colors = {
        {QLatin1Char('r'), qRgb(255, 0, 0)},   {QLatin1Char('g'), qRgb(0, 255, 0)},
        {QLatin1Char('b'), qRgb(0, 0, 255)},   {QLatin1Char('w'), qRgb(255, 255, 255)},
        {QLatin1Char('t'), qRgba(0, 0, 0, 0)}, {QLatin1Char('k'), qRgb(0, 0, 0)}};
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.size(), size);
    QCOMPARE(result->image.format(), QImage::Format_Indexed8);
    QVERIFY(result->complete);
    QString seen;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            seen += colors.key(result->image.pixel(x, y), QLatin1Char('?'));
    }
    QCOMPARE(seen, pixels);
}

void TestGifCodec::findsNoFreeEntry()
{
    Gif gif;
    gif.global = palettePicture(QSize(1, 1), 256).colorTable();
    gif.canvas = QSize(17, 17);
    gif.frame = QRect(1, 0, 16, 16);
    gif.pixels.clear();
    for (int i = 0; i < 256; ++i)
        gif.pixels += char(i);
    const auto full = decoded(m_codec, gif.bytes());
    QVERIFY(full);
    QCOMPARE(full->image.format(), QImage::Format_ARGB32);
    QCOMPARE(full->image.pixel(1, 0), gif.global[0]);
    QCOMPARE(full->image.pixel(16, 15), gif.global[255]);
    QCOMPARE(full->image.pixel(0, 3), 0u);
    QCOMPARE(full->image.pixel(5, 16), 0u);

    gif.pixels[77] = 76; // one entry falls free
    const auto palette = decoded(m_codec, gif.bytes());
    QVERIFY(palette);
    QCOMPARE(palette->image.format(), QImage::Format_Indexed8);
    QCOMPARE(palette->image.pixel(0, 3), 0u);
    QCOMPARE(palette->image.pixel(16, 15), gif.global[255]);
}

void TestGifCodec::passesOtherBlocks()
{
    Gif gif;
    gif.before = QByteArray::fromHex("21fe05") + "hello" + QByteArray::fromHex("0321") + "ab" +
                 QByteArray(1, '\0') + QByteArray::fromHex("21ff0b") + "NETSCAPE2.0" +
                 QByteArray::fromHex("0301000000");
    const auto result = decoded(m_codec, gif.bytes());
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(result->image.pixel(2, 2), qRgb(0, 0, 255));
}

void TestGifCodec::tellsTheDepth_data()
{
    QTest::addColumn<int>("colors");
    QTest::addColumn<int>("bits");
    QTest::newRow("2 colours") << 2 << 1;
    QTest::newRow("4 colours") << 4 << 4;
    QTest::newRow("16 colours") << 16 << 4;
    QTest::newRow("32 colours") << 32 << 8;
    QTest::newRow("256 colours") << 256 << 8;
}

void TestGifCodec::tellsTheDepth()
{
    QFETCH(int, colors);
    const auto decoder = m_codec.open(ByteSource::fromBytes(encoded(palettePicture(QSize(30, 20), colors))));
    QVERIFY(decoder);
    QCOMPARE((*decoder)->pageCount(), 1);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    QCOMPARE(header->size, QSize(30, 20));
    QTEST(header->bitsPerPixel, "bits");
}

void TestGifCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    QTest::newRow("mark only") << QByteArray("GIF89a") << int(ErrorKind::Damaged);
    const QByteArray whole = Gif().bytes();
    QTest::newRow("no frame") << whole.left(25) + ';' << int(ErrorKind::Damaged);
    QTest::newRow("no pixel") << whole.left(36) << int(ErrorKind::Damaged);
    QTest::newRow("nonsense for a block") << whole.left(25) + 'x' + whole.mid(26) << int(ErrorKind::Damaged);
    Gif wide;
    wide.canvas = QSize(65535, 65535);
    if (Limits::machine().maxBytes < qint64(65535) * 65535 * 4)
        QTest::newRow("a canvas beyond the limits") << wide.bytes() << int(ErrorKind::TooLarge);
    Gif frame;
    frame.frame = QRect(0, 0, 65535, 65535);
    if (Limits::machine().maxBytes < qint64(65535) * 65535 * 4)
        QTest::newRow("a frame beyond the limits") << frame.bytes() << int(ErrorKind::TooLarge);
    Gif flat;
    flat.frame = QRect(0, 0, 0, 3);
    QTest::newRow("a frame without width") << flat.bytes() << int(ErrorKind::Damaged);
}

void TestGifCodec::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    const auto result = decoded(m_codec, bytes);
    QVERIFY(!result);
    QCOMPARE(int(result.error().kind), kind);
    QVERIFY(!result.error().text.isEmpty());
}

void TestGifCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("rows in order") << encoded(palettePicture(QSize(9, 40), 7));
    QTest::newRow("interlaced") << outputOf(QStringLiteral("convert"), words("ppm:- -interlace GIF gif:-"),
                                            writePnm(palettePicture(QSize(9, 40), 7)));
    Gif gif;
    gif.transparent = 2;
    QTest::newRow("transparent entry") << gif.bytes();
}

void TestGifCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY(whole && whole->complete);
    int before = 0;
    bool sawPart = false;
    for (int length = 0; length < bytes.size(); ++length) {
        const auto part = decoded(m_codec, bytes.left(length));
        if (!part) {
            QCOMPARE(before, 0); // what a shorter file shows, a longer one shows
            QCOMPARE(part.error().kind, ErrorKind::Damaged);
            continue;
        }
        int equal = 0;
        for (int y = 0; y < whole->image.height(); ++y) {
            for (int x = 0; x < whole->image.width(); ++x) {
                const QRgb pixel = part->image.pixel(x, y);
                const bool same = pixel == whole->image.pixel(x, y);
                equal += same ? 1 : 0;
                QVERIFY2(same || qAlpha(pixel) == 0 || !part->complete, qPrintable(QString::number(length)));
            }
        }
        QVERIFY2(equal >= before, qPrintable(QString::number(length)));
        before = equal;
        sawPart = sawPart || !part->complete;
        QVERIFY(!part->complete || equal == whole->image.width() * whole->image.height());
    }
    QVERIFY(sawPart);
    QCOMPARE(before, whole->image.width() * whole->image.height());
}

void TestGifCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        QTest::newRow(name("palette of 256").constData()) << palettePicture(size, 256);
        QTest::newRow(name("palette of 3").constData()) << palettePicture(size, 3);
        QTest::newRow(name("mono").constData()) << dotPicture(size);
        QTest::newRow(name("grey").constData()) << greyPicture(size);
        QTest::newRow(name("few colours in 32 bits").constData())
            << palettePicture(size, 256).convertToFormat(QImage::Format_RGB32);
    }
    QTest::newRow("100 x 100, 256 colours") << palettePicture(QSize(100, 100), 256);
}

void TestGifCodec::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("gif"), {});
    QVERIFY(bytes);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("gif")), picture), QString());
    QCOMPARE(difference(readByNetpbm(*bytes, QStringLiteral("giftopnm")), picture), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, picture), QString());
}

void TestGifCodec::keepsOneClearEntry()
{
    QImage indexed = palettePicture(QSize(30, 20), 9);
    indexed.setColor(4, qRgba(9, 9, 9, 0));
    QImage deep = indexed.convertToFormat(QImage::Format_ARGB32);
    deep.setPixel(2, 2, qRgba(1, 2, 3, 127)); // less than half opaque
    deep.setPixel(3, 2, qRgba(1, 2, 3, 128));
    for (const QImage& picture : {indexed, deep}) {
        const QByteArray bytes = encoded(picture);
        QImage expected = picture.convertToFormat(QImage::Format_ARGB32);
        if (picture.format() == QImage::Format_ARGB32) {
            expected.setPixel(2, 2, 0);
            expected.setPixel(3, 2, qRgb(1, 2, 3));
        }
        QCOMPARE(difference(readByMagick(bytes, QStringLiteral("gif")), expected, true), QString());
        const auto own = decoded(m_codec, bytes);
        QVERIFY(own);
        QCOMPARE(difference(own->image, expected, true), QString());
    }
}

void TestGifCodec::quantisesWell()
{
    QImage picture = smoothPicture(QSize(200, 150));
    const auto own = decoded(m_codec, encoded(picture));
    QVERIFY(own);
    QCOMPARE(difference(readByMagick(encoded(picture), QStringLiteral("gif")), own->image), QString());
    // Spread errors cancel out: over blocks of 10 x 10 the mean colour stays close to the picture's.
    double worst = 0;
    for (int top = 0; top < picture.height(); top += 10) {
        for (int left = 0; left < picture.width(); left += 10) {
            std::array<double, 3> sums = {};
            for (int i = 0; i < 100; ++i) {
                const QRgb a = picture.pixel(left + i % 10, top + i / 10);
                const QRgb b = own->image.pixel(left + i % 10, top + i / 10);
                sums[0] += qRed(a) - qRed(b);
                sums[1] += qGreen(a) - qGreen(b);
                sums[2] += qBlue(a) - qBlue(b);
            }
            for (const double sum : sums)
                worst = std::max(worst, std::abs(sum) / 100);
        }
    }
    QVERIFY2(worst < 6, qPrintable(QString::number(worst)));

    picture = picture.convertToFormat(QImage::Format_ARGB32);
    picture.setPixel(5, 5, 0);
    const auto clear = decoded(m_codec, encoded(picture));
    QVERIFY(clear);
    QCOMPARE(qAlpha(clear->image.pixel(5, 5)), 0);
    QCOMPARE(qAlpha(clear->image.pixel(6, 5)), 255);
    QVERIFY(clear->image.colorCount() <= 256);
}

void TestGifCodec::keepsUndecodedPixelsOpaque_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto cutJpeg = [](const QImage& picture) {
        const QByteArray whole =
            outputOf(QStringLiteral("convert"), words("ppm:- -quality 90 jpeg:-"), writePnm(picture));
        return whole.left(whole.size() * 2 / 3);
    };
    QImage flat(QSize(200, 400), QImage::Format_RGB32);
    flat.fill(qRgb(200, 40, 90));
    QTest::newRow("JPEG of one colour, cut") << cutJpeg(flat);
    QTest::newRow("JPEG of many colours, cut") << cutJpeg(smoothPicture(QSize(200, 400)));
    // A bitmap of 300 x 2 pixels in RLE24: a run in each row, the rest is never drawn.
    const QByteArray header = QByteArray::fromHex("28000000 2c010000 02000000 0100 1800 04000000"
                                                  "00000000 00000000 00000000 00000000 00000000");
    const auto runs = [&header](const QByteArray& codes) {
        const QByteArray start = QByteArray::fromHex("424d 00000000 00000000 36000000");
        return start + header + codes + QByteArray::fromHex("0000 0001");
    };
    QTest::newRow("RLE24 with a gap, two colours") << runs(QByteArray::fromHex("05 102030"));
    QByteArray close; // more colours than a palette holds, so much alike that four entries do
    for (int i = 0; i < 299; ++i) {
        close += '\1';
        close += char(40 + i / 10);
        close += char(100 + i / 8 % 4);
        close += char(200 + i % 8);
    }
    QTest::newRow("RLE24 with a gap, many colours alike") << runs(close);
}

void TestGifCodec::keepsUndecodedPixelsOpaque()
{
    QFETCH(QByteArray, bytes);
    const auto decoder = openDecoder(ByteSource::fromBytes(bytes), QString());
    QVERIFY2(decoder, decoder ? "" : qPrintable(decoder.error().text));
    const CancelFlag go = false;
    const auto picture = (*decoder)->decode(1, QSize(), go);
    QVERIFY2(picture, picture ? "" : qPrintable(picture.error().text));
    const QImage& image = picture->image;
    QCOMPARE(image.format(), QImage::Format_RGB32);
    // The first row of a bitmap is the last one stored.
    const QPoint blank = bytes.startsWith("BM") ? QPoint(299, 0) : QPoint(199, 399);
    QCOMPARE(reinterpret_cast<const QRgb*>(image.constScanLine(blank.y()))[blank.x()], 0u);

    const auto written = decoded(m_codec, encoded(image));
    QVERIFY(written);
    const QImage shown = written->image.convertToFormat(QImage::Format_ARGB32);
    int clear = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            clear += qAlpha(shown.pixel(x, y)) == 255 ? 0 : 1;
    }
    QCOMPARE(clear, 0);
    const QRgb black = shown.pixel(blank);
    QVERIFY2(qRed(black) < 16 && qGreen(black) < 16 && qBlue(black) < 16,
             qPrintable(QString::number(black, 16)));
    QVERIFY(written->image.colorCount() <= 256);
}

void TestGifCodec::refusesToWrite()
{
    for (const QImage& image :
         {QImage(), QImage(65536, 1, QImage::Format_Mono), QImage(1, 65536, QImage::Format_Mono)}) {
        const auto bytes = m_codec.encode(image, QStringLiteral("gif"), {});
        QVERIFY(!bytes);
        QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
    }
    QVERIFY(m_codec.canEncode(QStringLiteral("gif")));
    QVERIFY(!m_codec.canEncode(QStringLiteral("png")));
}

void TestGifCodec::stopsWhenCancelled()
{
    const auto decoder = m_codec.open(ByteSource::fromBytes(encoded(palettePicture(QSize(50, 50), 9))));
    QVERIFY(decoder);
    CancelFlag cancel = true;
    const auto result = (*decoder)->decode(1, QSize(), cancel);
    QVERIFY(!result);
    QCOMPARE(result.error().kind, ErrorKind::Cancelled);
    cancel = false;
    QVERIFY((*decoder)->decode(1, QSize(), cancel));
}

void TestGifCodec::survivesBrokenFiles()
{
    Gif offset;
    offset.frame = QRect(1, 1, 2, 1);
    offset.pixels = QByteArray::fromHex("0203");
    offset.before = QByteArray::fromHex("21fe05") + "hello" + QByteArray(1, '\0');
    Gif clear;
    clear.transparent = 1;
    clear.local = clear.global;
    const QList<QByteArray> parents = {
        offset.bytes(), clear.bytes(), encoded(palettePicture(QSize(40, 30), 200)),
        outputOf(QStringLiteral("convert"), words("ppm:- -interlace GIF gif:-"),
                 writePnm(palettePicture(QSize(9, 40), 7)))};
    for (quint32 seed = 1; seed <= 320; ++seed) {
        const QString fault =
            misbehaviour(m_codec, Mutator(parents[seed % quint32(parents.size())], seed).next());
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

QTEST_GUILESS_MAIN(TestGifCodec)
#include "tst_gifcodec.moc"
