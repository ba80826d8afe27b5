// The soak is held in its home, by name spaces or as nobody. Each is tried in a process of its own, which
// cannot get out of it again.
#include "Confinement.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <functional>

using namespace quorvia::test;

namespace {

const QString source = QStringLiteral(QUORVIA_SOURCE);

/// What `work` gives in a child process: a text.
QByteArray inChild(const std::function<QString()>& work)
{
    int ends[2] = {};
    if (::pipe(ends) != 0)
        return {};
    const pid_t child = ::fork();
    if (child == 0) {
        const QByteArray text = work().toUtf8();
        ::_exit(::write(ends[1], text.constData(), size_t(text.size())) == text.size() ? 0 : 1);
    }
    ::close(ends[1]);
    QFile said;
    QByteArray text;
    if (said.open(ends[0], QIODevice::ReadOnly, QFile::AutoCloseHandle))
        text = said.readAll();
    ::waitpid(child, nullptr, 0);
    return text;
}

/// From now on this process may not mount: as in a container that has name spaces, but no more.
bool refuseMounts()
{
    sock_filter rows[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_mount, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{.len = std::size(rows), .filter = rows};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// What can be written after `confinement`: "home", "source", both or nothing, behind how it was done.
QString report(const Confinement& confinement, const QString& home)
{
    return QStringLiteral("%1%2%3 %4")
        .arg(confinement.holds ? QStringLiteral("held") : QStringLiteral("free"))
        .arg(firstWritable({home}).isEmpty() ? QString() : QStringLiteral(" home"))
        .arg(firstWritable({source}).isEmpty() ? QString() : QStringLiteral(" source"))
        .arg(confinement.how);
}

} // namespace

class TestConfinement : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void writableFoldersAreFound()
    {
        const ScratchHome home;
        const QString open = home.path(QString());
        const QString closed = QStringLiteral("/proc/self");
        const QString missing = home.path(QStringLiteral("none"));
        QCOMPARE(firstWritable({missing, closed}), QString());
        QCOMPARE(firstWritable({missing, closed, open}), open);
        QVERIFY(
            QDir(open).entryList({QStringLiteral(".quorvia-soak*")}, QDir::Files | QDir::Hidden).isEmpty());
        QVERIFY2(!firstWritable({source}).isEmpty(), "the tests below would say nothing");
    }

    void homeAloneIsWritable()
    {
        const ScratchHome home;
        const QString path = home.path(QString());
        const QByteArray text = inChild([&] { return report(confineTo(path), path); });
        QVERIFY2(text.startsWith("held home by ") || text.startsWith("held home as "), text.constData());
    }

    void nobodyHasTheHomeAlone()
    {
        const ScratchHome home;
        const QString path = home.path(QString());
        home.write(QStringLiteral("deep/file"), "x");
        const QByteArray text = inChild([&] {
            const Confinement confinement = confineAsNobody(path);
            QFile file(path + QStringLiteral("/deep/file"));
            const bool isOwned = file.open(QIODevice::WriteOnly);
            return report(confinement, path) + QLatin1String(isOwned ? " owned" : "");
        });
        if (::geteuid() == 0)
            QVERIFY2(text.startsWith("held home as nobody") && text.endsWith("owned"), text.constData());
        else
            QVERIFY2(text.startsWith("free home source not nobody"), text.constData());
    }

    void whoMayNotMountIsHeldAllTheSame()
    {
        const ScratchHome home;
        const QString path = home.path(QString());
        const QByteArray text = inChild([&] {
            return refuseMounts() ? report(confineTo(path), path) : QStringLiteral("mounts are not refused");
        });
        if (::geteuid() == 0)
            QVERIFY2(text.startsWith("held home as nobody"), text.constData());
        else
            QVERIFY2(text.startsWith("free "), text.constData());
    }
};

QTEST_GUILESS_MAIN(TestConfinement)
#include "tst_confinement.moc"
