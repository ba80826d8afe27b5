#include "CodecFixtures.h"
#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/bmp/BmpRows.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "Mutator.h"

#include <QDir>
#include <QFile>
#include <QtEndian>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

template <class T>
QByteArray number(T value)
{
    const T little = qToLittleEndian(value);
    return QByteArray(reinterpret_cast<const char*>(&little), sizeof little);
}

QByteArray masks(std::initializer_list<quint32> values)
{
    QByteArray bytes;
    for (const quint32 value : values)
        bytes += number<quint32>(value);
    return bytes;
}

/// A bitmap put together field by field.
struct Bitmap
{
    quint32 headerSize = 40;
    int width = 2;
    int height = 2;
    int bits = 24;
    quint32 compression = 0;
    quint32 clrUsed = 0;
    QByteArray masksInHeader; ///< for headers that hold them
    QByteArray behindHeader;  ///< loose masks and palette
    QByteArray pixels;
    bool fileHeader = true;
    qint64 tellOffset = -1; ///< what the file header says instead of the truth
    int planes = 1;

    QByteArray bytes() const
    {
        QByteArray dib = number<quint32>(headerSize);
        if (headerSize == 12) {
            dib += number<quint16>(quint16(width)) + number<quint16>(quint16(height));
            dib += number<quint16>(quint16(planes)) + number<quint16>(quint16(bits));
        } else {
            dib += number<qint32>(width) + number<qint32>(height);
            dib += number<quint16>(quint16(planes)) + number<quint16>(quint16(bits));
            dib += number<quint32>(compression) + number<quint32>(quint32(pixels.size()));
            dib +=
                number<qint32>(2835) + number<qint32>(2835) + number<quint32>(clrUsed) + number<quint32>(0);
            dib += masksInHeader;
        }
        dib.resize(headerSize, '\0');
        dib += behindHeader;
        if (!fileHeader)
            return dib + pixels;
        const qint64 offset = 14 + dib.size();
        QByteArray head = "BM" + number<quint32>(quint32(offset + pixels.size())) + number<quint32>(0);
        head += number<quint32>(quint32(tellOffset >= 0 ? tellOffset : offset));
        return head + dib + pixels;
    }
};

QByteArray hex(const char* text)
{
    return QByteArray::fromHex(text);
}

const QByteArray fourColors = hex("0000ff00 00ff0000 ff000000 ffffff00"); // red, green, blue, white
constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb green = qRgb(0, 255, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb black = qRgb(0, 0, 0);

/// A 4 bit or 8 bit bitmap of `width` x `height` with run-length codes.
Bitmap runs(int bits, int width, int height, const char* codes)
{
    Bitmap bitmap;
    bitmap.width = width;
    bitmap.height = height;
    bitmap.bits = bits;
    bitmap.compression = bits == 8 ? 1 : 2;
    bitmap.clrUsed = 4;
    bitmap.behindHeader = fourColors;
    bitmap.pixels = hex(codes);
    return bitmap;
}

Bitmap rows(int bits, const char* pixels)
{
    Bitmap bitmap;
    bitmap.bits = bits;
    bitmap.pixels = hex(pixels);
    return bitmap;
}

using Pixels = QList<QRgb>; // from the top left, row by row

QString pixelFault(const QImage& image, const Pixels& expected)
{
    if (image.width() * image.height() != expected.size())
        return QStringLiteral("%1 x %2 pixels").arg(image.width()).arg(image.height());
    for (int i = 0; i < expected.size(); ++i) {
        const QRgb pixel = image.pixel(i % image.width(), i / image.width());
        if (pixel != expected[i])
            return QStringLiteral("pixel %1 is %2 instead of %3")
                .arg(i)
                .arg(pixel, 8, 16, QLatin1Char('0'))
                .arg(expected[i], 8, 16, QLatin1Char('0'));
    }
    return {};
}

/// A source that remembers its greatest read.
class MeteredSource final : public ByteSource
{
  public:
    explicit MeteredSource(QByteArray bytes) : m_bytes(std::move(bytes)) {}
    qint64 size() const override { return m_bytes.size(); }
    qint64 read(qint64 offset, void* out, qint64 length) const override
    {
        greatest = std::max(greatest, length);
        const qint64 count = std::clamp<qint64>(m_bytes.size() - offset, 0, length);
        std::copy_n(m_bytes.constData() + offset, count, static_cast<char*>(out));
        return count;
    }
    mutable qint64 greatest = 0;

  private:
    QByteArray m_bytes;
};

QByteArray encoded(const QImage& image, const char* extension)
{
    const auto bytes = bmpCodec().encode(image, QLatin1String(extension), {});
    return bytes ? *bytes : QByteArray();
}

/// The same bitmap behind a file header that tells the truth, for readers that want one.
QByteArray withFileHeader(const QByteArray& bytes)
{
    const qint64 before = bytes.startsWith("BM") ? 14 : 0;
    const auto offset = quint32(readBmpLayout(bytes, bytes.size())->pixelOffset + 14 - before);
    const QByteArray dib = bytes.mid(before);
    return "BM" + number<quint32>(quint32(14 + dib.size())) + number<quint32>(0) + number<quint32>(offset) +
           dib;
}

QImage swatch()
{
    QImage image(9, 5, QImage::Format_RGB32);
    image.fill(qRgb(200, 30, 60));
    return image;
}

QByteArray pngBytes()
{
    return outputOf(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("png:-")},
                    writePnm(swatch()));
}

