// What AV1 headers tell of the sizes of frames, bit by bit.
#include "engine/codecs/avif/Av1Headers.h"
#include "Hex.h"

#include <QtTest>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// The bits of a sequence of 256 x 256, and how its parts can be exchanged.
struct SequenceBits
{
    QByteArray operation = "0 0 00000 000000000000 00000"; ///< timing and operating points
    QByteArray numbers = "0";
    QByteArray order = "0";
    QByteArray screen = "11"; ///< both by frame
    QByteArray orderBits = "";

    Av1Sequence sequence() const
    {
        const QByteArray bits = "000 0 0 " + operation + " 0111 0111 11111111 11111111 " + numbers +
                                " 000 0000 " + order + screen + orderBits + " 111 111 0 000 0 1";
        return av1Sequence(bitsOf(bits.constData()));
    }
};

/// Timing with a decoder model: times of removal of 3 bits, those of showing of 4, and two operating points,
/// of which the first has a model.
QByteArray modelled(bool even, const char* layers)
{
    return "1" + QByteArray(64, '1') + (even ? "1 00101" : "0") + "1 00010" + QByteArray(32, '1') +
           "00010 00011 1 00001" + layers + "01000 1 1 111111 1 1 1111" + "000000000000 00000 0 0";
}

} // namespace

class TestAv1Headers : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readsSequences();
    void readsFrameSizes_data();
    void readsFrameSizes();
    void findsNoSizeInCutFrames();
};

void TestAv1Headers::readsSequences()
{
    const Av1Sequence plain = SequenceBits{}.sequence();
    QCOMPARE(plain.size, QSize(256, 256));
    QVERIFY(!plain.isReduced);
    QCOMPARE(plain.widthBits, 8);
    QCOMPARE(plain.frameNumberBits, 0);
    QCOMPARE(plain.orderBits, 0);
    QCOMPARE(plain.points.size(), 1);
    QVERIFY(!plain.points.first().hasModel);

    SequenceBits bits;
    bits.operation = modelled(false, "000100000001");
    bits.numbers = "1 0001 001";
    bits.order = "1 00";
    bits.orderBits = "101";
    for (const auto& [text, screen, motion] :
         {std::tuple{"0 0", Av1Sequence::Use::Off, Av1Sequence::Use::ByFrame},
          std::tuple{"0 1 0 0", Av1Sequence::Use::On, Av1Sequence::Use::Off},
          std::tuple{"0 1 1", Av1Sequence::Use::On, Av1Sequence::Use::ByFrame},
          std::tuple{"1 0 1", Av1Sequence::Use::ByFrame, Av1Sequence::Use::On}}) {
        bits.screen = text;
        const Av1Sequence full = bits.sequence();
        QCOMPARE(full.size, QSize(256, 256));
        QCOMPARE(full.screenTools, screen);
        QCOMPARE(full.wholeMotion, motion);
        QCOMPARE(full.differenceBits, 3);
        QCOMPARE(full.frameNumberBits, 5);
        QCOMPARE(full.orderBits, 6);
        QCOMPARE(full.shownTimeBits, 4);
        QCOMPARE(full.removalTimeBits, 3);
        QCOMPARE(full.points.size(), 2);
        QCOMPARE(full.points[0].layers, 0x101U);
        QVERIFY(full.points[0].hasModel);
        QVERIFY(!full.points[1].hasModel);
    }
    bits.operation = modelled(true, "000000000000");
    QCOMPARE(bits.sequence().shownTimeBits, 0);
    QCOMPARE(bits.sequence().removalTimeBits, 3);

    const Av1Sequence reduced = av1Sequence(bitsOf("000 1 1 00000 0011 0011 1111 1111 1111111"));
    QCOMPARE(reduced.size, QSize(16, 16));
    QVERIFY(reduced.isReduced);
    QCOMPARE(av1FrameSize(reduced, bitsOf("0001 0 0 1 1111 1111 1"), {}), QSize());
    QVERIFY(av1Sequence({}).size.isEmpty());
}

