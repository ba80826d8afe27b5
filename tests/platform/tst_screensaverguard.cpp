// The screen saver held back, against a bus and a screen saver of the test's own.
#include "platform/ScreenSaverGuard.h"
#include "support/SaverBus.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <memory>

using namespace quorvia;
using namespace std::chrono_literals;
using platform::ScreenSaverGuard;
using test::ScreenSaver;
using test::SessionBus;

namespace {

const QString asked = QStringLiteral("Inhibit Viewer Pictures are shown");
const QString letGo = QStringLiteral("UnInhibit 7");
const QString gone = QStringLiteral("gone");

/// A socket at which connections are taken and nothing is ever said.
class DeafBus
{
  public:
    explicit DeafBus(const QByteArray& path) : m_socket(socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        m_listens = bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
                    listen(m_socket, 4) == 0;
    }
    ~DeafBus() { close(m_socket); }
    DeafBus(const DeafBus&) = delete;
    DeafBus& operator=(const DeafBus&) = delete;

    bool listens() const { return m_listens; }

  private:
    int m_socket;
    bool m_listens = false;
};

} // namespace

class TestScreenSaverGuard : public QObject
{
    Q_OBJECT

  private:
    QStringList m_failures;

    std::unique_ptr<ScreenSaverGuard> guard(std::chrono::milliseconds patience = 10s)
    {
        return std::make_unique<ScreenSaverGuard>(
            ScreenSaverGuard::Texts{QStringLiteral("Viewer"), QStringLiteral("Pictures are shown")},
            [this](const QString& why) { m_failures.append(why); }, patience);
    }

  private Q_SLOTS:
    void init() { m_failures.clear(); }

