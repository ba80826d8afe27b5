#include "CancelChecks.h"
#include "CodecChecks.h"
#include "corpus/Corpus.h"
#include "CutFiles.h"
#include "engine/codecs/Codecs.h"
#include "IcoMaker.h"
#include "IndependentReader.h"
#include "RefusalChecks.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;
using namespace quorvia::test::ico;

class TestIcoHostile : public QObject
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
    const Codec& m_codec = icoCodec();
};

void TestIcoHostile::refuses_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("kind");
    const auto add = [](const char* name, const QByteArray& file, ErrorKind kind) {
        QTest::newRow(name) << file << int(kind);
    };
    const Slot good = {bitmap(2, 2, 9)};
    add("directory cut short", icon({good}).left(20), ErrorKind::Damaged);
    add("no content", icon({good}).left(22), ErrorKind::Damaged);
    add("header only", icon({good}).left(62), ErrorKind::Damaged);
    add("no header", icon({{QByteArray(100, 'x')}}), ErrorKind::Damaged);
    Slot packed = good;
    packed.content[14] = 8;
    packed.content[16] = 1;
    add("run length", icon({packed}), ErrorKind::Unsupported);
    Slot jpeg = good; // told by the bitmap's header, and without one
    jpeg.content[14] = 24;
    jpeg.content[16] = 4;
    add("embedded JPEG", icon({jpeg}), ErrorKind::Unsupported);
    add("a whole JPEG file",
        icon({{*jpegCodec().encode(colorPicture(QSize(8, 8)), QStringLiteral("jpg"), {})}}),
        ErrorKind::Damaged);
    Slot deep = good;
    deep.content.replace(4, 8, longWord(70000) + longWord(4));
    add("beyond the limits", icon({deep}), ErrorKind::TooLarge);
    Slot flat = good;
    flat.content.replace(8, 4, longWord(1));
    add("no height", icon({flat}), ErrorKind::Damaged);
}

void TestIcoHostile::refuses()
{
    QFETCH(QByteArray, file);
    QFETCH(int, kind);
    QCOMPARE(refusalFault(m_codec, file, ErrorKind(kind)), QString());
}

void TestIcoHostile::showsWhatACutFileHolds_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("bitmap") << icon({{bitmap(8, 6, 2), 8, 6}});
    QTest::newRow("PNG") << icon({{png(QSize(9, 9)), 9, 9}});
    QTest::newRow("two entries") << icon({{bitmap(8, 6, 2), 8, 6}, {bitmap(4, 4, 1), 4, 4}});
    QTest::newRow("palette and alpha")
        << *icoCodec().encode(palettePicture(QSize(9, 7), 9), QStringLiteral("ico"), {});
    QTest::newRow("alpha") << *icoCodec().encode(alphaPicture(QSize(9, 7)), QStringLiteral("ico"), {});
}

void TestIcoHostile::showsWhatACutFileHolds()
{
    QFETCH(QByteArray, file);
    QCOMPARE(everyCutFault(m_codec, file), QString());
}

void TestIcoHostile::stopsWhenCancelled()
{
    QCOMPARE(cancelFault(m_codec, icon({{bitmap(8, 6, 2), 8, 6}})), QString());
}

void TestIcoHostile::survivesBrokenFiles()
{
    QCOMPARE(mutantFault(m_codec, icoCorpus(), 400), QString());
}

QTEST_GUILESS_MAIN(TestIcoHostile)
#include "tst_icohostile.moc"