QByteArray jpegBytes()
{
    return outputOf(QStringLiteral("convert"),
                    {QStringLiteral("ppm:-"), QStringLiteral("-quality"), QStringLiteral("100"),
                     QStringLiteral("jpeg:-")},
                    writePnm(swatch()));
}

} // namespace

class TestBmpCodec : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void scalesMasks_data();
    void scalesMasks();
    void readsFilesOfTools_data();
    void readsFilesOfTools();
    void readsVariants_data();
    void readsVariants();
    void agreesWithMagick_data();
    void agreesWithMagick();
    void readsEmbeddedPictures_data();
    void readsEmbeddedPictures();
    void refusesABitmapInABitmap();
    void readsEmbeddedPicturesInPlace();
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void writesRuns_data();
    void writesRuns();
    void keepsFormatAndPalette();
    void keepsClearPicturesClear_data();
    void keepsClearPicturesClear();
    void laysAlphaOverWhiteInRuns();
    void refusesToWriteNothing();
    void readsRowsInPieces();
    void stopsWhenCancelled();
    void survivesBrokenFiles();
    void readsRealSamples();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpCodec::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("accepted");
    const QByteArray file = rows(24, "").bytes();
    Bitmap bare = rows(24, "");
    bare.fileHeader = false;
    Bitmap old = bare;
    old.headerSize = 12;
    Bitmap twoPlanes = bare;
    twoPlanes.planes = 2;
    Bitmap oddDepth = bare;
    oddDepth.bits = 7;
    Bitmap noWidth = bare;
    noWidth.width = 0;
    const QString none;
    QTest::newRow("file header") << file << none << true;
    const auto behindMark = [](quint32 headerSize) {
        Bitmap bitmap = rows(24, "");
        bitmap.headerSize = headerSize;
        return bitmap.bytes();
    };
    for (const quint32 size : {12u, 16u, 24u, 36u, 46u, 48u, 64u, 108u, 124u})
        QTest::addRow("file header, then %u bytes", size) << behindMark(size) << none << true;
    for (const quint32 size : {11u, 15u, 65u, 107u})
        QTest::addRow("file header, then %u bytes", size) << behindMark(size) << none << false;
    QTest::newRow("array") << hex("4241 28000000 00000000 0000 0000") + file << none << true;
    QTest::newRow("array of something else")
        << hex("4241 28000000 00000000 0000 0000") + file.mid(2) << none << false;
    Bitmap odd = bare;
    odd.headerSize = 48;
    QTest::newRow("48 bytes, bare, as dib") << odd.bytes() << QStringLiteral("dib") << false;
    QTest::newRow("text that begins with BA")
        << QByteArray("BA is short for Bachelor of Arts, BMX is no degree") << none << false;
    QTest::newRow("text that begins with BM")
        << QByteArray("BMW and other cars of the last century") << none << false;
    QTest::newRow("bare, by its content") << bare.bytes() << none << true;
    QTest::newRow("bare, as dib") << bare.bytes() << QStringLiteral("dib") << true;
    QTest::newRow("OS/2 1, bare, by its content") << old.bytes() << none << false;
    QTest::newRow("OS/2 1, bare, as dib") << old.bytes() << QStringLiteral("dib") << true;
    QTest::newRow("OS/2 1, bare, as rle") << old.bytes() << QStringLiteral("rle") << true;
    QTest::newRow("OS/2 1, bare, as bmp") << old.bytes() << QStringLiteral("bmp") << true;
    QTest::newRow("two planes") << twoPlanes.bytes() << QStringLiteral("dib") << false;
    QTest::newRow("7 bits") << oddDepth.bytes() << QStringLiteral("dib") << false;
    QTest::newRow("no width") << noWidth.bytes() << QStringLiteral("dib") << false;
    QTest::newRow("another kind of rle")
        << hex("52cc000000004600 2e000a0108000800") << QStringLiteral("rle") << false;
    QTest::newRow("empty") << QByteArray() << QStringLiteral("bmp") << false;
    QTest::newRow("one byte") << QByteArray("B") << QStringLiteral("bmp") << false;
}

void TestBmpCodec::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, extension);
    QTEST(m_codec.sniff(head, extension), "accepted");
}

void TestBmpCodec::scalesMasks_data()
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

void TestBmpCodec::scalesMasks()
{
    QFETCH(quint32, mask);
    QFETCH(quint32, pixel);
    QTEST(MaskedChannel(mask, 77).of(pixel), "value");
}

