#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "RefusalChecks.h"
#include "WritingRows.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestPcxWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsTheDepthOnSave_data();
    void keepsTheDepthOnSave();
    void refusesToWrite();
    void writesOnePage();

  private:
    const Codec& m_codec = pcxCodec();
    const Codec& m_book = dcxCodec();
};

void TestPcxWriting::writesWhatOthersRead_data()
{
    addSizeAndFormatRows({QSize(1, 1), QSize(13, 7), QSize(1, 2000), QSize(2001, 1), QSize(70, 150)});
}

void TestPcxWriting::writesWhatOthersRead()
{
    QFETCH(QSize, size);
    QFETCH(int, format);
    const QImage image = imageOf(samplePicture(size)).convertToFormat(QImage::Format(format));
    const Rgba expected = overWhite(image);
    const auto bytes = m_codec.encode(image, QStringLiteral("pcx"), {});
    QVERIFY2(bytes, bytes ? "" : qPrintable(bytes.error().text));
    QCOMPARE(firstDifference(fromPnm(runTool(QStringLiteral("pcxtoppm"), {}, *bytes)), expected), QString());
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(firstDifference(rgbaOf(own->image), expected), QString());
}

void TestPcxWriting::keepsTheDepthOnSave_data()
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

void TestPcxWriting::keepsTheDepthOnSave()
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

void TestPcxWriting::refusesToWrite()
{
    for (const Codec* codec : {&m_codec, &m_book}) {
        const QString extension = codec->extensions().first();
        QVERIFY(codec->canEncode(extension));
        QVERIFY(!codec->canEncode(QStringLiteral("png")));
        const QList<QImage> images = {QImage(), QImage(65536, 1, QImage::Format_Mono),
                                      QImage(1, 65536, QImage::Format_Mono)};
        QCOMPARE(writingRefusalFault(*codec, extension, images), QString());
    }
    QImage widest(65535, 2, QImage::Format_Grayscale8);
    widest.fill(77);
    const auto bytes = m_codec.encode(widest, QStringLiteral("pcx"), {});
    QVERIFY(bytes);
    const auto own = decoded(m_codec, *bytes);
    QVERIFY(own && own->complete);
    QCOMPARE(qRed(own->image.pixel(65534, 1)), 77);
}

void TestPcxWriting::writesOnePage()
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

QTEST_GUILESS_MAIN(TestPcxWriting)
#include "tst_pcxwriting.moc"