void TestAv1Headers::readsFrameSizes_data()
{
    QTest::addColumn<Av1Sequence>("sequence");
    QTest::addColumn<Av1Layer>("layer");
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QSize>("size");
    const auto row = [](const char* name, const SequenceBits& bits, const char* frame, QSize size,
                        Av1Layer layer = {}) {
        QTest::newRow(name) << bits.sequence() << layer << bitsOf(frame) << size;
    };
    const QSize none;
    const QSize size(2, 129); // 00000001 10000000

    // Again or anew, kind, shown, resilient; whether probabilities stay, screen tools, another size.
    SequenceBits bits;
    row("key frame", bits, "0 00 1 0 0 1 00000001 10000000 1", size);
    row("key frame, the same size", bits, "0 00 1 0 0 0 00000001 10000000 1", none);
    row("shown again", bits, "1 00 1 0 0 1 00000001 10000000 1", none);
    row("key frame, screen tools", bits, "0 00 1 0 1 0 1 00000001 10000000 1", size);
    row("key frame, not shown", bits, "0 00 0 1 0 0 0 1 11111111 00000001 10000000 1", size);
    row("key frame, not shown, resilient", bits, "0 00 0 1 1 0 0 1 00000000 00000001 10000000 1", size);
    row("intra only", bits, "0 10 1 0 0 0 1 00000001 00000001 10000000 1", size);
    row("inter", bits, "0 01 1 0 0 0 1 000 00000001 111111111111111111111 0000000 00000001 10000000 1", size);
    row("inter, of a frame before", bits,
        "0 01 1 0 0 0 1 000 00000001 111111111111111111111 0000001 00000001 10000000 1", none);
    row("inter, resilient", bits, "0 01 1 1 0 0 1 00000001 111111111111111111111 00000001 10000000 1", size);
    row("switch", bits, "0 11 1 0 0 111111111111111111111 00000001 10000000 1", size);

    bits.screen = "0 0";
    row("no screen tools", bits, "0 00 1 0 1 00000001 10000000 1", size);
    bits.screen = "0 1 1";
    row("screen tools always", bits, "0 00 1 0 0 1 00000001 10000000 1", size);
    bits.screen = "0 1 0 1";
    row("screen tools and motion always", bits, "0 00 1 0 1 00000001 10000000 1", size);

    bits = {};
    bits.order = "1 00";
    bits.orderBits = "001";
    row("order, key frame", bits, "0 00 1 0 0 1 11 00000001 10000000 1", size);
    row("order, key frame, not shown, resilient", bits,
        "0 00 0 1 1 0 0 1 11 00000000 1111111111111111 00000001 10000000 1", size);
    row("order, key frame, not shown, replaces all", bits, "0 00 0 1 1 0 0 1 11 11111111 00000001 10000000 1",
        size);
    row("order, switch", bits, "0 11 1 0 0 11 1111111111111111 0 111111111111111111111 00000001 10000000 1",
        size);
    row("order, short references", bits,
        "0 01 1 1 0 0 1 11 00000000 1111111111111111 1 000000 00000001 10000000 1", size);

    bits = {};
    bits.numbers = "1 0001 001"; // of 5 bits, differences of 3
    row("numbers, key frame", bits, "0 00 1 0 0 11111 1 00000001 10000000 1", size);
    row("numbers, inter", bits,
        "0 01 1 1 0 0 11111 1 00000001 111111 111111 111111 111111 111111 111111 111111 00000001 10000000 1",
        size);

    bits = {};
    bits.operation = modelled(false, "000100000001");
    const char* removed = "0 00 1 1111 0 0 1 1 101 00000001 10000000 1";
    const char* notRemoved = "0 00 1 1111 0 0 1 1 00000001 10000000 1";
    row("model, not told", bits, "0 00 1 1111 0 0 1 0 00000001 10000000 1", size);
    row("model, told", bits, removed, size);
    row("model, of another temporal layer", bits, notRemoved, size, {1, 0});
    row("model, of another spatial layer", bits, notRemoved, size, {0, 1});
    bits.operation = modelled(false, "100000000001");
    row("model, of the highest spatial layer", bits, removed, size, {0, 3});
    bits.operation = modelled(false, "000000000000");
    row("model of all layers", bits, removed, size, {1, 1});
    bits.operation = modelled(true, "000000000000");
    row("model, even times", bits, "0 00 1 0 0 1 1 101 00000001 10000000 1", size);
}

void TestAv1Headers::readsFrameSizes()
{
    QFETCH(Av1Sequence, sequence);
    QFETCH(Av1Layer, layer);
    QFETCH(QByteArray, frame);
    QTEST(av1FrameSize(sequence, frame, layer), "size");
    QTEST(av1FrameSize(sequence, frame + QByteArray(100, '\xFF'), layer), "size");
}

void TestAv1Headers::findsNoSizeInCutFrames()
{
    const Av1Sequence sequence = SequenceBits{}.sequence();
    const QByteArray frame = bitsOf("0 00 1 0 0 1 11111111 11111111 1");
    QCOMPARE(av1FrameSize(sequence, frame, {}), QSize(256, 256));
    for (qsizetype length = 0; length < frame.size(); ++length)
        QCOMPARE(av1FrameSize(sequence, frame.left(length), {}), QSize());
}

QTEST_GUILESS_MAIN(TestAv1Headers)
#include "tst_av1headers.moc"