void TestBmpCodec::readsFilesOfTools_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    const auto words = [](const char* text) { return QString::fromLatin1(text).split(QLatin1Char(' ')); };
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(2000, 1)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        const QString netpbm = QStringLiteral("ppmtobmp");
        const QString magick = QStringLiteral("convert");
        const QString graphics = QStringLiteral("gm");
        const QImage deep = colorPicture(size);
        QTest::newRow(name("ppmtobmp windows 24").constData())
            << netpbm << words("-windows -bpp=24") << deep << 24;
        QTest::newRow(name("ppmtobmp os2 24").constData()) << netpbm << words("-os2 -bpp=24") << deep << 24;
        const QImage few = palettePicture(size, 16);
        QTest::newRow(name("ppmtobmp windows 8").constData())
            << netpbm << words("-windows -bpp=8") << few << 8;
        QTest::newRow(name("ppmtobmp os2 8").constData()) << netpbm << words("-os2 -bpp=8") << few << 8;
        QTest::newRow(name("ppmtobmp windows 4").constData())
            << netpbm << words("-windows -bpp=4") << few << 4;
        QTest::newRow(name("ppmtobmp os2 4").constData()) << netpbm << words("-os2 -bpp=4") << few << 4;
        const QImage dots = dotPicture(size);
        QTest::newRow(name("ppmtobmp windows 1").constData())
            << netpbm << words("-windows -bpp=1") << dots << 1;
        QTest::newRow(name("convert version 3").constData())
            << magick << words("ppm:- -type TrueColor bmp3:-") << deep << 24;
        QTest::newRow(name("convert version 5").constData())
            << magick << words("ppm:- -type TrueColor bmp:-") << deep << 24;
        QTest::newRow(name("gm").constData())
            << graphics << words("convert ppm:- -type TrueColor bmp:-") << deep << 24;
    }
    const QSize size(301, 17);
    QTest::newRow("convert runs") << QStringLiteral("convert")
                                  << words("ppm:- -type Palette -compress RLE bmp3:-")
                                  << palettePicture(size, 200) << 8;
    QTest::newRow("gm runs") << QStringLiteral("gm")
                             << words("convert ppm:- -type Palette -compress RLE bmp3:-")
                             << palettePicture(size, 200) << 8;
}

void TestBmpCodec::readsFilesOfTools()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QImage, picture);
    QFETCH(int, bits);
    const QByteArray bytes = outputOf(program, arguments, writePnm(picture));
    QVERIFY(m_codec.sniff(bytes.left(512), QString()));
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(difference(result->image, picture), QString());
    QVERIFY(result->complete && result->isFull());
    QCOMPARE(result->bitsPerPixel, bits);
}

