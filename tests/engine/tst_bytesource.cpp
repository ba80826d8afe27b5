#include "CodecFixtures.h"
#include "engine/ByteSource.h"
#include "engine/Codec.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QtTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstring>

using namespace quorvia::engine;
using namespace quorvia::test;

namespace {

/// A file whose first `good` bytes can be read; the rest of the disk is broken.
class BrokenSource final : public ByteSource
{
  public:
    BrokenSource(QByteArray bytes, qint64 good) : m_bytes(std::move(bytes)), m_good(good) {}

    qint64 size() const override { return m_bytes.size(); }
    qint64 read(qint64 offset, void* out, qint64 length) const override
    {
        m_failed = m_failed || offset + length > m_good;
        const qint64 count = std::clamp<qint64>(m_good - offset, 0, length);
        std::memcpy(out, m_bytes.constData() + std::min(offset, m_good), size_t(count));
        return count;
    }
    bool failed() const override { return m_failed; }

  private:
    QByteArray m_bytes;
    qint64 m_good;
    mutable bool m_failed = false;
};

/// A listening socket at `path`, gone with the object.
class Socket
{
  public:
    explicit Socket(const QString& path) : m_descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(path);
        std::strncpy(address.sun_path, name.constData(), sizeof address.sun_path - 1);
        m_bound = ::bind(m_descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Socket() { ::close(m_descriptor); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;
    bool isBound() const { return m_bound; }

  private:
    int m_descriptor;
    bool m_bound = false;
};

} // namespace

class TestByteSource : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void readsParts_data();
    void readsParts();
    void showsAWindow_data();
    void showsAWindow();
    void refusesWhatIsNoFile_data();
    void refusesWhatIsNoFile();
    void refusesWithoutPermission();
    void tellsAReadError();
    void opensNothingOfABrokenDisk_data();
    void opensNothingOfABrokenDisk();
    void tellsAReadErrorFromACutFile();

  private:
    ScratchFiles m_files;
};

void TestByteSource::readsParts_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<QByteArray>("part");
    QTest::newRow("start") << qint64(0) << qint64(3) << QByteArray("abc");
    QTest::newRow("all") << qint64(0) << qint64(8) << QByteArray("abcdefgh");
    QTest::newRow("past the end") << qint64(6) << qint64(9) << QByteArray("gh");
    QTest::newRow("at the end") << qint64(8) << qint64(1) << QByteArray();
    QTest::newRow("far away") << (qint64(1) << 40) << qint64(1) << QByteArray();
    QTest::newRow("before the start") << qint64(-1) << qint64(4) << QByteArray();
    QTest::newRow("a negative length") << qint64(1) << qint64(-4) << QByteArray();
}

void TestByteSource::readsParts()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, length);
    const auto file = ByteSource::open(m_files.write(QStringLiteral("letters"), "abcdefgh"));
    QVERIFY(file);
    for (const auto& source : {*file, ByteSource::fromBytes("abcdefgh")}) {
        QCOMPARE(source->size(), 8);
        QTEST(source->bytes(offset, length), "part");
        QVERIFY(!source->failed());
    }
}

void TestByteSource::showsAWindow_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("length");
    QTest::addColumn<QByteArray>("seen");
    QTest::newRow("middle") << qint64(2) << qint64(3) << QByteArray("cde");
    QTest::newRow("nothing") << qint64(2) << qint64(0) << QByteArray();
    QTest::newRow("past the end") << qint64(6) << qint64(100) << QByteArray("gh");
    QTest::newRow("behind the end") << qint64(60) << qint64(100) << QByteArray();
    QTest::newRow("before the start") << qint64(-5) << qint64(3) << QByteArray("abc");
    QTest::newRow("a negative length") << qint64(2) << qint64(-3) << QByteArray();
}

void TestByteSource::showsAWindow()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, length);
    QFETCH(QByteArray, seen);
    const auto window = ByteSource::window(ByteSource::fromBytes("abcdefgh"), offset, length);
    QCOMPARE(window->size(), seen.size());
    QCOMPARE(window->bytes(0, 1000), seen);
    QCOMPARE(window->bytes(1, 1), seen.mid(1, 1));
    std::array<char, 16> out = {};
    QCOMPARE(window->read(0, out.data(), qint64(out.size())), seen.size());
    QCOMPARE(window->read(-1, out.data(), 4), 0);
    QCOMPARE(window->read(seen.size(), out.data(), 4), 0);
}

