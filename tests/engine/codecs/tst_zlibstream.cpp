#include "engine/codecs/ZlibStream.h"

#include <QtTest>

#include <random>

using quorvia::engine::ZlibStream;

namespace {

/// Text that repeats itself over short and the longest distances that deflate knows, and noise.
QByteArray content(qsizetype length)
{
    std::minstd_rand random(3);
    QByteArray bytes;
    while (bytes.size() < length) {
        constexpr qsizetype longestDistance = 32768;
        if (bytes.size() > longestDistance && random() % 2 == 0)
            bytes += bytes.mid(bytes.size() - longestDistance, qsizetype(random() % 300));
        else
            bytes += QByteArray(qsizetype(random() % 9), char(random()));
    }
    return bytes.left(length);
}

/// A zlib stream of `bytes`, packed by Qt at `level`.
QByteArray packed(const QByteArray& bytes, int level = -1)
{
    constexpr qsizetype ownLength = 4; // Qt puts the length in front
    return qCompress(bytes, level).mid(ownLength);
}

/// All that `stream` gives in pieces of `piece` bytes, each overwritten once it was taken; nothing on damage.
std::optional<QByteArray> readAll(ZlibStream& stream, qsizetype piece)
{
    QByteArray room(piece, '\0');
    QByteArray all;
    for (;;) {
        const auto count = stream.read(reinterpret_cast<uchar*>(room.data()), piece);
        if (!count)
            return {};
        all += room.left(*count);
        room.fill('#');
        if (*count < piece)
            return all;
    }
}

const uchar* bytesOf(const QByteArray& bytes)
{
    return reinterpret_cast<const uchar*>(bytes.constData());
}

} // namespace

class TestZlibStream : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void givesWhatWasPacked_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("piece");
        for (const int length : {1, 100, 65536, 1'000'003}) {
            for (const int level : {0, 1, 6, 9}) {
                for (const int piece : {1, 7, 4096, 32768, 300'000, 2'000'000}) {
                    if (piece >= 7 || length <= 65536)
                        QTest::addRow("%d bytes, level %d, pieces of %d", length, level, piece)
                            << length << level << piece;
                }
            }
        }
    }

    void givesWhatWasPacked()
    {
        QFETCH(int, length);
        QFETCH(int, level);
        QFETCH(int, piece);
        const QByteArray wanted = content(length);
        const QByteArray file = packed(wanted, level);
        ZlibStream stream(bytesOf(file), file.size());
        const auto all = readAll(stream, piece);
        QVERIFY(all);
        QVERIFY(*all == wanted);
        QVERIFY(stream.isAtEnd());
        uchar more = 0;
        QCOMPARE(stream.read(&more, 1), std::optional<qint64>(0));
    }

    void holdsNothing()
    {
        const QByteArray file = QByteArray::fromHex("789c030000000001");
        ZlibStream stream(bytesOf(file), file.size());
        QVERIFY(stream.isAtEnd());
    }

    void isNotAtItsEndBefore()
    {
        const QByteArray file = packed(content(5000));
        ZlibStream stream(bytesOf(file), file.size());
        QByteArray room(4999, '\0');
        QCOMPARE(stream.read(reinterpret_cast<uchar*>(room.data()), room.size()),
                 std::optional<qint64>(4999));
        QVERIFY(!stream.isAtEnd());
    }

    void cutAnywhere()
    {
        const QByteArray wanted = content(3000);
        const QByteArray file = packed(wanted);
        for (qsizetype length = 0; length < file.size(); ++length) {
            const QByteArray part = file.left(length); // of its own, so that reading beyond it is seen
            ZlibStream stream(bytesOf(part), part.size());
            const auto all = readAll(stream, 256);
            QVERIFY2(!all || !stream.isAtEnd(), qPrintable(QString::number(length)));
        }
    }

    void seesDamage_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QByteArray good = packed(content(3000));
        const auto changed = [&good](qsizetype at) {
            QByteArray file = good;
            file[at < 0 ? file.size() + at : at] = char(file[at < 0 ? file.size() + at : at] ^ 0x20);
            return file;
        };
        QTest::newRow("no bytes") << QByteArray();
        QTest::newRow("not zlib") << QByteArray("plain text, nothing packed");
        QTest::newRow("header") << changed(1);
        QByteArray wideWindow = good;
        wideWindow[0] = '\x88';
        wideWindow[1] = char(31 - 0x8800 % 31);
        QTest::newRow("a window of 64 KiB") << wideWindow;
        QTest::newRow("a dictionary is wanted") << QByteArray::fromHex("78bb000000010300");
        QTest::newRow("check sum") << changed(-1);
        QTest::newRow("a distance before the start") << QByteArray::fromHex("789c030200000001");
        QTest::newRow("a block of type 3") << QByteArray::fromHex("789c0700000001");
        for (int count = 1; count <= 9; ++count)
            QTest::addRow("%d bytes behind", count) << good + QByteArray(count, '\0');
        QTest::newRow("many bytes behind") << good + QByteArray(100'000, '\0');
    }

    void seesDamage()
    {
        QFETCH(QByteArray, file);
        ZlibStream stream(bytesOf(file), file.size());
        QVERIFY(!readAll(stream, 256) || !stream.isAtEnd());
    }

    /// Whatever the bytes are, nothing is written outside the room, and it ends.
    void standsAnyBytes()
    {
        const QByteArray good = packed(content(20'000));
        std::minstd_rand random(11);
        for (int i = 0; i < 2000; ++i) {
            QByteArray file = good.left(qsizetype(1 + random() % unsigned(good.size())));
            for (int change = 0; change < 3; ++change)
                file[qsizetype(random() % unsigned(file.size()))] = char(random());
            ZlibStream stream(bytesOf(file), file.size());
            QByteArray room(1000 + 2, 'g');
            for (int piece = 0; piece < 30; ++piece) {
                const auto count = stream.read(reinterpret_cast<uchar*>(room.data()) + 1, 1000);
                QCOMPARE(room.front(), 'g');
                QCOMPARE(room.back(), 'g');
                if (count.value_or(0) < 1000)
                    break;
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestZlibStream)
#include "tst_zlibstream.moc"