void TestBmpCodec::readsVariants_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Pixels>("pixels");
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("complete");
    const auto add = [](const char* name, const Bitmap& bitmap, const Pixels& pixels, QImage::Format format,
                        bool complete = true) {
        QTest::newRow(name) << bitmap.bytes() << pixels << int(format) << complete;
    };
    // Rows stand from the bottom up: the second stored row is the upper one.
    Bitmap deep = rows(24, "0000ff00ff000000 ff0000ffffff0000");
    add("24 bits", deep, {blue, white, red, green}, QImage::Format_RGB32);
    deep.height = -2;
    add("24 bits, top down", deep, {red, green, blue, white}, QImage::Format_RGB32);
    deep.height = 2;
    deep.fileHeader = false;
    add("24 bits, bare", deep, {blue, white, red, green}, QImage::Format_RGB32);
    deep.clrUsed = 4;
    deep.behindHeader = fourColors;
    add("24 bits, bare, with a palette in passing", deep, {blue, white, red, green}, QImage::Format_RGB32);
    for (const qint64 nonsense : {2, 0, 54, 100000}) {
        Bitmap lies = rows(24, "0000ff00ff000000 ff0000ffffff0000");
        lies.tellOffset = nonsense;
        add(qPrintable(QStringLiteral("24 bits, pixels said to be at %1").arg(nonsense)), lies,
            {blue, white, red, green}, QImage::Format_RGB32);
    }
    Bitmap apart = rows(24, "0000ff00ff000000 ff0000ffffff0000");
    apart.pixels.prepend("gap ");
    apart.tellOffset = 58;
    add("24 bits, pixels behind a gap", apart, {blue, white, red, green}, QImage::Format_RGB32);
    for (const quint32 headerSize : {12u, 16u, 52u, 56u, 64u, 108u, 124u}) {
        for (const bool fileHeader : {true, false}) {
            Bitmap other = rows(24, "0000ff00ff000000 ff0000ffffff0000");
            other.headerSize = headerSize;
            other.fileHeader = fileHeader;
            add(qPrintable(QStringLiteral("24 bits, header of %1, %2").arg(headerSize).arg(fileHeader)),
                other, {blue, white, red, green}, QImage::Format_RGB32);
        }
    }

    for (const quint32 headerSize : {24u, 36u, 46u, 48u}) {
        Bitmap os2 = rows(24, "0000ff00ff000000 ff0000ffffff0000");
        os2.headerSize = headerSize;
        add(qPrintable(QStringLiteral("24 bits, header of %1").arg(headerSize)), os2,
            {blue, white, red, green}, QImage::Format_RGB32);
        Bitmap mapped = rows(8, "00010000 02030000");
        mapped.headerSize = headerSize;
        mapped.behindHeader = fourColors + QByteArray(252 * 4, '\0');
        add(qPrintable(QStringLiteral("8 bits, header of %1").arg(headerSize)), mapped,
            {blue, white, red, green}, QImage::Format_Indexed8);
    }
    Bitmap member = rows(24, "0000ff00ff000000 ff0000ffffff0000");
    member.headerSize = 12;
    member.tellOffset = 14 + 14 + 12; // from the start of the file
    QTest::newRow("24 bits, first of an array")
        << hex("4241 28000000 00000000 0000 0000") + member.bytes() << Pixels{blue, white, red, green}
        << int(QImage::Format_RGB32) << true;

    Bitmap one = rows(1, "40000000 80000000");
    one.behindHeader = hex("0000ff00 ff000000");
    add("1 bit", one, {blue, red, red, blue}, QImage::Format_Mono);
    one.headerSize = 12;
    one.behindHeader = hex("0000ff ff0000");
    add("1 bit, OS/2 1", one, {blue, red, red, blue}, QImage::Format_Mono);
    one.fileHeader = false;
    add("1 bit, OS/2 1, bare", one, {blue, red, red, blue}, QImage::Format_Mono);
    Bitmap two = rows(2, "10000000 b0000000");
    two.behindHeader = fourColors;
    add("2 bits", two, {blue, white, red, green}, QImage::Format_Indexed8);
    Bitmap four = rows(4, "01000000 23000000");
    four.clrUsed = 4;
    four.behindHeader = fourColors;
    add("4 bits, palette of 4", four, {blue, white, red, green}, QImage::Format_Indexed8);
    Bitmap eight = rows(8, "00010000 02030000");
    eight.behindHeader = fourColors + QByteArray(252 * 4, '\0');
    add("8 bits", eight, {blue, white, red, green}, QImage::Format_Indexed8);
    eight.behindHeader = fourColors;
    add("8 bits, palette cut by the pixels", eight, {blue, white, red, green}, QImage::Format_Indexed8);
    eight.clrUsed = 4;
    eight.fileHeader = false;
    add("8 bits, palette of 4, bare", eight, {blue, white, red, green}, QImage::Format_Indexed8);
    eight.pixels = hex("00040000 02ff0000");
    add("8 bits, indices past the palette", eight, {blue, black, red, black}, QImage::Format_Indexed8);
    Bitmap many = rows(8, "00010000 02030000");
    many.clrUsed = 300;
    many.behindHeader = fourColors + QByteArray(296 * 4, '\0');
    add("8 bits, palette of 300", many, {blue, white, red, green}, QImage::Format_Indexed8);

    add("16 bits", rows(16, "007ce003 1f00ff7f"), {blue, white, red, green}, QImage::Format_RGB32);
    Bitmap b565 = rows(16, "00f8e007 1f00ffff");
    b565.compression = 3;
    b565.behindHeader = masks({0xF800, 0x07E0, 0x001F});
    add("16 bits, 565", b565, {blue, white, red, green}, QImage::Format_RGB32);
    b565.tellOffset = 54;
    add("16 bits, 565, pixels said to be where the masks are", b565, {blue, white, red, green},
        QImage::Format_RGB32);
    Bitmap b4444 = rows(16, "000ff000 0f80ffff");
    b4444.headerSize = 108;
    b4444.compression = 3;
    b4444.masksInHeader = masks({0x0F00, 0x00F0, 0x000F, 0xF000});
    add("16 bits, 4444, version 4", b4444,
        {qRgba(0, 0, 255, 8 * 17), white, qRgba(255, 0, 0, 0), qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);
    Bitmap b1555 = rows(16, "00fce003 1f80ffff");
    b1555.compression = 6;
    b1555.behindHeader = masks({0x7C00, 0x03E0, 0x001F, 0x8000});
    add("16 bits, 1555, loose masks", b1555, {blue, white, red, qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);

    add("32 bits", rows(32, "0000ff0000ff0080 ff0000ffffffff01"), {blue, white, red, green},
        QImage::Format_RGB32);
    Bitmap rgbx = rows(32, "ff00000000ff0000 0000ff00ffffff00");
    rgbx.compression = 3;
    rgbx.behindHeader = masks({0xFF, 0xFF00, 0xFF0000});
    add("32 bits, red first", rgbx, {blue, white, red, green}, QImage::Format_RGB32);
    Bitmap ten = rows(32, "0000f03f00fc0f00 ff030000ffffff3f");
    ten.compression = 3;
    ten.behindHeader = masks({0x3FF00000, 0x000FFC00, 0x000003FF});
    add("32 bits, ten each", ten, {blue, white, red, green}, QImage::Format_RGB32);
    Bitmap v5 = rows(32, "0000ff8000ff0000 ff0000ffffffff01");
    v5.headerSize = 124;
    v5.compression = 3;
    v5.masksInHeader = masks({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    add("32 bits, alpha, version 5", v5,
        {blue, qRgba(255, 255, 255, 1), qRgba(255, 0, 0, 128), qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);
    v5.headerSize = 56;
    add("32 bits, alpha, header of 56", v5,
        {blue, qRgba(255, 255, 255, 1), qRgba(255, 0, 0, 128), qRgba(0, 255, 0, 0)}, QImage::Format_ARGB32);
    Bitmap blank = rows(32, "0000ff0000ff0000 ff000000ffffff00");
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
    Bitmap blank1555 = rows(16, "007ce003 1f00ff7f");
    blank1555.compression = 6;
    blank1555.behindHeader = masks({0x7C00, 0x03E0, 0x001F, 0x8000});
    add("16 bits, alpha 0 everywhere, loose masks", blank1555, {blue, white, red, green},
        QImage::Format_RGB32);
    v5.headerSize = 52;
    v5.masksInHeader.truncate(12);
    add("32 bits, header of 52 has no alpha", v5, {blue, white, red, green}, QImage::Format_RGB32);
    Bitmap noMasks = rows(32, "0000ff0000ff0000 ff000000ffffff00");
    noMasks.compression = 3;
    noMasks.behindHeader = masks({0, 0, 0});
    add("32 bits, masks all 0", noMasks, {blue, white, red, green}, QImage::Format_RGB32);

    const auto indexed = QImage::Format_Indexed8;
    add("RLE8", runs(8, 2, 2, "0100 0101 0000 0102 0103 0001"), {blue, white, red, green}, indexed);
    add("RLE8, literals", runs(8, 3, 2, "0003 01020300 0000 0301 0001"),
        {green, green, green, green, blue, white}, indexed);
    add("RLE8, no end mark", runs(8, 2, 2, "0201 0000 0202"), {blue, blue, green, green}, indexed);
    add("RLE8, delta", runs(8, 3, 3, "0101 0002 0101 0102 0001"),
        {red, red, red, red, red, blue, green, red, red}, indexed);
    add("RLE8, run past the edge", runs(8, 2, 2, "ff01 0000 ff02 0000 ff03 0001"), {blue, blue, green, green},
        indexed);
    add("RLE8, delta out of the picture", runs(8, 2, 2, "0201 0002ffff 0203 0001"), {red, red, green, green},
        indexed);
    add("RLE8, end mark early", runs(8, 2, 2, "0101 0001"), {red, red, green, red}, indexed);
    add("RLE8, cut short", runs(8, 2, 2, "0201 0000 01"), {red, red, green, green}, indexed, false);
    add("RLE8, literals cut short", runs(8, 4, 1, "0004 0102"), {green, blue, red, red}, indexed, false);
    Bitmap downward = runs(8, 2, 2, "0201 0000 0202 0001");
    downward.height = -2;
    add("RLE8, top down", downward, {green, green, blue, blue}, indexed);
    Bitmap bareRuns = runs(8, 2, 2, "0201 0000 0202 0001");
    bareRuns.fileHeader = false;
    add("RLE8, bare", bareRuns, {blue, blue, green, green}, indexed);
    add("RLE4", runs(4, 5, 2, "0512 0000 0003 0120 0213 0001"),
        {red, green, blue, green, white, green, blue, green, blue, green}, indexed);
    add("RLE4, delta", runs(4, 3, 2, "0111 0002 0101 0122 0001"), {red, red, blue, green, red, red}, indexed);
    Bitmap os2 = rows(24, "020000ff 0000 0002 00ff00ffffff 0001");
    os2.compression = 4;
    os2.headerSize = 64;
    // One code of two literals does not exist: 00 02 is a delta. Three stand for it, the third beyond the
    // edge.
    os2.pixels = hex("020000ff 0000 0003 ff0000ffffff00000000 0001");
    add("RLE24", os2, {blue, white, red, red}, QImage::Format_RGB32);
    Bitmap marked = os2; // a run of 255 pixels that begins as a JPEG does
    marked.pixels = hex("ffd8ff01 0000 ffd8ff02 0001");
    add("RLE24, as if a JPEG began", marked,
        {qRgb(2, 255, 0xD8), qRgb(2, 255, 0xD8), qRgb(1, 255, 0xD8), qRgb(1, 255, 0xD8)},
        QImage::Format_RGB32);
    os2.headerSize = 40;
    add("RLE24, header of 40", os2, {blue, white, red, red}, QImage::Format_RGB32);
    os2.pixels = hex("020000ff 0000 0100ff");
    add("RLE24, cut short", os2, {black, black, red, red}, QImage::Format_RGB32, false);
}

void TestBmpCodec::readsVariants()
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

void TestBmpCodec::agreesWithMagick_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto noisy = [](Bitmap bitmap) {
        bitmap.width = 61;
        bitmap.height = 9;
        const qint64 rowBytes = (bitmap.width * bitmap.bits + 31) / 32 * 4;
        const QImage noise = greyPicture(QSize(int(rowBytes), bitmap.height));
        for (int y = 0; y < bitmap.height; ++y)
            bitmap.pixels += QByteArray(reinterpret_cast<const char*>(noise.constScanLine(y)), rowBytes);
        return bitmap.bytes();
    };
    QTest::newRow("16 bits") << noisy(rows(16, ""));
    Bitmap b565 = rows(16, "");
    b565.compression = 3;
    b565.behindHeader = masks({0xF800, 0x07E0, 0x001F});
    QTest::newRow("16 bits, 565") << noisy(b565);
    QTest::newRow("24 bits") << noisy(rows(24, ""));
    Bitmap alpha = rows(32, "");
    alpha.headerSize = 124;
    alpha.compression = 3;
    alpha.masksInHeader = masks({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    QTest::newRow("32 bits, alpha") << noisy(alpha);
    Bitmap bgra = alpha;
    bgra.masksInHeader = masks({0xFF00, 0xFF0000, 0xFF000000, 0xFF});
    QTest::newRow("32 bits, alpha last") << noisy(bgra);
}

void TestBmpCodec::agreesWithMagick()
{
    QFETCH(QByteArray, bytes);
    const auto result = decoded(m_codec, bytes);
    QVERIFY(result);
    QCOMPARE(difference(result->image, readByMagick(bytes, QStringLiteral("bmp"))), QString());
}

void TestBmpCodec::readsEmbeddedPictures_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<quint32>("headerSize");
    QTest::addColumn<quint32>("colors");
    QTest::addColumn<bool>("fileHeader");
    for (const int bits : {0, 8, 24, 32}) {
        for (const quint32 headerSize : {40u, 108u, 124u})
            QTest::addRow("%d bits, header of %u", bits, headerSize) << bits << headerSize << 0u << true;
    }
    QTest::newRow("8 bits, colours told that are not there") << 8 << 40u << 4u << true;
    QTest::newRow("bare") << 0 << 40u << 0u << false;
    QTest::newRow("bare, 8 bits") << 8 << 40u << 0u << false;
    QTest::newRow("bare, 24 bits") << 24 << 124u << 0u << false;
}

void TestBmpCodec::readsEmbeddedPictures()
{
    QFETCH(int, bits);
    QFETCH(quint32, headerSize);
    QFETCH(quint32, colors);
    QFETCH(bool, fileHeader);
    Bitmap holder;
    holder.headerSize = headerSize;
    holder.bits = bits;
    holder.width = 9;
    holder.height = 5;
    holder.clrUsed = colors;
    holder.fileHeader = fileHeader;
    holder.compression = 5;
    holder.pixels = pngBytes();
    QVERIFY(m_codec.sniff(holder.bytes().left(1024), QString()));
    const auto png = decoded(m_codec, holder.bytes());
    QVERIFY2(png, png ? "" : qPrintable(png.error().text));
    QCOMPARE(difference(png->image, swatch()), QString());

    holder.compression = 4;
    holder.pixels = jpegBytes();
    const auto jpeg = decoded(m_codec, holder.bytes());
    QVERIFY2(jpeg, jpeg ? "" : qPrintable(jpeg.error().text));
    QCOMPARE(jpeg->image.size(), QSize(9, 5));
    QVERIFY(std::abs(qRed(jpeg->image.pixel(4, 2)) - 200) <= 2);
}

void TestBmpCodec::refusesABitmapInABitmap()
{
    Bitmap holder;
    holder.bits = 0;
    holder.compression = 4;
    holder.pixels = rows(24, "").bytes();
    const auto nested = decoded(m_codec, holder.bytes());
    QVERIFY(!nested);
    QCOMPARE(nested.error().kind, ErrorKind::Damaged);
}

void TestBmpCodec::readsEmbeddedPicturesInPlace()
{
    constexpr qint64 huge = qint64(6) << 30; // bytes; a file with a hole, which takes none of the disk
    for (const QByteArray& embedded : {jpegBytes(), pngBytes(), QByteArray("no picture")}) {
        Bitmap holder;
        holder.bits = 0;
        holder.width = 9;
        holder.height = 5;
        holder.compression = embedded.startsWith("\x89") ? 5 : 4;
        holder.pixels = embedded;
        const ScratchFiles files;
        const QString path = files.write(QStringLiteral("huge.bmp"), holder.bytes());
        QVERIFY(QFile::resize(path, huge));
        QSize size;
        const qint64 growth = peakGrowth([&] {
            const auto source = ByteSource::open(path);
            const auto decoder = m_codec.open(*source);
            const CancelFlag go = false;
            const auto picture = decoder ? (*decoder)->decode(1, QSize(), go) : decoder.error();
            size = picture ? picture->image.size() : QSize();
        });
        QCOMPARE(size, embedded.startsWith("no") ? QSize() : QSize(9, 5));
        QVERIFY2(growth >= 0 && growth < 32 << 20, qPrintable(QString::number(growth)));
    }
}

void TestBmpCodec::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const Bitmap& bitmap, ErrorKind kind) {
        QTest::newRow(name) << bitmap.bytes() << int(kind);
    };
    Bitmap huffman = rows(1, "0000");
    huffman.compression = 3;
    huffman.headerSize = 64;
    add("Huffman 1D", huffman, ErrorKind::Unsupported);
    add("64 bits", rows(64, "00"), ErrorKind::Unsupported);
    add("3 bits", rows(3, "00"), ErrorKind::Unsupported);
    Bitmap cmyk = rows(32, "00");
    cmyk.compression = 11;
    add("CMYK", cmyk, ErrorKind::Unsupported);
    Bitmap mismatch = rows(24, "00");
    mismatch.compression = 1;
    add("RLE8 with 24 bits", mismatch, ErrorKind::Damaged);
    Bitmap wide = rows(24, "00");
    wide.width = 70000;
    add("70000 pixels wide", wide, ErrorKind::TooLarge);
    Bitmap high = rows(1, "00");
    high.height = std::numeric_limits<int>::max();
    add("2 thousand million rows", high, ErrorKind::TooLarge);
    high.height = std::numeric_limits<int>::min();
    add("the most negative height", high, ErrorKind::Damaged);
    Bitmap none = rows(24, "00");
    none.width = 0;
    add("no width", none, ErrorKind::Damaged);
    none.width = -2;
    add("a negative width", none, ErrorKind::Damaged);
    add("no pixels", rows(24, ""), ErrorKind::Damaged);
    add("no runs", runs(8, 2, 2, ""), ErrorKind::Damaged);
}

void TestBmpCodec::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    const auto result = decoded(m_codec, bytes);
    QVERIFY(!result);
    QCOMPARE(int(result.error().kind), kind);
    QVERIFY(!result.error().text.isEmpty());
}

void TestBmpCodec::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("1 bit") << encoded(dotPicture(QSize(19, 6)), "bmp");
    QTest::newRow("8 bits") << encoded(palettePicture(QSize(11, 6), 5), "bmp");
    QTest::newRow("24 bits") << encoded(colorPicture(QSize(7, 6)), "bmp");
    QTest::newRow("32 bits") << encoded(alphaPicture(QSize(5, 6)), "bmp");
    QTest::newRow("runs") << encoded(palettePicture(QSize(11, 6), 5), "rle");
}

