// TIFF files of several pages, and chains of directories that lead nowhere.
#include "CodecFixtures.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/tiff/TiffPages.h"
#include "Hex.h"
#include "IndependentReader.h"
#include "TiffMaker.h"
#include "TiffTools.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestTiffDirectories : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void countsPages_data();
    void countsPages();
    void readsEveryPage();

  private:
    const Codec& m_codec = tiffCodec();
};

void TestTiffDirectories::countsPages_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("pages");
    TiffMaker one;
    one.page(1, 1, 8, 1, 1, "a");
    QTest::newRow("one") << one.bytes() << 1;
    one.next = 8;
    QTest::newRow("a page that follows itself") << one.bytes() << 1;
    one.next = 0x7FFFFFFF;
    QTest::newRow("a next page past the end") << one.bytes() << 1;
    one.next = 0xFFFFFFFF;
    QTest::newRow("a next page at the far end") << one.bytes() << 1;
    // Directories without end: each of them one entry, each one followed by the next.
    QByteArray many = hex("49492a0008000000");
    for (int i = 0; i < 40000; ++i) {
        many += hex("0100 000103000100000001000000");
        const quint32 next = quint32(many.size()) + 4;
        many += QByteArray(reinterpret_cast<const char*>(&next), 4);
    }
    QTest::newRow("more than page numbers can name") << many << mostTiffPages;
    QTest::newRow("a loop of two") << hex("49492a0008000000 0100 000103000100000001000000 1a000000"
                                          "0100 000103000100000001000000 08000000")
                                   << 2;
    QTest::newRow("a directory without entries") << hex("49492a0008000000 0000 00000000") << 0;
    QTest::newRow("no directory") << hex("49492a0000000000") << 0;
    QTest::newRow("mark only") << hex("49492a00") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
}

void TestTiffDirectories::countsPages()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, pages);
    QCOMPARE(int(tiffPageOffsets(*ByteSource::fromBytes(bytes)).size()), pages);
    const auto decoder = m_codec.open(ByteSource::fromBytes(bytes));
    QCOMPARE(bool(decoder), pages > 0);
    if (decoder)
        QCOMPARE((*decoder)->pageCount(), pages);
    else
        QCOMPARE(decoder.error().kind, ErrorKind::Damaged);
}

void TestTiffDirectories::readsEveryPage()
{
    const QList<QImage> pictures = {colorPicture(QSize(7, 13)), dotPicture(QSize(19, 4)),
                                    greyPicture(QSize(3, 30)), alphaPicture(QSize(5, 5))};
    QTemporaryDir directory;
    QStringList paths;
    for (const QImage& picture : pictures) {
        paths << directory.filePath(QStringLiteral("%1.tif").arg(paths.size()));
        QFile file(paths.last());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(encodeBytes(m_codec, picture, "tif"));
    }
    for (const char* options : {"-c lzw", "-8 -c none", "-B -c zip"}) {
        const QString target = directory.filePath(QStringLiteral("all.tif"));
        runTool(QStringLiteral("tiffcp"), arguments(options) + paths + QStringList{target});
        QFile all(target);
        QVERIFY(all.open(QIODevice::ReadOnly));
        const QByteArray bytes = all.readAll();
        const auto decoder = m_codec.open(ByteSource::fromBytes(bytes));
        QVERIFY(decoder);
        QCOMPARE((*decoder)->pageCount(), int(pictures.size()));
        const CancelFlag go = false;
        for (int page : {4, 1, 3, 2, 2}) { // in any order, again and again
            const QImage& picture = pictures[page - 1];
            const auto header = (*decoder)->header(page);
            QVERIFY(header);
            QCOMPARE(header->size, picture.size());
            const auto result = (*decoder)->decode(page, QSize(), go);
            QVERIFY(result);
            QCOMPARE(difference(result->image, picture), QString());
            QCOMPARE(difference(readByMagick(bytes, QStringLiteral("tiff"), page - 1), picture), QString());
        }
        QVERIFY(!(*decoder)->header(5));
        QVERIFY(!(*decoder)->decode(0, QSize(), go));
    }
}

QTEST_GUILESS_MAIN(TestTiffDirectories)
#include "tst_tiffdirectories.moc"