void TestByteSource::refusesWhatIsNoFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("kind");
    QTest::newRow("nothing") << m_files.path(QStringLiteral("missing")) << int(ErrorKind::NotFound);
    QTest::newRow("below a file") << m_files.write(QStringLiteral("file"), "x") + QStringLiteral("/below")
                                  << int(ErrorKind::NotFound);
    QTest::newRow("a directory") << m_files.path(QStringLiteral(".")) << int(ErrorKind::Unreadable);
    QTest::newRow("a device without end") << QStringLiteral("/dev/zero") << int(ErrorKind::Unreadable);
    QTest::newRow("a named pipe") << m_files.path(QStringLiteral("pipe")) << int(ErrorKind::Unreadable);
    QTest::newRow("a socket") << m_files.path(QStringLiteral("socket")) << int(ErrorKind::Unreadable);
}

void TestByteSource::refusesWhatIsNoFile()
{
    QFETCH(QString, path);
    QFile::remove(m_files.path(QStringLiteral("pipe")));
    QFile::remove(m_files.path(QStringLiteral("socket")));
    QCOMPARE(::mkfifo(QFile::encodeName(m_files.path(QStringLiteral("pipe"))).constData(), 0600), 0);
    const Socket socket(m_files.path(QStringLiteral("socket")));
    QVERIFY(socket.isBound());
    const auto source = ByteSource::open(path);
    QVERIFY(!source);
    QTEST(int(source.error().kind), "kind");
    QVERIFY(!source.error().text.isEmpty());
}

void TestByteSource::refusesWithoutPermission()
{
    const QString path = m_files.write(QStringLiteral("closed"), "x");
    QVERIFY(openToEveryone(QFile::encodeName(m_files.path(QStringLiteral("."))).constData()));
    QVERIFY(QFile::setPermissions(path, {}));
    QVERIFY(holdsUnprivileged([&] {
        const auto source = ByteSource::open(path);
        return !source && source.error().kind == ErrorKind::Unreadable;
    }));
}

void TestByteSource::tellsAReadError()
{
    // The first page of a process is never mapped: reading it is an error, for root as well.
    const auto source = ByteSource::open(QStringLiteral("/proc/self/mem"));
    QVERIFY(source);
    QVERIFY(!(*source)->failed());
    std::array<char, 4> out = {};
    QCOMPARE((*source)->read(0, out.data(), qint64(out.size())), 0);
    QVERIFY((*source)->failed());

    const auto broken = std::make_shared<BrokenSource>("abcdefgh", 4);
    const auto window = ByteSource::window(broken, 2, 4);
    QCOMPARE(window->bytes(0, 2), QByteArray("cd"));
    QVERIFY(!window->failed());
    QCOMPARE(window->bytes(0, 4), QByteArray("cd"));
    QVERIFY(window->failed());
}

void TestByteSource::opensNothingOfABrokenDisk_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("good");
    QTest::addColumn<int>("kind");
    const QByteArray gif = "GIF89a" + QByteArray(2000, '\1');
    QTest::newRow("not one byte") << gif << 0 << int(ErrorKind::Unreadable);
    QTest::newRow("the mark only") << gif << 6 << int(ErrorKind::Unreadable);
    QTest::newRow("no mark") << QByteArray(2000, 'x') << 100 << int(ErrorKind::Unreadable);
    QTest::newRow("good, but no image") << QByteArray(200, 'x') << 200 << int(ErrorKind::NotAnImage);
    QTest::newRow("good, but broken inside") << gif << 2006 << int(ErrorKind::Damaged);
    QTest::newRow("empty") << QByteArray() << 0 << int(ErrorKind::NotAnImage);
}

void TestByteSource::opensNothingOfABrokenDisk()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, good);
    const auto decoder = openDecoder(std::make_shared<BrokenSource>(bytes, good), QStringLiteral("gif"));
    QVERIFY(!decoder);
    QTEST(int(decoder.error().kind), "kind");
}

void TestByteSource::tellsAReadErrorFromACutFile()
{
    const QByteArray pgm = "P5 10 10 255 " + QByteArray(100, 'x');
    const CancelFlag goOn{false};
    const auto decoded = [&](std::shared_ptr<ByteSource> source) {
        const auto decoder = openDecoder(source, QStringLiteral("pgm"));
        return decoder ? (*decoder)->decode(1, QSize(), goOn) : Result<Picture>(decoder.error());
    };
    const auto whole = decoded(ByteSource::fromBytes(pgm));
    QVERIFY(whole && whole->complete && !whole->readError);
    const auto cut = decoded(ByteSource::fromBytes(pgm.left(60)));
    QVERIFY(cut && !cut->complete && !cut->readError);
    const auto broken = decoded(std::make_shared<BrokenSource>(pgm, 60));
    QVERIFY(broken && !broken->complete && broken->readError);
    const auto none = decoded(std::make_shared<BrokenSource>(pgm, 13));
    QVERIFY(!none);
    QCOMPARE(int(none.error().kind), int(ErrorKind::Unreadable));
}

QTEST_GUILESS_MAIN(TestByteSource)
#include "tst_bytesource.moc"