void TestBmpCodec::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, bytes);
    const auto whole = decoded(m_codec, bytes);
    QVERIFY(whole && whole->complete);
    const qint64 used = BmpLayout(*readBmpLayout(bytes, bytes.size())).usedRowBytes();
    const qint64 pixelsAt = qFromLittleEndian<quint32>(bytes.constData() + 10);
    const bool isRuns = bytes[30] == 1;
    int rowsBefore = 0;
    for (int length = 0; length < bytes.size(); ++length) {
        const auto part = decoded(m_codec, bytes.left(length));
        if (!part) {
            QVERIFY(part.error().kind == ErrorKind::Damaged);
            const qint64 pixelBytes = std::max(whole->bitsPerPixel / 8, 1);
            QVERIFY2(isRuns || length < pixelsAt + pixelBytes, qPrintable(QString::number(length)));
            continue;
        }
        int equal = 0; // rows from the bottom that are those of the whole picture
        const QImage& image = part->image;
        while (equal < image.height() &&
               difference(image.copy(0, image.height() - 1 - equal, image.width(), 1),
                          whole->image.copy(0, image.height() - 1 - equal, image.width(), 1))
                   .isEmpty())
            ++equal;
        QVERIFY2(equal >= rowsBefore, qPrintable(QString::number(length)));
        rowsBefore = equal;
        if (isRuns)
            continue;
        const qint64 stride = (used + 3) / 4 * 4;
        const qint64 held = (length - pixelsAt + stride - used) / stride;
        QVERIFY2(equal >= held, qPrintable(QString::number(length)));
        QCOMPARE(part->complete, held >= image.height());
    }
}

