#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RowNames.h"
#include "WmfChecks.h"
#include "WritingRows.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestWmfWriting : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writesWhatOthersRead_data();
    void writesWhatOthersRead();
    void keepsDepthAndPalette_data();
    void keepsDepthAndPalette();
    void laysAlphaOverWhite();
    void refusesToWrite();

  private:
    const Codec& m_codec = wmfCodec();
};

void TestWmfWriting::writesWhatOthersRead_data()
{
    QTest::addColumn<QImage>("picture");
    for (const QSize size : {QSize(1, 1), QSize(1, 300), QSize(37, 5), QSize(64, 20)}) {
        QTest::newRow(rowName("mono", size).constData()) << dotPicture(size);
        QTest::newRow(rowName("few colours", size).constData()) << palettePicture(size, 7);
        QTest::newRow(rowName("palette", size).constData()) << palettePicture(size, 200);
        QTest::newRow(rowName("grey", size).constData()) << greyPicture(size);
        QTest::newRow(rowName("colour", size).constData()) << colorPicture(size);
    }
}

void TestWmfWriting::writesWhatOthersRead()
{
    QFETCH(QImage, picture);
    const auto file = m_codec.encode(picture, QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto own = decoded(m_codec, *file);
    QVERIFY(own && own->complete);
    QCOMPARE(difference(own->image, picture), QString());

    // Turned into SVG, the bitmap stands beside it as a file of its own.
    const ScratchFiles files;
    const QString path = files.write(QStringLiteral("a.wmf"), *file);
    runTool(QStringLiteral("wmf2svg"), {QStringLiteral("-o"), files.path(QStringLiteral("a.svg")), path});
    QCOMPARE(difference(QImage(files.path(QStringLiteral("a-1.png"))), picture), QString());
    const QByteArray drawing = files.read(QStringLiteral("a.svg"));
    const QString place =
        QStringLiteral("<image x=\"0.000000\" y=\"0.000000\" width=\"%1.000000\" height=\"%2.000000\"")
            .arg(picture.width())
            .arg(picture.height());
    QVERIFY2(drawing.contains(place.toLatin1()), drawing.constData());
}

void TestWmfWriting::keepsDepthAndPalette_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("format");
    const QSize size(21, 9);
    QImage tinted = dotPicture(size);
    tinted.setColorTable({red, blue});
    const QImage color = colorPicture(size);
    QTest::newRow("1 bit") << dotPicture(size) << 1 << int(QImage::Format_Mono);
    QTest::newRow("1 bit, tinted") << tinted << 1 << int(QImage::Format_Mono);
    QTest::newRow("1 bit, lowest first")
        << tinted.convertToFormat(QImage::Format_MonoLSB) << 1 << int(QImage::Format_Mono);
    QTest::newRow("16 colours") << palettePicture(size, 16) << 4 << int(QImage::Format_Indexed8);
    QTest::newRow("17 colours") << palettePicture(size, 17) << 8 << int(QImage::Format_Indexed8);
    QTest::newRow("256 colours") << palettePicture(size, 256) << 8 << int(QImage::Format_Indexed8);
    QTest::newRow("grey") << greyPicture(size) << 8 << int(QImage::Format_Indexed8);
    QTest::newRow("16-bit grey") << greyPicture(size).convertToFormat(QImage::Format_Grayscale16) << 24
                                 << int(QImage::Format_RGB32);
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_RGB888, QImage::Format_BGR888,
                                        QImage::Format_RGBX8888, QImage::Format_RGBX64, QImage::Format_RGB30})
        QTest::newRow(qPrintable(QStringLiteral("colour format %1").arg(format)))
            << color.convertToFormat(format) << 24 << int(QImage::Format_RGB32);
    QTest::newRow("565") << color.convertToFormat(QImage::Format_RGB16) << 24 << int(QImage::Format_RGB32);
}

void TestWmfWriting::keepsDepthAndPalette()
{
    QFETCH(QImage, picture);
    QFETCH(int, bits);
    QFETCH(int, format);
    const auto file = m_codec.encode(picture, QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto decoder = m_codec.open(ByteSource::fromBytes(*file));
    QVERIFY(decoder);
    const auto header = (*decoder)->header(1);
    QVERIFY(header);
    const auto own = decoded(m_codec, *file);
    QVERIFY(own && own->complete);
    if (picture.format() != QImage::Format_Grayscale16)
        QCOMPARE(header->bitsPerPixel, bits);
    QCOMPARE(own->bitsPerPixel, header->bitsPerPixel);
    if (picture.format() != QImage::Format_Grayscale16)
        QCOMPARE(int(own->image.format()), format);
    QCOMPARE(difference(own->image, picture.convertToFormat(QImage::Format_RGB32)), QString());
    if (picture.format() == QImage::Format_Indexed8)
        QCOMPARE(own->image.colorTable().first(picture.colorCount()), picture.colorTable());
}

void TestWmfWriting::laysAlphaOverWhite()
{
    QImage picture(3, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, qRgba(10, 20, 30, 255));
    picture.setPixel(1, 0, qRgba(10, 20, 30, 0));
    picture.setPixel(2, 0, qRgba(255, 0, 0, 51));
    const auto file = m_codec.encode(picture, QStringLiteral("wmf"), {});
    QVERIFY(file);
    const auto own = decoded(m_codec, *file);
    QVERIFY(own);
    QCOMPARE(wrongProbe(own->image, {{0, 0, qRgb(10, 20, 30)}, {1, 0, white}, {2, 0, qRgb(255, 204, 204)}}),
             QString());
    const auto second = m_codec.encode(clearEntryPicture(QSize(5, 5)), QStringLiteral("wmf"), {});
    QVERIFY(second);
    const auto read = decoded(m_codec, *second);
    QVERIFY(read && read->bitsPerPixel == 24);
}

void TestWmfWriting::refusesToWrite()
{
    const auto none = m_codec.encode(QImage(), QStringLiteral("wmf"), {});
    QVERIFY(!none);
    QCOMPARE(none.error().kind, ErrorKind::Unsupported);
    const auto wide = m_codec.encode(QImage(32768, 1, QImage::Format_Mono), QStringLiteral("wmf"), {});
    QVERIFY(!wide);
    QCOMPARE(wide.error().kind, ErrorKind::Unsupported);
    QVERIFY(wide.error().text.contains(QLatin1String("32767")));
    QVERIFY(m_codec.encode(dotPicture(QSize(32767, 1)), QStringLiteral("wmf"), {}));
    QVERIFY(m_codec.canEncode(QStringLiteral("wmf")) && !m_codec.canEncode(QStringLiteral("emf")));
}

QTEST_MAIN(TestWmfWriting)
#include "tst_wmfwriting.moc"
