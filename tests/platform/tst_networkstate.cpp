#include "platform/NetworkState.h"

#include <QNetworkInterface>
#include <QTest>

#include <arpa/inet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quorvia::platform;

namespace {

constexpr unsigned ready = IFF_UP | IFF_RUNNING;

sockaddr_storage parsed(const char* text)
{
    sockaddr_storage storage{};
    auto* const four = reinterpret_cast<sockaddr_in*>(&storage);
    auto* const six = reinterpret_cast<sockaddr_in6*>(&storage);
    if (inet_pton(AF_INET, text, &four->sin_addr) == 1)
        storage.ss_family = AF_INET;
    else if (inet_pton(AF_INET6, text, &six->sin6_addr) == 1)
        storage.ss_family = AF_INET6;
    else
        storage.ss_family = AF_UNIX;
    return storage;
}

/// What isConnected() says in a process that has no network but a loop back that is down; -1 when no such
/// process can be made here.
int answerWithoutNetwork()
{
    constexpr int cannot = 2;
    const pid_t child = fork();
    if (child == 0)
        _exit(unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0 || unshare(CLONE_NEWNET) == 0 ? int(isConnected())
                                                                                       : cannot);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) == cannot)
        return -1;
    return WEXITSTATUS(status);
}

} // namespace

class TestNetworkState : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void rule_data()
    {
        QTest::addColumn<unsigned>("flags");
        QTest::addColumn<QByteArray>("address");
        QTest::addColumn<bool>("carries");
        const auto row = [](const char* name, unsigned flags, const char* address, bool carries) {
            QTest::newRow(name) << flags << QByteArray(address) << carries;
        };
        row("a cable", ready, "192.168.1.7", true);
        row("a sixth version", ready, "2001:db8::7", true);
        row("a private one of it", ready, "fd00::7", true);
        row("down", IFF_RUNNING, "192.168.1.7", false);
        row("no cable in it", IFF_UP, "192.168.1.7", false);
        row("the loop back", ready | IFF_LOOPBACK, "127.0.0.1", false);
        row("an address of its own making", ready, "169.254.3.4", false);
        row("the one beside those", ready, "169.253.3.4", true);
        row("the same of the sixth version", ready, "fe80::7", false);
        row("no address of the internet", ready, "", false);
    }

    void rule()
    {
        QFETCH(unsigned, flags);
        QFETCH(QByteArray, address);
        const sockaddr_storage storage = parsed(address.constData());
        QTEST(carriesConnection(flags, reinterpret_cast<const sockaddr*>(&storage)), "carries");
    }

    void noAddress() { QVERIFY(!carriesConnection(ready, nullptr)); }

    /// As the toolkit's own look at the interfaces finds it.
    void thisMachine()
    {
        constexpr auto ready = QNetworkInterface::IsUp | QNetworkInterface::IsRunning;
        bool carries = false;
        for (const QNetworkInterface& each : QNetworkInterface::allInterfaces()) {
            const auto state = each.flags() & (ready | QNetworkInterface::IsLoopBack);
            for (const QNetworkAddressEntry& entry : each.addressEntries())
                carries = carries || (state == ready && !entry.ip().isLinkLocal());
        }
        QCOMPARE(isConnected(), carries);
    }

    void aMachineWithoutNetwork()
    {
        const int answer = answerWithoutNetwork();
        if (answer < 0)
            qInfo("no process without a network can be made here");
        QVERIFY(answer <= 0);
    }
};

QTEST_GUILESS_MAIN(TestNetworkState)
#include "tst_networkstate.moc"
