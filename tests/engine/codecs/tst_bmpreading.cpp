// Bitmaps that programs write, and how the codec knows one when it sees it.
#include "BmpMaker.h"
#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "Hex.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RowNames.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

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

} // namespace

class TestBmpReading : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void sniffs_data();
    void sniffs();
    void readsFilesOfTools_data();
    void readsFilesOfTools();
    void agreesWithMagick_data();
    void agreesWithMagick();
    void readsRowsInPieces();
    void readsRealSamples();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpReading::sniffs_data()
{
    QTest::addColumn<QByteArray>("head");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("accepted");
    const QByteArray file = BmpMaker::rows(24, "").bytes();
    BmpMaker bare = BmpMaker::rows(24, "");
    bare.fileHeader = false;
    BmpMaker old = bare;
    old.headerSize = 12;
    BmpMaker twoPlanes = bare;
    twoPlanes.planes = 2;
    BmpMaker oddDepth = bare;
    oddDepth.bits = 7;
    BmpMaker noWidth = bare;
    noWidth.width = 0;
    const QString none;
    QTest::newRow("file header") << file << none << true;
    const auto behindMark = [](quint32 headerSize) {
        BmpMaker bitmap = BmpMaker::rows(24, "");
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
    BmpMaker odd = bare;
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

void TestBmpReading::sniffs()
{
    QFETCH(QByteArray, head);
    QFETCH(QString, extension);
    QTEST(m_codec.sniff(head, extension), "accepted");
}

void TestBmpReading::readsFilesOfTools_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    const auto words = [](const char* text) { return QString::fromLatin1(text).split(QLatin1Char(' ')); };
    for (const QSize size : {QSize(1, 1), QSize(1, 2000), QSize(7, 13), QSize(37, 5), QSize(2000, 1)}) {
        const QString netpbm = QStringLiteral("ppmtobmp");
        const QString magick = QStringLiteral("convert");
        const QString graphics = QStringLiteral("gm");
        const QImage deep = colorPicture(size);
        QTest::newRow(rowName("ppmtobmp windows 24", size).constData())
            << netpbm << words("-windows -bpp=24") << deep << 24;
        QTest::newRow(rowName("ppmtobmp os2 24", size).constData())
            << netpbm << words("-os2 -bpp=24") << deep << 24;
        const QImage few = palettePicture(size, 16);
        QTest::newRow(rowName("ppmtobmp windows 8", size).constData())
            << netpbm << words("-windows -bpp=8") << few << 8;
        QTest::newRow(rowName("ppmtobmp os2 8", size).constData())
            << netpbm << words("-os2 -bpp=8") << few << 8;
        QTest::newRow(rowName("ppmtobmp windows 4", size).constData())
            << netpbm << words("-windows -bpp=4") << few << 4;
        QTest::newRow(rowName("ppmtobmp os2 4", size).constData())
            << netpbm << words("-os2 -bpp=4") << few << 4;
        const QImage dots = dotPicture(size);
        QTest::newRow(rowName("ppmtobmp windows 1", size).constData())
            << netpbm << words("-windows -bpp=1") << dots << 1;
        QTest::newRow(rowName("convert version 3", size).constData())
            << magick << words("ppm:- -type TrueColor bmp3:-") << deep << 24;
        QTest::newRow(rowName("convert version 5", size).constData())
            << magick << words("ppm:- -type TrueColor bmp:-") << deep << 24;
        QTest::newRow(rowName("gm", size).constData())
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

void TestBmpReading::readsFilesOfTools()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QImage, picture);
    QFETCH(int, bits);
    const QByteArray bytes = runTool(program, arguments, writePnm(picture));
    QVERIFY(m_codec.sniff(bytes.left(512), QString()));
    const auto result = decoded(m_codec, bytes);
    QVERIFY2(result, result ? "" : qPrintable(result.error().text));
    QCOMPARE(difference(result->image, picture), QString());
    QVERIFY(result->complete && result->isFull());
    QCOMPARE(result->bitsPerPixel, bits);
}

void TestBmpReading::agreesWithMagick_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto noisy = [](BmpMaker bitmap) {
        bitmap.width = 61;
        bitmap.height = 9;
        const qint64 rowBytes = (bitmap.width * bitmap.bits + 31) / 32 * 4;
        const QImage noise = greyPicture(QSize(int(rowBytes), bitmap.height));
        for (int y = 0; y < bitmap.height; ++y)
            bitmap.pixels += QByteArray(reinterpret_cast<const char*>(noise.constScanLine(y)), rowBytes);
        return bitmap.bytes();
    };
    QTest::newRow("16 bits") << noisy(BmpMaker::rows(16, ""));
    BmpMaker b565 = BmpMaker::rows(16, "");
    b565.compression = 3;
    b565.behindHeader = masks({0xF800, 0x07E0, 0x001F});
    QTest::newRow("16 bits, 565") << noisy(b565);
    QTest::newRow("24 bits") << noisy(BmpMaker::rows(24, ""));
    BmpMaker alpha = BmpMaker::rows(32, "");
    alpha.headerSize = 124;
    alpha.compression = 3;
    alpha.masksInHeader = masks({0xFF0000, 0xFF00, 0xFF, 0xFF000000});
    QTest::newRow("32 bits, alpha") << noisy(alpha);
    BmpMaker bgra = alpha;
    bgra.masksInHeader = masks({0xFF00, 0xFF0000, 0xFF000000, 0xFF});
    QTest::newRow("32 bits, alpha last") << noisy(bgra);
}

void TestBmpReading::agreesWithMagick()
{
    QFETCH(QByteArray, bytes);
    const auto result = decoded(m_codec, bytes);
    QVERIFY(result);
    QCOMPARE(difference(result->image, readByMagick(bytes, QStringLiteral("bmp"))), QString());
}

void TestBmpReading::readsRowsInPieces()
{
    const auto source =
        std::make_shared<MeteredSource>(encodeBytes(m_codec, colorPicture(QSize(1000, 1200)), "bmp"));
    const auto decoder = m_codec.open(source);
    QVERIFY(decoder);
    const CancelFlag go = false;
    QVERIFY((*decoder)->decode(1, QSize(), go));
    QVERIFY2(source->greatest <= 300000, qPrintable(QString::number(source->greatest)));
}

void TestBmpReading::readsRealSamples()
{
    const QString folder = qEnvironmentVariable("QUORVIA_SAMPLES");
    if (folder.isEmpty() || !QDir(folder).exists())
        QSKIP("QUORVIA_SAMPLES names no folder: the real samples are not looked at");
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

QTEST_GUILESS_MAIN(TestBmpReading)
#include "tst_bmpreading.moc"