void TestBmpCodec::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(64, 2)}) {
        const auto name = [size](const char* kind) {
            return QStringLiteral("%1 %2x%3")
                .arg(QLatin1String(kind))
                .arg(size.width())
                .arg(size.height())
                .toLatin1();
        };
        QTest::newRow(name("mono").constData()) << dotPicture(size) << 1;
        QTest::newRow(name("palette").constData()) << palettePicture(size, 200) << 8;
        QTest::newRow(name("grey").constData()) << greyPicture(size) << 8;
        QTest::newRow(name("color").constData()) << colorPicture(size) << 24;
        QTest::newRow(name("alpha").constData()) << alphaPicture(size) << 32;
    }
    QTest::newRow("16-bit grey") << greyPicture(QSize(5, 5)).convertToFormat(QImage::Format_Grayscale16) << 8;
    QTest::newRow("lowest bit first")
        << dotPicture(QSize(13, 5)).convertToFormat(QImage::Format_MonoLSB) << 1;
    QTest::newRow("888") << colorPicture(QSize(5, 5)).convertToFormat(QImage::Format_RGB888) << 24;
    QTest::newRow("565") << colorPicture(QSize(5, 5)).convertToFormat(QImage::Format_RGB16) << 24;
    QImage clear = palettePicture(QSize(5, 5), 9);
    clear.setColor(3, qRgba(1, 2, 3, 0));
    QTest::newRow("palette with a clear entry") << clear << 32;
}

