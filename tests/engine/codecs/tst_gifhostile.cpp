#include "CancelChecks.h"
#include "CodecChecks.h"
#include "CodecFixtures.h"
#include "corpus/MapTools.h"
#include "engine/codecs/Codecs.h"
#include "engine/Limits.h"
#include "GifMaker.h"
#include "HostileBytes.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

class TestGifHostile : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void refuses_data();
    void refuses();
    void showsWhatACutFileHolds_data();
    void showsWhatACutFileHolds();
    void stopsWhenCancelled();
    void survivesBrokenFiles();

  private:
    const Codec& m_codec = gifCodec();
};

void TestGifHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("kind");
    QTest::newRow("mark only") << QByteArray("GIF89a") << int(ErrorKind::Damaged);
    const QByteArray whole = GifMaker().bytes();
    QTest::newRow("no frame") << whole.left(25) + ';' << int(ErrorKind::Damaged);
    QTest::newRow("no pixel") << whole.left(36) << int(ErrorKind::Damaged);
    QTest::newRow("nonsense for a block") << whole.left(25) + 'x' + whole.mid(26) << int(ErrorKind::Damaged);
    GifMaker wide;
    wide.canvas = QSize(65535, 65535);
    if (Limits::machine().maxBytes < qint64(65535) * 65535 * 4)
        QTest::newRow("a canvas beyond the limits") << wide.bytes() << int(ErrorKind::TooLarge);
    GifMaker frame;
    frame.frame = QRect(0, 0, 65535, 65535);
    if (Limits::machine().maxBytes < qint64(65535) * 65535 * 4)
        QTest::newRow("a frame beyond the limits") << frame.bytes() << int(ErrorKind::TooLarge);
    GifMaker flat;
    flat.frame = QRect(0, 0, 0, 3);
    QTest::newRow("a frame without width") << flat.bytes() << int(ErrorKind::Damaged);
}

void TestGifHostile::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, bytes, ErrorKind(kind)), QString());
}

void TestGifHostile::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("rows in order") << encodeBytes(m_codec, palettePicture(QSize(9, 40), 7), "gif");
    QTest::newRow("interlaced") << runTool(QStringLiteral("convert"), words("ppm:- -interlace GIF gif:-"),
                                           writePnm(palettePicture(QSize(9, 40), 7)));
    GifMaker gif;
    gif.transparent = 2;
    QTest::newRow("transparent entry") << gif.bytes();
}

void TestGifHostile::showsWhatACutFileHolds()
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

void TestGifHostile::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(m_codec, encodeBytes(m_codec, palettePicture(QSize(50, 50), 9), "gif")), QString());
}

void TestGifHostile::survivesBrokenFiles()
{
    GifMaker offset;
    offset.frame = QRect(1, 1, 2, 1);
    offset.pixels = QByteArray::fromHex("0203");
    offset.before = QByteArray::fromHex("21fe05") + "hello" + QByteArray(1, '\0');
    GifMaker clear;
    clear.transparent = 1;
    clear.local = clear.global;
    const QList<QByteArray> parents = {offset.bytes(), clear.bytes(),
                                       encodeBytes(m_codec, palettePicture(QSize(40, 30), 200), "gif"),
                                       runTool(QStringLiteral("convert"), words("ppm:- -interlace GIF gif:-"),
                                               writePnm(palettePicture(QSize(9, 40), 7)))};
    QCOMPARE(mutantFault(m_codec, parents, 320), QString());
}

QTEST_GUILESS_MAIN(TestGifHostile)
#include "tst_gifhostile.moc"