    void holdsAndReleases()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), true);
        const auto held = guard();
        QVERIFY(!held->isHeld());
        held->hold();
        QVERIFY(held->isHeld());
        QTRY_COMPARE(saver.calls(), QStringList{asked});
        held->release();
        QVERIFY(!held->isHeld());
        QTRY_COMPARE(saver.calls(), (QStringList{asked, letGo}));
        QVERIFY(m_failures.isEmpty());
    }

    void twiceIsOnce()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), true);
        auto held = guard();
        held->hold();
        held->hold();
        QTRY_COMPARE(saver.calls(), QStringList{asked});
        held->release();
        held->release();
        held.reset(); // all that was said has arrived
        QTRY_COMPARE(saver.calls(), (QStringList{asked, letGo, gone}));
    }

    void holdsAgain()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), true);
        const auto held = guard();
        held->hold();
        QTRY_COMPARE(saver.calls().size(), 1);
        held->release();
        QTRY_COMPARE(saver.calls().size(), 2);
        held->hold();
        QTRY_COMPARE(saver.calls().size(), 3);
        held->release();
        QTRY_COMPARE(saver.calls(), (QStringList{asked, letGo, asked, QStringLiteral("UnInhibit 8")}));
    }

    void releasedBeforeTheAnswer()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), false);
        const auto held = guard();
        held->hold();
        QTRY_COMPARE(saver.calls(), QStringList{asked});
        held->release();
        saver.answerAll();
        QTRY_COMPARE(saver.calls(), (QStringList{asked, letGo}));
    }

    void releasedBeforeTheQuestion()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), true);
        auto held = guard();
        held->hold();
        held->release();
        held->hold();
        held->release();
        held.reset();
        // What was asked is taken back, or ends with the asker.
        QTRY_VERIFY(saver.calls().count(asked) == saver.calls().filter(QStringLiteral("UnInhibit")).size() ||
                    saver.calls().endsWith(gone));
        QVERIFY(m_failures.isEmpty());
    }

    void wantedAgainBeforeTheAnswer()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), false);
        auto held = guard();
        held->hold();
        QTRY_COMPARE(saver.calls(), QStringList{asked});
        held->release();
        held->hold();
        saver.answerAll();
        held.reset();
        QTRY_COMPARE(saver.calls(), (QStringList{asked, letGo, gone}));
    }

    void destructionReleases()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), true);
        auto held = guard();
        held->hold();
        QTRY_COMPARE(saver.calls(), QStringList{asked});
        held.reset();
        QTRY_COMPARE(saver.calls(), (QStringList{asked, letGo, gone}));
    }

    void aSaverThatIsSilent()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), false);
        auto held = guard();
        QElapsedTimer clock;
        clock.start();
        held->hold();
        QVERIFY(clock.elapsed() < 5000);
        QTRY_COMPARE(saver.calls(), QStringList{asked});
        clock.restart();
        held->release();
        held.reset();
        QVERIFY(clock.elapsed() < 5000);
        QTRY_COMPARE(saver.calls(), (QStringList{asked, gone})); // so that a late answer holds nothing
        QVERIFY(m_failures.isEmpty());
    }

    void patienceEnds()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), false);
        const auto held = guard(50ms);
        held->hold();
        QTRY_COMPARE(m_failures.size(), 1);
        QVERIFY(!m_failures.constFirst().isEmpty());
        QTRY_COMPARE(saver.calls(), (QStringList{asked, gone}));
        held->release();
        held->hold(); // another showing is another question
        QTRY_COMPARE(saver.calls(), (QStringList{asked, gone, asked, gone}));
    }

    void withoutASaver()
    {
        const SessionBus bus;
        const auto held = guard();
        held->hold();
        QVERIFY(m_failures.isEmpty()); // told from the event loop
        QTRY_COMPARE(m_failures.size(), 1);
        QVERIFY2(m_failures.constFirst().contains(QStringLiteral("org.freedesktop.ScreenSaver")),
                 qPrintable(m_failures.constFirst()));
        held->release();
    }

    void withoutABus_data()
    {
        QTest::addColumn<QByteArray>("address");
        QTest::newRow("none") << QByteArray();
        QTest::newRow("nobody there") << QByteArray("unix:path=/nowhere/at/all");
        QTest::newRow("no address") << QByteArray("nonsense");
    }
    void withoutABus()
    {
        QFETCH(QByteArray, address);
        qputenv("XDG_RUNTIME_DIR", "/nowhere");
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        const auto held = guard();
        held->hold();
        QTRY_COMPARE(m_failures.size(), 1);
        QVERIFY(!m_failures.constFirst().isEmpty());
        held->release();
        held->hold();
        QTRY_COMPARE(m_failures.size(), 2);
    }

    void theBusOfTheRuntimeDirectory()
    {
        const SessionBus bus;
        ScreenSaver saver(bus.address(), true);
        const QByteArray address = bus.address();
        const qsizetype from = address.indexOf("path=") + 5;
        const QTemporaryDir directory;
        QVERIFY(QFile::link(QFile::decodeName(address.mid(from, address.indexOf(',') - from)),
                            directory.filePath(QStringLiteral("bus"))));
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(directory.path()));
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        const auto held = guard();
        held->hold();
        QTRY_COMPARE(saver.calls(), QStringList{asked});
    }

    void aBusThatIsDeaf()
    {
        const QTemporaryDir directory;
        const QByteArray path = QFile::encodeName(directory.filePath(QStringLiteral("bus")));
        const DeafBus bus(path);
        QVERIFY(bus.listens());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path);
        QElapsedTimer clock;
        clock.start();
        auto held = guard(200ms);
        held->hold();
        QVERIFY(clock.elapsed() < 5000);
        QTRY_COMPARE(m_failures.size(), 1);
        held = guard();
        held->hold();
        clock.restart();
        held.reset();
        QVERIFY(clock.elapsed() < 5000);
        QCOMPARE(m_failures.size(), 1);
    }

    void theProgramOutlivesTheBus()
    {
        const auto held = guard();
        {
            const SessionBus bus;
            ScreenSaver saver(bus.address(), true);
            held->hold();
            QTRY_COMPARE(saver.calls(), QStringList{asked});
        }
        held->release();
        held->hold();
        QTRY_COMPARE(m_failures.size(), 1); // that bus has gone
    }

    void nothingIsToldAfterwards()
    {
        const SessionBus bus;
        for (int turn = 0; turn < 20; ++turn) {
            auto held = guard();
            held->hold();
            held.reset();
        }
        QCoreApplication::processEvents();
        QVERIFY(m_failures.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestScreenSaverGuard)
#include "tst_screensaverguard.moc"