void TestBmpCodec::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    QFETCH(int, bits);
    for (const char* extension : {"bmp", "dib"}) {
        const auto bytes = m_codec.encode(picture, QLatin1String(extension), {});
        QVERIFY(bytes);
        QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("bmp")), picture), QString());
        if (bits != 32)
            QCOMPARE(difference(readByNetpbm(*bytes, QStringLiteral("bmptopnm")), picture), QString());
        const auto own = decoded(m_codec, *bytes);
        QVERIFY(own && own->complete);
        QCOMPARE(own->bitsPerPixel, bits);
        QCOMPARE(difference(own->image, picture), QString());
    }
}

void TestBmpCodec::writesRuns_data()
{
    QTest::addColumn<QImage>("picture");
    QImage plain(700, 3, QImage::Format_Indexed8);
    plain.setColorTable({red, green, blue});
    plain.fill(2);
    QTest::newRow("long runs") << plain;
    QTest::newRow("palette") << palettePicture(QSize(301, 7), 200);
    QTest::newRow("two by two") << palettePicture(QSize(2, 2), 4);
    QTest::newRow("1 x 1") << palettePicture(QSize(1, 1), 2);
    QTest::newRow("grey") << greyPicture(QSize(600, 5));
    QTest::newRow("mono") << dotPicture(QSize(61, 5));
    QTest::newRow("few colours in 32 bits")
        << palettePicture(QSize(61, 5), 256).convertToFormat(QImage::Format_RGB32);
}

void TestBmpCodec::writesRuns()
{
    QFETCH(QImage, picture);
    const auto bytes = m_codec.encode(picture, QStringLiteral("rle"), {});
    QVERIFY(bytes);
    QCOMPARE(int((*bytes)[30]), 1);
    QCOMPARE(difference(readByMagick(*bytes, QStringLiteral("bmp")), picture), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, picture), QString());
}

void TestBmpCodec::keepsFormatAndPalette()
{
    const QImage picture = palettePicture(QSize(9, 9), 17);
    const auto own = decoded(m_codec, encoded(picture, "bmp"));
    QVERIFY(own);
    QCOMPARE(own->image.format(), QImage::Format_Indexed8);
    QCOMPARE(own->image.colorTable().mid(0, 17), picture.colorTable());
    QImage tinted = dotPicture(QSize(9, 9));
    tinted.setColorTable({red, blue});
    const auto mono = decoded(m_codec, encoded(tinted, "bmp"));
    QVERIFY(mono);
    QCOMPARE(mono->image.format(), QImage::Format_Mono);
    QCOMPARE(mono->image.colorTable(), tinted.colorTable());
    QVERIFY(m_codec.canEncode(QStringLiteral("dib")) && !m_codec.canEncode(QStringLiteral("gif")));
}

void TestBmpCodec::keepsClearPicturesClear_data()
{
    QTest::addColumn<QImage>("picture");
    QImage deep(6, 5, QImage::Format_ARGB32);
    deep.fill(qRgba(1, 2, 3, 0));
    QTest::newRow("colours below") << deep;
    deep.fill(0U);
    QTest::newRow("nothing below") << deep;
    QImage indexed(6, 5, QImage::Format_Indexed8);
    indexed.setColorTable({qRgba(1, 2, 3, 0), qRgb(4, 5, 6)});
    indexed.fill(0U);
    QTest::newRow("palette") << indexed;
}

