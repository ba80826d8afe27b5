// Bitmaps that hold a whole PNG or JPEG file.
#include "BmpMaker.h"
#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"

#include <QFile>
#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

QImage swatch()
{
    QImage image(9, 5, QImage::Format_RGB32);
    image.fill(qRgb(200, 30, 60));
    return image;
}

QByteArray pngBytes()
{
    return runTool(QStringLiteral("convert"), {QStringLiteral("ppm:-"), QStringLiteral("png:-")},
                   writePnm(swatch()));
}

QByteArray jpegBytes()
{
    return runTool(QStringLiteral("convert"),
                   {QStringLiteral("ppm:-"), QStringLiteral("-quality"), QStringLiteral("100"),
                    QStringLiteral("jpeg:-")},
                   writePnm(swatch()));
}

} // namespace

class TestBmpEmbedded : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readsEmbeddedPictures_data();
    void readsEmbeddedPictures();
    void refusesABitmapInABitmap();
    void readsEmbeddedPicturesInPlace();

  private:
    const Codec& m_codec = bmpCodec();
};

void TestBmpEmbedded::readsEmbeddedPictures_data()
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

void TestBmpEmbedded::readsEmbeddedPictures()
{
    QFETCH(int, bits);
    QFETCH(quint32, headerSize);
    QFETCH(quint32, colors);
    QFETCH(bool, fileHeader);
    BmpMaker holder;
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

void TestBmpEmbedded::refusesABitmapInABitmap()
{
    BmpMaker holder;
    holder.bits = 0;
    holder.compression = 4;
    holder.pixels = BmpMaker::rows(24, "").bytes();
    const auto nested = decoded(m_codec, holder.bytes());
    QVERIFY(!nested);
    QCOMPARE(nested.error().kind, ErrorKind::Damaged);
}

void TestBmpEmbedded::readsEmbeddedPicturesInPlace()
{
    constexpr qint64 huge = qint64(6) << 30; // bytes; a file with a hole, which takes none of the disk
    for (const QByteArray& embedded : {jpegBytes(), pngBytes(), QByteArray("no picture")}) {
        BmpMaker holder;
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

QTEST_GUILESS_MAIN(TestBmpEmbedded)
#include "tst_bmpembedded.moc"