void TestBmpCodec::keepsClearPicturesClear()
{
    QFETCH(QImage, picture);
    for (const char* extension : {"bmp", "dib"}) {
        const QByteArray bytes = encoded(picture, extension);
        const auto own = decoded(m_codec, bytes);
        QVERIFY(own);
        QCOMPARE(difference(own->image, picture, true), QString());
        QCOMPARE(difference(readByMagick(bytes, QStringLiteral("bmp")), picture, true), QString());
    }
}

void TestBmpCodec::laysAlphaOverWhiteInRuns()
{
    QImage picture(3, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, qRgba(10, 20, 30, 255));
    picture.setPixel(1, 0, qRgba(10, 20, 30, 0));
    picture.setPixel(2, 0, qRgba(255, 0, 0, 51));
    const auto own = decoded(m_codec, encoded(picture, "rle"));
    QVERIFY(own);
    QCOMPARE(pixelFault(own->image, {qRgb(10, 20, 30), white, qRgb(255, 204, 204)}), QString());
}

void TestBmpCodec::refusesToWriteNothing()
{
    for (const char* extension : {"bmp", "rle"}) {
        const auto bytes = m_codec.encode(QImage(), QLatin1String(extension), {});
        QVERIFY(!bytes);
        QCOMPARE(bytes.error().kind, ErrorKind::Unsupported);
    }
}

void TestBmpCodec::readsRowsInPieces()
{
    const auto source = std::make_shared<MeteredSource>(encoded(colorPicture(QSize(1000, 1200)), "bmp"));
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder);
    const CancelFlag go = false;
    QVERIFY((*decoder)->decode(1, QSize(), go));
    QVERIFY2(source->greatest <= 300000, qPrintable(QString::number(source->greatest)));
}

void TestBmpCodec::stopsWhenCancelled()
{
    for (const char* extension : {"bmp", "rle"}) {
        const QImage picture = palettePicture(QSize(300, 300), 50);
        const auto decoder = m_codec.open(ByteSource::fromBytes(encoded(picture, extension)));
        QVERIFY(decoder);
        CancelFlag cancel = true;
        const auto result = (*decoder)->decode(1, QSize(), cancel);
        QVERIFY(!result);
        QCOMPARE(result.error().kind, ErrorKind::Cancelled);
        cancel = false;
        QVERIFY((*decoder)->decode(1, QSize(), cancel));
    }
}

void TestBmpCodec::survivesBrokenFiles()
{
    Bitmap alpha = rows(16, "00000000 ffffffff");
    alpha.compression = 6;
    alpha.behindHeader = masks({0xF00, 0xF0, 0xF, 0xF000});
    Bitmap holder;
    holder.bits = 0;
    holder.compression = 5;
    holder.pixels = pngBytes();
    const QList<QByteArray> parents = {encoded(dotPicture(QSize(19, 6)), "bmp"),
                                       encoded(palettePicture(QSize(21, 16), 50), "rle"),
                                       encoded(palettePicture(QSize(21, 16), 50), "bmp"),
                                       encoded(colorPicture(QSize(7, 6)), "bmp"),
                                       encoded(alphaPicture(QSize(5, 6)), "bmp"),
                                       runs(4, 9, 9, "0512 0000 0003 0120 0213 0001").bytes(),
                                       alpha.bytes(),
                                       holder.bytes()};
    quint32 seed = 1;
    for (int child = 0; child < 320; ++child, ++seed) {
        const QByteArray bytes = Mutator(parents[child % parents.size()], seed).next();
        const QString fault = misbehaviour(m_codec, bytes);
        QVERIFY2(fault.isEmpty(), qPrintable(QStringLiteral("seed %1: %2").arg(seed).arg(fault)));
    }
}

void TestBmpCodec::readsRealSamples()
{
    const QString folder = qEnvironmentVariable("QUORVIA_SAMPLES");
    if (folder.isEmpty() || !QDir(folder).exists()) {
        qInfo("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
        return;
    }
    int read = 0;
    for (const QString& kind : m_codec.extensions()) {
        const QDir place(folder + QLatin1Char('/') + kind);
        for (const QString& name : place.entryList(QDir::Files)) {
            QFile file(place.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QByteArray bytes = file.readAll();
            if (!m_codec.sniff(bytes.left(512), kind))
                continue; // the extension rle is shared with another format
            const auto result = decoded(m_codec, bytes);
            QVERIFY2(result, qPrintable(name));
            const QImage other = readByMagick(withFileHeader(bytes), QStringLiteral("bmp"));
            QCOMPARE(result->image.size(), other.size());
            int unlike = 0;
            for (int i = 0; i < other.width() * other.height(); ++i) {
                const QPoint at(i % other.width(), i / other.width());
                unlike += result->image.pixel(at) != other.pixel(at) ? 1 : 0;
            }
            // Pixels that a delta skips are filled by each reader in its own way.
            QVERIFY2(unlike <= other.width() * other.height() / 200,
                     qPrintable(QStringLiteral("%1: %2 pixels").arg(name).arg(unlike)));
            ++read;
        }
    }
    QVERIFY(read > 0);
}

QTEST_GUILESS_MAIN(TestBmpCodec)
#include "tst_bmpcodec.moc"
